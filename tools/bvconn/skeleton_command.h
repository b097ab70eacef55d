#pragma once

#include <ostream>
#include <string>

namespace bvconn::tool {

struct SkeletonOptions {
  std::string path;    ///< CLASS.OPERATION
  bool shell = false;  ///< a command line of `bvconn call` in place of a line of `bvconn batch`
};

/// `bvconn skeleton`: a call to fill in, with every argument: required ones with a placeholder of
/// the right type, optional ones with their defaults. Gives the exit status.
int run_skeleton(const SkeletonOptions& options, std::ostream& out, std::ostream& err);

}  // namespace bvconn::tool
