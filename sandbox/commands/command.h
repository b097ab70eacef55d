#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "sandbox/http/client.h"

namespace CLI {
class App;
}

namespace bvconn::sandbox {

/// What a command does once its arguments are read; gives the exit status. What it throws as
/// std::exception is told in one line, and is kFailedStatus.
using RunCommand = std::function<int(Client& client)>;

/// A subcommand of bvsandbox, which asks a sandbox that runs already.
struct Command {
  std::string_view name;
  std::string_view summary;
  /// Adds its options and arguments; --url is there for all.
  RunCommand (*prepare)(CLI::App& command);
};

inline constexpr int kDoneStatus = 0;
/// The sandbox refused, does not answer, or what was asked for is not so.
inline constexpr int kFailedStatus = 1;
inline constexpr int kUsageStatus = 2;

/// A subcommand that serves by itself instead: its arguments stand behind its name. What `run`
/// throws is told as that of the others.
struct Service {
  std::string_view name;
  std::string_view summary;
  int (*run)(int argc, char** argv);
};

/// The exit status where the first argument is a word that names a command; nothing where the
/// program is to serve.
std::optional<int> run_command(int argc, char** argv);

/// The commands and what each does, a line for each.
std::string commands_text();

/// Prints what the sandbox answered: to standard output, or to standard error where it refused.
int show(const ClientReply& reply);

// The commands, each in a source of its own.
RunCommand prepare_disabled(CLI::App& command);
RunCommand prepare_stubs(CLI::App& command);
RunCommand prepare_faults(CLI::App& command);
RunCommand prepare_journal(CLI::App& command);
RunCommand prepare_verify(CLI::App& command);
RunCommand prepare_reset(CLI::App& command);
RunCommand prepare_snapshot(CLI::App& command);
RunCommand prepare_restore(CLI::App& command);

// The services, each in a folder of its own.
int run_record(int argc, char** argv);
int run_replay(int argc, char** argv);

}  // namespace bvconn::sandbox
