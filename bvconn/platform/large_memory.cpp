#include "bvconn/platform/large_memory.h"

#include <sys/mman.h>

#include <cstdint>
#include <new>

namespace bvconn::detail {
namespace {

constexpr std::size_t kHugePage = std::size_t{2} << 20;
// What is smaller would leave most of a huge page unused.
constexpr std::size_t kHugeFrom = std::size_t{1} << 20;
constexpr std::size_t kPage = std::size_t{4} << 10;

std::size_t rounded_up(std::size_t size, std::size_t unit) {
  return (size + unit - 1) / unit * unit;
}

std::byte* mapped(std::size_t size) {
  void* memory = mmap(nullptr, size, PROT_READ | PROT_WRITE,
                      MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (memory == MAP_FAILED) throw std::bad_alloc();
  return static_cast<std::byte*>(memory);
}

void give_back(std::byte* memory, std::size_t size) noexcept {
  if (size > 0) munmap(memory, size);
}

/// Begins where a huge page can begin. What was mapped to find such a place goes back.
std::byte* mapped_in_huge_pages(std::size_t size) {
  std::byte* const found = mapped(size + kHugePage);
  const std::size_t ahead =
      (kHugePage - reinterpret_cast<std::uintptr_t>(found) % kHugePage) % kHugePage;
  give_back(found, ahead);
  give_back(found + ahead + size, kHugePage - ahead);
#ifdef MADV_HUGEPAGE
  madvise(found + ahead, size, MADV_HUGEPAGE);
#endif
  return found + ahead;
}

}  // namespace

LargeMemory map_large(std::size_t bytes) {
  const bool huge = bytes >= kHugeFrom;
  const std::size_t size = rounded_up(bytes, huge ? kHugePage : kPage);
  return {.data = huge ? mapped_in_huge_pages(size) : mapped(size), .size = size};
}

// Huge pages would not lie where huge pages can begin any more.
bool grow_large(LargeMemory& memory, std::size_t bytes) noexcept {
#ifdef MREMAP_MAYMOVE
  if (bytes >= kHugeFrom || memory.size >= kHugeFrom) return false;
  const std::size_t size = rounded_up(bytes, kPage);
  void* const moved = mremap(memory.data, memory.size, size, MREMAP_MAYMOVE);
  if (moved == MAP_FAILED) return false;
  memory = {.data = static_cast<std::byte*>(moved), .size = size};
  return true;
#else
  return false;
#endif
}

void unmap_large(LargeMemory memory) noexcept {
  give_back(memory.data, memory.size);
}

}  // namespace bvconn::detail
