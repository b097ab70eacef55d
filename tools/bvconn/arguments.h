#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/automation/interface.h"
#include "connection_options.h"
#include "json_value.h"
#include "nearest_names.h"
#include "status.h"

/// Arguments as they come from outside, as JSON or as text, turned into what a call takes.
namespace bvconn::tool {

/// The arguments of one call, and the documents that it fills.
struct CallArguments {
  std::vector<automation::Value> values;
  std::vector<std::unique_ptr<XMLDocument>> documents;
};

/// A value in JSON as one of this type. Documents that it asks for are made in `arguments`.
/// @throws UsageError  for a value that the type does not have, saying what is expected.
automation::Value value_from_json(const JsonValue& json, automation::ValueType type,
                                  CallArguments& arguments);
/// A value as text from a command line: XML for a node, JSON for an array, else the plain value.
automation::Value value_from_text(std::string_view text, automation::ValueType type,
                                  CallArguments& arguments);

/// Puts a value in its place among the arguments; `values` grows to the number of them. The message
/// of an error names the argument.
template <class Convert>
void place_argument(const automation::Member& member, std::string_view name,
                    CallArguments& arguments, const Convert& convert) {
  arguments.values.resize(member.arguments.size());
  const automation::Argument* argument = member.find_argument(name);
  if (argument == nullptr) {
    throw UsageError("there is no argument " + std::string(name) +
                     did_you_mean(name, argument_names(member)));
  }
  try {
    arguments.values[static_cast<std::size_t>(argument - member.arguments.data())] =
        convert(argument->type);
  } catch (const UsageError& error) {
    throw UsageError("argument " + std::string(name) + ": " + error.what());
  }
}

/// Puts the connection's server and session identifier, where it has them, in the places of
/// `aServerURL` and `aSessionID` that are still free.
void fill_arguments(const automation::Member& member, const Connection& connection,
                    CallArguments& arguments);
/// Fails unless every required argument is there.
void require_arguments(const automation::Member& member, CallArguments& arguments);

}  // namespace bvconn::tool
