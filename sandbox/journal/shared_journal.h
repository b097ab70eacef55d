#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "sandbox/journal/journal.h"
#include "sandbox/journal/journal_table.h"

namespace bvconn::sandbox {

/// The journal of all processes that share a database. An exchange waits for nothing: a thread
/// writes what has gathered, within a moment. Whoever reads sees all that this process has kept
/// before, and of the others what they have written. The limits of the process that began last
/// hold for all. Reading fails with DatabaseError where the database is gone.
class SharedJournal : public Journal {
 public:
  SharedJournal(const std::string& where, JournalLimits limits);
  /// Writes what is still waiting; it gives up after some seconds.
  ~SharedJournal() override;
  SharedJournal(const SharedJournal&) = delete;
  SharedJournal& operator=(const SharedJournal&) = delete;

  void add(JournalEntry entry) override;
  std::vector<EntryPointer> after(std::uint64_t id, std::size_t most) const override;
  LatestEntries latest(std::size_t most) const override;
  std::uint64_t last_id() const override;
  std::uint64_t dropped() const override;
  std::uint64_t lost() const override;
  void clear() override;

 private:
  struct Waiting {
    EntryPointer entry;
    std::size_t bytes = 0;
  };

  /// What the thread does.
  void write_all();
  /// Waits for entries; nothing where there are none and there will be none.
  std::optional<JournalBatch> next_batch();
  /// False where it is given up.
  bool write(const JournalBatch& batch);
  /// Waits until all that was added is written, or cannot be for now.
  void flush() const;
  JournalTable::State state() const;

  mutable std::mutex reading_mutex_;
  mutable JournalTable reading_;
  JournalTable writing_;  ///< the thread's own
  std::int64_t process_ = 0;

  mutable std::mutex mutex_;
  mutable std::condition_variable wake_;
  mutable std::condition_variable written_;
  std::deque<Waiting> waiting_;
  std::size_t waiting_bytes_ = 0;
  JournalLimits limits_;
  std::uint64_t added_ = 0;
  std::uint64_t let_go_ = 0;  ///< of those before `waiting_`, not yet said in the database
  std::uint64_t lost_ = 0;    ///< of these
  std::uint64_t done_ = 0;    ///< of all that were added, those before are written or let go
  std::uint64_t failures_ = 0;
  bool is_failing_ = false;
  mutable std::size_t hurried_ = 0;
  std::optional<std::chrono::steady_clock::time_point> end_;
  std::thread thread_;
};

}  // namespace bvconn::sandbox
