#pragma once

#include "bvconn/platform/export.h"

/// For programs that people interrupt; not a part of the interface.
namespace bvconn::detail {

/// Ends every exchange of the process that runs, on both routes and within about a second, and
/// every one that begins, until it is called with false. They fail like those whose connection was
/// lost, with what is known of their outcome. A signal handler may call it.
BVCONN_EXPORT void interrupt_exchanges(bool yes) noexcept;

BVCONN_EXPORT bool exchanges_are_interrupted() noexcept;

}  // namespace bvconn::detail
