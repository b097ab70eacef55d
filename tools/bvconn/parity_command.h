#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "connection_options.h"

namespace bvconn::tool {

struct ParityOptions {
  std::string path;                    ///< CLASS.OPERATION
  std::vector<std::string> arguments;  ///< as of a call
  Connection connection;               ///< with the address of the data access layer
  bool twice = false;                  ///< also what saves
};

/// `bvconn parity`: the same call on both routes, and where the answers differ. The exit status is
/// kDone where they are equal.
int run_parity(const ParityOptions& options, std::ostream& out, std::ostream& err);

}  // namespace bvconn::tool
