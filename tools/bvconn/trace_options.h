#pragma once

#include <CLI/CLI.hpp>

#include <memory>
#include <ostream>
#include <string>

#include "reply_tap.h"

namespace bvconn::tool {

/// Options of the subcommands that call: what is seen of the platform.
struct TraceOptions {
  std::string file;
  std::string mask;
  bool shows_secrets = false;
  /// Where the replies are to be kept, if anywhere.
  std::shared_ptr<TappedReply> reply;
  /// Where the trace goes, once it is installed.
  std::shared_ptr<std::ostream> stream;
};

void add_trace_options(CLI::App& command, TraceOptions& options);

/// Puts mask, tap and trace in force, before the library is used for the first time.
/// @throws UsageError
void install_trace(TraceOptions& options);

/// The exit status of what was traced: where all went well but for the trace, which could not be
/// written, that is said and counts.
int traced_status(const TraceOptions& options, int status, std::ostream& err);

}  // namespace bvconn::tool
