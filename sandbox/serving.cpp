#include "sandbox/serving.h"

#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <limits>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <utility>

#include "sandbox/command_line.h"
#include "sandbox/contract/words.h"
#include "sandbox/http/address.h"
#include "sandbox/tls/certificates.h"

namespace bvconn::sandbox {
namespace {

/// As many connections as the system lets this process have: a shell often starts programs with
/// fewer. Where it may not be raised, the limit stays, and connections wait as they would have.
void take_all_descriptors() {
  rlimit files{};
  if (::getrlimit(RLIMIT_NOFILE, &files) != 0) return;
  files.rlim_cur = files.rlim_max;
  ::setrlimit(RLIMIT_NOFILE, &files);
}

/// The line is for programs.
void tell_ready(std::uint16_t port, const Reached& reached) {
  nlohmann::ordered_json line;
  line["ready"] = true;
  line["port"] = port;
  line["soap"] = reached.url + "/soap";
  line["dal"] = reached.url + "/dal";
  if (!reached.authority_file.empty()) line["authority"] = reached.authority_file;
  std::puts(line.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace).c_str());
  std::fflush(stdout);
}

/// A person at a terminal gets words.
void tell_person(const Reached& reached, bool has_page) {
  if (::isatty(STDERR_FILENO) == 0) return;
  const std::string page = has_page ? "a page for browsers on " + reached.url + "/, " : "";
  const std::string trusted =
      reached.authority_file.empty()
          ? ""
          : "; clients trust it with BVCONN_CA_FILE=" + reached.authority_file;
  std::fputs(("bvsandbox: SOAP on " + reached.url + "/soap, " + page + "data access layer on " +
              reached.url + "/dal" + trusted + "; Ctrl-C ends it\n")
                 .c_str(),
             stderr);
}

/// A line on standard error: method, path, SOAPAction or "-", status, and what is wrong.
void tell_exchange(const Request& request, const Reply& reply) {
  const std::string line =
      request.method + " " + request.target + " " + request.header("SOAPAction").value_or("-") +
      " " + std::to_string(reply.status) + (reply.remark.empty() ? "" : " " + reply.remark);
  std::fputs((one_line(line) + "\n").c_str(), stderr);
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

}  // namespace

void add_serving_options(CLI::App& app, ServingOptions& options, const std::string& listen_help) {
  app.add_option("--port", options.port, "Port to listen on; 0 takes a free one (the default)")
      ->check(whole_number(0, std::numeric_limits<std::uint16_t>::max()));
  app.add_option("--listen", options.address, listen_help)->type_name("ADDRESS");
  app.add_flag("--until-eof", options.until_eof, "End when standard input does");
  app.add_flag("--verbose", options.verbose, "Write a line for each request to standard error");
  TlsOptions& tls = options.tls;
  app.add_flag("--tls", tls.is_on,
               "Speak TLS, with a certificate made for it; the start line names the authority's "
               "file");
  app.add_option("--tls-folder", tls.folder, "Keep the authority in this folder")
      ->type_name("FOLDER");
  app.add_option("--tls-name", tls.names, "Make the certificate for this name or address too")
      ->type_name("NAME")
      ->allow_extra_args(false);
  app.add_option("--tls-certificate", tls.certificate_file,
                 "Show this certificate of your own, in PEM")
      ->type_name("FILE");
  app.add_option("--tls-key", tls.key_file, "Its key, in PEM")->type_name("FILE");
}

void take_serving_options(ServingOptions& options) {
  auto address = numeric_address(options.address);
  if (!address) {
    throw std::invalid_argument("--listen: '" + options.address +
                                "' is no address, expected one of this machine, 0.0.0.0 or ::");
  }
  options.address = std::move(*address);
  TlsOptions& tls = options.tls;
  const std::string trouble = trouble_with(tls);
  if (!trouble.empty()) throw std::invalid_argument(trouble);
  tls.is_on =
      tls.is_on || !tls.certificate_file.empty() || !tls.folder.empty() || !tls.names.empty();
}

void serve(const ServingOptions& options, const Limits& limits, const Server::Handler& handler,
           const std::function<void(const Reached&)>& begin, const std::function<void()>& end) {
  TlsSetup tls = tls_setup(options.tls, options.address);
  Server server({.address = options.address, .port = options.port, .tls = std::move(tls.source)},
                limits, [&](const Request& request) {
                  Reply reply = handler(request);
                  if (options.verbose) tell_exchange(request, reply);
                  return reply;
                });
  const Reached reached{.url = server.url(), .authority_file = tls.authority_file};
  if (begin) begin(reached);
  take_all_descriptors();
  server.stop_on_signals();
  if (options.until_eof) server.stop_when_input_ends();
  tell_ready(server.port(), reached);
  tell_person(reached, options.has_page);
  server.run();
  if (end) end();
}

}  // namespace bvconn::sandbox
