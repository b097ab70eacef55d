#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "sandbox/journal/journal.h"
#include "sandbox/store/database.h"

namespace bvconn::sandbox {

/// Entries of one process on their way into the table.
struct JournalBatch {
  std::vector<EntryPointer> entries;
  /// Entries before these that were let go: they get numbers, and are nowhere.
  std::uint64_t let_go = 0;
  /// Of these, how many were let go because the database was gone.
  std::uint64_t lost = 0;
  /// Which of all entries of the process is the last, counted from 1.
  std::uint64_t last = 0;
};

/// A journal in a database, which processes share. To be used by one thread at a time.
class JournalTable {
 public:
  struct State {
    std::uint64_t last_id = 0;
    std::uint64_t dropped = 0;
    std::uint64_t lost = 0;
    JournalLimits limits{};
  };

  explicit JournalTable(const std::string& where) : database_(where) {}

  /// Sets what the journal keeps of all processes' entries, and gives the process a number.
  std::int64_t enter(const JournalLimits& limits);
  /// Takes the process's number back.
  void leave(std::int64_t process);

  /// Writes a batch whole, under the next numbers, and lets go what is too much; a batch that was
  /// written before is not written again.
  void write(std::int64_t process, const JournalBatch& batch);
  State state();
  std::vector<EntryPointer> after(std::uint64_t id, std::size_t most);
  LatestEntries latest(std::size_t most);
  /// Forgets all entries, and how many were let go.
  void clear();

 private:
  Database database_;
};

}  // namespace bvconn::sandbox
