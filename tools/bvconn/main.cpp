#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "batch.h"
#include "bvconn/platform/platform.h"
#include "call_command.h"
#include "command_line.h"
#include "completion_command.h"
#include "describe_command.h"
#include "list_command.h"
#include "parity_command.h"
#include "skeleton_command.h"
#include "support_commands.h"
#include "trace_platform.h"

namespace {

using namespace bvconn;

constexpr std::string_view kExamples = R"(
Examples:
  bvconn list                               the public classes
  bvconn list BVInvoiceConnector            the members of one, with their arguments
  bvconn describe BVInvoiceConnector.GetInvoice
                                            what it sends on each route, raises and logs
  bvconn skeleton BVInvoiceConnector.GetInvoice
                                            a line of a batch to fill in
  bvconn call BVInvoiceConnector.GetInvoice aServerURL=http://127.0.0.1:8080/ \
      aSessionID=S strInvoiceUID=U1         one call; prints the node that it gives
  bvconn call BVGenericConnector.Send aService=urn:Postal aMethod=getCountries \
      aRootNodeName=param aSoapNode=@request.xml aServerURL=http://127.0.0.1:8080/ --trace -
                                            the node from a file, the trace to standard error
  echo '{"id":1,"get":"BVMethods.Beat"}' | bvconn batch
                                            requests as lines of JSON, answers likewise

Values of call: NAME=VALUE by the argument's type (text, true, 12, XML for a node, a JSON array,
null for an empty reference), NAME=@FILE from a file (@- is standard input), NAME=@@TEXT for a text
that begins with @, NAME:=JSON in the form that a batch takes.

Exit status: 0 done, 1 the call failed, 2 not understood.)";

struct TraceOptions {
  std::string file;
  std::string mask;
  bool shows_secrets = false;
};

void add_trace_options(CLI::App& command, TraceOptions& options) {
  command
      .add_option("--trace", options.file,
                  "Write what the library does to FILE, as lines of JSON (- is standard error)")
      ->type_name("FILE");
  command.add_option("--mask", options.mask, "Mask of the log levels in force (decimal or 0x...)")
      ->type_name("N");
  command.add_flag("--trace-secrets", options.shows_secrets, "Show passwords in the trace");
}

bool is_mask(std::string_view text) {
  const bool hex = text.starts_with("0x") || text.starts_with("0X");
  if (hex) text.remove_prefix(2);
  std::uint32_t mask = 0;
  const auto [end, error] =
      std::from_chars(text.data(), text.data() + text.size(), mask, hex ? 16 : 10);
  return error == std::errc() && end == text.data() + text.size();
}

/// A trace holds what the application sends: the file is its owner's alone.
std::shared_ptr<std::ostream> open_trace(const std::string& name) {
  if (name == "-") return {&std::cerr, [](std::ostream*) {}};
  constexpr int kOwnerOnly = 0600;
  const int file = ::open(name.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, kOwnerOnly);
  if (file >= 0) ::close(file);
  auto stream = std::make_shared<std::ofstream>(name, std::ios::binary);
  if (file < 0 || !stream->is_open()) throw tool::UsageError("--trace: cannot write " + name);
  return stream;
}

/// Puts mask and trace in force, before the library is used for the first time.
void install_trace(const TraceOptions& options) {
  if (!options.mask.empty()) {
    if (!is_mask(options.mask)) throw tool::UsageError("--mask: a number is expected");
    ::setenv("BVCONN_LOG_MASK", options.mask.c_str(), 1);
  }
  if (options.file.empty()) return;
  auto trace = std::make_shared<tool::Trace>(open_trace(options.file), options.shows_secrets);
  platform::install(tool::traced(platform::system_platform(), std::move(trace)));
}

int run_batch() {
  // Reading a folder fails in a way that a stream takes for the end of the input.
  struct stat input {};
  if (::fstat(STDIN_FILENO, &input) == 0 && S_ISDIR(input.st_mode)) {
    throw tool::UsageError("standard input is a folder");
  }
  tool::Batch batch([](std::string_view line) { std::cout << line << std::endl; });
  std::string line;
  while (std::cout && std::getline(std::cin, line)) {
    batch.run(line);
  }
  return std::cout && !std::cin.bad() ? batch.status() : tool::kFailed;
}

/// What the completion scripts ask: `bvconn complete -- WORDS`. No subcommand, so that the words of
/// another can be looked at without being understood.
int run_complete(const CLI::App& app, int argc, char** argv) {
  constexpr int kFirstWord = 3;
  std::vector<tool::CommandWords> commands;
  for (const CLI::App* each : app.get_subcommands([](const CLI::App*) { return true; })) {
    tool::CommandWords words{.name = each->get_name(), .options = {}};
    for (const CLI::Option* option : each->get_options()) {
      for (const std::string& name : option->get_lnames()) words.options.push_back("--" + name);
    }
    commands.push_back(std::move(words));
  }
  const std::vector<std::string> words(argv + std::min(argc, kFirstWord), argv + argc);
  for (const std::string& each : tool::completions(words, commands)) std::cout << each << '\n';
  return std::cout.flush() ? tool::kDone : tool::kFailed;
}

CLI::App* add_parity(CLI::App& app, tool::ParityOptions& options,
                     tool::ConnectionOptions& connection) {
  CLI::App* command =
      app.add_subcommand("parity", "Compare the answers of one call on both routes");
  command->add_option("OPERATION", options.path, "CLASS.OPERATION")->required();
  command->add_option("ARGUMENTS", options.arguments, "As of call");
  command->add_flag("--twice", options.twice, "Compare an operation that saves, too");
  tool::add_connection_options(*command, connection);
  return command;
}

int run(int argc, char** argv) {
  CLI::App app("Calls the operations of the connector library by name.", "bvconn");
  app.set_version_flag("--version", "bvconn " BVCONN_VERSION);
  app.footer(std::string(kExamples));
  app.require_subcommand(1);

  tool::ListOptions list;
  CLI::App* list_command = app.add_subcommand("list", "Show the public classes and their members");
  list_command->add_option("CLASS", list.class_name, "Only this class, with its members");
  list_command->add_flag("--json", list.json, "As data");

  tool::CallOptions call;
  TraceOptions trace;
  CLI::App* call_command = app.add_subcommand("call", "Call one operation");
  call_command->add_option("OPERATION", call.path, "CLASS.OPERATION")->required();
  call_command->add_option("ARGUMENTS", call.arguments, "NAME=VALUE, NAME=@FILE or NAME:=JSON");
  call_command->add_flag("--json", call.json, "Print the answer in the form of a batch");
  call_command->add_flag("--print-request", call.print_request,
                         "Print what would be sent on each route, and send nothing");
  call_command->add_flag("--show-exchange", call.show_exchange,
                         "Show on standard error what was sent and what came back, masked");
  add_trace_options(*call_command, trace);
  tool::ConnectionOptions connection;
  tool::add_connection_options(*call_command, connection);

  tool::DescribeOptions describe;
  CLI::App* describe_command =
      app.add_subcommand("describe", "Show what an operation sends, raises and logs");
  describe_command->add_option("OPERATION", describe.path, "CLASS.OPERATION; a class is listed");
  describe_command->add_flag("--json", describe.json, "As data");

  tool::SkeletonOptions skeleton;
  CLI::App* skeleton_command =
      app.add_subcommand("skeleton", "Print a line of a batch to fill in, with every argument");
  skeleton_command->add_option("OPERATION", skeleton.path, "CLASS.OPERATION")->required();
  skeleton_command->add_flag("--call", skeleton.shell, "A command line of call in its place");

  tool::ParityOptions parity;
  CLI::App* parity_command = add_parity(app, parity, connection);

  std::string shell;
  CLI::App* completion_command =
      app.add_subcommand("completion", "Print the completion script of a shell");
  completion_command->add_option("SHELL", shell, "bash, zsh or fish")->required();

  CLI::App* batch_command =
      app.add_subcommand("batch", "Answer requests from standard input, one line of JSON each");
  add_trace_options(*batch_command, trace);

  const tool::SupportCommands support(app, BVCONN_VERSION);
  if (argc > 1 && std::string_view(argv[1]) == "complete") return run_complete(app, argc, argv);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? tool::kDone : tool::kNotUnderstood;
  }
  if (list_command->parsed()) return tool::run_list(list, std::cout, std::cerr);
  if (describe_command->parsed()) return tool::run_describe(describe, std::cout, std::cerr);
  if (skeleton_command->parsed()) return tool::run_skeleton(skeleton, std::cout, std::cerr);
  if (parity_command->parsed()) {
    parity.connection = tool::resolve_connection(connection);
    return tool::run_parity(parity, std::cout, std::cerr);
  }
  if (completion_command->parsed()) return tool::run_completion(shell, std::cout, std::cerr);
  if (const auto status = support.run()) return *status;
  call.shows_secrets = trace.shows_secrets;
  call.connection = tool::resolve_connection(connection);
  install_trace(trace);
  return batch_command->parsed() ? run_batch() : tool::run_call(call, std::cout, std::cerr);
}

}  // namespace

int main(int argc, char** argv) {
  // A reader that went away is an error of the write, not the end of this process.
  std::signal(SIGPIPE, SIG_IGN);
  try {
    return run(argc, argv);
  } catch (const bvconn::tool::UsageError& error) {
    std::cerr << "bvconn: " << error.what() << '\n';
    return bvconn::tool::kNotUnderstood;
  } catch (const bvconn::tool::SettingsError& error) {
    std::cerr << "bvconn: " << error.what() << '\n';
    return bvconn::tool::kSettings;
  } catch (const std::exception& error) {
    std::cerr << "bvconn: internal failure: " << error.what() << '\n';
    return bvconn::tool::kFailed;
  }
}
