#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bvconn/platform/conversions/text.h"
#include "bvconn/platform/settings/toml_check.h"

namespace bvconn::detail {

/// Thrown where the TOML library finds itself in a state that it holds for impossible.
struct TomlDoubt {};

[[noreturn]] inline void doubt_toml() {
  throw TomlDoubt();
}

}  // namespace bvconn::detail

// Some texts that are no TOML lead the library where its assertions do not hold. It would end the
// program there or, in a release build, go on as if they held; here it throws instead.
#pragma push_macro("NDEBUG")
#undef NDEBUG
#define TOML_ASSERT(condition) ((condition) ? void() : ::bvconn::detail::doubt_toml())
// A mistake in a text is to come back as a value: the exception that it would be otherwise takes
// memory in a constructor that must not fail, and where there is none the program would end.
#define TOML_EXCEPTIONS 0
#include <toml++/toml.h>
#pragma pop_macro("NDEBUG")

namespace bvconn::detail {

/// What TOML text holds, or why it is none.
struct TomlReading {
  toml::table table;
  std::optional<TomlTrouble> trouble;
};

inline bool is_doubtful_toml(std::string_view toml) {
  try {
    static_cast<void>(toml::parse(toml));
    return false;
  } catch (const TomlDoubt&) {
    return true;
  }
}

/// The library does not tell where it doubts: this is the first line that the text must have for
/// it.
inline TomlPosition line_of_doubt(std::string_view toml) {
  std::vector<std::size_t> line_ends;
  for (std::size_t at = 0; (at = toml.find('\n', at)) != std::string_view::npos;) {
    line_ends.push_back(++at);
  }
  line_ends.push_back(toml.size());
  const auto line = std::partition_point(
      line_ends.begin(), line_ends.end(),
      [toml](std::size_t end) { return !is_doubtful_toml(toml.substr(0, end)); });
  return {.line = 1 + static_cast<std::size_t>(line - line_ends.begin())};
}

/// Reads TOML text, whatever it is. Throws std::bad_alloc alone.
inline TomlReading read_toml(std::string_view toml) {
  TomlReading reading;
  reading.trouble = find_toml_trouble(toml);
  if (reading.trouble) return reading;
  try {
    // Without the name of a file: to keep a copy of it, the library takes memory where it may not
    // fail.
    toml::parse_result result = toml::parse(toml);
    if (result.failed()) {
      const toml::source_position at = result.error().source().begin;
      reading.trouble = TomlTrouble{{.line = at.line, .column = at.column}, {}};
      // It quotes what it found as it stands.
      append_escaped(reading.trouble->reason, result.error().description());
    } else {
      reading.table = std::move(result).table();
    }
  } catch (const TomlDoubt&) {
    reading.trouble = TomlTrouble{line_of_doubt(toml), "the line cannot be understood"};
  }
  return reading;
}

}  // namespace bvconn::detail
