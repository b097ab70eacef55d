#include "sandbox/sandbox.h"

#include <random>

namespace bvconn::sandbox {

std::string Logins::open(std::string_view user) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  constexpr int kTokenDigits = 32;
  std::random_device entropy;
  std::string token;
  for (int i = 0; i < kTokenDigits; ++i) token.push_back(kDigits[entropy() % kDigits.size()]);
  users_by_token_.insert_or_assign(token, std::string(user));
  return token;
}

std::optional<std::string> Logins::user_of(std::string_view token) const {
  const auto found = users_by_token_.find(token);
  if (found == users_by_token_.end()) return std::nullopt;
  return found->second;
}

}  // namespace bvconn::sandbox
