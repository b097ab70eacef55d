#include "sandbox/wire/keyed_text.h"

namespace bvconn::wire {

std::string KeyedEntry::joined() const {
  std::string text;
  for (const std::string& value : values) text.append(value);
  return text;
}

std::vector<KeyedEntry> read_keyed_text(std::string_view text, std::vector<std::string>& problems) {
  std::vector<KeyedEntry> entries;
  for (int number = 1; !text.empty(); ++number) {
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (trimmed(line).empty() || line.front() == '#') continue;
    const std::size_t colon = line.find(':');
    if (line.front() == ' ' && !entries.empty()) {
      entries.back().values.emplace_back(trimmed(line));
    } else if (line.front() == ' ' || colon == std::string_view::npos) {
      problems.push_back("line " + std::to_string(number) + ": a key and a colon are expected");
    } else {
      KeyedEntry& entry = entries.emplace_back();
      entry.line = number;
      entry.key = line.substr(0, colon);
      const std::string_view rest = trimmed(line.substr(colon + 1));
      if (!rest.empty()) entry.values.emplace_back(rest);
    }
  }
  return entries;
}

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace bvconn::wire
