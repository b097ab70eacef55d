#include "sandbox/store/connection.h"

namespace bvconn::sandbox {

std::unique_ptr<Connection> open_connection(const std::string& where) {
  for (const char* scheme : {"postgresql://", "postgres://"}) {
    if (where.starts_with(scheme)) return open_postgresql(where);
  }
  return open_sqlite(where);
}

}  // namespace bvconn::sandbox
