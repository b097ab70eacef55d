#pragma once

#include <cstddef>
#include <cstdint>

// A program that has watched_memory.cpp among its sources takes its memory through it: operator new
// and delete are replaced, so it is a program of its own.
namespace bvconn::test {

/// What was allocated since it was made, and what of that is still there.
class MemoryCount {
 public:
  MemoryCount() noexcept;
  std::size_t made() const noexcept;
  std::size_t kept() const noexcept;
  std::size_t bytes_kept() const noexcept;

 private:
  std::size_t made_;
  std::size_t living_;
  std::size_t bytes_;
};

/// Which allocations there is no memory for.
enum class Shortage : std::uint8_t {
  kOnce,    ///< one alone
  kOnward,  ///< that one and all that follow
};

/// While it lives, the allocation with this number (from 1) that its thread makes fails. Only one
/// at a time on each thread.
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
