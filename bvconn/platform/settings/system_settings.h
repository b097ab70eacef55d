#pragma once

#include <memory>

#include "bvconn/platform/settings/registry_access.h"

namespace bvconn::detail {

/// The settings where this system keeps them.
std::unique_ptr<RegistryAccess> make_settings();

}  // namespace bvconn::detail
