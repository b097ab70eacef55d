#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "bvconn/platform/torvexlib/service_object.h"
#include "bvconn/platform/windows/system.h"

namespace bvconn::detail {

/// The component `TorvexLib.<name>` as a service object, called by names; null where none is
/// registered for programs of this kind. It belongs to the thread that made it.
///
/// Throws `Error` with the system's number for one that is registered and cannot be made.
std::shared_ptr<ServiceObject> make_service_component(std::string_view name);

/// Whether the component is registered, by what the system answered to the question for its class.
/// Throws `Error` where that says neither.
bool is_registered(std::string_view name, HRESULT result);

/// The identifier of a service object's interface as the settings have it, "" where they do not.
std::string service_interface_setting(std::string_view interface_name);

}  // namespace bvconn::detail
