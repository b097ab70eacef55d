#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace bvconn::tool {

struct CallOptions {
  std::string path;                    ///< CLASS.OPERATION
  std::vector<std::string> arguments;  ///< NAME=VALUE, NAME=@FILE, NAME:=JSON
  bool json = false;
  /// Shows what would be sent, and sends nothing.
  bool print_request = false;
  bool shows_secrets = false;
};

/// `bvconn call`: one call, its answer to `out`, what went wrong to `err`. Gives the exit status.
int run_call(const CallOptions& options, std::ostream& out, std::ostream& err);

}  // namespace bvconn::tool
