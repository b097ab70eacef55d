#include "sandbox/store/schema.h"

#include <string>

#include "sandbox/store/schema_steps.h"

namespace bvconn::sandbox {
namespace {

// "BVsb", so that somebody else's database is not taken for one of ours.
constexpr std::int64_t kApplicationId = 0x42567362;

std::int64_t number(Database& database, std::string_view sql) {
  Statement select(database, sql);
  select.step();
  return select.integer(0);
}

}  // namespace

std::int64_t newest_version() {
  return static_cast<std::int64_t>(schema_steps().size());
}

void refuse_foreign(Database& database) {
  const std::int64_t application = number(database, "PRAGMA application_id");
  const std::int64_t version = number(database, "PRAGMA user_version");
  if (application == kApplicationId && version <= newest_version()) return;
  if (application == kApplicationId) {
    throw DatabaseError("the database has tables of version " + std::to_string(version) +
                        ", which a newer bvsandbox made; this one knows those up to version " +
                        std::to_string(newest_version()));
  }
  if (number(database, "SELECT count(*) FROM sqlite_schema") != 0) {
    throw DatabaseError("the database belongs to another program");
  }
}

std::int64_t bring_up(Database& database) {
  const std::int64_t present = number(database, "PRAGMA user_version");
  const auto& steps = schema_steps();
  if (present >= newest_version()) return present;
  for (auto step = steps.begin() + present; step != steps.end(); ++step) {
    database.run(step->tables);
  }
  database.run(("PRAGMA application_id = " + std::to_string(kApplicationId)).c_str());
  database.run(("PRAGMA user_version = " + std::to_string(newest_version())).c_str());
  return present;
}

void fill_after(Database& database, std::int64_t version, std::uint64_t seed) {
  const auto& steps = schema_steps();
  for (auto step = steps.begin() + version; step != steps.end(); ++step) {
    if (step->fill) step->fill(database, seed);
  }
}

}  // namespace bvconn::sandbox
