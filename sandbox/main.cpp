#include <csignal>
#include <cstdio>
#include <exception>
#include <memory>
#include <string>
#include <utility>

#include "sandbox/commands/command.h"
#include "sandbox/contract/observed.h"
#include "sandbox/endpoints/endpoints.h"
#include "sandbox/faults/fault_forms.h"
#include "sandbox/http/server.h"
#include "sandbox/journal/journal.h"
#include "sandbox/options.h"
#include "sandbox/serving.h"

namespace bvconn::sandbox {
namespace {

std::shared_ptr<Journal> journal_of(const JournalLimits& limits) {
  if (limits.count == 0) return nullptr;
  return std::make_shared<MemoryJournal>(limits);
}

void run_sandbox(const Options& options) {
  // Runs the whole library, so before there is a second thread.
  const auto observations = automation::observe_all();
  ServedSandbox sandbox{{.store = Store(options.database, options.seed),
                         .contract = Contract(contract_of(observations)),
                         .dal_routes = dal_routes_of(observations),
                         .loose = options.loose,
                         .journal = journal_of(options.journal)}};
  sandbox.admin_token = options.admin_token;
  // Without a word the others that share the database keep theirs.
  if (!options.disabled_services.empty()) {
    sandbox.store.set_disabled_services(options.disabled_services);
  }
  for (const auto& each : observations) sandbox.operation_names.push_back(operation_name(each));
  for (const std::string& file : options.fault_files) {
    sandbox.faults.add(faults_from_file(file, sandbox.operation_names));
  }
  const Operations operations = all_operations();
  TlsSetup tls = tls_setup(options.tls, options.address);
  Server server({.address = options.address, .port = options.port, .tls = std::move(tls.source)},
                options.limits, [&](const Request& request) {
                  Reply reply = answer(sandbox, operations, request);
                  if (options.verbose) tell_exchange(request, reply);
                  return reply;
                });
  serve(server, options.until_eof, tls.authority_file);
}

int run(int argc, char** argv) {
  // A reader of standard output that has gone is no reason to end.
  std::signal(SIGPIPE, SIG_IGN);
  if (const auto status = run_command(argc, argv)) return *status;
  Options options;
  if (const auto status = read_options(argc, argv, options)) return *status;
  try {
    run_sandbox(options);
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
