#pragma once

#include <span>

#include "library_settings.h"

namespace bvconn::tool {

/// The settings that the library has on this system alone. Their values are words.
std::span<const LibrarySetting> own_settings();

}  // namespace bvconn::tool
