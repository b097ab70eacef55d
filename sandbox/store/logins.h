#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "sandbox/store/database.h"

namespace bvconn::sandbox {

/// The logins of the data access layer that are in force, in all processes that share the database.
class Logins {
 public:
  explicit Logins(Database& database) : database_(database) {}

  /// A new token for this user. The latest 100,000 tokens are in force.
  std::string open(std::string_view user);
  /// The user to whom the token was given; nothing for one that was not given out.
  std::optional<std::string> user_of(std::string_view token);

 private:
  Database& database_;
};

}  // namespace bvconn::sandbox
