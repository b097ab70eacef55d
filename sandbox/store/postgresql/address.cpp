#include "sandbox/store/postgresql/address.h"

#include <libpq-fe.h>

#include <memory>

#include "sandbox/store/connection.h"

namespace bvconn::sandbox {
namespace {

struct FreeOptions {
  void operator()(PQconninfoOption* options) const { PQconninfoFree(options); }
};

std::string value_of(const PQconninfoOption* options, std::string_view keyword) {
  for (; options->keyword; ++options) {
    if (options->keyword == keyword && options->val) return options->val;
  }
  return {};
}

[[noreturn]] void refuse_address() {
  throw DatabaseError(
      "the address after --db cannot be read, expected postgresql://USER@HOST:PORT/DATABASE; in a "
      "password, @ : and / are written %40 %3A and %2F");
}

}  // namespace

std::string without_secrets(const std::string& address) {
  char* message = nullptr;
  const std::unique_ptr<PQconninfoOption, FreeOptions> options(
      PQconninfoParse(address.c_str(), &message));
  PQfreemem(message);
  if (!options) refuse_address();
  std::string name = "postgresql://";
  const std::string user = value_of(options.get(), "user");
  const std::string host = value_of(options.get(), "host");
  const std::string port = value_of(options.get(), "port");
  const std::string database = value_of(options.get(), "dbname");
  // A password in which such marks stand as they are is cut where it ought not to be.
  if (port.find_first_not_of("0123456789,") != std::string::npos ||
      (host + database).find('@') != std::string::npos) {
    refuse_address();
  }
  const bool is_folder = host.starts_with("/");
  if (!user.empty()) name.append(user).append("@");
  if (!is_folder) name.append(host);
  if (!is_folder && !port.empty()) name.append(":").append(port);
  name.append("/").append(database);
  if (is_folder) name.append("?host=").append(host);
  return name;
}

std::string in_one_line(std::string_view text) {
  std::string line;
  for (const char c : text) {
    if (c != '\n') {
      line.push_back(c == '\t' ? ' ' : c);
    } else if (!line.empty() && line.back() != ' ') {
      line.append(" ");
    }
  }
  while (line.ends_with(" ")) line.pop_back();
  return line;
}

}  // namespace bvconn::sandbox
