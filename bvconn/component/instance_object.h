#pragma once

#include "bvconn/automation/interface.h"
#include "bvconn/component/abi.h"

namespace bvconn::component {

/// A new instance of a class of the interface as an object that answers by name, with one
/// reference. One whose class has events offers a connection point for them under the identifier
/// `events`: the events' numbers are their places among the class's events, counted from 1.
///
/// Throws what the instance's construction throws.
IDispatchAbi* make_instance_object(const automation::ClassInfo& info, const Guid& events);

}  // namespace bvconn::component
