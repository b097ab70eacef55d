#include "sandbox/commands/command.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <vector>

#include "bvconn/platform/conversions/nearest_names.h"

namespace bvconn::sandbox {
namespace {

constexpr std::array kCommands{
    Command{"disabled", "Show or replace the disabled methods that the data access layer tells",
            prepare_disabled},
};

int complain(const std::string& text, int status) {
  std::fputs(("bvsandbox: " + text + "\n").c_str(), stderr);
  return status;
}

int run(const Command& command, int argc, char** argv) {
  constexpr std::string_view kDefaultUrl = "http://127.0.0.1:8080";
  CLI::App app{std::string(command.summary)};
  app.name("bvsandbox " + std::string(command.name));
  std::string url(kDefaultUrl);
  app.add_option("--url", url, "The sandbox to ask")->envname("BVSANDBOX_URL");
  const RunCommand run = command.prepare(app);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kDoneStatus : kUsageStatus;
  }
  try {
    Client client(url);
    return run(client);
  } catch (const std::invalid_argument& error) {
    return complain(error.what(), kUsageStatus);
  } catch (const std::exception& error) {
    return complain(error.what(), kFailedStatus);
  }
}

}  // namespace

std::optional<int> run_command(int argc, char** argv) {
  if (argc < 2 || std::string_view(argv[1]).starts_with('-')) return std::nullopt;
  const std::string_view name = argv[1];
  const auto* const found = std::find_if(kCommands.begin(), kCommands.end(),
                                         [&](const Command& each) { return each.name == name; });
  // What follows the command is its own, as if it were a program.
  if (found != kCommands.end()) return run(*found, argc - 1, argv + 1);
  std::vector<std::string> names;
  for (const Command& each : kCommands) names.emplace_back(each.name);
  return complain("there is no command " + std::string(name) + did_you_mean(name, names),
                  kUsageStatus);
}

std::string commands_text() {
  std::string text = "Commands that ask a running sandbox (--help after one tells more):\n";
  for (const Command& each : kCommands) {
    constexpr std::size_t kWidth = 12;
    std::string name(each.name);
    name.resize(std::max(kWidth, name.size() + 1), ' ');
    text.append("  ").append(name).append(each.summary).append("\n");
  }
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
