#include "sandbox/journal/shared_journal.h"

#include <cstdio>
#include <exception>
#include <utility>

#include "sandbox/contract/words.h"

namespace bvconn::sandbox {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// So long an entry waits for others that go with it.
constexpr milliseconds kGather{20};
constexpr milliseconds kPauseAfterFailure{100};
/// How long a reader waits for what this process has not yet written.
constexpr milliseconds kPatience{10'000};
constexpr milliseconds kPatienceAtEnd{3'000};
constexpr std::size_t kMostInBatch = 500;
constexpr std::size_t kMostBytesInBatch = std::size_t{8} << 20;

}  // namespace

SharedJournal::SharedJournal(const std::string& where, JournalLimits limits)
    : reading_(where), writing_(where), limits_(limits) {
  process_ = writing_.enter(limits);
  thread_ = std::thread([this] { write_all(); });
}

SharedJournal::~SharedJournal() {
  {
    const std::lock_guard lock(mutex_);
    end_ = steady_clock::now() + kPatienceAtEnd;
  }
  wake_.notify_all();
  thread_.join();
  const std::uint64_t missing = added_ - done_;
  if (missing == 0) return;
  const std::string text = "bvsandbox: " + counted(missing, "exchange") + " of the last " +
                           "moments never came into the journal, since its database is gone\n";
  std::fputs(text.c_str(), stderr);
}

void SharedJournal::add(JournalEntry entry) {
  const std::size_t size = entry.bytes();
  auto pointer = std::make_shared<const JournalEntry>(std::move(entry));
  // What makes room is freed behind the lock.
  std::vector<Waiting> gone;
  const std::lock_guard lock(mutex_);
  waiting_.push_back({std::move(pointer), size});
  waiting_bytes_ += size;
  ++added_;
  // Once written, the younger ones would push these out.
  while (!waiting_.empty() && (waiting_.size() > limits_.count || waiting_bytes_ > limits_.bytes)) {
    waiting_bytes_ -= waiting_.front().bytes;
    gone.push_back(std::move(waiting_.front()));
    waiting_.pop_front();
    ++let_go_;
    if (is_failing_) ++lost_;
  }
  // Woken for the first and for a full batch; those in between go with the first.
  if (waiting_.size() <= 1 || waiting_.size() == kMostInBatch) wake_.notify_one();
}

void SharedJournal::write_all() {
  while (const auto batch = next_batch()) {
    if (!write(*batch)) return;
    const std::lock_guard lock(mutex_);
    done_ = batch->last;
    written_.notify_all();
  }
  try {
    writing_.leave(process_);
  } catch (const std::exception&) {
    // Another process forgets it.
  }
}

std::optional<JournalBatch> SharedJournal::next_batch() {
  std::unique_lock lock(mutex_);
  wake_.wait(lock, [&] { return end_ || added_ > done_; });
  if (added_ == done_) return std::nullopt;
  wake_.wait_for(lock, kGather,
                 [&] { return end_ || hurried_ > 0 || waiting_.size() >= kMostInBatch; });
  JournalBatch batch{.entries = {},
                     .let_go = std::exchange(let_go_, 0),
                     .lost = std::exchange(lost_, 0),
                     .last = 0};
  std::size_t bytes = 0;
  while (!waiting_.empty() && batch.entries.size() < kMostInBatch && bytes < kMostBytesInBatch) {
    bytes += waiting_.front().bytes;
    batch.entries.push_back(std::move(waiting_.front().entry));
    waiting_.pop_front();
  }
  waiting_bytes_ -= bytes;
  batch.last = added_ - waiting_.size();
  return batch;
}

bool SharedJournal::write(const JournalBatch& batch) {
  for (;;) {
    try {
      writing_.write(process_, batch);
      const JournalLimits limits = writing_.state().limits;
      const std::lock_guard lock(mutex_);
      limits_ = limits;
      is_failing_ = false;
      return true;
    } catch (const std::exception&) {
      std::unique_lock lock(mutex_);
      ++failures_;
      is_failing_ = true;
      written_.notify_all();
      if (end_ && steady_clock::now() >= *end_) return false;
      // In the meantime calls go on, and what they are is kept for later.
      wake_.wait_for(lock, kPauseAfterFailure, [] { return false; });
    }
  }
}

void SharedJournal::flush() const {
  std::unique_lock lock(mutex_);
  const std::uint64_t wanted = added_;
  const std::uint64_t failures = failures_;
  if (done_ >= wanted) return;
  ++hurried_;
  wake_.notify_one();
  // A connection that was lost is there again at the second try, if ever.
  written_.wait_for(lock, kPatience, [&] { return done_ >= wanted || failures_ > failures + 1; });
  --hurried_;
}

JournalTable::State SharedJournal::state() const {
  flush();
  const std::lock_guard lock(reading_mutex_);
  return reading_.state();
}

std::vector<EntryPointer> SharedJournal::after(std::uint64_t id, std::size_t most) const {
  flush();
  const std::lock_guard lock(reading_mutex_);
  return reading_.after(id, most);
}

LatestEntries SharedJournal::latest(std::size_t most) const {
  flush();
  const std::lock_guard lock(reading_mutex_);
  return reading_.latest(most);
}

std::uint64_t SharedJournal::last_id() const {
  return state().last_id;
}

std::uint64_t SharedJournal::dropped() const {
  return state().dropped;
}

std::uint64_t SharedJournal::lost() const {
  return state().lost;
}

void SharedJournal::clear() {
  flush();
  const std::lock_guard lock(reading_mutex_);
  reading_.clear();
}

}  // namespace bvconn::sandbox
