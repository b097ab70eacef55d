#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// How complaints put things into words.
namespace bvconn::sandbox {

/// Not by the name of std::quoted, which would be found for every std::string beside it.
inline std::string in_quotes(std::string_view text) {
  return "'" + std::string(text) + "'";
}

/// "a, b, c", each in its words.
template <class Items, class Words>
std::string listed(const Items& items, std::string_view joint, Words words) {
  std::string list;
  for (const auto& each : items) {
    if (!list.empty()) list.append(joint);
    list.append(words(each));
  }
  return list;
}

/// "1 argument", "2 arguments".
inline std::string counted(std::size_t count, std::string_view thing) {
  return std::to_string(count) + " " + std::string(thing) + (count == 1 ? "" : "s");
}

/// The text without the control characters with which it could play tricks on a terminal.
inline std::string without_controls(std::string_view text) {
  constexpr unsigned char kFirstPrintable = 0x20;
  constexpr unsigned char kDelete = 0x7F;
  std::string plain(text);
  for (char& c : plain) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte < kFirstPrintable && c != '\n' && c != '\t') || byte == kDelete) c = '?';
  }
  return plain;
}

/// The same on one line.
inline std::string one_line(std::string_view text) {
  std::string line = without_controls(text);
  for (char& c : line) {
    if (c == '\n') c = ' ';
  }
  return line;
}

inline constexpr std::size_t kMostComplaintBytes = 1024;

/// A complaint, which is in part what was sent: no more of it than people read, and never half a
/// character.
inline std::string shortened(std::string_view text, std::size_t most_bytes = kMostComplaintBytes) {
  constexpr std::string_view kCut = "…";
  if (text.size() <= most_bytes) return std::string(text);
  std::size_t size = most_bytes - kCut.size();
  while (size > 0 && (static_cast<unsigned char>(text[size]) & 0xC0U) == 0x80U) --size;
  return std::string(text.substr(0, size)).append(kCut);
}

}  // namespace bvconn::sandbox
