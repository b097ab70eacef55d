#include "bvconn/platform/thread_memory.h"

#include <array>
#include <cstring>
#include <new>

#include "bvconn/platform/large_memory.h"
#include "bvconn/platform/thread_slot.h"

namespace bvconn::detail {
namespace {

/// The spare blocks of a thread. It is made when the first one is kept.
struct Spares {
  std::array<MemoryBlock, 2> blocks;
  ~Spares();
};
// Without destructors, so that they can be read at any time.
constinit thread_local bool ended = false;
constinit thread_local Spares* spares = nullptr;

// Those that found no place among what the thread keeps were never its own.
Spares::~Spares() {
  if (spares != this) return;
  ended = true;
  spares = nullptr;
}

}  // namespace

MemoryBlock::MemoryBlock(std::size_t bytes) {
  if (bytes < kOfSystem) {
    data_ = static_cast<std::byte*>(::operator new(bytes));
    size_ = bytes;
    return;
  }
  if (bytes > SIZE_MAX / 2) throw std::bad_alloc();
  const LargeMemory memory = map_large(bytes);
  data_ = memory.data;
  size_ = memory.size;
}

void MemoryBlock::grow(std::size_t bytes, std::size_t used) {
  LargeMemory memory{.data = data_, .size = size_};
  if (size_ >= kOfSystem && grow_large(memory, bytes)) {
    data_ = memory.data;
    size_ = memory.size;
    return;
  }
  MemoryBlock larger(bytes);
  if (used != 0) std::memcpy(larger.data_, data_, used);
  *this = std::move(larger);
}

void MemoryBlock::free() noexcept {
  if (size_ < kOfSystem) {
    ::operator delete(data_);
  } else {
    unmap_large({.data = data_, .size = size_});
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
    try {
      spares = &per_thread<Spares>();
    } catch (const std::bad_alloc&) {
      return;  // without room for spares there are none
    }
  }
  MemoryBlock& kept = spares->blocks[static_cast<std::size_t>(use)];
  if (block.size() > kept.size()) kept = std::move(block);
}

}  // namespace bvconn::detail
