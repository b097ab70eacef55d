#include <sqlite3.h>

#include <map>
#include <new>
#include <utility>

#include "sandbox/store/connection.h"

namespace bvconn::sandbox {
namespace {

constexpr int kBusyTimeoutMs = 5'000;
// "BVsb", so that somebody else's database is not taken for one of ours.
constexpr std::int64_t kApplicationId = 0x42567362;

[[noreturn]] void fail(sqlite3* handle, std::string_view on) {
  std::string text(on);
  text.append(": ").append(handle ? sqlite3_errmsg(handle) : "out of memory");
  if (handle && sqlite3_errcode(handle) == SQLITE_BUSY) throw DatabaseBusy(text);
  throw DatabaseError(text);
}

/// Statements that were prepared and that nobody uses now: preparing one costs several times what
/// running it does. So many are kept; what is more is forgotten.
class SqliteStatements {
 public:
  explicit SqliteStatements(sqlite3*& connection) : connection_(connection) {}
  ~SqliteStatements() { clear(); }
  SqliteStatements(const SqliteStatements&) = delete;
  SqliteStatements& operator=(const SqliteStatements&) = delete;

  sqlite3* connection() const { return connection_; }

  /// From now on only statements that change nothing are given out, or all again.
  void only_those_that_read(bool only) { only_reads_ = only; }

  sqlite3_stmt* take(std::string_view sql) {
    sqlite3_stmt* const statement = idle_or_new(sql);
    if (!only_reads_ || sqlite3_stmt_readonly(statement) != 0) return statement;
    give_back(statement);
    throw DatabaseError(std::string(sql) + ": this would change what is only to be read");
  }

  void give_back(sqlite3_stmt* statement) noexcept {
    // It would go on reading, and keep what was bound.
    sqlite3_reset(statement);
    sqlite3_clear_bindings(statement);
    try {
      if (idle_.size() < kIdleMax) {
        idle_.emplace(sqlite3_sql(statement), statement);
        return;
      }
    } catch (const std::bad_alloc&) {
      // It is forgotten then, too.
    }
    sqlite3_finalize(statement);
  }

  void clear() noexcept {
    for (const auto& [sql, statement] : idle_) sqlite3_finalize(statement);
    idle_.clear();
  }

 private:
  static constexpr std::size_t kIdleMax = 256;

  sqlite3_stmt* idle_or_new(std::string_view sql) {
    if (const auto found = idle_.find(sql); found != idle_.end()) {
      return idle_.extract(found).mapped();
    }
    sqlite3_stmt* made = nullptr;
    const int result =
        sqlite3_prepare_v2(connection_, sql.data(), static_cast<int>(sql.size()), &made, nullptr);
    if (result != SQLITE_OK) fail(connection_, sql);
    return made;
  }

  sqlite3*& connection_;
  bool only_reads_ = false;
  // By their texts, which they keep themselves. One text may be in use several times at once.
  std::multimap<std::string_view, sqlite3_stmt*> idle_;
};

class SqliteCursor : public Cursor {
 public:
  SqliteCursor(SqliteStatements& statements, std::string_view sql)
      : statements_(statements),
        connection_(statements.connection()),
        handle_(statements.take(sql)) {}
  ~SqliteCursor() override { statements_.give_back(handle_); }
  SqliteCursor(const SqliteCursor&) = delete;
  SqliteCursor& operator=(const SqliteCursor&) = delete;

  void bind(int parameter, std::string_view text) override {
    const int result = sqlite3_bind_text64(handle_, parameter, text.data(), text.size(),
                                           SQLITE_TRANSIENT, SQLITE_UTF8);
    if (result != SQLITE_OK) fail(connection_, sqlite3_sql(handle_));
  }

  void bind(int parameter, std::int64_t number) override {
    if (sqlite3_bind_int64(handle_, parameter, number) != SQLITE_OK) {
      fail(connection_, sqlite3_sql(handle_));
    }
  }

  bool step() override {
    const int result = sqlite3_step(handle_);
    if (result == SQLITE_ROW) return true;
    if (result != SQLITE_DONE) fail(connection_, sqlite3_sql(handle_));
    return false;
  }

  void reset() override { sqlite3_reset(handle_); }

  std::string text(int column) const override {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(handle_, column));
    if (!bytes) return {};
    return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(handle_, column))};
  }

  std::int64_t integer(int column) const override { return sqlite3_column_int64(handle_, column); }

  std::vector<std::string> columns() const override {
    std::vector<std::string> names;
    for (int i = 0; i < sqlite3_column_count(handle_); ++i) {
      names.emplace_back(sqlite3_column_name(handle_, i));
    }
    return names;
  }

 private:
  SqliteStatements& statements_;
  sqlite3* connection_;
  sqlite3_stmt* handle_;
};

class SqliteConnection : public Connection {
 public:
  explicit SqliteConnection(const std::string& file) : name_(file) {
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
    try {
      if (sqlite3_open_v2(file.c_str(), &handle_, flags, nullptr) != SQLITE_OK) {
        fail(handle_, file);
      }
      sqlite3_busy_timeout(handle_, kBusyTimeoutMs);
      run("PRAGMA foreign_keys = ON");
    } catch (...) {
      sqlite3_close(handle_);
      throw;
    }
  }
  ~SqliteConnection() override {
    statements_.clear();
    sqlite3_close(handle_);
  }
  SqliteConnection(const SqliteConnection&) = delete;
  SqliteConnection& operator=(const SqliteConnection&) = delete;

  const std::string& name() const override { return name_; }
  const char* how_to_empty() const override { return "remove the file"; }

  std::unique_ptr<Cursor> prepare(std::string_view sql) override {
    return std::make_unique<SqliteCursor>(statements_, sql);
  }

  void run(const char* sql) override {
    if (sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr) != SQLITE_OK) fail(handle_, sql);
  }

  void begin(Turn turn) override {
    step(turn == Turn::kNone ? "BEGIN" : "BEGIN IMMEDIATE");
    statements_.only_those_that_read(turn == Turn::kNone);
  }
  void commit() override {
    statements_.only_those_that_read(false);
    step("COMMIT");
  }
  void rollback() noexcept override {
    statements_.only_those_that_read(false);
    // An error means that SQLite has rolled back already.
    sqlite3_exec(handle_, "ROLLBACK", nullptr, nullptr, nullptr);
  }

  TableState tables() override {
    const bool ours = number("PRAGMA application_id") == kApplicationId;
    return {.empty = number("SELECT count(*) FROM sqlite_schema") == 0,
            .ours = ours,
            .version = ours ? number("PRAGMA user_version") : 0};
  }

  void settle() override {
    // In memory there is no journal to choose; the pragma then changes nothing.
    step("PRAGMA journal_mode = WAL");
    run("PRAGMA synchronous = NORMAL");
  }

  void make_tables(const char* sql) override { run(sql); }

  void set_version(std::int64_t version) override {
    run(("PRAGMA application_id = " + std::to_string(kApplicationId)).c_str());
    run(("PRAGMA user_version = " + std::to_string(version)).c_str());
  }

 private:
  /// Runs a statement that comes again and again.
  void step(std::string_view sql) { SqliteCursor(statements_, sql).step(); }

  std::int64_t number(std::string_view sql) {
    SqliteCursor select(statements_, sql);
    select.step();
    return select.integer(0);
  }

  std::string name_;
  sqlite3* handle_ = nullptr;
  SqliteStatements statements_{handle_};
};

}  // namespace

std::unique_ptr<Connection> open_sqlite(const std::string& file) {
  return std::make_unique<SqliteConnection>(file);
}

}  // namespace bvconn::sandbox
