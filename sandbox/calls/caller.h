#pragma once

#include <atomic>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "sandbox/calls/call_forms.h"

namespace bvconn::sandbox {

/// Where the sandbox itself is reached by its own calls.
struct OwnAddress {
  std::string url;        ///< "http://127.0.0.1:8080"
  std::string ca_file{};  ///< who is trusted behind https; "" for the system's store
};

/// More calls are under way than may be.
class TooManyCalls : public std::exception {};

/// Makes calls of the library's operations to the sandbox that it is a part of. Whoever asks for
/// one waits for its end; so that there are always threads left to answer it, no more than two are
/// under way at a time.
class Caller {
 public:
  explicit Caller(std::vector<CallForm> forms) : forms_(std::move(forms)) {}

  const std::vector<CallForm>& forms() const { return forms_; }
  /// To be called before there are calls.
  void set_address(OwnAddress address) { address_ = std::move(address); }

  /// Makes a call as JSON asks for it: `operation`, `arguments` by their names, `route`, and for
  /// the data access layer `user` and `password`. Gives its `result`, or its `error` with number,
  /// source and description. Throws BadCall for what cannot be called, TooManyCalls where it would
  /// have to wait.
  nlohmann::ordered_json call(const nlohmann::json& asked);

 private:
  std::vector<CallForm> forms_;
  OwnAddress address_;
  std::atomic<int> under_way_{0};
};

}  // namespace bvconn::sandbox
