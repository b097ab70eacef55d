#pragma once

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "sandbox/stubs/stub.h"

/// Stubs as they are written, in JSON.
namespace bvconn::sandbox {

/// Says in one line what a stub cannot be, and what it could.
class BadStub : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The rules of a text in JSON: an object, an array of them, or {"stubs": [...]}. Operations and
/// arguments have to be among those of the forms. Throws BadStub.
std::vector<StubRule> stubs_from_text(std::string_view json,
                                      const std::vector<const OperationForm*>& forms);

/// With the fields that were given.
nlohmann::ordered_json to_json(const Stub& stub);

/// The text of an envelope whose method's response has these children.
std::string response_text(std::string_view service, std::string_view method,
                          std::string_view children);

}  // namespace bvconn::sandbox
