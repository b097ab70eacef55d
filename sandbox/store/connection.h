#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// What the store needs of a database, and what SQLite and PostgreSQL do each in their own way: all
/// that differs between the two is behind this, in `sqlite_connection.cpp`,
/// the folder `postgresql` and `dialect.cpp`.
namespace bvconn::sandbox {

/// What the database says when something fails, with the statement or the place that it failed on.
class DatabaseError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Another process held the database for longer than a request waits.
class DatabaseBusy : public DatabaseError {
 public:
  using DatabaseError::DatabaseError;
};

/// A statement that is ready to run. Parameters are counted from 1, columns from 0.
class Cursor {
 public:
  virtual ~Cursor() = default;
  virtual void bind(int parameter, std::string_view text) = 0;
  virtual void bind(int parameter, std::int64_t number) = 0;
  /// Moves to the next row; false when there is none. The first step runs the statement.
  virtual bool step() = 0;
  /// Makes it ready to be bound and run again.
  virtual void reset() = 0;
  virtual std::string text(int column) const = 0;
  virtual std::int64_t integer(int column) const = 0;
  /// The names of the columns, once a step was taken.
  virtual std::vector<std::string> columns() const = 0;
};

/// Whose tables a database has.
struct TableState {
  bool empty = true;
  bool ours = false;
  std::int64_t version = 0;  ///< of the tables, where they are ours
};

/// Of what a transaction changes something. Writers of one thing wait for each other, of this
/// process and of others; where the database can do that, those of different things do not.
enum class Turn : std::uint8_t {
  kStore,
  kJournal,
  kRules,  ///< faults and stubs
  /// Nothing: it waits for nobody and sees what there is at one moment; writing is an error.
  kNone,
};

/// One connection to a database.
class Connection {
 public:
  virtual ~Connection() = default;
  /// How a message names the database: without a password.
  virtual const std::string& name() const = 0;
  /// What a user has to do to begin with an empty one.
  virtual const char* how_to_empty() const = 0;

  /// The statement is in the words that both databases have; `?` is the next parameter, `?3` the
  /// third.
  virtual std::unique_ptr<Cursor> prepare(std::string_view sql) = 0;
  /// Runs statements that take no parameters and give no rows.
  virtual void run(const char* sql) = 0;

  /// Begins a transaction. What is committed of the journal and of rules may be lost if the
  /// database's own machine fails in the next moment, and is never half there.
  virtual void begin(Turn turn) = 0;
  virtual void commit() = 0;
  /// Never fails: a connection that is lost has rolled back by that.
  virtual void rollback() noexcept = 0;

  virtual TableState tables() = 0;
  /// To be called once the database is known not to be another program's: it may change how the
  /// database is kept.
  virtual void settle() = 0;
  /// Runs the statements of a step of the schema.
  virtual void make_tables(const char* sql) = 0;
  /// Says which version the tables have from now on, and that they are ours.
  virtual void set_version(std::int64_t version) = 0;
};

/// Opens the file, making it if need be; ":memory:" for one that lives as long as the connection.
std::unique_ptr<Connection> open_sqlite(const std::string& file);
/// Connects to the server that the address names. Where this program was built without the library
/// for that, this is an error that says so.
std::unique_ptr<Connection> open_postgresql(const std::string& address);
/// An address that begins with "postgresql://" or "postgres://" is PostgreSQL's, everything else
/// the path of a SQLite file.
std::unique_ptr<Connection> open_connection(const std::string& where);
/// Whether this is the address of a database on a server, which processes of several machines
/// share.
bool is_on_server(std::string_view where);

}  // namespace bvconn::sandbox
