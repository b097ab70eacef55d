#include "sandbox/postgres_server.h"
#include "sandbox/shared_place.h"

namespace bvconn::test {

std::string new_shared_place() {
  return PostgresServer::shared().make_database();
}

std::string shared_place_missing() {
  return PostgresServer::shared().missing();
}

}  // namespace bvconn::test
