#include "bvconn/platform/thread_slot.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "bvconn/platform/windows/system.h"
#include "bvconn/platform/windows/thread_slot.h"

namespace bvconn::detail {
namespace {

struct Kept {
  const void* key;
  void* object;
  void (*release)(void*) noexcept;
};

/// What a thread keeps. While it is released, what is not yet gone is still found.
struct Keeping {
  std::vector<Kept> all;
};

void CALLBACK release_all(void* slot_value);

DWORD slot() {
  static const DWORD index = ::FlsAlloc(&release_all);
  return index;
}

Keeping* keeping() noexcept {
  const DWORD index = slot();
  return index == FLS_OUT_OF_INDEXES ? nullptr : static_cast<Keeping*>(::FlsGetValue(index));
}

void CALLBACK release_all(void* slot_value) {
  if (slot_value == nullptr) return;
  const std::unique_ptr<Keeping> kept(static_cast<Keeping*>(slot_value));
  ::FlsSetValue(slot(), kept.get());
  while (!kept->all.empty()) {
    const Kept last = kept->all.back();
    kept->all.pop_back();
    last.release(last.object);
  }
  ::FlsSetValue(slot(), nullptr);
}

}  // namespace

std::int64_t thread_number() {
  return ::GetCurrentThreadId();
}

std::int64_t process_number() {
  return ::GetCurrentProcessId();
}

// A thread is not cancelled here.
Uncancelled::Uncancelled() noexcept = default;
Uncancelled::~Uncancelled() = default;

void* of_thread(const void* key) noexcept {
  Keeping* const kept = keeping();
  if (kept == nullptr) return nullptr;
  const auto found = std::ranges::find(kept->all, key, &Kept::key);
  return found != kept->all.end() ? found->object : nullptr;
}

void set_of_thread(const void* key, void* object, void (*release)(void*) noexcept) {
  try {
    Keeping* kept = keeping();
    if (kept == nullptr) {
      auto fresh = std::make_unique<Keeping>();
      if (::FlsSetValue(slot(), fresh.get()) == 0) throw std::bad_alloc();
      kept = fresh.release();
    }
    kept->all.push_back({key, object, release});
  } catch (const std::bad_alloc&) {
    release(object);
    throw;
  }
}

void release_all_threads() noexcept {
  const DWORD index = slot();
  if (index == FLS_OUT_OF_INDEXES) return;
  // The calling thread's first: while those of others are released they stand in its place.
  release_all(::FlsGetValue(index));
  ::FlsFree(index);
}

}  // namespace bvconn::detail
