#pragma once

#include <cstdint>

#include "bvconn/platform/exchange/exchange.h"
#include "bvconn/platform/export.h"

namespace bvconn {

/// What a transport or a service object knows of its last exchange besides what it hands over.
struct BVCONN_EXPORT WireFacts {
  bool went_out = false;  ///< whether the request began to go out
  std::int32_t http_status = 0;
  BoundedText reply_headers;
  /// The reply's body where the caller was not given it: the page or the JSON of a refusal, the
  /// part that arrived of a reply that was cut.
  BoundedText refused_reply;
  ExchangeTimes times;
  std::uint64_t bytes_sent = 0;
  std::uint64_t bytes_received = 0;

  /// Back to nothing; the texts keep their memory.
  void clear();
};

/// What a failure tells of a request where nothing else is known: numbers of the transport that
/// stand for a connection that never came about say that it was not sent.
BVCONN_EXPORT Outcome outcome_by_number(std::int32_t error_number);

}  // namespace bvconn
