#include "bvconn/platform/thread_slot.h"

#include <pthread.h>
#include <unistd.h>

namespace bvconn::detail {

std::int64_t thread_number() {
  return ::gettid();
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
