#include "sandbox/http/workers.h"

#include <utility>

namespace bvconn::sandbox {

Workers::Workers(const Limits& limits) : limits_(limits), pool_(limits.workers) {}

std::shared_ptr<void> Workers::enter(std::size_t body_bytes) {
  const bool too_much =
      inside_ >= limits_.requests || bytes_inside_ + body_bytes > limits_.requests_bytes;
  // Alone, a request may have any size that the server takes at all.
  if (draining_ || (inside_ > 0 && too_much)) return nullptr;
  ++inside_;
  bytes_inside_ += body_bytes;
  return {this, [body_bytes](Workers* workers) { workers->leave(body_bytes); }};
}

void Workers::leave(std::size_t body_bytes) {
  --inside_;
  bytes_inside_ -= body_bytes;
  if (inside_ == 0 && on_empty_) on_empty_();
}

void Workers::drain(std::function<void()> on_empty) {
  draining_ = true;
  if (inside_ == 0) return on_empty();
  on_empty_ = std::move(on_empty);
}

void Workers::end() {
  on_empty_ = nullptr;
  pool_->stop();
  pool_->join();
  pool_.reset();
}

}  // namespace bvconn::sandbox
