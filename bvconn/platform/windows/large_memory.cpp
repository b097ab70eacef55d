#include "bvconn/platform/large_memory.h"

#include <new>

#include "bvconn/platform/windows/system.h"

namespace bvconn::detail {

LargeMemory map_large(std::size_t bytes) {
  constexpr std::size_t kPage = std::size_t{4} << 10;
  const std::size_t size = (bytes + kPage - 1) / kPage * kPage;
  void* memory = ::VirtualAlloc(nullptr, size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
  if (memory == nullptr) throw std::bad_alloc();
  return {.data = static_cast<std::byte*>(memory), .size = size};
}

bool grow_large(LargeMemory&, std::size_t) noexcept {
  return false;
}

void unmap_large(LargeMemory memory) noexcept {
  ::VirtualFree(memory.data, 0, MEM_RELEASE);
}

}  // namespace bvconn::detail
