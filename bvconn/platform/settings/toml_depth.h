#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace bvconn::detail {

/// A place in a text, both counted from 1; columns count characters.
struct TomlPosition {
  std::size_t line = 1;
  std::size_t column = 1;
};

/// Tables and arrays in each other, each part of a dotted key being a table.
inline constexpr std::size_t kDeepestToml = 100;

/// Where TOML text first nests deeper than that. Trees of settings are made and freed by recursion,
/// so this is asked before one is made. Of text that is no TOML nothing is overlooked before its
/// first mistake, where reading ends.
std::optional<TomlPosition> find_too_deep(std::string_view toml);

}  // namespace bvconn::detail
