#pragma once

#include "bvconn/platform/error.h"

namespace bvconn {

/// The exception that is being handled, as the one type that leaves an operation: an `Error` as it
/// is, lack of memory as 7, anything else as 0x80004005 with its words. To be called in a handler.
///
/// The end of a thread by `pthread_exit` or `pthread_cancel` is no exception of anybody's: it goes
/// on its way, past the handler.
Error live_error();

/// Runs `body` and lets nothing but an `Error` out of it.
template <class Body>
auto only_errors(Body&& body) -> decltype(body()) {
  try {
    return body();
  } catch (const Error&) {
    throw;
  } catch (...) {
    throw live_error();
  }
}

}  // namespace bvconn
