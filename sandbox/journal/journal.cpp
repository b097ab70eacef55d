#include "sandbox/journal/journal.h"

#include <algorithm>

namespace bvconn::sandbox {

std::size_t JournalEntry::bytes() const {
  std::size_t total = sizeof(JournalEntry) + request.text.size() + reply.text.size() +
                      request_headers.size() + reply_headers.size() + target.size() +
                      service.size() + method.size() + session.size() + remark.size();
  for (const auto& each : operations) total += sizeof(each) + each.size();
  for (const auto& each : values) total += sizeof(each) + each.size();
  for (const auto& each : arguments) total += sizeof(each) + each.name.size();
  for (const auto& each : differences) {
    total += sizeof(each) + each.at.size() + each.found.size() + each.expected.size();
  }
  return total;
}

const std::string* JournalEntry::argument(std::string_view name) const {
  const auto found = std::find_if(arguments.begin(), arguments.end(),
                                  [&](const Argument& each) { return each.name == name; });
  if (found == arguments.end()) return nullptr;
  if (found->place == kSession) return &session;
  return found->place < values.size() ? &values[found->place] : nullptr;
}

void MemoryJournal::add(JournalEntry entry) {
  const std::size_t size = entry.bytes();
  auto kept = std::make_shared<JournalEntry>(std::move(entry));
  // What makes room is freed behind the lock.
  std::vector<Kept> gone;
  const std::lock_guard lock(mutex_);
  kept->id = ++last_id_;
  kept_.push_back({std::move(kept), size});
  bytes_ += size;
  while (!kept_.empty() && (kept_.size() > limits_.count || bytes_ > limits_.bytes)) {
    bytes_ -= kept_.front().bytes;
    gone.push_back(std::move(kept_.front()));
    kept_.pop_front();
    ++dropped_;
  }
}

std::vector<EntryPointer> MemoryJournal::after(std::uint64_t id, std::size_t most) const {
  std::vector<EntryPointer> all;
  const std::lock_guard lock(mutex_);
  const auto begin = std::partition_point(kept_.begin(), kept_.end(),
                                          [&](const Kept& each) { return each.entry->id <= id; });
  const auto count = std::min(static_cast<std::size_t>(kept_.end() - begin), most);
  all.reserve(count);
  const auto end = begin + static_cast<std::ptrdiff_t>(count);
  for (auto each = begin; each != end; ++each) all.push_back(each->entry);
  return all;
}

LatestEntries MemoryJournal::latest(std::size_t most) const {
  LatestEntries latest;
  const std::lock_guard lock(mutex_);
  const std::size_t count = std::min(kept_.size(), most);
  latest.before = kept_.size() - count;
  latest.entries.reserve(count);
  for (auto each = kept_.end() - static_cast<std::ptrdiff_t>(count); each != kept_.end(); ++each) {
    latest.entries.push_back(each->entry);
  }
  return latest;
}

std::uint64_t MemoryJournal::last_id() const {
  const std::lock_guard lock(mutex_);
  return last_id_;
}

std::uint64_t MemoryJournal::dropped() const {
  const std::lock_guard lock(mutex_);
  return dropped_;
}

void MemoryJournal::clear() {
  std::deque<Kept> gone;
  const std::lock_guard lock(mutex_);
  kept_.swap(gone);
  bytes_ = 0;
  dropped_ = 0;
}

}  // namespace bvconn::sandbox
