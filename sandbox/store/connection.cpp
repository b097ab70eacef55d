#include "sandbox/store/connection.h"

namespace bvconn::sandbox {

std::unique_ptr<Connection> open_connection(const std::string& where) {
  return is_on_server(where) ? open_postgresql(where) : open_sqlite(where);
}

bool is_on_server(std::string_view where) {
  return where.starts_with("postgresql://") || where.starts_with("postgres://");
}

}  // namespace bvconn::sandbox
