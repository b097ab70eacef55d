#include "sandbox/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cstdio>
#include <exception>
#include <limits>
#include <stdexcept>
#include <vector>

#include "bvconn/platform/conversions/nearest_names.h"
#include "sandbox/commands/command.h"
#include "sandbox/config_file.h"
#include "sandbox/http/address.h"
#include "sandbox/own_files.h"
#include "sandbox/tls/certificates.h"

namespace bvconn::sandbox {
namespace {

constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kLongest_ms = 24LL * 60 * 60 * 1000;

std::chrono::milliseconds milliseconds(std::int64_t count) {
  return std::chrono::milliseconds(count);
}

/// Refuses what is no whole number of this range.
CLI::Validator whole_number(std::int64_t low, std::int64_t high) {
  return {[low, high](const std::string& text) {
            std::int64_t value = 0;
            const char* const end = text.data() + text.size();
            const auto read = std::from_chars(text.data(), end, value);
            if (read.ec == std::errc() && read.ptr == end && value >= low && value <= high) {
              return std::string();
            }
            return "'" + text + "' is no whole number from " + std::to_string(low) + " to " +
                   std::to_string(high);
          },
          ""};
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
  std::string address = "127.0.0.1";
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

void add_network_options(CLI::App& app, Options& options, Given& given) {
  app.add_option("--listen", given.address,
                 "Address to listen on, 127.0.0.1 without it; one that other machines can reach "
                 "needs --admin-token-file")
      ->type_name("ADDRESS");
  app.add_option("--admin-token-file", given.admin_token_file,
                 "Ask whoever administers it for the word in this file")
      ->type_name("FILE");
  app.add_flag("--tls", options.tls.is_on,
               "Speak TLS, with a certificate made for it; the start line names the authority's "
               "file");
  app.add_option("--tls-folder", options.tls.folder, "Keep the authority in this folder")
      ->type_name("FOLDER");
  app.add_option("--tls-name", options.tls.names,
                 "Make the certificate for this name or address too")
      ->type_name("NAME")
      ->allow_extra_args(false);
  app.add_option("--tls-certificate", options.tls.certificate_file,
                 "Show this certificate of your own, in PEM")
      ->type_name("FILE");
  app.add_option("--tls-key", options.tls.key_file, "Its key, in PEM")->type_name("FILE");
}

void add_server_options(CLI::App& app, Options& options, Given& given) {
  app.add_option("--port", options.port, "Port to listen on; 0 takes a free one (the default)")
      ->check(whole_number(0, std::numeric_limits<std::uint16_t>::max()));
  app.add_option("--allowed-host", options.allowed_hosts,
                 "Show the page and be administered by this name too, without a port")
      ->type_name("NAME")
      ->check(CLI::Validator(trouble_with_host, ""))
      ->allow_extra_args(false);
  app.add_flag("--until-eof", options.until_eof, "End when standard input does");
  app.add_flag("--verbose", options.verbose, "Write a line for each request to standard error");
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

int complain(const std::string& text) {
  std::fputs(("bvsandbox: " + text + "\n").c_str(), stderr);
  return kUsageStatus;
}

/// "; did you mean --port?" for words that no option takes.
std::string nearest_option(const CLI::App& app, const std::vector<std::string>& words) {
  std::vector<std::string> names;
  for (const CLI::Option* each : app.get_options()) names.push_back(each->get_name());
  for (const std::string& each : words) {
    const std::string nearest = did_you_mean(each.substr(0, each.find('=')), names);
    if (!nearest.empty()) return nearest;
  }
  return {};
}

/// In one line; help and version are what was asked for.
int tell(const CLI::App& app, const CLI::ParseError& error) {
  if (error.get_exit_code() == 0) return app.exit(error);
  if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) {
    const std::vector<std::string> words = app.remaining();
    return complain("there is no option " + words.front() + nearest_option(app, words));
  }
  return complain(error.what());
}

/// What the options of TLS leave open or say twice; "" where they fit.
std::string trouble_with(const TlsOptions& tls) {
  const bool has_files = !tls.certificate_file.empty();
  if (has_files == tls.key_file.empty()) return "--tls-certificate and --tls-key go together";
  const bool makes_its_own = !tls.folder.empty() || !tls.names.empty();
  if (has_files && makes_its_own) {
    return "--tls-folder and --tls-name are for a certificate that is made, not for one of your "
           "own";
  }
  for (const std::string& each : tls.names) {
    if (!is_server_name(each)) return "--tls-name: '" + each + "' is no name of a server";
  }
  return {};
}

/// Takes what says where the sandbox is to be had, and for whom. Throws std::invalid_argument, and
/// std::runtime_error for a file that cannot be used.
void take_network(const Given& given, Options& options) {
  const auto address = numeric_address(given.address);
  if (!address) {
    throw std::invalid_argument("--listen: '" + given.address +
                                "' is no address, expected one of this machine, 0.0.0.0 or ::");
  }
  options.address = *address;
  TlsOptions& tls = options.tls;
  const std::string trouble = trouble_with(tls);
  if (!trouble.empty()) throw std::invalid_argument(trouble);
  tls.is_on =
      tls.is_on || !tls.certificate_file.empty() || !tls.folder.empty() || !tls.names.empty();
  if (!given.admin_token_file.empty()) {
    options.admin_token = word_of_file(given.admin_token_file);
  } else if (!is_loopback(options.address)) {
    throw std::invalid_argument("--listen " + given.address +
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
  Given given;
  given.request_ms = options.limits.request.count();
  given.idle_ms = options.limits.idle.count();
  add_server_options(app, options, given);
  add_network_options(app, options, given);
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
    return complain(error.what());
  }
  if (!given.database.empty()) options.database = given.database;
  if (!given.seed.empty()) options.seed = given.seed.front();
  options.limits.request = milliseconds(given.request_ms);
  options.limits.idle = milliseconds(given.idle_ms);
  return std::nullopt;
}

}  // namespace bvconn::sandbox
