#include "bvconn/platform/thread_memory.h"

#include <sys/mman.h>

#include <array>
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

/// The spare blocks of a thread. It is made when the first one is kept.
struct Spares {
  std::array<MemoryBlock, 2> blocks;
  ~Spares();
};
// Without destructors, so that they can be read at any time.
constinit thread_local bool ended = false;
constinit thread_local Spares* spares = nullptr;

Spares::~Spares() {
  ended = true;
  spares = nullptr;
}

}  // namespace

MemoryBlock::MemoryBlock(std::size_t bytes) {
  if (bytes < kLarge) {
    data_ = static_cast<std::byte*>(::operator new(bytes));
    size_ = bytes;
    return;
  }
  if (bytes > SIZE_MAX / 2) throw std::bad_alloc();
  const bool huge = bytes >= kHugeFrom;
  const std::size_t size = rounded_up(bytes, huge ? kHugePage : kPage);
  data_ = huge ? mapped_in_huge_pages(size) : mapped(size);
  size_ = size;
}

void MemoryBlock::free() noexcept {
  if (size_ < kLarge) {
    ::operator delete(data_);
  } else {
    give_back(data_, size_);
  }
}

MemoryBlock spare_or_new(Spare use, std::size_t bytes) {
  if (spares != nullptr) {
    MemoryBlock& kept = spares->blocks[static_cast<std::size_t>(use)];
    if (kept.size() >= bytes) return std::move(kept);
  }
  return MemoryBlock(bytes);
}

void keep_spare(Spare use, MemoryBlock block) noexcept {
  if (block.size() == 0 || block.size() >= MemoryBlock::kLarge || ended) return;
  if (spares == nullptr) {
    static thread_local Spares own;
    spares = &own;
  }
  MemoryBlock& kept = spares->blocks[static_cast<std::size_t>(use)];
  if (block.size() > kept.size()) kept = std::move(block);
}

}  // namespace bvconn::detail
