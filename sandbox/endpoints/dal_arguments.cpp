#include "sandbox/endpoints/dal_arguments.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>

#include "sandbox/endpoints/soap_request.h"
#include "sandbox/operations/operations.h"

namespace bvconn::sandbox {
namespace {

using nlohmann::json;

[[noreturn]] void refuse_call(const DalRoute& route, const std::string& text) {
  throw DalError{400, dal_numbers::kBadRequest, route.object, text};
}

JsonType integer_type(const json& value) {
  using Limits = std::numeric_limits<std::int32_t>;
  // Beyond 64 bits the reader has made a floating-point number of it, but for one bit.
  const bool is_beyond = value.is_number_unsigned() &&
                         value.get<std::uint64_t>() > std::numeric_limits<std::int64_t>::max();
  if (is_beyond) return JsonType::kFloat;
  const auto number = value.get<std::int64_t>();
  const bool is_short = number >= Limits::min() && number <= Limits::max();
  return is_short ? JsonType::kInteger : JsonType::kLongInteger;
}

JsonType type_of(const json& value) {
  if (value.is_null()) return JsonType::kNull;
  if (value.is_boolean()) return JsonType::kBoolean;
  if (value.is_number_integer()) return integer_type(value);
  if (value.is_number()) return JsonType::kFloat;
  if (value.is_string()) return JsonType::kText;
  const bool is_list =
      value.is_array() && std::all_of(value.begin(), value.end(),
                                      [](const json& each) { return !each.is_structured(); });
  return is_list ? JsonType::kArray : JsonType::kOther;
}

Variant variant_of(const json& value) {
  switch (type_of(value)) {
    case JsonType::kBoolean:
      return value.get<bool>();
    case JsonType::kInteger:
      return value.get<std::int32_t>();
    case JsonType::kLongInteger:
      return value.get<std::int64_t>();
    case JsonType::kFloat:
      return value.get<double>();
    case JsonType::kText:
      return value.get<std::string>();
    case JsonType::kArray: {
      std::vector<Variant> items;
      for (const json& each : value) items.push_back(variant_of(each));
      return VariantArray(std::move(items));
    }
    case JsonType::kNull:
    case JsonType::kOther:
      break;
  }
  return {};
}

}  // namespace

DalArguments read_arguments(const std::string& body, const DalRoute& route) {
  std::size_t values = 0;
  const auto count = [&](int /*depth*/, json::parse_event_t event, const json& /*value*/) {
    if (event == json::parse_event_t::object_end || event == json::parse_event_t::array_end) {
      return true;
    }
    if (++values > kMostRequestTags) {
      refuse_call(route, route.operation + ": the body has more than " +
                             std::to_string(kMostRequestTags) + " values");
    }
    return true;
  };
  const json call = json::parse(body, count, /*allow_exceptions=*/false);
  if (!call.is_object() || call.size() != 1 || !call.contains("arguments") ||
      !call["arguments"].is_array()) {
    refuse_call(route,
                route.operation + ": the body is not JSON of the form {\"arguments\":[...]}");
  }
  std::vector<JsonType> types;
  DalArguments arguments;
  for (const json& each : call["arguments"]) {
    types.push_back(type_of(each));
    arguments.values.push_back(variant_of(each));
  }
  arguments.differences = differences(route, types);
  return arguments;
}

}  // namespace bvconn::sandbox
