#pragma once

#include <memory>

#include "bvconn/platform/torvexlib/service_object.h"

namespace bvconn::test {

/// How the components of tests give the text of an operation.
enum class TextForm { kResult, kReference };

/// The component `TorvexLib.<name>`, as the library makes it, in front of the object: what it is
/// called with it hands on, and so the answer. Arguments in another form than the operation's own
/// fail the running test.
std::shared_ptr<ServiceObject> by_component(std::shared_ptr<ServiceObject> object, TextForm form);

}  // namespace bvconn::test
