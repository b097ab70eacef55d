#include "sandbox/store/connection.h"

// Stands in for the other files of this folder where libpq is not to be had.
namespace bvconn::sandbox {

std::unique_ptr<Connection> open_postgresql(const std::string&) {
  throw DatabaseError(
      "this bvsandbox was built without PostgreSQL's library libpq: --db takes the path of a "
      "SQLite file");
}

}  // namespace bvconn::sandbox
