#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "bvconn/platform/thread_slot.h"

namespace bvconn::detail {

/// Fresh records for the calling thread: while it lives, each `ThreadRecord` of that thread is
/// another one, which goes with it. Then those that it found are back, untouched. Scopes nest.
class ThreadScope {
 public:
  ThreadScope() noexcept;
  ~ThreadScope();
  ThreadScope(const ThreadScope&) = delete;
  ThreadScope& operator=(const ThreadScope&) = delete;

  /// The calling thread's innermost scope; null where there is none.
  static ThreadScope* innermost() noexcept;
  /// The scope's record with this key; empty at first.
  std::shared_ptr<void>& record(const void* key);

 private:
  ThreadScope* outer_;
  std::vector<std::pair<const void*, std::shared_ptr<void>>> records_;
};

/// A record that was made after its thread had released its own, and the next of the same thread.
struct LateRecord {
  void (*release)() noexcept;
  LateRecord* next = nullptr;
};
/// Lets `release_late_records` know of one that was made.
void note_late_record(LateRecord& record) noexcept;
/// Releases what the calling thread's callers were given after its end, latest first; there mostly
/// is none.
void release_late_records() noexcept;

/// A record that was found, so that the next who asks need not look for it. Every scope makes the
/// calling thread forget what it found.
struct KnownRecord {
  void* record = nullptr;
  KnownRecord* next = nullptr;
  bool is_listed = false;
};
void know_record(KnownRecord& known, void* record) noexcept;

/// What a thread keeps between calls: one `T` for each thread, made when it is first asked for and
/// released when the thread ends.
///
/// What asks later still, as an object of static lifetime does from its destructor, gets one more
/// that lives until `release_late_records`: never the one that is gone.
template <class T>
class ThreadRecord {
 public:
  static T& get() {
    if (known_.record != nullptr) return *static_cast<T*>(known_.record);
    return look_for_it();
  }

 private:
  struct Own {
    T record;
    ~Own() {
      released_ = true;
      known_.record = nullptr;
    }
  };

  [[gnu::noinline]] static T& look_for_it() {
    if (ThreadScope* scope = ThreadScope::innermost()) return of(*scope);
    if (released_) return late();
    T& record = per_thread<Own>().record;
    know_record(known_, &record);
    return record;
  }

  static T& of(ThreadScope& scope) {
    std::shared_ptr<void>& place = scope.record(&key_);
    if (!place) place = std::make_shared<T>();
    return *static_cast<T*>(place.get());
  }

  static T& late() {
    if (late_ == nullptr) {
      late_ = new T();
      note_late_record(late_record_);
    }
    return *late_;
  }

  static void release_late() noexcept { delete std::exchange(late_, nullptr); }

  static inline char key_ = 0;
  // Without destructors, so that they can be read at any time.
  static inline constinit thread_local KnownRecord known_;
  static inline constinit thread_local bool released_ = false;
  static inline constinit thread_local T* late_ = nullptr;
  static inline constinit thread_local LateRecord late_record_{&release_late};
};

}  // namespace bvconn::detail
