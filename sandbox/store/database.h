#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "sandbox/store/connection.h"

namespace bvconn::sandbox {

/// A database by its path or its address: a SQLite file, or a PostgreSQL server's. To be used by
/// one thread at a time.
class Database {
 public:
  /// ":memory:" is a SQLite database that lives as long as this object.
  explicit Database(const std::string& where) : connection_(open_connection(where)) {}

  /// Runs statements that give no rows.
  void run(const char* sql) { connection_->run(sql); }
  Connection& connection() { return *connection_; }

 private:
  std::unique_ptr<Connection> connection_;
};

/// A prepared statement. Parameters are bound in their order, columns are read by theirs from 0.
class Statement {
 public:
  Statement(Database& database, std::string_view sql)
      : cursor_(database.connection().prepare(sql)) {}
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  Statement& bind(std::string_view text);
  Statement& bind(std::int64_t number);
  /// Moves to the next row; false when there is none.
  bool step() { return cursor_->step(); }
  /// Runs a statement that gives no rows, and makes it ready to be bound and run again.
  void run();

  std::string text(int column) const { return cursor_->text(column); }
  std::int64_t integer(int column) const { return cursor_->integer(column); }
  /// The names of the columns, once a step was taken.
  std::vector<std::string> columns() const { return cursor_->columns(); }

 private:
  std::unique_ptr<Cursor> cursor_;
  int bound_ = 0;
};

/// Begins a transaction that other writers of the same wait for, unless it is for `Turn::kNone`;
/// rolled back unless committed.
class Transaction {
 public:
  explicit Transaction(Database& database, Turn turn = Turn::kStore);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  void commit();

 private:
  Database& database_;
  bool open_ = true;
};

}  // namespace bvconn::sandbox
