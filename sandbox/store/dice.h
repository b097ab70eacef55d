#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

namespace bvconn::sandbox {

/// The standard says what this engine draws, but not what its distributions make of it; so the
/// latter are our own, and the data are the same with every library.
class Dice {
 public:
  explicit Dice(std::uint64_t seed) : engine_(seed) {}

  std::int64_t between(std::int64_t low, std::int64_t high) {
    const auto span = static_cast<std::uint64_t>(high - low) + 1;
    return low + static_cast<std::int64_t>(engine_() % span);
  }

  template <typename Items>
  const auto& one_of(const Items& items) {
    return items[static_cast<std::size_t>(between(0, static_cast<std::int64_t>(items.size()) - 1))];
  }

 private:
  std::mt19937_64 engine_;
};

inline std::string numbered(std::string_view prefix, std::int64_t number) {
  return std::string(prefix) + std::to_string(number);
}

}  // namespace bvconn::sandbox
