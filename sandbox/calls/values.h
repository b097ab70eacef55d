#pragma once

#include <nlohmann/json_fwd.hpp>
#include <stdexcept>

#include "bvconn/automation/interface.h"

/// Arguments and results of calls as JSON.
namespace bvconn::sandbox {

/// Says in one line what a call cannot be, and what it could.
class BadCall : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A value as one of this type: a text, true or false, a number, an array of texts or null; of a
/// node its XML, and "" or null for none. An XML document is the caller's own and none of these.
/// Throws BadCall, which says what is expected.
automation::Value value_of(const nlohmann::json& json, automation::ValueType type);

/// A result: its `type`, and its `value`, or its `xml`. What is longer than 1 MiB is `cut`.
nlohmann::ordered_json value_json(const automation::Value& value, automation::ValueType type);

/// What stands for an argument that is left out; null for the marker of one that is missing.
nlohmann::ordered_json default_json(const automation::Argument& argument);

}  // namespace bvconn::sandbox
