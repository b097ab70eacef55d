#pragma once

#include <libpq-fe.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "sandbox/store/connection.h"

namespace bvconn::sandbox {

struct ClearResult {
  void operator()(PGresult* result) const { PQclear(result); }
};
using PostgresqlResult = std::unique_ptr<PGresult, ClearResult>;

/// The values of a statement's parameters.
class PostgresqlParameters {
 public:
  void set_text(int parameter, std::string_view text);
  void set_number(int parameter, std::int64_t number);
  void clear() { values_.clear(); }

  const std::vector<Oid>& types() const { return types_; }
  /// One letter for each type.
  std::string type_letters() const;

 private:
  friend class PostgresqlLink;
  void set(int parameter, std::string value, Oid type);

  std::vector<std::string> values_;
  std::vector<Oid> types_;
};

/// The connection itself: it is made anew when it is lost, and waits for nothing longer than some
/// seconds.
class PostgresqlLink {
 public:
  explicit PostgresqlLink(std::string address);
  ~PostgresqlLink() { PQfinish(handle_); }
  PostgresqlLink(const PostgresqlLink&) = delete;
  PostgresqlLink& operator=(const PostgresqlLink&) = delete;

  const std::string& name() const { return name_; }

  /// Runs statements without parameters, of which only the last may give rows.
  PostgresqlResult run(const char* sql);
  /// Runs one statement in the words of both databases, which the server keeps prepared.
  PostgresqlResult run(std::string_view sql, const PostgresqlParameters& parameters);

  void begin(Turn turn);
  void commit();
  void rollback() noexcept;

 private:
  /// Outside a transaction: connects if there is no connection, or no longer one.
  void mend();
  void connect();
  void set_up();
  /// The name under which the server keeps the statement.
  const std::string& prepare(std::string_view sql, const PostgresqlParameters& parameters);
  /// Waits for what was sent.
  PostgresqlResult finish(std::string_view sql);
  /// Waits until the server says more or takes more; false when it did neither in time.
  bool wait(std::int64_t milliseconds, bool to_write);
  static void take_notice(void* link, const PGresult* notice);
  [[noreturn]] void fail(std::string_view sql, const PGresult* result);
  [[noreturn]] void lose(std::string_view why);
  void close();

  enum class Phase { kNone, kOpen, kCommitting };

  std::string address_;
  std::string name_;
  PGconn* handle_ = nullptr;
  /// Whether the server has said that it ends the connection.
  bool ended_ = false;
  Phase phase_ = Phase::kNone;
  /// The names of prepared statements by their text and the types of their parameters.
  std::map<std::string, std::string> prepared_;
};

}  // namespace bvconn::sandbox
