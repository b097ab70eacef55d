#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "arguments.h"
#include "connection_options.h"

namespace bvconn::tool {

struct CallOptions {
  std::string path;                    ///< CLASS.OPERATION
  std::vector<std::string> arguments;  ///< NAME=VALUE, NAME=@FILE, NAME:=JSON
  Connection connection;
  bool json = false;
  /// Shows what would be sent, and sends nothing.
  bool print_request = false;
  bool shows_secrets = false;
  /// Shows on standard error what was sent and what came back.
  bool show_exchange = false;
};

/// The arguments of a command line; server and session identifier from the connection where they
/// are not given. @throws UsageError
CallArguments read_arguments(const automation::Member& member,
                             const std::vector<std::string>& texts,
                             const Connection& connection = {});

/// `bvconn call`: one call, its answer to `out`, what went wrong to `err`. Gives the exit status.
int run_call(const CallOptions& options, std::ostream& out, std::ostream& err);

}  // namespace bvconn::tool
