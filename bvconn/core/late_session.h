#pragma once

namespace bvconn {

/// Releases what `session()` gave to a caller that came after the thread had released its record,
/// if there is any, and all else that was made for late callers.
void release_late_session() noexcept;

}  // namespace bvconn
