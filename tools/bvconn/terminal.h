#pragma once

#include <string>
#include <string_view>

namespace bvconn::tool {

inline constexpr int kStandardOutput = 1;
inline constexpr int kStandardError = 2;

/// What an output is for: people at a terminal see colours, everything else plain text.
struct Terminal {
  bool is_terminal = false;
  bool has_colours = false;

  /// Of one of the two above. Colours are for terminals alone, and not where
  /// `NO_COLOR` is set or the terminal has none.
  static Terminal of(int file);

  std::string red(std::string_view text) const { return painted("31", text); }
  std::string yellow(std::string_view text) const { return painted("33", text); }
  std::string blue(std::string_view text) const { return painted("34", text); }

 private:
  std::string painted(std::string_view code, std::string_view text) const;
};

}  // namespace bvconn::tool
