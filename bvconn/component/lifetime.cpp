#include "bvconn/component/lifetime.h"

#include <atomic>

namespace bvconn::component {
namespace {

std::atomic<std::int64_t> living_objects{0};
std::atomic<std::int64_t> locks{0};

}  // namespace

LivingObject::LivingObject() noexcept {
  ++living_objects;
}
LivingObject::~LivingObject() {
  --living_objects;
}

void lock_library() noexcept {
  ++locks;
}

Hresult unlock_library() noexcept {
  std::int64_t held = locks.load();
  while (held > 0) {
    if (locks.compare_exchange_weak(held, held - 1)) return kOk;
  }
  return kUnexpected;
}

Hresult can_unload() noexcept {
  return living_objects.load() == 0 && locks.load() == 0 ? kOk : kFalse;
}

}  // namespace bvconn::component
