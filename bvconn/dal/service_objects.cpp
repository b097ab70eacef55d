#include "bvconn/dal/service_objects.h"

#include "bvconn/core/recording.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"

namespace bvconn::dal {

std::string ServiceCaller::invoke(std::string_view operation, std::span<const Variant> arguments,
                                  bool by_name) const {
  if (!object_) {
    throw Error(error_numbers::kObjectNotSet, "BVConn",
                "the data access layer is not set up (call InitTorvexDAL): no service object for " +
                    std::string(operation));
  }
  return invoke_recorded(*object_, operation, arguments, by_name);
}

}  // namespace bvconn::dal
