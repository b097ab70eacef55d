#pragma once

#include <string_view>
#include <vector>

#include "bvconn/automation/interface.h"

/// The operations of the data access layer's service objects as data: what hosts can call by name
/// on the objects that the getters of `BVConnectorObject` give.
namespace bvconn::component {

struct ServiceOperation {
  std::string_view object;
  std::string_view name;
  std::vector<automation::Argument> arguments;
};

/// All of them, one object after another, each in its object's order.
const std::vector<ServiceOperation>& service_operations();

}  // namespace bvconn::component
