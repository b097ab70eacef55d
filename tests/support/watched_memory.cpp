#include "support/watched_memory.h"

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

// Plain data: operator new is called before and after everything else.
constinit std::atomic<std::size_t> made{0};
constinit std::atomic<std::size_t> living{0};
constinit std::atomic<std::size_t> bytes_living{0};

// Of the thread that is short of memory; others, such as a server's in the same program, are not.
constinit thread_local std::size_t failing = 0;  // 0: none
constinit thread_local std::size_t asked = 0;
constinit thread_local bool onward = false;
constinit thread_local bool struck = false;

std::size_t usable_size(void* memory) {
#if defined(_WIN32)
  return ::_msize(memory);
#else
  return ::malloc_usable_size(memory);
#endif
}

void* allocated(std::size_t size) {
  if (failing != 0) {
    ++asked;
    if (asked == failing || (onward && asked > failing)) {
      struck = true;
      throw std::bad_alloc();
    }
  }
  void* memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  ++made;
  ++living;
  bytes_living += usable_size(memory);
  return memory;
}

void released(void* memory) noexcept {
  if (memory == nullptr) return;
  --living;
  bytes_living -= usable_size(memory);
  std::free(memory);
}

}  // namespace

void* operator new(std::size_t size) {
  return allocated(size);
}
void* operator new[](std::size_t size) {
  return allocated(size);
}
void operator delete(void* memory) noexcept {
  released(memory);
}
void operator delete[](void* memory) noexcept {
  released(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  released(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  released(memory);
}

namespace bvconn::test {

MemoryCount::MemoryCount() noexcept : made_(::made), living_(living), bytes_(bytes_living) {}

std::size_t MemoryCount::made() const noexcept {
  return ::made - made_;
}

std::size_t MemoryCount::kept() const noexcept {
  return living - living_;
}

std::size_t MemoryCount::bytes_kept() const noexcept {
  return bytes_living - bytes_;
}

FailingMemory::FailingMemory(std::size_t number, Shortage shortage) noexcept {
  asked = 0;
  struck = false;
  onward = shortage == Shortage::kOnward;
  failing = number;
}

FailingMemory::~FailingMemory() {
  failing = 0;
}

bool FailingMemory::has_struck() noexcept {
  return struck;
}

}  // namespace bvconn::test
