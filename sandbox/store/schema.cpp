#include "sandbox/store/schema.h"

#include <string>

#include "sandbox/store/schema_steps.h"

namespace bvconn::sandbox {

std::int64_t newest_version() {
  return static_cast<std::int64_t>(schema_steps().size());
}

void refuse_foreign(Database& database) {
  const TableState state = database.connection().tables();
  if (!state.ours && !state.empty) throw DatabaseError("the database belongs to another program");
  if (state.version <= newest_version()) return;
  throw DatabaseError("the database has tables of version " + std::to_string(state.version) +
                      ", which a newer bvsandbox made; this one knows those up to version " +
                      std::to_string(newest_version()));
}

std::int64_t bring_up(Database& database) {
  // Since it was looked at, another process may have made or changed the tables.
  refuse_foreign(database);
  Connection& connection = database.connection();
  const std::int64_t present = connection.tables().version;
  const auto& steps = schema_steps();
  if (present >= newest_version()) return present;
  for (auto step = steps.begin() + present; step != steps.end(); ++step) {
    connection.make_tables(step->tables);
  }
  connection.set_version(newest_version());
  return present;
}

void fill_after(Database& database, std::int64_t version, std::uint64_t seed) {
  const auto& steps = schema_steps();
  for (auto step = steps.begin() + version; step != steps.end(); ++step) {
    if (step->fill) step->fill(database, seed);
  }
}

}  // namespace bvconn::sandbox
