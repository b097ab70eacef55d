#include "sandbox/journal/journal_table.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "sandbox/journal/stored_entry.h"

namespace bvconn::sandbox {
namespace {

/// So many rows go by one statement.
constexpr std::size_t kRowsAtOnce = 32;
/// So many are looked through at once.
constexpr std::int64_t kPage = 200;
/// Of processes that were killed so many are remembered.
constexpr std::int64_t kMostProcesses = 1'000;

/// The row of journal_state.
struct Row {
  std::int64_t last_id = 0;
  std::int64_t gone_id = 0;
  std::int64_t kept = 0;
  std::int64_t kept_bytes = 0;
  std::int64_t dropped = 0;
  std::int64_t lost = 0;
  std::int64_t most = 0;
  std::int64_t most_bytes = 0;

  bool is_full() const { return kept > 0 && (kept > most || kept_bytes > most_bytes); }
};

Row read_row(Database& database) {
  Statement select(database,
                   "SELECT last_id, gone_id, kept, kept_bytes, dropped, lost, most, most_bytes"
                   " FROM journal_state");
  if (!select.step()) throw DatabaseError("the journal's table journal_state is empty");
  return {.last_id = select.integer(0),
          .gone_id = select.integer(1),
          .kept = select.integer(2),
          .kept_bytes = select.integer(3),
          .dropped = select.integer(4),
          .lost = select.integer(5),
          .most = select.integer(6),
          .most_bytes = select.integer(7)};
}

void write_row(Database& database, const Row& row) {
  Statement(database,
            "UPDATE journal_state SET last_id = ?, gone_id = ?, kept = ?, kept_bytes = ?,"
            " dropped = ?, lost = ?, most = ?, most_bytes = ?")
      .bind(row.last_id)
      .bind(row.gone_id)
      .bind(row.kept)
      .bind(row.kept_bytes)
      .bind(row.dropped)
      .bind(row.lost)
      .bind(row.most)
      .bind(row.most_bytes)
      .run();
}

std::int64_t number_of(std::uint64_t number) {
  return static_cast<std::int64_t>(std::min<std::uint64_t>(number, INT64_MAX));
}

void insert(Database& database, const EntryPointer* first, std::size_t count, Row& row) {
  std::string sql = "INSERT INTO journal_entries VALUES ";
  for (std::size_t i = 0; i < count; ++i) sql.append(i == 0 ? "(?, ?, ?)" : ", (?, ?, ?)");
  Statement insert(database, sql);
  for (std::size_t i = 0; i < count; ++i) {
    const JournalEntry& entry = *first[i];
    const std::int64_t bytes = number_of(entry.bytes());
    insert.bind(++row.last_id).bind(bytes).bind(stored_text(entry));
    ++row.kept;
    row.kept_bytes += bytes;
  }
  insert.run();
}

/// Deletes the oldest, as many as are too much.
void trim(Database& database, Row& row) {
  const std::int64_t gone_before = row.gone_id;
  while (row.is_full()) {
    Statement oldest(database,
                     "SELECT id, bytes FROM journal_entries WHERE id > ? ORDER BY id LIMIT ?");
    oldest.bind(row.gone_id).bind(kPage);
    bool is_any = false;
    while (row.is_full() && oldest.step()) {
      is_any = true;
      row.gone_id = oldest.integer(0);
      row.kept_bytes -= oldest.integer(1);
      --row.kept;
      ++row.dropped;
    }
    if (!is_any) row.kept = 0;
  }
  if (row.gone_id == gone_before) return;
  Statement(database, "DELETE FROM journal_entries WHERE id > ? AND id <= ?")
      .bind(gone_before)
      .bind(row.gone_id)
      .run();
}

std::int64_t written_by(Database& database, std::int64_t process) {
  Statement select(database, "SELECT written FROM journal_writers WHERE number = ?");
  return select.bind(process).step() ? select.integer(0) : 0;
}

/// Of a row that begins with id and entry.
EntryPointer entry_in(Statement& row) {
  return std::make_shared<const JournalEntry>(
      stored_entry(static_cast<std::uint64_t>(row.integer(0)), row.text(1)));
}

}  // namespace

std::int64_t JournalTable::enter(const JournalLimits& limits) {
  Transaction transaction(database_, Turn::kJournal);
  Row row = read_row(database_);
  row.most = number_of(limits.count);
  row.most_bytes = number_of(limits.bytes);
  trim(database_, row);
  write_row(database_, row);
  Statement next(database_, "SELECT coalesce(max(number), 0) + 1 FROM journal_writers");
  next.step();
  const std::int64_t process = next.integer(0);
  Statement(database_, "INSERT INTO journal_writers VALUES (?, 0)").bind(process).run();
  Statement(database_, "DELETE FROM journal_writers WHERE number <= ?")
      .bind(process - kMostProcesses)
      .run();
  transaction.commit();
  return process;
}

void JournalTable::leave(std::int64_t process) {
  Statement(database_, "DELETE FROM journal_writers WHERE number = ?").bind(process).run();
}

void JournalTable::write(std::int64_t process, const JournalBatch& batch) {
  Transaction transaction(database_, Turn::kJournal);
  if (written_by(database_, process) >= number_of(batch.last)) return;
  Row row = read_row(database_);
  row.last_id += number_of(batch.let_go);
  row.dropped += number_of(batch.let_go);
  row.lost += number_of(batch.lost);
  const std::size_t count = batch.entries.size();
  std::size_t at = 0;
  while (at < count) {
    // Two lengths of statements, so that the server has two to remember.
    const std::size_t rows = count - at >= kRowsAtOnce ? kRowsAtOnce : 1;
    insert(database_, &batch.entries[at], rows, row);
    at += rows;
  }
  trim(database_, row);
  write_row(database_, row);
  Statement(database_,
            "INSERT INTO journal_writers VALUES (?, ?)"
            " ON CONFLICT (number) DO UPDATE SET written = excluded.written")
      .bind(process)
      .bind(number_of(batch.last))
      .run();
  transaction.commit();
}

JournalTable::State JournalTable::state() {
  const Row row = read_row(database_);
  return {.last_id = static_cast<std::uint64_t>(row.last_id),
          .dropped = static_cast<std::uint64_t>(row.dropped),
          .lost = static_cast<std::uint64_t>(row.lost),
          .limits = {.count = static_cast<std::size_t>(row.most),
                     .bytes = static_cast<std::size_t>(row.most_bytes)}};
}

std::vector<EntryPointer> JournalTable::after(std::uint64_t id, std::size_t most) {
  std::vector<EntryPointer> all;
  std::int64_t last = number_of(id);
  while (all.size() < most) {
    const std::int64_t page = std::min<std::int64_t>(kPage, number_of(most - all.size()));
    Statement select(database_,
                     "SELECT id, entry FROM journal_entries WHERE id > ? ORDER BY id LIMIT ?");
    select.bind(last).bind(page);
    std::int64_t found = 0;
    for (; select.step(); ++found) {
      last = select.integer(0);
      all.push_back(entry_in(select));
    }
    if (found < page) break;
  }
  return all;
}

LatestEntries JournalTable::latest(std::size_t most) {
  LatestEntries latest;
  std::int64_t kept = 0;
  // One statement, so that what is kept and what is read are those of one moment.
  Statement select(database_,
                   "SELECT id, entry, (SELECT kept FROM journal_state) FROM journal_entries"
                   " ORDER BY id DESC LIMIT ?");
  select.bind(number_of(most));
  while (select.step()) {
    latest.entries.push_back(entry_in(select));
    kept = select.integer(2);
  }
  std::reverse(latest.entries.begin(), latest.entries.end());
  latest.before = static_cast<std::uint64_t>(kept) - latest.entries.size();
  return latest;
}

void JournalTable::clear() {
  Transaction transaction(database_, Turn::kJournal);
  Row row = read_row(database_);
  database_.run("DELETE FROM journal_entries");
  row.gone_id = row.last_id;
  row.kept = 0;
  row.kept_bytes = 0;
  row.dropped = 0;
  row.lost = 0;
  write_row(database_, row);
  transaction.commit();
}

}  // namespace bvconn::sandbox
