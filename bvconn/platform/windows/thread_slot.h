#pragma once

namespace bvconn::detail {

/// Releases at once what all threads keep. None of them may ask for anything afterwards: a library
/// that is about to be unloaded calls this, since a thread's end would call into it.
void release_all_threads() noexcept;

}  // namespace bvconn::detail
