#pragma once

#include <functional>

#include "bvconn/component/abi.h"

namespace bvconn::component {

/// Makes an object with one reference; may throw.
using ObjectMaker = std::function<IDispatchAbi*()>;

/// A class factory with one reference. What the maker throws becomes a result code:
/// kOutOfMemory, the number of an `Error` where that is a failure, else kFailed.
IClassFactoryAbi* make_class_factory(ObjectMaker maker);

/// The maker of a class that a host may ask for; an empty one for a class that is not available.
ObjectMaker maker_of(const Guid& class_id);

}  // namespace bvconn::component
