#pragma once

#include "bvconn/component/abi.h"

/// Where hosts find the library: values in the current user's settings, see docs/component.md.
namespace bvconn::component {

Hresult register_classes() noexcept;
Hresult unregister_classes() noexcept;

}  // namespace bvconn::component
