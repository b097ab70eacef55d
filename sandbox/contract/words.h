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

}  // namespace bvconn::sandbox
