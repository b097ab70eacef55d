#pragma once

#include <memory>
#include <string_view>

#include "bvconn/platform/torvexlib/service_object.h"

namespace bvconn::detail {

/// A service object of the data access layer that this system has.
std::shared_ptr<ServiceObject> make_service_object(std::string_view name);

}  // namespace bvconn::detail
