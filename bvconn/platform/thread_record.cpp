#include "bvconn/platform/thread_record.h"

#include <algorithm>

namespace bvconn::detail {
namespace {

constinit thread_local ThreadScope* innermost_scope = nullptr;

}  // namespace

ThreadScope::ThreadScope() noexcept : outer_(std::exchange(innermost_scope, this)) {}

ThreadScope::~ThreadScope() {
  {
    // Released while the scope is in force, so that what a record does on its way out stays in it.
    const auto gone = std::exchange(records_, {});
  }
  innermost_scope = outer_;
}

ThreadScope* ThreadScope::innermost() noexcept {
  return innermost_scope;
}

std::shared_ptr<void>& ThreadScope::record(const void* key) {
  const auto found = std::ranges::find(records_, key, &decltype(records_)::value_type::first);
  return found != records_.end() ? found->second : records_.emplace_back(key, nullptr).second;
}

}  // namespace bvconn::detail
