#include "sandbox/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <limits>
#include <stdexcept>
#include <vector>

#include "sandbox/command_line.h"
#include "sandbox/commands/command.h"
#include "sandbox/config_file.h"
#include "sandbox/http/address.h"
#include "sandbox/own_files.h"

namespace bvconn::sandbox {
namespace {

constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kLongest_ms = 24LL * 60 * 60 * 1000;

std::chrono::milliseconds milliseconds(std::int64_t count) {
  return std::chrono::milliseconds(count);
}

/// Refuses what no header Host says in front of its port.
std::string trouble_with_host(const std::string& text) {
  const bool in_brackets = text.starts_with('[') && text.ends_with(']');
  if (!text.empty() && text.find_first_of(in_brackets ? "/ " : "/ :") == std::string::npos) {
    return {};
  }
  return "'" + text + "' is no host name, expected one such as sandbox.example, without a port";
}

/// What the options are read into where that is not their place in Options.
struct Given {
  std::string database;
  bool in_memory = true;
  std::vector<std::uint64_t> seed;
  std::int64_t request_ms = 0;
  std::int64_t idle_ms = 0;
  std::string config;
  std::string admin_token_file;
};

void add_data_options(CLI::App& app, Options& options, Given& given) {
  auto* const db =
      app.add_option("--db", given.database,
                     "Keep the documents in this SQLite file, or in the database postgresql://...");
  db->type_name("FILE");
  db->excludes(
      app.add_flag("--memory", given.in_memory, "Keep the documents in memory (the default)"));
  auto* const seeded = app.add_option(
      "--seed", given.seed, "Make the data of a new store from this number (1 when none is given)");
  seeded->expected(0, 1);
  seeded->check(whole_number(0, kLargest));
  app.add_option("--disabled", options.disabled_services,
                 "The disabled methods that the DAL tells, as 'urn:HeartBeatService.beat|'")
      ->check(CLI::Validator(trouble_with_disabled, ""));
  app.add_option("--faults", options.fault_files, "What goes wrong from the start, in TOML")
      ->type_name("FILE")
      ->allow_extra_args(false);
}

void add_server_options(CLI::App& app, Options& options, Given& given) {
  add_serving_options(app, options.serving,
                      "Address to listen on, 127.0.0.1 without it; one that other machines can "
                      "reach needs --admin-token-file");
  app.add_option("--admin-token-file", given.admin_token_file,
                 "Ask whoever administers it for the word in this file")
      ->type_name("FILE");
  app.add_option("--allowed-host", options.allowed_hosts,
                 "Show the page and be administered by this name too, without a port")
      ->type_name("NAME")
      ->check(CLI::Validator(trouble_with_host, ""))
      ->allow_extra_args(false);
  app.add_flag("--loose", options.loose,
               "Answer requests that differ from what the library sends, with a warning in the "
               "journal");
  app.add_option("--journal-count", options.journal.count,
                 "Keep so many exchanges in the journal, 1000 without it; 0 for none");
  app.add_option("--journal-bytes", options.journal.bytes,
                 "Keep so many bytes of exchanges, 64 MiB without it")
      ->check(CLI::PositiveNumber);
  app.add_option("--max-body-bytes", options.limits.body_bytes, "Largest request body")
      ->check(whole_number(1, kLargest));
  app.add_option("--request-deadline-ms", given.request_ms, "Time for a request to arrive")
      ->check(whole_number(1, kLongest_ms));
  app.add_option("--idle-deadline-ms", given.idle_ms,
                 "Time that a connection may rest between requests")
      ->check(whole_number(1, kLongest_ms));
}

/// Takes what says where the sandbox is to be had, and for whom. Throws std::invalid_argument, and
/// std::runtime_error for a file that cannot be used.
void take_network(const Given& given, Options& options) {
  const std::string address = options.serving.address;
  take_serving_options(options.serving);
  if (!given.admin_token_file.empty()) {
    options.admin_token = word_of_file(given.admin_token_file);
  } else if (!is_loopback(options.serving.address)) {
    throw std::invalid_argument("--listen " + address +
                                " lets other machines in, so --admin-token-file has to name a file "
                                "with the word that administering it takes");
  }
}

void parse(CLI::App& app, std::vector<std::string> words) {
  std::reverse(words.begin(), words.end());
  app.parse(words);
}

}  // namespace

std::string trouble_with_disabled(const std::string& text) {
  const auto last = text.find_last_not_of(" \t\r\n");
  if (last == std::string::npos || text[last] == '|') return {};
  return "'" + text +
         "' disables nothing, expected a '|' behind each method, as 'urn:HeartBeatService.beat|'";
}

std::optional<int> read_options(int argc, char** argv, Options& options) {
  CLI::App app{
      "A local server that speaks the protocol of the sales application: SOAP on /soap, the data\n"
      "access layer on /dal. It prints one line of JSON when it is ready."};
  app.name("bvsandbox");
  app.footer(commands_text());
  app.set_version_flag("--version", "bvsandbox " BVCONN_VERSION);
  options.serving.has_page = true;
  Given given;
  given.request_ms = options.limits.request.count();
  given.idle_ms = options.limits.idle.count();
  add_server_options(app, options, given);
  add_data_options(app, options, given);
  app.add_option("--config", given.config,
                 "Take options from this file in TOML; those of the command line win")
      ->type_name("FILE");
  std::vector<std::string> words(argv + 1, argv + argc);
  try {
    parse(app, words);
    if (!given.config.empty()) {
      const auto more = words_of_config(given.config, app);
      words.insert(words.end(), more.begin(), more.end());
      app.clear();
      parse(app, words);
    }
    take_network(given, options);
  } catch (const CLI::ParseError& error) {
    return tell(app, error);
  } catch (const std::exception& error) {
    // A file of options, of a token, or a value that cannot work.
    return complain(error.what(), kUsageStatus);
  }
  if (!given.database.empty()) options.database = given.database;
  if (!given.seed.empty()) options.seed = given.seed.front();
  options.limits.request = milliseconds(given.request_ms);
  options.limits.idle = milliseconds(given.idle_ms);
  return std::nullopt;
}

}  // namespace bvconn::sandbox
