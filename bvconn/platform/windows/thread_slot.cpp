#include "bvconn/platform/thread_slot.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <new>
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

enum class Use : std::uint8_t {
  kFree,  ///< for the next thread that keeps something
  kOfThread,
  kReleasing,  ///< by the thread that has set this
};

/// What a thread keeps. While it is released, what is not yet gone is still found.
struct Keeping {
  std::vector<Kept> all;
  std::atomic<Use> use = Use::kOfThread;
  Keeping* next = nullptr;

  void release() {
    while (!all.empty()) {
      const Kept last = all.back();
      all.pop_back();
      last.release(last.object);
    }
    all = {};
  }
};

// Those of all threads; one that is free is the next thread's, so that there are as many as there
// were threads at once. The list only grows at its head, and no lock guards it: where the process
// ends, the system has ended other threads wherever they were, and then calls this one's end.
constinit std::atomic<Keeping*> first = nullptr;

// Of the library that is unloaded, in which no thread is but the one that unloads it. The system's
// slots are not touched then: a thread that has none yet would be given them, within what the
// system does to take them away.
constinit std::atomic<bool> unloading = false;
constinit Keeping* released_at_unload = nullptr;

bool begin_releasing(Keeping& kept) noexcept {
  Use expected = Use::kOfThread;
  return kept.use.compare_exchange_strong(expected, Use::kReleasing);
}

void CALLBACK end_of_thread(void* slot_value);

DWORD slot() {
  static const DWORD index = ::FlsAlloc(&end_of_thread);
  return index;
}

Keeping* keeping() noexcept {
  if (unloading) return released_at_unload;
  const DWORD index = slot();
  return index == FLS_OUT_OF_INDEXES ? nullptr : static_cast<Keeping*>(::FlsGetValue(index));
}

Keeping* free_one() noexcept {
  for (Keeping* each = first; each != nullptr; each = each->next) {
    Use expected = Use::kFree;
    if (each->use.compare_exchange_strong(expected, Use::kOfThread)) return each;
  }
  return nullptr;
}

Keeping* new_one() {
  auto* const made = new Keeping;
  made->next = first;
  while (!first.compare_exchange_weak(made->next, made)) {
  }
  return made;
}

Keeping& keeping_of_new_thread() {
  if (unloading) throw std::bad_alloc();
  Keeping* kept = free_one();
  if (kept == nullptr) kept = new_one();
  if (::FlsSetValue(slot(), kept) == 0) {
    kept->use = Use::kFree;
    throw std::bad_alloc();
  }
  return *kept;
}

void CALLBACK end_of_thread(void* slot_value) {
  if (slot_value == nullptr || unloading) return;
  Keeping& kept = *static_cast<Keeping*>(slot_value);
  if (!begin_releasing(kept)) return;
  ::FlsSetValue(slot(), &kept);
  kept.release();
  ::FlsSetValue(slot(), nullptr);
  kept.use = Use::kFree;
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
    Keeping* const known = keeping();
    Keeping& kept = known != nullptr ? *known : keeping_of_new_thread();
    kept.all.push_back({key, object, release});
  } catch (const std::bad_alloc&) {
    release(object);
    throw;
  }
}

void release_all_threads() noexcept {
  const DWORD index = slot();
  unloading = true;
  for (Keeping* next = first.exchange(nullptr); next != nullptr;) {
    std::unique_ptr<Keeping> kept(next);
    next = kept->next;
    if (begin_releasing(*kept)) {
      released_at_unload = kept.get();
      kept->release();
      released_at_unload = nullptr;
    } else if (kept->use != Use::kFree) {
      // Its thread is at its end, and has it still.
      kept.release();
    }
  }
  if (index != FLS_OUT_OF_INDEXES) ::FlsFree(index);
}

}  // namespace bvconn::detail
