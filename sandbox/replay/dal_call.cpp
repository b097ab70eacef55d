#include "sandbox/replay/dal_call.h"

#include <array>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <utility>

#include "sandbox/endpoints/soap_request.h"

namespace bvconn::sandbox {
namespace {

using nlohmann::json;

std::string text_of(const json& value) {
  if (value.is_string()) return value.get<std::string>();
  if (value.is_null()) return {};
  if (!value.is_array()) return value.dump();
  std::string text;
  for (const json& each : value) {
    if (&each != &value.front()) text.push_back(';');
    text.append(text_of(each));
  }
  return text;
}

// What is too deep or too large is given up while it is read.
json parse(std::string_view text) {
  constexpr int kMostLevels = 100;
  std::size_t values = 0;
  bool is_good = true;
  const auto watch = [&](int depth, json::parse_event_t /*event*/, const json& /*value*/) {
    if (depth > kMostLevels || ++values > 3 * kMostRequestTags) is_good = false;
    return is_good;
  };
  json read = json::parse(text.begin(), text.end(), watch, /*allow_exceptions=*/false);
  return is_good ? read : json(json::value_t::discarded);
}

// How much of the text a JSON string takes that begins it.
std::size_t string_size(std::string_view text) {
  for (std::size_t at = 1; at < text.size(); ++at) {
    if (text[at] == '\\') {
      ++at;
    } else if (text[at] == '"') {
      return at + 1;
    }
  }
  return text.size();
}

// JSON of what stands between the brackets of a line.
std::string json_arguments(std::string_view line, const std::string& request) {
  const std::array<std::pair<std::string_view, std::string>, 3> words{
      {{"{request}", json(request).dump(-1, ' ', false, json::error_handler_t::replace)},
       {"missing", "null"},
       {"empty", "null"}}};
  std::string arguments;
  while (!line.empty()) {
    std::size_t size = line.front() == '"' ? string_size(line) : 1;
    std::string text(line.substr(0, size));
    for (const auto& [word, meaning] : words) {
      if (!line.starts_with(word)) continue;
      size = word.size();
      text = meaning;
    }
    arguments.append(text);
    line.remove_prefix(size);
  }
  return arguments;
}

}  // namespace

std::optional<std::vector<std::string>> dal_arguments(const std::string& body) {
  const json call = parse(body);
  if (!call.is_object() || call.size() != 1 || !call.contains("arguments") ||
      !call["arguments"].is_array()) {
    return std::nullopt;
  }
  std::vector<std::string> texts;
  for (const json& each : call["arguments"]) texts.push_back(text_of(each));
  return texts;
}

std::optional<DalCall> dal_call_of(std::string_view line, const std::string& request) {
  const std::size_t dot = line.find('.');
  const std::size_t open = line.find('(');
  const std::size_t close = line.rfind(')');
  if (dot == std::string_view::npos || open == std::string_view::npos || dot > open ||
      close == std::string_view::npos || close < open) {
    return std::nullopt;
  }
  DalCall call{.object = std::string(line.substr(0, dot)),
               .operation = std::string(line.substr(dot + 1, open - dot - 1)),
               .body = "{\"arguments\":["};
  call.body.append(json_arguments(line.substr(open + 1, close - open - 1), request)).append("]}");
  if (!dal_arguments(call.body)) return std::nullopt;
  return call;
}

}  // namespace bvconn::sandbox
