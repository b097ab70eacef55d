#include "sandbox/store/snapshots.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstddef>
#include <optional>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/conversions/nearest_names.h"
#include "sandbox/store/schema.h"
#include "sandbox/store/schema_steps.h"

namespace bvconn::sandbox {
namespace {

void refuse_name(std::string_view name) {
  constexpr std::size_t kLongest = 64;
  const bool is_good =
      !name.empty() && name.size() <= kLongest && std::all_of(name.begin(), name.end(), [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '.' || c == '_' || c == '-';
      });
  if (is_good) return;
  throw SnapshotError(
      "A snapshot's name has 1 to 64 letters, digits, '.', '_' or '-' in it, not '" +
      std::string(name.substr(0, kLongest)) + "'");
}

std::string now_text() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(now);
  const Date epoch = from_civil({.year = 1970, .month = 1, .day = 1});
  return conversions::iso_date_text({epoch.milliseconds + milliseconds.count()})
      .substr(0, std::string_view("2026-01-31T17:05:09").size());
}

std::string table_of(std::int64_t number, const char* table) {
  return "snapshot_" + std::to_string(number) + "_" + table;
}

std::optional<std::int64_t> number_of(Database& database, std::string_view name) {
  Statement select(database, "SELECT number FROM snapshots WHERE name = ?");
  if (!select.bind(name).step()) return std::nullopt;
  return select.integer(0);
}

std::int64_t number(Database& database, std::string_view sql) {
  Statement select(database, sql);
  select.step();
  return select.integer(0);
}

/// By their names, since a later version may have them in another order.
std::string columns_of(Database& database, const std::string& table) {
  Statement select(database, "SELECT * FROM " + table + " LIMIT 0");
  select.step();
  std::string names;
  for (const std::string& each : select.columns()) {
    names.append(names.empty() ? "" : ", ").append(each);
  }
  return names;
}

}  // namespace

std::vector<Snapshot> Snapshots::all() {
  Statement select(database_, "SELECT name, made FROM snapshots ORDER BY name");
  std::vector<Snapshot> found;
  while (select.step()) found.push_back({.name = select.text(0), .made = select.text(1)});
  return found;
}

void Snapshots::take(std::string_view name) {
  refuse_name(name);
  Transaction transaction(database_);
  drop(name);
  if (number(database_, "SELECT count(*) FROM snapshots") >= kMost) {
    throw SnapshotError("There are " + std::to_string(kMost) +
                        " snapshots already: remove one of them first");
  }
  const std::int64_t fresh =
      number(database_, "SELECT coalesce(max(number), 0) + 1 FROM snapshots");
  Statement(database_, "INSERT INTO snapshots VALUES (?, ?, ?, ?)")
      .bind(name)
      .bind(fresh)
      .bind(newest_version())
      .bind(now_text())
      .run();
  for (const char* table : data_tables()) {
    const std::string sql = "CREATE TABLE " + table_of(fresh, table) + " AS SELECT * FROM " + table;
    database_.run(sql.c_str());
  }
  transaction.commit();
}

void Snapshots::restore(std::string_view name) {
  Transaction transaction(database_);
  const std::int64_t kept = need(name);
  Statement select(database_, "SELECT version FROM snapshots WHERE number = ?");
  select.bind(kept).step();
  if (select.integer(0) != newest_version()) {
    throw SnapshotError("The snapshot '" + std::string(name) + "' has tables of version " +
                        select.text(0) + ", and the store those of version " +
                        std::to_string(newest_version()) + ": make it anew");
  }
  clear_data();
  for (const char* table : data_tables()) {
    const std::string from = table_of(kept, table);
    const std::string columns = columns_of(database_, from);
    const std::string sql = "INSERT INTO " + std::string(table) + " (" + columns + ") SELECT " +
                            columns + " FROM " + from;
    database_.run(sql.c_str());
  }
  transaction.commit();
}

void Snapshots::remove(std::string_view name) {
  Transaction transaction(database_);
  need(name);
  drop(name);
  transaction.commit();
}

void Snapshots::reset(std::uint64_t seed) {
  Transaction transaction(database_);
  clear_data();
  fill_after(database_, 0, seed);
  transaction.commit();
}

std::int64_t Snapshots::need(std::string_view name) {
  if (const auto found = number_of(database_, name)) return *found;
  std::vector<std::string> names;
  for (const Snapshot& each : all()) names.push_back(each.name);
  refuse_name(name);
  throw SnapshotError("There is no snapshot '" + std::string(name) + "'" +
                      did_you_mean(std::string(name), names));
}

void Snapshots::drop(std::string_view name) {
  const auto known = number_of(database_, name);
  if (!known) return;
  for (const char* table : data_tables()) {
    database_.run(("DROP TABLE IF EXISTS " + table_of(*known, table)).c_str());
  }
  Statement(database_, "DELETE FROM snapshots WHERE name = ?").bind(name).run();
}

void Snapshots::clear_data() {
  const auto& tables = data_tables();
  for (auto table = tables.rbegin(); table != tables.rend(); ++table) {
    database_.run(("DELETE FROM " + std::string(*table)).c_str());
  }
}

}  // namespace bvconn::sandbox
