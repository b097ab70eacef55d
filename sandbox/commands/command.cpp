#include "sandbox/commands/command.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <vector>

#include "bvconn/platform/conversions/nearest_names.h"
#include "sandbox/command_line.h"
#include "sandbox/own_files.h"
#include "sandbox/tls/tls_source.h"

namespace bvconn::sandbox {
namespace {

constexpr std::array kCommands{
    Command{"disabled", "Show or replace the disabled methods that the data access layer tells",
            prepare_disabled},
    Command{"stubs", "Set, list or take back answers of your own", prepare_stubs},
    Command{"faults", "Let calls go wrong: add, list, remove and clear faults", prepare_faults},
    Command{"journal", "Show the exchanges that were made, or one of them whole", prepare_journal},
    Command{"verify", "Check how often an operation was asked for", prepare_verify},
    Command{"reset", "Put back what the store held when it was new", prepare_reset},
    Command{"snapshot", "Keep what the store holds under a name, or list what is kept",
            prepare_snapshot},
    Command{"restore", "Put back what was kept under a name", prepare_restore},
};

constexpr std::array kServices{
    Service{"record", "Pass requests on to a server and record the exchanges", run_record},
    Service{"replay", "Answer from a recording and go nowhere else", run_replay},
};

/// Runs something that gives the exit status; what it throws is told in one line.
template <class Body>
int status_of(const Body& body) {
  try {
    return body();
  } catch (const std::invalid_argument& error) {
    return complain(error.what(), kUsageStatus);
  } catch (const std::exception& error) {
    return complain(error.what(), kFailedStatus);
  }
}

/// That of a sandbox that this user has started by --tls.
std::string usual_authority_file() {
  const std::string folder = default_tls_folder();
  if (folder.empty()) return {};
  const std::string file = authority_file_in(folder);
  std::error_code unreachable;
  return std::filesystem::exists(file, unreachable) ? file : "";
}

int run(const Command& command, int argc, char** argv) {
  constexpr std::string_view kDefaultUrl = "http://127.0.0.1:8080";
  CLI::App app{std::string(command.summary)};
  app.name("bvsandbox " + std::string(command.name));
  std::string url(kDefaultUrl);
  app.add_option("--url", url, "The sandbox to ask")->envname("BVSANDBOX_URL");
  std::string token_file;
  app.add_option("--admin-token-file", token_file, "The file with what administering it takes")
      ->envname("BVSANDBOX_ADMIN_TOKEN_FILE");
  std::string authority_file = usual_authority_file();
  app.add_option("--tls-authority", authority_file,
                 "The file of the authority to trust for https, besides the system's; without it, "
                 "the one that --tls keeps")
      ->envname("BVSANDBOX_TLS_AUTHORITY");
  const RunCommand run = command.prepare(app);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return tell(app, error);
  }
  return status_of([&] {
    Client client(url, {.authority_file = authority_file,
                        .token = token_file.empty() ? "" : word_of_file(token_file)});
    return run(client);
  });
}

template <class Table>
auto find_by_name(const Table& table, std::string_view name) {
  return std::find_if(table.begin(), table.end(),
                      [&](const auto& each) { return each.name == name; });
}

template <class Table>
void list(std::string& text, const Table& table) {
  for (const auto& each : table) {
    constexpr std::size_t kWidth = 12;
    std::string name(each.name);
    name.resize(std::max(kWidth, name.size() + 1), ' ');
    text.append("  ").append(name).append(each.summary).append("\n");
  }
}

}  // namespace

std::optional<int> run_command(int argc, char** argv) {
  if (argc < 2 || std::string_view(argv[1]).starts_with('-')) return std::nullopt;
  const std::string_view name = argv[1];
  // What follows the command is its own, as if it were a program.
  const auto* const command = find_by_name(kCommands, name);
  if (command != kCommands.end()) return run(*command, argc - 1, argv + 1);
  const auto* const service = find_by_name(kServices, name);
  if (service != kServices.end()) {
    return status_of([&] { return service->run(argc - 1, argv + 1); });
  }
  std::vector<std::string> names;
  for (const Command& each : kCommands) names.emplace_back(each.name);
  for (const Service& each : kServices) names.emplace_back(each.name);
  return complain("there is no command " + std::string(name) + did_you_mean(name, names),
                  kUsageStatus);
}

std::string commands_text() {
  std::string text = "Commands that ask a running sandbox (--help after one tells more):\n";
  list(text, kCommands);
  text.append("Commands that serve by themselves:\n");
  list(text, kServices);
  return text;
}

int show(const ClientReply& reply) {
  const bool is_good = reply.status >= 200 && reply.status < 300;
  std::FILE* const stream = is_good ? stdout : stderr;
  std::fwrite(reply.body.data(), 1, reply.body.size(), stream);
  if (!reply.body.empty() && !reply.body.ends_with('\n')) std::fputc('\n', stream);
  return is_good ? kDoneStatus : kFailedStatus;
}

}  // namespace bvconn::sandbox
