#include "sandbox/operations/operations.h"

namespace bvconn::sandbox {
namespace {

DalAnswer login(DalCall& call) {
  const auto& arguments = call.arguments;
  const bool four_texts = arguments.size() == 4 && arguments[0].is_string() &&
                          arguments[1].is_string() && arguments[2].is_string() &&
                          arguments[3].is_string();
  if (!four_texts) {
    throw DalError{400, dal_numbers::kBadRequest, "AuthenticationService",
                   "Login takes four texts: user, password, version, country code"};
  }
  const auto user = arguments[0].get<std::string>();
  if (!call.sandbox.store.admits(user, arguments[1].get<std::string>())) {
    throw DalError{401, dal_numbers::kLoginRefused, "AuthenticationService",
                   "User '" + user + "' is unknown, or the password is wrong"};
  }
  return {.text = "Logged in", .token = call.sandbox.logins.open(user)};
}

}  // namespace

void add_authentication(Operations& operations) {
  operations.dal[{"AuthenticationService", "Login"}] = {.run = login, .needs_login = false};
  operations.dal[{"AuthenticationService", "GetDisabledServices"}] = {
      .run = [](DalCall& call) { return DalAnswer{.text = call.sandbox.disabled_services}; }};
}

}  // namespace bvconn::sandbox
