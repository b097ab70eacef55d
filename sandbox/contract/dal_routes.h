#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bvconn/observation/observe.h"
#include "sandbox/contract/difference.h"
#include "sandbox/contract/operation_form.h"

/// What a call of the data access layer has to look like, and which method of a service answers it.
/// Nobody writes this down: it is what the library's operations do on their two routes.
namespace bvconn::sandbox {

/// The types that an argument can have in JSON.
enum class JsonType {
  kNull,
  kBoolean,
  kInteger,      ///< of 32 bits
  kLongInteger,  ///< of 64 bits
  kFloat,
  kText,
  kArray,  ///< of plain values
  kOther,  ///< an object, or an array of more than plain values: nothing that an argument can be
};

struct DalArgument {
  /// The argument of the library's operation that it carries; "" where that is none or several.
  std::string name;
  /// An empty list allows whatever a variant can be.
  std::vector<JsonType> types;
};

/// A parameter of the method that answers.
struct RoutedParameter {
  std::string name;
  /// The place of the argument that fills it; nothing for one that this route does not have.
  std::optional<std::size_t> argument;
  /// What it holds without an argument; nil if this is empty too.
  std::string constant{};
};

struct DalRoute {
  std::string object;
  std::string operation;
  std::vector<DalArgument> arguments;
  /// The one argument is the text of a whole request.
  bool takes_request_text = false;
  /// Services and methods to which the SOAP route leads: the text of a request may be for any of
  /// them, other arguments go to the first. None for what the data access layer alone serves.
  std::vector<std::pair<std::string, std::string>> methods;
  /// How the arguments become the parameters of the method, or of the operation itself where there
  /// is none. Not for the text of a request, which has its own.
  std::vector<RoutedParameter> parameters;
  /// The operations of the library that make this call.
  std::vector<OperationForm> forms{};
};

/// All routes by object and operation.
using DalRoutes = std::map<std::pair<std::string, std::string>, DalRoute>;

/// The routes that these observations amount to.
DalRoutes dal_routes_of(const std::vector<automation::ObservedOperation>& observations);

/// All in which arguments of these types depart from what the route wants; nothing where they fit.
std::vector<Difference> differences(const DalRoute& route, const std::vector<JsonType>& found);

}  // namespace bvconn::sandbox
