#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "arguments.h"

namespace bvconn::tool {

struct CallOptions {
  std::string path;                    ///< CLASS.OPERATION
  std::vector<std::string> arguments;  ///< NAME=VALUE, NAME=@FILE, NAME:=JSON
  bool json = false;
  /// Shows what would be sent, and sends nothing.
  bool print_request = false;
  bool shows_secrets = false;
  /// Shows on standard error what was sent and what came back.
  bool show_exchange = false;
};

/// The arguments of a command line. @throws UsageError
CallArguments read_arguments(const automation::Member& member,
                             const std::vector<std::string>& texts);
/// The password in a file, without the line end behind it.
std::string password_from(const std::string& file);

/// `bvconn call`: one call, its answer to `out`, what went wrong to `err`. Gives the exit status.
int run_call(const CallOptions& options, std::ostream& out, std::ostream& err);

}  // namespace bvconn::tool
