#pragma once

#include <memory>

#include "bvconn/platform/torvexlib/service_object.h"

namespace bvconn::test {

/// What the library is given in the place of a service object of the test's world, and reaches it
/// by: itself, or what hands every call on to it in a form of this system's.
std::shared_ptr<ServiceObject> reached(std::shared_ptr<ServiceObject> object);

}  // namespace bvconn::test
