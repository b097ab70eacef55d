#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "bvconn/automation/interface.h"
#include "bvconn/platform/error.h"

/// Values in the JSON forms of a batch's answers and of traces, as text. All of it is UTF-8; bytes
/// that are not are replaced.
namespace bvconn::tool {

using Json = nlohmann::ordered_json;

inline constexpr std::size_t kMaxNodes = 10'000'000;

/// A string in quotes.
std::string json_string(std::string_view text);
/// What an operation or a property gave: null for nothing and for an empty reference, {"node":…},
/// {"envelope":…}, {"object":…}, {"date":…}, or a simple value. Fails with 0x80044206 for more than
/// `max_nodes` nodes: a small reply that shares its parts can have an enormous text.
std::string json_value(const automation::Value& value, std::size_t max_nodes = kMaxNodes);
/// An argument of a service object: as above, and {"missing":true} for one that was left out.
std::string json_argument(const Variant& value);
/// {"number":…,"hex":…,"source":…,"description":…,"helpFile":…,"helpContext":…}
std::string json_error(const Error& error);

}  // namespace bvconn::tool
