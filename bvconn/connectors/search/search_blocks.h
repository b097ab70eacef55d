#pragma once

#include <string>
#include <string_view>

#include "bvconn/core/joined_codes.h"
#include "bvconn/operation/method_frame.h"

/// What the blocks and bodies of `BVSearchConnector`'s operations share.
namespace bvconn::search {

inline constexpr std::string_view kClass = "BVSearchConnector";

/// No line of the operation's own.
constexpr LogBlock silent(std::string_view method) {
  return {.cls = kClass, .method = method, .form = LogForm::kNone};
}
constexpr LogBlock with_brackets(std::string_view method) {
  return {.cls = kClass, .method = method, .brackets = true};
}

/// The codes as the data access layer takes them; 9 for an array that was never allocated.
inline std::string joined(const StringArray& codes) {
  return codes.upper_bound() < 0 ? std::string() : joined_codes(codes.items());
}

}  // namespace bvconn::search
