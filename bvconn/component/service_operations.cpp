#include "bvconn/component/service_operations.h"

#include <algorithm>
#include <cstdint>
#include <string>

#include "bvconn/automation/value_bridge.h"
#include "bvconn/component/shapes.h"

namespace bvconn::component {
namespace {

using automation::Argument;
using automation::ValueType;

template <class Declaration>
struct DeclaredTypes;

template <class... Declared>
struct DeclaredTypes<void(Declared...)> {
  static std::vector<ValueType> list() { return {automation::kValueTypeOf<Declared>...}; }
};

// The name of each parameter is the last word before its comma, or before the end.
std::vector<Argument> named(const std::vector<ValueType>& types, std::string_view declaration) {
  std::vector<Argument> arguments;
  for (const ValueType type : types) {
    const std::string_view parameter = declaration.substr(0, declaration.find(','));
    const std::string_view name = parameter.substr(parameter.find_last_of(" &") + 1);
    arguments.push_back(required(std::string(name), type));
    declaration.remove_prefix(std::min(parameter.size() + 1, declaration.size()));
  }
  return arguments;
}

std::vector<ServiceOperation> all_operations() {
  std::vector<ServiceOperation> all;
  std::string_view object;
#define BVCONN_SERVICE_OBJECT(name, ...) \
  object = #name;                        \
  __VA_ARGS__
#define BVCONN_SERVICE_OPERATION(name, ...) \
  all.push_back({object, #name, named(DeclaredTypes<void(__VA_ARGS__)>::list(), #__VA_ARGS__)});
#define BVCONN_SERVICE_OPERATION_BY_NAME BVCONN_SERVICE_OPERATION
#include "bvconn/platform/torvexlib/service_object_rows.inc"
  return all;
}

}  // namespace

const std::vector<ServiceOperation>& service_operations() {
  static const std::vector<ServiceOperation> all = all_operations();
  return all;
}

}  // namespace bvconn::component
