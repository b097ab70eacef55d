#pragma once

#include <utility>

#include "bvconn/platform/error.h"

namespace bvconn {

/// `Error::described_as` its own description, for an error that nobody needs any longer: nothing is
/// copied.
inline Error without_help(Error error) {
  error.helpFile.clear();
  error.helpContext = 0;
  return error;
}

}  // namespace bvconn
