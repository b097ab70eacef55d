#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/platform/conversions/date.h"
#include "bvconn/platform/export.h"
#include "bvconn/platform/outcome.h"

namespace bvconn {

/// By which of the two routes a call went.
enum class ExchangeRoute : std::uint8_t { kSoap, kDal };

/// "soap", "dal".
BVCONN_EXPORT std::string_view route_text(ExchangeRoute route);

/// Whether passwords, session identifiers and tokens are shown where a record is read.
enum class Secrets : std::uint8_t { kMasked, kShown };

/// So much of each text is kept.
inline constexpr std::size_t kKeptTextMax = std::size_t{64} << 10;

/// A text of which at most the first 64 KiB are kept.
struct BVCONN_EXPORT BoundedText {
  std::string text;
  std::uint64_t size = 0;  ///< bytes of the whole text, kept or not

  bool cut() const { return size > kKeptTextMax; }
  void assign(std::string_view whole);
  void append(std::string_view more);
  /// Empties the text and keeps its memory.
  void clear();
};

/// How long the steps of an exchange took, in microseconds; 0 for a step that was not taken, or
/// that nobody measured.
struct ExchangeTimes {
  std::int64_t name_us = 0;     ///< resolving the host's name
  std::int64_t connect_us = 0;  ///< connecting; 0 on a kept connection
  std::int64_t tls_us = 0;
  std::int64_t send_us = 0;     ///< from the request's first byte to its last
  std::int64_t wait_us = 0;     ///< from there to the reply's first byte
  std::int64_t receive_us = 0;  ///< from there to the reply's end
  std::int64_t total_us = 0;

  friend bool operator==(const ExchangeTimes&, const ExchangeTimes&) = default;
};

/// One argument of a service object's operation.
struct ExchangeArgument {
  std::string type;  ///< as `type_name(Variant::Type)` gives it: "string", "boolean", "int32", …
  BoundedText text;  ///< the value as text; XML for a node; "" for nothing
};

/// The values of an error.
struct ExchangeError {
  std::int32_t number = 0;
  std::string source;
  std::string description;
};

/// One request to the server and what became of it, success or not: what support staff ask for
/// first. Whatever does not apply to the route, or is not known, is empty.
struct Exchange {
  std::uint64_t number = 0;  ///< counts the thread's exchanges, from 1
  Date at;                   ///< when it began, local time
  std::string cls;           ///< of the interface, for instance "BVInvoiceConnector"
  std::string operation;     ///< of the interface, for instance "GetInvoice"
  ExchangeRoute route = ExchangeRoute::kSoap;
  std::string url;  ///< as the caller gave it; on the data access layer its address

  // The SOAP route.
  std::optional<std::string> soap_action;  ///< of this request or left by an earlier one, if any
  BoundedText request;

  // The data access layer.
  std::string object;            ///< the service object, for instance "SearchService"
  std::string object_operation;  ///< its operation
  std::vector<ExchangeArgument> arguments;
  BoundedText result;

  // Of the reply. With a transport or service object of the application's own, what it brought:
  // status, headers, times and counts are known for those of the library alone.
  std::int32_t http_status = 0;
  BoundedText reply_headers;  ///< status line and header lines as they came
  BoundedText reply;          ///< the body, unpacked
  ExchangeTimes times;
  std::uint64_t bytes_sent = 0;      ///< of the request's body, on the wire
  std::uint64_t bytes_received = 0;  ///< of the reply's body, on the wire

  Outcome outcome = Outcome::kNotSent;
  /// The first thing that went wrong, with the words of the server or the service object: also
  /// where the caller is given another error, or none.
  std::optional<ExchangeError> error;
  /// The number of the error that the operation raised; nothing where it returned.
  std::optional<std::int32_t> raised;
};

}  // namespace bvconn
