#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "bvconn/platform/export.h"

namespace bvconn::detail {

/// A place in a text, both counted from 1; columns count characters.
struct TomlPosition {
  std::size_t line = 1;
  std::size_t column = 1;
};

/// Tables and arrays in each other, each part of a dotted key being a table.
inline constexpr std::size_t kDeepestToml = 100;

/// Why TOML text must not be handed to its reader.
struct TomlTrouble {
  TomlPosition at;
  std::string reason;
};

/// Where TOML text first nests deeper than that, begins a table's header with what is no key, or
/// has a letter beyond ASCII elsewhere than in text and comments. Trees of settings are made and
/// freed by recursion, so depth is asked for before they are; the reader has no place for the other
/// two. Of text that is no TOML nothing is overlooked before its first mistake, where reading ends.
BVCONN_EXPORT std::optional<TomlTrouble> find_toml_trouble(std::string_view toml);

}  // namespace bvconn::detail
