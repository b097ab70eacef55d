#pragma once

#include <cstddef>

namespace bvconn::detail {

/// Memory of the system's own, not of the process's allocator.
struct LargeMemory {
  std::byte* data = nullptr;
  std::size_t size = 0;
};

/// At least so many bytes, in huge pages where there are many and the system has such. It costs
/// nothing before it is written to. Throws `std::bad_alloc`.
LargeMemory map_large(std::size_t bytes);
/// Makes it larger where its pages can go along as they are; it may lie elsewhere then. False where
/// they cannot: then nothing has changed.
bool grow_large(LargeMemory& memory, std::size_t bytes) noexcept;
/// Gives it back to the system.
void unmap_large(LargeMemory memory) noexcept;

}  // namespace bvconn::detail
