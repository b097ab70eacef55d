#pragma once

#include <istream>
#include <ostream>

#include "connection_options.h"

namespace bvconn::tool {

struct BatchOptions {
  Connection connection;
  /// Tell with the exit status where a call failed.
  bool fail = false;
};

/// `bvconn batch`: requests from standard input, answers to `out`, each at once. Gives the exit
/// status.
int run_batch(const BatchOptions& options, std::ostream& out, std::ostream& err);

}  // namespace bvconn::tool
