#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "answer_printer.h"
#include "arguments.h"
#include "connection_options.h"

namespace bvconn::tool {

struct CallOptions {
  std::string path;                    ///< CLASS.OPERATION
  std::vector<std::string> arguments;  ///< NAME=VALUE, NAME=@FILE, NAME:=JSON
  Connection connection;
  OutputForm form = OutputForm::kTree;
  /// What the platform's tap sees; of the form kRaw alone.
  std::shared_ptr<const TappedReply> reply;
  /// Shows what would be sent, and sends nothing.
  bool print_request = false;
  bool shows_secrets = false;
  /// Shows on standard error what was sent and what came back.
  bool show_exchange = false;
};

/// The same texts with what the files hold in the place of each @FILE, to be read as arguments
/// again: a file may be a pipe, which is read but once. @throws UsageError
std::vector<std::string> with_files_read(std::vector<std::string> texts);

/// The arguments of a command line; server and session identifier from the connection where they
/// are not given. @throws UsageError
CallArguments read_arguments(const automation::Member& member,
                             const std::vector<std::string>& texts,
                             const Connection& connection = {});

/// `bvconn call`: one call, by the data access layer where the connection names one. Gives the exit
/// status.
int run_call(const CallOptions& options, const AnswerPrinter::Streams& streams);

}  // namespace bvconn::tool
