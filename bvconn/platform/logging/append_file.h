#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace bvconn {

/// Appends bytes to a file in one write, so that lines of several writers never mix. The file and
/// the folders of its path are made (for their owner alone) when they are missing. Fails with
/// `Error` 0x80041003, source "SessionLogger", naming the file and the reason.
///
/// A file that would grow beyond `max_bytes` is put aside first: it becomes `path.1`, in the place
/// of an older one. 0 is no bound. Where it cannot be put aside it goes on growing. Writers of
/// any number of threads and processes lose nothing over that: all that use these functions agree
/// by a lock on the file, with or without a bound of their own.
void append_to_file(const std::string& path, std::string_view bytes, std::uint64_t max_bytes = 0);

/// The same, without an error: whether the bytes were written.
bool try_append_to_file(const std::string& path, std::string_view bytes,
                        std::uint64_t max_bytes = 0);

}  // namespace bvconn
