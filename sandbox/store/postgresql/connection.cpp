#include "sandbox/store/connection.h"

#include <charconv>
#include <cstddef>
#include <utility>

#include "sandbox/store/dialect.h"
#include "sandbox/store/postgresql/link.h"

namespace bvconn::sandbox {
namespace {

// What else is in the database is none of ours: all tables are in a schema of their own. SQLite's
// function for the place of a text in another has another name here.
constexpr const char* kFoundation =
    "CREATE TABLE schema_version (version BIGINT NOT NULL);"
    " INSERT INTO schema_version VALUES (0);"
    " CREATE FUNCTION instr(text, text) RETURNS integer LANGUAGE sql IMMUTABLE STRICT"
    " AS 'SELECT pg_catalog.strpos($1, $2)'";

class PostgresqlCursor : public Cursor {
 public:
  PostgresqlCursor(PostgresqlLink& link, std::string_view sql) : link_(link), sql_(sql) {}

  void bind(int parameter, std::string_view text) override {
    parameters_.set_text(parameter, text);
  }
  void bind(int parameter, std::int64_t number) override {
    parameters_.set_number(parameter, number);
  }

  bool step() override {
    if (!result_) {
      result_ = link_.run(sql_, parameters_);
      row_ = -1;
    }
    return ++row_ < PQntuples(result_.get());
  }

  void reset() override {
    result_.reset();
    parameters_.clear();
  }

  std::string text(int column) const override {
    return {PQgetvalue(result_.get(), row_, column),
            static_cast<std::size_t>(PQgetlength(result_.get(), row_, column))};
  }

  std::int64_t integer(int column) const override {
    const std::string value = text(column);
    // A condition is a number in SQLite.
    if (value == "t") return 1;
    std::int64_t number = 0;
    std::from_chars(value.data(), value.data() + value.size(), number);
    return number;
  }

  std::vector<std::string> columns() const override {
    std::vector<std::string> names;
    for (int i = 0; i < PQnfields(result_.get()); ++i) {
      names.emplace_back(PQfname(result_.get(), i));
    }
    return names;
  }

 private:
  PostgresqlLink& link_;
  std::string sql_;
  PostgresqlParameters parameters_;
  PostgresqlResult result_;
  int row_ = -1;
};

class PostgresqlConnection : public Connection {
 public:
  explicit PostgresqlConnection(const std::string& address) : link_(address) {}

  const std::string& name() const override { return link_.name(); }
  const char* how_to_empty() const override { return "drop its schema 'bvsandbox'"; }

  std::unique_ptr<Cursor> prepare(std::string_view sql) override {
    return std::make_unique<PostgresqlCursor>(link_, sql);
  }
  void run(const char* sql) override { link_.run(sql); }

  void begin(Turn turn) override { link_.begin(turn); }
  void commit() override { link_.commit(); }
  void rollback() noexcept override { link_.rollback(); }

  TableState tables() override {
    if (number("SELECT count(*) FROM pg_class WHERE relnamespace = to_regnamespace('bvsandbox')") ==
        0) {
      return {};
    }
    if (number("SELECT to_regclass('bvsandbox.schema_version') IS NOT NULL") == 0) {
      return {.empty = false};
    }
    return {.empty = false, .ours = true, .version = number("SELECT version FROM schema_version")};
  }

  void settle() override {}

  void make_tables(const char* sql) override {
    if (tables().empty) {
      // The owner of the database may have made it for a user who may not.
      if (number("SELECT to_regnamespace('bvsandbox') IS NOT NULL") == 0) {
        run("CREATE SCHEMA bvsandbox");
      }
      run(kFoundation);
    }
    run(tables_for_postgresql(sql).c_str());
  }

  void set_version(std::int64_t version) override {
    run(("UPDATE schema_version SET version = " + std::to_string(version)).c_str());
  }

 private:
  std::int64_t number(std::string_view sql) {
    PostgresqlCursor select(link_, sql);
    select.step();
    return select.integer(0);
  }

  PostgresqlLink link_;
};

}  // namespace

std::unique_ptr<Connection> open_postgresql(const std::string& address) {
  return std::make_unique<PostgresqlConnection>(address);
}

}  // namespace bvconn::sandbox
