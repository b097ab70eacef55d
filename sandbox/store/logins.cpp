#include "sandbox/store/logins.h"

#include <random>

namespace bvconn::sandbox {
namespace {

constexpr std::int64_t kMostLogins = 100'000;

std::string fresh_token() {
  constexpr std::string_view kDigits = "0123456789abcdef";
  constexpr int kTokenDigits = 32;
  std::random_device entropy;
  std::string token;
  for (int i = 0; i < kTokenDigits; ++i) token.push_back(kDigits[entropy() % kDigits.size()]);
  return token;
}

}  // namespace

std::string Logins::open(std::string_view user) {
  std::string token = fresh_token();
  Transaction transaction(database_);
  Statement(database_,
            "INSERT INTO logins VALUES (?, ?, (SELECT coalesce(max(number), 0) + 1 FROM logins))")
      .bind(token)
      .bind(user)
      .run();
  Statement(database_, "DELETE FROM logins WHERE number <= (SELECT max(number) FROM logins) - ?")
      .bind(kMostLogins)
      .run();
  transaction.commit();
  return token;
}

std::optional<std::string> Logins::user_of(std::string_view token) {
  Statement select(database_, "SELECT user_name FROM logins WHERE token = ?");
  if (!select.bind(token).step()) return std::nullopt;
  return select.text(0);
}

}  // namespace bvconn::sandbox
