#include "bvconn/platform/thread_record.h"

#include <algorithm>

namespace bvconn::detail {
namespace {

constinit thread_local ThreadScope* innermost_scope = nullptr;
constinit thread_local LateRecord* latest_record = nullptr;
constinit thread_local KnownRecord* known_records = nullptr;

}  // namespace

// Within a scope nothing is known, so that there is nothing to forget when it ends.
ThreadScope::ThreadScope() noexcept : outer_(std::exchange(innermost_scope, this)) {
  for (KnownRecord* known = known_records; known != nullptr; known = known->next) {
    known->record = nullptr;
  }
}

ThreadScope* ThreadScope::innermost() noexcept {
  return innermost_scope;
}

void know_record(KnownRecord& known, void* record) noexcept {
  known.record = record;
  if (std::exchange(known.is_listed, true)) return;
  known.next = std::exchange(known_records, &known);
}

ThreadScope::~ThreadScope() {
  {
    // Released while the scope is in force, so that what a record does on its way out stays in it.
    const auto gone = std::exchange(records_, {});
  }
  innermost_scope = outer_;
}

std::shared_ptr<void>& ThreadScope::record(const void* key) {
  const auto found = std::ranges::find(records_, key, &decltype(records_)::value_type::first);
  return found != records_.end() ? found->second : records_.emplace_back(key, nullptr).second;
}

void note_late_record(LateRecord& record) noexcept {
  record.next = std::exchange(latest_record, &record);
}

void release_late_records() noexcept {
  while (latest_record != nullptr) {
    const LateRecord& record = *std::exchange(latest_record, latest_record->next);
    record.release();
  }
}

}  // namespace bvconn::detail
