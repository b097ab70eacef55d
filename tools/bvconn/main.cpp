#include <CLI/CLI.hpp>
#include <cstring>
#include <exception>
#include <functional>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "batch_command.h"
#include "call_command.h"
#include "command_line.h"
#include "completion_command.h"
#include "describe_command.h"
#include "help_texts.h"
#include "list_command.h"
#include "parity_command.h"
#include "skeleton_command.h"
#include "standard_output.h"
#include "status.h"
#include "support_commands.h"
#include "system.h"
#include "trace_options.h"

namespace {

using namespace bvconn::tool;

struct Subcommand {
  CLI::App* app;
  std::function<int()> run;
};

Subcommand add_list(CLI::App& app) {
  auto options = std::make_shared<ListOptions>();
  CLI::App* command = app.add_subcommand("list", "Show the public classes and their members");
  command->add_option("CLASS", options->class_name, "Only this class, with its members");
  command->add_flag("--json", options->json, "As data");
  return {command, [options] { return run_list(*options, std::cout, std::cerr); }};
}

Subcommand add_describe(CLI::App& app) {
  auto options = std::make_shared<DescribeOptions>();
  CLI::App* command =
      app.add_subcommand("describe", "Show what an operation sends, raises and logs");
  CLI::Option* const path =
      command->add_option("OPERATION", options->path, "CLASS.OPERATION; a class is listed");
  command->add_flag("--json", options->json, "As data");
  command->add_flag("--all", options->all, "Every operation; as data, one on each line")
      ->excludes(path);
  return {command, [options] { return run_describe(*options, std::cout, std::cerr); }};
}

Subcommand add_skeleton(CLI::App& app) {
  auto options = std::make_shared<SkeletonOptions>();
  CLI::App* command =
      app.add_subcommand("skeleton", "Print a line of a batch to fill in, with every argument");
  command->add_option("OPERATION", options->path, "CLASS.OPERATION")->required();
  command->add_flag("--call", options->shell, "A command line of call in its place");
  return {command, [options] { return run_skeleton(*options, std::cout, std::cerr); }};
}

Subcommand add_call(CLI::App& app) {
  struct All {
    CallOptions call;
    TraceOptions trace;
    ConnectionOptions connection;
    std::string form = "tree";
    bool json = false;
  };
  auto all = std::make_shared<All>();
  CLI::App* command = app.add_subcommand("call", "Call one operation");
  command->add_option("OPERATION", all->call.path, "CLASS.OPERATION")->required();
  command->add_option("ARGUMENTS", all->call.arguments, "NAME=VALUE, NAME=@FILE or NAME:=JSON");
  CLI::Option* output =
      command->add_option("--output", all->form, "Form of the answer: tree, json, xml or raw");
  output->type_name("FORM");
  command->add_flag("--json", all->json, "The same as --output json")->excludes(output);
  command->add_flag("--print-request", all->call.print_request,
                    "Print what would be sent on each route, and send nothing");
  command->add_flag("--show-exchange", all->call.show_exchange,
                    "Show on standard error what was sent and what came back, masked");
  add_trace_options(*command, all->trace);
  add_connection_options(*command, all->connection);
  return {command, [all] {
            CallOptions& call = all->call;
            call.form = output_form(all->json ? "json" : all->form);
            call.connection = resolve_connection(all->connection);
            call.shows_secrets = all->trace.shows_secrets;
            if (call.form == OutputForm::kRaw) all->trace.reply = std::make_shared<TappedReply>();
            call.reply = all->trace.reply;
            install_trace(all->trace);
            const int status = run_call(call, {.out = std::cout,
                                               .err = std::cerr,
                                               .out_terminal = Terminal::of(kStandardOutput),
                                               .err_terminal = Terminal::of(kStandardError)});
            return traced_status(all->trace, status, std::cerr);
          }};
}

Subcommand add_batch(CLI::App& app) {
  struct All {
    BatchOptions batch;
    TraceOptions trace;
    ConnectionOptions connection;
  };
  auto all = std::make_shared<All>();
  CLI::App* command =
      app.add_subcommand("batch", "Answer requests from standard input, one line of JSON each");
  command->add_flag("--fail", all->batch.fail, "End with 9 where some call failed");
  add_trace_options(*command, all->trace);
  add_connection_options(*command, all->connection, {"server", "session"});
  return {command, [all] {
            // Other programs depend on what a line means: nothing that they do not name counts.
            const bool named = all->connection.profile.has_value();
            all->batch.connection = resolve_connection(
                all->connection, named ? ConnectionSources::kAll : ConnectionSources::kOptions);
            install_trace(all->trace);
            return traced_status(all->trace, run_batch(all->batch, std::cout, std::cerr),
                                 std::cerr);
          }};
}

Subcommand add_parity(CLI::App& app) {
  struct All {
    ParityOptions parity;
    ConnectionOptions connection;
  };
  auto all = std::make_shared<All>();
  CLI::App* command =
      app.add_subcommand("parity", "Compare the answers of one call on both routes");
  command->add_option("OPERATION", all->parity.path, "CLASS.OPERATION")->required();
  command->add_option("ARGUMENTS", all->parity.arguments, "As of call");
  command->add_flag("--twice", all->parity.twice, "Compare an operation that saves, too");
  add_connection_options(*command, all->connection);
  return {command, [all] {
            all->parity.connection = resolve_connection(all->connection);
            return run_parity(all->parity, std::cout, std::cerr);
          }};
}

Subcommand add_completion(CLI::App& app) {
  auto shell = std::make_shared<std::string>();
  CLI::App* command = app.add_subcommand("completion", "Print the completion script of a shell");
  command->add_option("SHELL", *shell, "bash, zsh or fish")->required();
  return {command, [shell] { return run_completion(*shell, std::cout, std::cerr); }};
}

/// What the completion scripts ask: `bvconn complete -- WORDS`. No subcommand, so that the words of
/// another can be looked at without being understood.
int run_complete(const CLI::App& app, const std::vector<std::string>& words) {
  constexpr std::size_t kAsked = 2;
  const auto begin = words.begin() + static_cast<std::ptrdiff_t>(std::min(kAsked, words.size()));
  for (const std::string& each : completions({begin, words.end()}, command_words(app))) {
    std::cout << each << '\n';
  }
  return kDone;
}

int run(const std::vector<std::string>& words) {
  CLI::App app("Calls the operations of the connector library by name.", "bvconn");
  app.set_version_flag("--version", "bvconn " BVCONN_VERSION);
  app.require_subcommand(1);
  const std::vector<Subcommand> subcommands{
      add_list(app),  add_describe(app), add_skeleton(app),   add_call(app),
      add_batch(app), add_parity(app),   add_completion(app),
  };
  const SupportCommands support(app, BVCONN_VERSION);
  add_help_texts(app);
  if (!words.empty() && words.front() == "complete") return run_complete(app, words);
  try {
    // It wants the last one first.
    app.parse(std::vector<std::string>(words.rbegin(), words.rend()));
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);
    const std::string slip = explain_slip(app, words);
    std::cerr << "bvconn: " << (slip.empty() ? command_prefix(app, words) + error.what() : slip)
              << "\nRun with --help for more information.\n";
    return kNotUnderstood;
  }
  for (const Subcommand& each : subcommands) {
    if (each.app->parsed()) return each.run();
  }
  return support.run().value_or(kNotUnderstood);
}

int run_and_report(const std::vector<std::string>& words) {
  try {
    return run(words);
  } catch (const UsageError& error) {
    std::cerr << "bvconn: " << error.what() << '\n';
    return kNotUnderstood;
  } catch (const SettingsError& error) {
    std::cerr << "bvconn: " << error.what() << '\n';
    return kSettings;
  } catch (const std::exception& error) {
    std::cerr << "bvconn: internal failure: " << error.what() << '\n';
    return kFailed;
  }
}

}  // namespace

int main(int argc, char** argv) {
  survive_broken_pipes();
  hold_standard_files();
  StandardOutput output;
  const int status = run_and_report(command_line(argc, argv));
  const int failure = output.finish();
  if (failure == 0) return status;
  std::cerr << "bvconn: the output cannot be written: " << std::strerror(failure) << '\n';
  return kFailed;
}
