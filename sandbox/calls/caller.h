#pragma once

#include <atomic>
#include <exception>
#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <utility>
#include <vector>

#include "sandbox/calls/call_forms.h"
#include "sandbox/calls/own_address.h"

namespace bvconn::sandbox {

/// More calls are under way than may be.
class TooManyCalls : public std::exception {};

/// Makes calls of the library's operations to the sandbox that it is a part of. Whoever asks for
/// one waits for its end; so that there are always threads left to answer it, no more than two are
/// under way at a time.
class Caller {
 public:
  explicit Caller(std::vector<CallForm> forms) : forms_(std::move(forms)) {}

  const std::vector<CallForm>& forms() const { return forms_; }
  /// To be called before there are calls; each asks anew where it goes.
  void set_address(std::function<OwnAddress()> address) { address_ = std::move(address); }

  /// Makes a call as JSON asks for it: `operation`, `arguments` by their names, `route`, and for
  /// the data access layer `user` and `password`. Gives its `result`, or its `error` with number,
  /// source and description. Throws BadCall for what cannot be called, TooManyCalls where it would
  /// have to wait.
  nlohmann::ordered_json call(const nlohmann::json& asked);

 private:
  std::vector<CallForm> forms_;
  std::function<OwnAddress()> address_;
  std::atomic<int> under_way_{0};
};

}  // namespace bvconn::sandbox
