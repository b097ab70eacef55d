#pragma once

#include <string>
#include <string_view>

namespace bvconn {

/// Appends bytes to a file in one write, so that lines of several writers never mix. The file and
/// the folders of its path are made (for their owner alone) when they are missing. Fails with
/// `Error` 0x80041003, source "SessionLogger", naming the file and the reason.
void append_to_file(const std::string& path, std::string_view bytes);

/// The same, without an error: whether the bytes were written.
bool try_append_to_file(const std::string& path, std::string_view bytes);

}  // namespace bvconn
