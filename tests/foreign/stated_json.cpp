#include "foreign/stated_json.h"

#include <algorithm>
#include <regex>
#include <string_view>

namespace bvconn::test {
namespace {

constexpr std::string_view kAnyText = "{any}";

bool matches(std::string_view text, std::string_view pattern) {
  const std::size_t at = pattern.find(kAnyText);
  if (at == std::string_view::npos) return text == pattern;
  if (!text.starts_with(pattern.substr(0, at))) return false;
  text.remove_prefix(at);
  pattern.remove_prefix(at + kAnyText.size());
  while (!matches(text, pattern)) {
    if (text.empty()) return false;
    text.remove_prefix(1);
  }
  return true;
}

}  // namespace

Json read_stated(const std::string& text) {
  static const std::regex many(R"(\{(\d+) times ([^}]*)\})");
  std::string written_out;
  std::sregex_iterator match(text.begin(), text.end(), many);
  auto rest = text.begin();
  for (; match != std::sregex_iterator(); ++match) {
    written_out.append(rest, (*match)[0].first);
    for (int left = std::stoi((*match)[1]); left > 0; --left) written_out.append((*match)[2]);
    rest = (*match)[0].second;
  }
  return Json::parse(written_out.append(rest, text.end()));
}

Json filled_in(Json stated, const Json& actual) {
  if (stated.type() != actual.type()) return stated;
  if (stated.is_string()) {
    if (matches(actual.get<std::string>(), stated.get<std::string>())) return actual;
  } else if (stated.is_array()) {
    for (std::size_t i = 0; i < std::min(stated.size(), actual.size()); ++i) {
      stated[i] = filled_in(std::move(stated[i]), actual[i]);
    }
  } else if (stated.is_object()) {
    for (const auto& [key, value] : actual.items()) {
      if (stated.contains(key)) {
        stated[key] = filled_in(std::move(stated[key]), value);
      } else if (key == "namespace") {
        stated[key] = value;
      }
    }
  }
  return stated;
}

}  // namespace bvconn::test
