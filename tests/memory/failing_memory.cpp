#include "memory/failing_memory.h"

#include <cstdlib>
#include <new>

namespace {

// Plain data: operator new is called before and after everything else.
constinit std::size_t failing = 0;  // 0: none
constinit std::size_t made = 0;
constinit bool onward = false;
constinit bool struck = false;

void* allocated(std::size_t size) {
  if (failing != 0) {
    ++made;
    if (made == failing || (onward && made > failing)) {
      struck = true;
      throw std::bad_alloc();
    }
  }
  void* memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

void* operator new(std::size_t size) {
  return allocated(size);
}
void* operator new[](std::size_t size) {
  return allocated(size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace bvconn::test {

FailingMemory::FailingMemory(std::size_t number, Shortage shortage) noexcept {
  made = 0;
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
