#include "locks/lock_watch.h"

#include <dlfcn.h>
#include <pthread.h>
#include <time.h>

#include <algorithm>
#include <array>
#include <map>
#include <mutex>
#include <set>

namespace {

/// What one thread took. It has room from the beginning, since noting must not take memory, in
/// which the C library may lock.
struct Notes {
  static constexpr std::size_t kRoom = 1 << 16;
  std::array<const void*, kRoom> locks;
  std::array<const char*, kRoom> calls;
  std::size_t lock_count = 0;
  std::size_t call_count = 0;

  void lock(const void* taken) {
    if (lock_count < kRoom) locks[lock_count++] = taken;
  }
  void call(const char* function) {
    if (call_count < kRoom) calls[call_count++] = function;
  }
};

thread_local Notes* notes = nullptr;

/// The C library's function of this name.
template <class Function>
Function* behind(const char* name) {
  return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

}  // namespace

// The functions in front of the C library's.

extern "C" {

int pthread_mutex_lock(pthread_mutex_t* mutex) noexcept {
  static auto* const real = behind<int(pthread_mutex_t*)>("pthread_mutex_lock");
  if (notes != nullptr) notes->lock(mutex);
  return real(mutex);
}

int pthread_mutex_trylock(pthread_mutex_t* mutex) noexcept {
  static auto* const real = behind<int(pthread_mutex_t*)>("pthread_mutex_trylock");
  if (notes != nullptr) notes->lock(mutex);
  return real(mutex);
}

int pthread_rwlock_rdlock(pthread_rwlock_t* lock) noexcept {
  static auto* const real = behind<int(pthread_rwlock_t*)>("pthread_rwlock_rdlock");
  if (notes != nullptr) notes->lock(lock);
  return real(lock);
}

int pthread_rwlock_wrlock(pthread_rwlock_t* lock) noexcept {
  static auto* const real = behind<int(pthread_rwlock_t*)>("pthread_rwlock_wrlock");
  if (notes != nullptr) notes->lock(lock);
  return real(lock);
}

// All of these take the one lock of the time zone.

tm* localtime_r(const time_t* time, tm* result) noexcept {
  static auto* const real = behind<tm*(const time_t*, tm*)>("localtime_r");
  if (notes != nullptr) notes->call("localtime_r");
  return real(time, result);
}

tm* gmtime_r(const time_t* time, tm* result) noexcept {
  static auto* const real = behind<tm*(const time_t*, tm*)>("gmtime_r");
  if (notes != nullptr) notes->call("gmtime_r");
  return real(time, result);
}

time_t mktime(tm* time) noexcept {
  static auto* const real = behind<time_t(tm*)>("mktime");
  if (notes != nullptr) notes->call("mktime");
  return real(time);
}

void tzset() noexcept {
  static auto* const real = behind<void()>("tzset");
  if (notes != nullptr) notes->call("tzset");
  real();
}

}  // extern "C"

namespace bvconn::test {
namespace {

std::mutex& books_mutex() {
  static std::mutex mutex;
  return mutex;
}

}  // namespace

LockWatch::Thread::Thread(LockWatch& watch) : watch_(watch) {
  const std::lock_guard hold(books_mutex());
  index_ = watch_.books_.size();
  watch_.books_.emplace_back();
  notes = new Notes;
}

LockWatch::Thread::~Thread() {
  Notes* const own = notes;
  notes = nullptr;
  const std::lock_guard hold(books_mutex());
  Book& book = watch_.books_[index_];
  book.locks.assign(own->locks.begin(), own->locks.begin() + own->lock_count);
  book.calls.assign(own->calls.begin(), own->calls.begin() + own->call_count);
  delete own;
}

std::size_t LockWatch::shared_locks() const {
  std::map<const void*, std::size_t> takers;
  for (const Book& book : books_) {
    for (const void* lock : std::set<const void*>(book.locks.begin(), book.locks.end())) {
      ++takers[lock];
    }
  }
  return static_cast<std::size_t>(std::count_if(takers.begin(), takers.end(),
                                                [](const auto& each) { return each.second > 1; }));
}

std::size_t LockWatch::taken() const {
  std::size_t sum = 0;
  for (const Book& book : books_) sum += book.locks.size();
  return sum;
}

std::vector<std::string> LockWatch::locking_calls() const {
  std::vector<std::string> all;
  for (const Book& book : books_) all.insert(all.end(), book.calls.begin(), book.calls.end());
  return all;
}

}  // namespace bvconn::test
