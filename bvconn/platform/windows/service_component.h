#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "bvconn/platform/torvexlib/service_object.h"

namespace bvconn::detail {

/// The component `TorvexLib.<name>` as a service object, called by names; null where none is
/// registered for programs of this kind. It belongs to the thread that made it.
///
/// Throws `Error` with the system's number for one that is registered and cannot be made.
std::shared_ptr<ServiceObject> make_service_component(std::string_view name);

/// The identifier of a service object's interface as the settings have it, "" where they do not.
std::string service_interface_setting(std::string_view interface_name);

}  // namespace bvconn::detail
