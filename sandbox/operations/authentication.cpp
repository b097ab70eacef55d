#include "sandbox/operations/operations.h"

namespace bvconn::sandbox {
namespace {

constexpr const char* kObject = "AuthenticationService";

/// User, password, version of the application, country code.
DalAnswer login(SessionCall& call) {
  const std::string& user = call.arguments[0].string();
  if (!call.store.admits(user, call.arguments[1].string())) {
    throw DalError{401, dal_numbers::kLoginRefused, kObject,
                   "User '" + user + "' is unknown, or the password is wrong"};
  }
  return {.text = "Logged in", .token = call.store.logins().open(user)};
}

}  // namespace

void add_authentication(Operations& operations) {
  operations.session[{kObject, "Login"}] = {.run = login, .needs_login = false};
  operations.session[{kObject, "GetDisabledServices"}] = {
      .run = [](SessionCall& call) { return DalAnswer{.text = call.store.disabled_services()}; },
      .turn = Turn::kNone};
}

}  // namespace bvconn::sandbox
