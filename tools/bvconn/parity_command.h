#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace bvconn::tool {

struct ParityOptions {
  std::string path;                    ///< CLASS.OPERATION
  std::vector<std::string> arguments;  ///< as of a call
  std::string dal_url;
  std::string user;
  std::string password_file;
  std::string sales_org;
  std::string app_version;
  bool twice = false;  ///< also what saves
};

/// `bvconn parity`: the same call on both routes, and where the answers differ. The exit status is
/// kDone where they are equal.
int run_parity(const ParityOptions& options, std::ostream& out, std::ostream& err);

}  // namespace bvconn::tool
