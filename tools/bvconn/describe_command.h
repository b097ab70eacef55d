#pragma once

#include <ostream>
#include <string>

namespace bvconn::tool {

struct DescribeOptions {
  std::string path;  ///< CLASS.OPERATION; a class or "" lists
  bool json = false;
  bool all = false;  ///< every operation of the interface, in its order
};

/// `bvconn describe`: what an operation sends, asks and raises. Gives the exit status.
int run_describe(const DescribeOptions& options, std::ostream& out, std::ostream& err);

}  // namespace bvconn::tool
