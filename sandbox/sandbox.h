#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "sandbox/contract/contract.h"
#include "sandbox/contract/dal_routes.h"
#include "sandbox/store/store.h"
#include "sandbox/stubs/stub.h"

namespace bvconn::sandbox {

class Journal;

/// The logins of the data access layer that are in force. They end with the process.
class Logins {
 public:
  /// A new token for this user.
  std::string open(std::string_view user);
  /// The user to whom the token was given; nothing for one that was not given out.
  std::optional<std::string> user_of(std::string_view token) const;

 private:
  std::map<std::string, std::string, std::less<>> users_by_token_;
};

/// What all endpoints and operations share. Requests are read and answered on several threads:
/// whoever uses store, disabled_services or logins holds the mutex; the rest never changes.
struct Sandbox {
  Store store;
  Contract contract;
  DalRoutes dal_routes;
  /// The answer to GetDisabledServices.
  std::string disabled_services;
  Logins logins;
  /// Guards itself.
  StubBook stubs{};
  std::mutex mutex{};
  /// Answers requests that differ from what the library sends, as far as they can be answered.
  bool loose = false;
  /// Keeps what was asked and answered; null for none. It has a lock of its own.
  std::shared_ptr<Journal> journal{};
};

}  // namespace bvconn::sandbox
