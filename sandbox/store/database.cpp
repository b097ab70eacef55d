#include "sandbox/store/database.h"

#include <sqlite3.h>

namespace bvconn::sandbox {
namespace {

constexpr int kBusyTimeoutMs = 5'000;

[[noreturn]] void fail(sqlite3* handle, std::string_view on) {
  std::string text(on);
  text.append(": ").append(handle ? sqlite3_errmsg(handle) : "out of memory");
  throw DatabaseError(text);
}

}  // namespace

Database::Database(const std::string& file) {
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
  try {
    if (sqlite3_open_v2(file.c_str(), &handle_, flags, nullptr) != SQLITE_OK) fail(handle_, file);
    sqlite3_busy_timeout(handle_, kBusyTimeoutMs);
    run("PRAGMA foreign_keys = ON");
  } catch (...) {
    sqlite3_close(handle_);
    throw;
  }
}

Database::~Database() {
  sqlite3_close(handle_);
}

void Database::use_wal() {
  // In memory there is no journal to choose; the pragma then changes nothing.
  Statement(*this, "PRAGMA journal_mode = WAL").step();
  run("PRAGMA synchronous = NORMAL");
}

void Database::run(const char* sql) {
  if (sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr) != SQLITE_OK) fail(handle_, sql);
}

Statement::Statement(Database& database, std::string_view sql) : database_(database) {
  const int result = sqlite3_prepare_v2(database.handle_, sql.data(), static_cast<int>(sql.size()),
                                        &handle_, nullptr);
  if (result != SQLITE_OK) fail(database.handle_, sql);
}

Statement::~Statement() {
  sqlite3_finalize(handle_);
}

Statement& Statement::bind(std::string_view text) {
  const int result = sqlite3_bind_text64(handle_, ++bound_, text.data(), text.size(),
                                         SQLITE_TRANSIENT, SQLITE_UTF8);
  if (result != SQLITE_OK) fail(database_.handle_, sqlite3_sql(handle_));
  return *this;
}

Statement& Statement::bind(std::int64_t number) {
  if (sqlite3_bind_int64(handle_, ++bound_, number) != SQLITE_OK) {
    fail(database_.handle_, sqlite3_sql(handle_));
  }
  return *this;
}

bool Statement::step() {
  const int result = sqlite3_step(handle_);
  if (result == SQLITE_ROW) return true;
  if (result != SQLITE_DONE) fail(database_.handle_, sqlite3_sql(handle_));
  return false;
}

void Statement::run() {
  while (step()) {
  }
  sqlite3_reset(handle_);
  bound_ = 0;
}

std::string Statement::text(int column) const {
  const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(handle_, column));
  if (!bytes) return {};
  return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(handle_, column))};
}

std::int64_t Statement::integer(int column) const {
  return sqlite3_column_int64(handle_, column);
}

Transaction::Transaction(Database& database) : database_(database) {
  database_.run("BEGIN IMMEDIATE");
}

Transaction::~Transaction() {
  if (!open_) return;
  try {
    database_.run("ROLLBACK");
  } catch (const DatabaseError&) {
    // SQLite has rolled back already; the error that led here is the one to be reported.
  }
}

void Transaction::commit() {
  database_.run("COMMIT");
  open_ = false;
}

}  // namespace bvconn::sandbox
