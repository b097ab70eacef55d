#include "batch_request.h"

#include <array>
#include <cstddef>

#include "status.h"

namespace bvconn::tool {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

/// The end of the JSON value that begins at `at`: the comma or bracket behind it.
std::size_t end_of_value(std::string_view json, std::size_t at) {
  int depth = 0;
  bool quoted = false;
  for (; at < json.size(); ++at) {
    const char c = json[at];
    if (quoted) {
      if (c == '\\') {
        ++at;
      } else if (c == '"') {
        quoted = false;
      }
    } else if (c == '"') {
      quoted = true;
    } else if (c == '{' || c == '[') {
      ++depth;
    } else if (c == '}' || c == ']') {
      if (depth == 0) break;
      --depth;
    } else if ((c == ',' || c == ':') && depth == 0) {
      break;
    }
  }
  return at;
}

/// Whether a key as it was written is this one. It takes memory only where it has escapes.
bool is_key(std::string_view written, std::string_view key) {
  if (written.find('\\') != std::string_view::npos) {
    const JsonValue read = parse_json(written);
    return read.text() != nullptr && *read.text() == key;
  }
  return written.size() == key.size() + 2 && written.substr(1, key.size()) == key;
}

}  // namespace

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string verb_of(const JsonValue& request) {
  struct Verb {
    std::string_view name, companion;
  };
  constexpr std::array<Verb, 5> kVerbs{
      {{"call", "args"}, {"new", "as"}, {"get", ""}, {"set", "value"}, {"release", ""}}};
  const Verb* found = nullptr;
  for (const Verb& verb : kVerbs) {
    if (request.find(verb.name) == nullptr) continue;
    if (found != nullptr) throw UsageError("a line holds one request");
    found = &verb;
  }
  if (found == nullptr) throw UsageError("call, new, get, set or release is required");
  for (const auto& [key, value] : *request.object()) {
    if (key != "id" && key != found->name &&
        (found->companion.empty() || key != found->companion)) {
      throw UsageError(std::string(found->name) + " does not take " + key);
    }
  }
  return std::string(found->name);
}

const std::string& text_member(const JsonValue& request, const char* key) {
  const JsonValue* const found = request.find(key);
  if (found == nullptr) throw UsageError(std::string(key) + " is required");
  if (found->text() == nullptr) throw UsageError(std::string(key) + ": a string is expected");
  return *found->text();
}

std::string_view raw_member(std::string_view object, std::string_view key) {
  std::size_t at = object.find('{');
  while (at < object.size() && object[at] != '}') {
    const std::size_t colon = end_of_value(object, at + 1);
    if (colon >= object.size() || object[colon] != ':') break;
    const std::size_t end = end_of_value(object, colon + 1);
    if (is_key(trimmed(object.substr(at + 1, colon - at - 1)), key)) {
      return trimmed(object.substr(colon + 1, end - colon - 1));
    }
    at = end;
  }
  return "null";
}

}  // namespace bvconn::tool
