#pragma once

#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "bvconn/automation/interface.h"
#include "bvconn/platform/error.h"

/// Values in the JSON forms of a batch's answers and of traces, as text. All of it is UTF-8; bytes
/// that are not are replaced.
namespace bvconn::tool {

using Json = nlohmann::ordered_json;

/// A string in quotes.
std::string json_string(std::string_view text);
/// What an operation or a property gave: null for nothing and for an empty reference, {"node":…},
/// {"envelope":…}, {"object":…}, {"date":…}, or a simple value. Fails with 0x80044206 for a tree
/// that shares so many of its parts that it has no reasonable text.
std::string json_value(const automation::Value& value);
/// An argument of a service object: as above, and {"missing":true} for one that was left out.
std::string json_argument(const Variant& value);
/// {"number":…,"hex":…,"source":…,"description":…,"helpFile":…,"helpContext":…}
std::string json_error(const Error& error);

}  // namespace bvconn::tool
