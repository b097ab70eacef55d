#include "bvconn/platform/thread_slot.h"

#include <pthread.h>
#include <unistd.h>

namespace bvconn::detail {

namespace {

/// 0 until the system was asked.
constinit thread_local std::int64_t known_thread_number = 0;

// The thread that makes a new process goes on in it under another number.
bool is_forgotten_in_new_process() {
  static const bool is_arranged =
      ::pthread_atfork(nullptr, nullptr, [] { known_thread_number = 0; }) == 0;
  return is_arranged;
}

}  // namespace

std::int64_t thread_number() {
  if (!is_forgotten_in_new_process() || known_thread_number == 0) {
    known_thread_number = ::gettid();
  }
  return known_thread_number;
}

std::int64_t process_number() {
  return ::getpid();
}

Uncancelled::Uncancelled() noexcept {
  ::pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &before_);
}

Uncancelled::~Uncancelled() {
  ::pthread_setcancelstate(before_, nullptr);
}

}  // namespace bvconn::detail
