#include <csignal>
#include <cstdio>
#include <exception>
#include <nlohmann/json.hpp>
#include <string>

#include "sandbox/commands/command.h"
#include "sandbox/contract/observed.h"
#include "sandbox/endpoints/endpoints.h"
#include "sandbox/http/server.h"
#include "sandbox/options.h"

namespace bvconn::sandbox {
namespace {

void tell_ready(std::uint16_t port) {
  const std::string base = "http://127.0.0.1:" + std::to_string(port);
  nlohmann::ordered_json line;
  line["ready"] = true;
  line["port"] = port;
  line["soap"] = base + "/soap";
  line["dal"] = base + "/dal";
  std::puts(line.dump().c_str());
  std::fflush(stdout);
}

void tell_exchange(const Request& request, const Reply& reply) {
  const std::string line = request.method + " " + request.target + " " +
                           request.header("SOAPAction").value_or("-") + " " +
                           std::to_string(reply.status) + "\n";
  std::fputs(line.c_str(), stderr);
}

void serve(const Options& options) {
  // Runs the whole library, so before there is a second thread.
  const auto observations = automation::observe_all();
  Sandbox sandbox{.store = Store(options.database, options.seed),
                  .contract = Contract(contract_of(observations)),
                  .dal_routes = dal_routes_of(observations),
                  .disabled_services = options.disabled_services,
                  .logins = {}};
  const Operations operations = all_operations();
  Server server(options.port, options.limits, [&](const Request& request) {
    Reply reply = answer(sandbox, operations, request);
    if (options.verbose) tell_exchange(request, reply);
    return reply;
  });
  server.stop_on_signals();
  if (options.until_eof) server.stop_when_input_ends();
  tell_ready(server.port());
  server.run();
}

int run(int argc, char** argv) {
  // A reader of standard output that has gone is no reason to end.
  std::signal(SIGPIPE, SIG_IGN);
  if (const auto status = run_command(argc, argv)) return *status;
  Options options;
  if (const auto status = read_options(argc, argv, options)) return *status;
  try {
    serve(options);
    return 0;
  } catch (const std::exception& error) {
    std::fputs(("bvsandbox: " + std::string(error.what()) + "\n").c_str(), stderr);
    return kFailedStatus;
  }
}

}  // namespace
}  // namespace bvconn::sandbox

int main(int argc, char** argv) {
  return bvconn::sandbox::run(argc, argv);
}
