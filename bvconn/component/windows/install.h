#pragma once

#include <string>

#include "bvconn/component/abi.h"

/// Where hosts find the library: keys of the system's registry, below `Software\Classes`.
namespace bvconn::component {

/// The file that this code was loaded from.
std::wstring library_file();

enum class Whom { kMachine, kUser };

/// Writes the keys of all classes, over any that are there. Where one is refused it deletes those
/// again.
Hresult install_classes(Whom whom) noexcept;
/// Deletes them, with what else lies in them, and leaves none of them behind; what is not there is
/// no failure, and one that is refused keeps no other one. Names that another library of ours is
/// registered by too (one of 32 bits beside one of 64) stay as long as that one does; so do the
/// classes that another file has been registered for since, as long as it exists.
Hresult remove_classes(Whom whom) noexcept;

}  // namespace bvconn::component
