#pragma once

#include <cstddef>
#include <cstdint>

namespace bvconn::test {

/// Which allocations there is no memory for.
enum class Shortage : std::uint8_t {
  kOnce,    ///< one alone
  kOnward,  ///< that one and all that follow
};

/// While it lives, the allocation with this number (from 1) fails. Only one at a time, and only in
/// a program of one thread.
class FailingMemory {
 public:
  FailingMemory(std::size_t number, Shortage shortage) noexcept;
  ~FailingMemory();
  FailingMemory(const FailingMemory&) = delete;
  FailingMemory& operator=(const FailingMemory&) = delete;

  /// Whether there were so many allocations that one failed.
  static bool has_struck() noexcept;
};

}  // namespace bvconn::test
