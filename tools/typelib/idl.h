#pragma once

#include <string>

namespace bvconn::typelib {

/// The whole type library in the interface definition language, for `widl -t`. It needs no other
/// file.
std::string library_idl();

}  // namespace bvconn::typelib
