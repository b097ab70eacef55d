#include "sandbox/wire/stand_ins.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <utility>

namespace bvconn::wire {
namespace {

struct StandIn {
  std::string_view name;
  char stands_for;
};

constexpr std::array kStandIns{StandIn{"{line}", '\n'}, StandIn{"{return}", '\r'},
                               StandIn{"{blank}", ' '}, StandIn{"{brace}", '{'}};
constexpr std::string_view kByte = "{byte ";
constexpr std::string_view kByteEnd = "}";
constexpr std::string_view kDigits = "0123456789ABCDEF";
constexpr std::size_t kByteSize = kByte.size() + 2 + kByteEnd.size();

std::string_view name_of(char c) {
  const auto* const found = std::find_if(kStandIns.begin(), kStandIns.end(),
                                         [c](const StandIn& each) { return each.stands_for == c; });
  return found == kStandIns.end() ? std::string_view() : found->name;
}

std::optional<char> byte_of(std::string_view text) {
  if (!text.starts_with(kByte) || text.size() < kByteSize) return std::nullopt;
  const auto high = kDigits.find(text[kByte.size()]);
  const auto low = kDigits.find(text[kByte.size() + 1]);
  if (high == std::string_view::npos || low == std::string_view::npos) return std::nullopt;
  if (text[kByteSize - 1] != '}') return std::nullopt;
  return static_cast<char>(static_cast<unsigned char>(high * 16 + low));
}

/// What stands at the beginning of the text, and how long it is; length 0 for no stand-in.
std::pair<char, std::size_t> first_of(std::string_view text) {
  for (const StandIn& each : kStandIns) {
    if (text.starts_with(each.name)) return {each.stands_for, each.name.size()};
  }
  if (const auto byte = byte_of(text)) return {*byte, kByteSize};
  return {'\0', 0};
}

/// The bytes of the character at the beginning; 0 where there is none that a text can have.
std::size_t character_size(std::string_view text) {
  const auto first = static_cast<unsigned char>(text.front());
  if (first < 0x80) return first >= 0x20 && first != 0x7F ? 1 : 0;
  const std::size_t size = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() < size) return 0;
  const bool goes_on =
      std::all_of(text.begin() + 1, text.begin() + static_cast<long>(size),
                  [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; });
  return goes_on ? size : 0;
}

class Lines {
 public:
  std::vector<std::string> of(std::string_view text) {
    while (!text.empty()) text.remove_prefix(take(text));
    if (!line_.empty() || lines_.empty()) end_line();
    return std::move(lines_);
  }

 private:
  // Takes what stands at the beginning, and gives its size.
  std::size_t take(std::string_view text) {
    const char c = text.front();
    if (c == '\n') {
      line_.append(name_of(c));
      end_line();
      return 1;
    }
    if (c == '\r' || (c == '{' && first_of(text).second > 0)) {
      line_.append(name_of(c));
      return 1;
    }
    constexpr std::size_t kLong = 80;
    if (c == '<' && line_.size() >= kLong && !text.starts_with("</")) end_line();
    const std::size_t size = c == '\t' ? 1 : character_size(text);
    if (size > 0) {
      line_.append(text.substr(0, size));
      return size;
    }
    const auto byte = static_cast<unsigned char>(c);
    line_.append(kByte).append({kDigits[byte >> 4U], kDigits[byte & 0xFU]}).append(kByteEnd);
    return 1;
  }

  // Blanks around a line do not belong to it.
  void end_line() {
    const std::string_view blank = name_of(' ');
    if (line_.ends_with(' ')) line_.replace(line_.size() - 1, 1, blank);
    if (line_.starts_with(' ')) line_.replace(0, 1, blank);
    lines_.push_back(std::exchange(line_, {}));
  }

  std::string line_;
  std::vector<std::string> lines_;
};

}  // namespace

std::string without_stand_ins(std::string_view line) {
  std::string text;
  while (!line.empty()) {
    const std::size_t brace = std::min(line.find('{'), line.size());
    text.append(line.substr(0, brace));
    line.remove_prefix(brace);
    if (line.empty()) break;
    const auto [c, size] = first_of(line);
    text.push_back(size > 0 ? c : '{');
    line.remove_prefix(std::max<std::size_t>(size, 1));
  }
  return text;
}

std::vector<std::string> lines_with_stand_ins(std::string_view text) {
  return Lines().of(text);
}

}  // namespace bvconn::wire
