#pragma once

#include <string>
#include <string_view>

namespace bvconn {

/// Appends bytes to a file in one write, creating the file (for its owner alone) when it is missing.
/// Fails with `Error` 0x80041003, source "SessionLogger", naming the file and the reason.
void append_to_file(const std::string& path, std::string_view bytes);

}  // namespace bvconn
