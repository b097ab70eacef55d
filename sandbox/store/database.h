#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace bvconn::sandbox {

/// What SQLite says when something fails, with the statement or the file that it failed on.
class DatabaseError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// One connection to a SQLite database. Foreign keys are on.
class Database {
 public:
  /// Opens the file, making it if need be; ":memory:" for one that lives as long as this object.
  explicit Database(const std::string& file);
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  /// Keeps a file in WAL mode from now on.
  void use_wal();
  /// Runs statements that give no rows.
  void run(const char* sql);

 private:
  friend class Statement;
  sqlite3* handle_ = nullptr;
};

/// A prepared statement. Parameters are bound in their order, columns are read by theirs from 0.
class Statement {
 public:
  Statement(Database& database, std::string_view sql);
  ~Statement();
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  Statement& bind(std::string_view text);
  Statement& bind(std::int64_t number);
  /// Moves to the next row; false when there is none.
  bool step();
  /// Runs a statement that gives no rows, and makes it ready to be bound and run again.
  void run();

  std::string text(int column) const;
  std::int64_t integer(int column) const;

 private:
  Database& database_;
  sqlite3_stmt* handle_ = nullptr;
  int bound_ = 0;
};

/// Begins a transaction that other writers wait for; rolled back unless committed.
class Transaction {
 public:
  explicit Transaction(Database& database);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  void commit();

 private:
  Database& database_;
  bool open_ = true;
};

}  // namespace bvconn::sandbox
