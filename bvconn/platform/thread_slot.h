#pragma once

#include <cstdint>

namespace bvconn::detail {

/// Of the calling thread and of this process, as the system counts them.
std::int64_t thread_number();
std::int64_t process_number();

/// While it lives, nobody can cancel the calling thread.
class Uncancelled {
 public:
  Uncancelled() noexcept;
  ~Uncancelled();
  Uncancelled(const Uncancelled&) = delete;
  Uncancelled& operator=(const Uncancelled&) = delete;

 private:
  int before_ = 0;
};

#if defined(_WIN32)

/// What `key` stands for on the calling thread; null until it is set.
void* of_thread(const void* key) noexcept;
/// Sets it. `release` is called with the object when the thread ends, for the latest one first;
/// where no memory is left, at once, and `std::bad_alloc` is thrown.
void set_of_thread(const void* key, void* object, void (*release)(void*) noexcept);

/// The calling thread's own `T`, made at the first call and destroyed when the thread ends.
///
/// Not by `thread_local`: where a thread ends on this system, the compiler's library frees the
/// memory of such objects before it runs their destructors.
template <class T>
T& per_thread() {
  static const char key = 0;
  if (void* object = of_thread(&key)) return *static_cast<T*>(object);
  T* const made = new T();
  set_of_thread(&key, made, [](void* object) noexcept { delete static_cast<T*>(object); });
  return *made;
}

#else

/// The calling thread's own `T`, made at the first call and destroyed when the thread ends.
template <class T>
T& per_thread() {
  static thread_local T own;
  return own;
}

#endif

}  // namespace bvconn::detail
