#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// How complaints put things into words.
namespace bvconn::sandbox {

inline std::string quoted(std::string_view text) {
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

/// A complaint, which is in part what was sent: no more of it than people read, and never half a
/// character.
inline std::string shortened(std::string_view text) {
  constexpr std::size_t kMostBytes = 1024;
  constexpr std::string_view kCut = "…";
  if (text.size() <= kMostBytes) return std::string(text);
  std::size_t size = kMostBytes - kCut.size();
  while (size > 0 && (static_cast<unsigned char>(text[size]) & 0xC0U) == 0x80U) --size;
  return std::string(text.substr(0, size)).append(kCut);
}

}  // namespace bvconn::sandbox
