#pragma once

#include <stdexcept>
#include <string>

#include "bvconn/platform/settings/toml_reader.h"

namespace bvconn::sandbox {

/// What a file in TOML holds. Throws std::runtime_error, which names the file and says in one line
/// why it cannot be read or is no TOML.
toml::table read_toml_file(const std::string& file);

}  // namespace bvconn::sandbox
