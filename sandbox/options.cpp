#include "sandbox/options.h"

#include <CLI/CLI.hpp>
#include <vector>

#include "sandbox/commands/command.h"

namespace bvconn::sandbox {
namespace {

std::chrono::milliseconds milliseconds(std::int64_t count) {
  return std::chrono::milliseconds(count);
}

}  // namespace

std::optional<int> read_options(int argc, char** argv, Options& options) {
  CLI::App app{
      "A local server that speaks the protocol of the sales application: SOAP on /soap, the data\n"
      "access layer on /dal. It listens on 127.0.0.1 and prints one line of JSON when it is "
      "ready."};
  app.name("bvsandbox");
  app.footer(commands_text());
  std::string file;
  bool in_memory = true;
  std::vector<std::uint64_t> seed;
  std::int64_t request_ms = options.limits.request.count();
  std::int64_t idle_ms = options.limits.idle.count();

  app.add_option("--port", options.port, "Port to listen on; 0 takes a free one (the default)");
  auto* const db = app.add_option(
      "--db", file, "Keep the documents in this SQLite file, or in the database postgresql://...");
  auto* const memory =
      app.add_flag("--memory", in_memory, "Keep the documents in memory (the default)");
  db->excludes(memory);
  auto* const seeded = app.add_option(
      "--seed", seed, "Make the data of a new store from this number (1 when none is given)");
  seeded->expected(0, 1);
  app.add_option("--disabled", options.disabled_services,
                 "The disabled methods that the DAL tells, as 'urn:HeartBeatService.beat|'");
  app.add_flag("--until-eof", options.until_eof, "End when standard input does");
  app.add_flag("--verbose", options.verbose, "Write a line for each request to standard error");
  app.add_option("--max-body-bytes", options.limits.body_bytes, "Largest request body")
      ->check(CLI::PositiveNumber);
  app.add_option("--request-deadline-ms", request_ms, "Time for a request to arrive")
      ->check(CLI::PositiveNumber);
  app.add_option("--idle-deadline-ms", idle_ms, "Time that a connection may rest between requests")
      ->check(CLI::PositiveNumber);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : kUsageStatus;
  }
  if (*db) options.database = file;
  if (!seed.empty()) options.seed = seed.front();
  options.limits.request = milliseconds(request_ms);
  options.limits.idle = milliseconds(idle_ms);
  return std::nullopt;
}

}  // namespace bvconn::sandbox
