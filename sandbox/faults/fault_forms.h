#pragma once

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "sandbox/faults/fault.h"

/// Rules as they are written: JSON, and TOML with the same names.
namespace bvconn::sandbox {

/// Says in one line what a rule cannot be, and what it could.
class BadFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A rule from an object of JSON. `operations` are the names that there are; where it is empty,
/// they are not looked at. Throws BadFault.
FaultRule fault_from_json(const nlohmann::json& object, const std::vector<std::string>& operations);

/// The rules of a text in JSON: an object, an array of them, or {"faults": [...]}. Throws BadFault.
std::vector<FaultRule> faults_from_text(std::string_view json,
                                        const std::vector<std::string>& operations);

/// The rules of a file in TOML, each a table [[fault]]. Throws BadFault, with the file's name.
std::vector<FaultRule> faults_from_file(const std::string& file,
                                        const std::vector<std::string>& operations);

/// With the fields that were given.
nlohmann::ordered_json to_json(const FaultRule& rule);

}  // namespace bvconn::sandbox
