#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include "bvconn/platform/error.h"

/// What the fuzz targets share: how they say what they found, and how they take an input apart.
namespace bvconn::fuzz {

/// Ends the program; libFuzzer keeps the input.
[[noreturn]] void found(std::string_view what, std::string_view detail = {});

inline void require(bool holds, std::string_view what, std::string_view detail = {}) {
  if (!holds) found(what, detail);
}

/// What holds for every error: its number is one of these, its description is for people (UTF-8,
/// one line, short), and its source is told.
void require_error(const Error& error, std::initializer_list<std::int32_t> numbers);

/// An input, taken piece by piece as choices from its beginning. Behind its end there are zeros.
class Choices {
 public:
  Choices(const std::uint8_t* data, std::size_t size)
      : rest_(reinterpret_cast<const char*>(data), size) {}

  bool done() const { return rest_.empty(); }
  std::uint8_t byte();
  /// From 0 to `count` - 1.
  std::size_t below(std::size_t count) { return byte() % count; }
  bool flag() { return (byte() & 1U) != 0; }
  /// So many bytes, low ones first.
  std::uint64_t number(std::size_t bytes);
  /// At most `size_max` bytes; a byte of their own tells how many.
  std::string_view text(std::size_t size_max);
  /// Up to the next line end, which is taken too.
  std::string_view line();
  std::string_view rest() const { return rest_; }

 private:
  std::string_view take(std::size_t size);

  std::string_view rest_;
};

}  // namespace bvconn::fuzz
