#pragma once

#include <memory>
#include <utility>
#include <vector>

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

/// What a thread keeps between calls: one `T` for each thread, made when it is first asked for and
/// released when the thread ends.
///
/// What asks later still, as an object of static lifetime does from its destructor, gets one more
/// that lives until `release_late`: never the one that is gone.
template <class T>
class ThreadRecord {
 public:
  static T& get() {
    if (ThreadScope* scope = ThreadScope::innermost()) return of(*scope);
    if (released_) return late();
    static thread_local Own own;
    return own.record;
  }

  /// Releases what was made for a caller that came after the thread's end; there mostly is none.
  static void release_late() noexcept { delete std::exchange(late_, nullptr); }

 private:
  struct Own {
    T record;
    ~Own() { released_ = true; }
  };

  static T& of(ThreadScope& scope) {
    std::shared_ptr<void>& place = scope.record(&key_);
    if (!place) place = std::make_shared<T>();
    return *static_cast<T*>(place.get());
  }

  static T& late() {
    if (late_ == nullptr) late_ = new T();
    return *late_;
  }

  static inline char key_ = 0;
  // Without destructors, so that they can be read at any time.
  static inline constinit thread_local bool released_ = false;
  static inline constinit thread_local T* late_ = nullptr;
};

}  // namespace bvconn::detail
