#pragma once

#include <cstdint>
#include <string_view>

#include "bvconn/platform/export.h"

namespace bvconn {

/// What a caller can say about a request that failed: whether the server may have acted on it.
enum class Outcome : std::uint8_t {
  kNone,      ///< the error is not one of a call
  kNotSent,   ///< no byte of the request went out: the server knows nothing of it
  kUnknown,   ///< the request began to go out and no whole reply came: the server may have acted
  kAnswered,  ///< the server answered, be it with a fault, a refusal or a text that nobody can read
};

/// "not sent", "sent, outcome unknown", "answered"; "" for none.
BVCONN_EXPORT std::string_view outcome_text(Outcome outcome);

}  // namespace bvconn
