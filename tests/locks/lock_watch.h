#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// A lock profiler: this program's own functions stand in front of the C library's locks, for its
/// libraries too, and note which of them the watched threads take.
namespace bvconn::test {

/// What the threads that are watched took.
class LockWatch {
 public:
  LockWatch() = default;
  LockWatch(const LockWatch&) = delete;
  LockWatch& operator=(const LockWatch&) = delete;

  /// Watches the calling thread while it lives. One for each thread.
  class Thread {
   public:
    explicit Thread(LockWatch& watch);
    ~Thread();
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;

   private:
    LockWatch& watch_;
    std::size_t index_;
  };

  /// Locks that more than one thread took. To be asked when no thread is watched any more.
  std::size_t shared_locks() const;
  /// How many locks were taken by all together.
  std::size_t taken() const;
  /// Functions of the C library that were called although one lock is held in them for all threads,
  /// each once for each call.
  std::vector<std::string> locking_calls() const;

 private:
  struct Book {
    std::vector<const void*> locks;
    std::vector<const char*> calls;
  };
  std::vector<Book> books_;
};

}  // namespace bvconn::test
