#pragma once

#include "bvconn/component/abi.h"

namespace bvconn::component {

/// What hosts ask when a call failed: `LastExchange`, the calling thread's, masked, as text of JSON
/// ("null" for none); `Explain` of an error's number; `Version`. A new object with one reference.
IDispatchAbi* make_support_object();

}  // namespace bvconn::component
