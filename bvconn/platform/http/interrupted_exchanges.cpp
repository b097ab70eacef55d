#include "bvconn/platform/http/interrupted_exchanges.h"

#include <atomic>

namespace bvconn::detail {
namespace {

std::atomic<bool> interrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may wait for no lock");

}  // namespace

void interrupt_exchanges(bool yes) noexcept {
  interrupted.store(yes, std::memory_order_relaxed);
}

bool exchanges_are_interrupted() noexcept {
  return interrupted.load(std::memory_order_relaxed);
}

}  // namespace bvconn::detail
