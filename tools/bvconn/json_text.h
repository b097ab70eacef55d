#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "bvconn/automation/interface.h"
#include "bvconn/platform/error.h"
#include "json_output.h"

/// Values in the JSON forms of a batch's answers and of traces. All of it is UTF-8; bytes that are
/// not are replaced.
namespace bvconn::tool {

using Json = nlohmann::ordered_json;

inline constexpr std::size_t kMaxNodes = 10'000'000;

/// Writes what an operation or a property gave: null for nothing and for an empty reference,
/// {"node":…}, {"envelope":…}, {"object":…}, {"date":…}, or a simple value. The value goes out as
/// it is walked; there is no second tree of it, and no text of the whole.
///
/// Only what `require_printable` lets pass may be written.
void write_json(JsonOutput& out, const automation::Value& value);
/// Fails with 0x80044206 for more than `max_nodes` nodes or values in arrays, or a gigabyte of
/// text: a small reply that shares its parts can have an enormous text.
void require_printable(const automation::Value& value, std::size_t max_nodes = kMaxNodes);

/// A string in quotes.
std::string json_string(std::string_view text);
/// What `write_json` writes of a value that is printable.
std::string json_value(const automation::Value& value, std::size_t max_nodes = kMaxNodes);
/// An argument of a service object: as above, and {"missing":true} for one that was left out.
std::string json_argument(const Variant& value);
/// {"number":…,"hex":…,"source":…,"description":…,"helpFile":…,"helpContext":…}
std::string json_error(const Error& error);

}  // namespace bvconn::tool
