#include <malloc.h>

#include <algorithm>
#include <csignal>
#include <exception>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "bvconn/platform/http/interrupted_exchanges.h"
#include "sandbox/calls/caller.h"
#include "sandbox/calls/own_address.h"
#include "sandbox/calls/quiet_platform.h"
#include "sandbox/command_line.h"
#include "sandbox/commands/command.h"
#include "sandbox/contract/observed.h"
#include "sandbox/endpoints/endpoints.h"
#include "sandbox/endpoints/stubbed.h"
#include "sandbox/faults/fault_forms.h"
#include "sandbox/faults/shared_fault_book.h"
#include "sandbox/journal/journal.h"
#include "sandbox/journal/shared_journal.h"
#include "sandbox/options.h"
#include "sandbox/serving.h"
#include "sandbox/stubs/shared_stub_book.h"

namespace bvconn::sandbox {
namespace {

/// Gives the sandbox a journal; and where its database is a server's, all that its processes share
/// beside the store. To be called when the store is there, which makes the tables.
void keep_exchanges_and_rules(const Options& options, ServedSandbox& sandbox) {
  const bool has_journal = options.journal.count > 0;
  if (!is_on_server(options.database)) {
    if (has_journal) sandbox.journal = std::make_shared<MemoryJournal>(options.journal);
    return;
  }
  const std::string& database = options.database;
  if (has_journal) sandbox.journal = std::make_shared<SharedJournal>(database, options.journal);
  sandbox.faults = std::make_unique<SharedFaultBook>(database);
  sandbox.stubs = std::make_unique<SharedStubBook>(database, forms_for_stubs(sandbox));
}

void begin_with_faults(const Options& options, ServedSandbox& sandbox) {
  std::vector<FaultRule> rules;
  for (const std::string& file : options.fault_files) {
    auto more = faults_from_file(file, sandbox.operation_names);
    std::move(more.begin(), more.end(), std::back_inserter(rules));
  }
  sandbox.faults->begin_with(std::move(rules));
}

/// The names that it was given, and those of the address that it listens on and of its certificate.
std::vector<std::string> allowed_hosts(const Options& options) {
  std::vector<std::string> names = options.allowed_hosts;
  const std::string& address = options.serving.address;
  const std::vector<std::string>& certified = options.serving.tls.names;
  const bool is_ipv6 = address.find(':') != std::string::npos;
  names.push_back(is_ipv6 ? "[" + address + "]" : address);
  names.insert(names.end(), certified.begin(), certified.end());
  return names;
}

OwnAddress own_address(const Options& options, const Reached& reached) {
  const ServingOptions& serving = options.serving;
  if (serving.tls.certificate_file.empty()) {
    return {.url = reached.url, .ca_file = reached.authority_file};
  }
  return own_address_by(serving.tls.certificate_file, reached.url, serving.address);
}

void run_sandbox(const Options& options) {
  // Runs the whole library, so before there is a second thread.
  const auto observations = automation::observe_all();
  ServedSandbox sandbox{{.stores = Stores(options.database, options.seed),
                         .contract = Contract(contract_of(observations)),
                         .dal_routes = dal_routes_of(observations),
                         .loose = options.loose}};
  sandbox.admin_token = options.admin_token;
  keep_exchanges_and_rules(options, sandbox);
  sandbox.allowed_hosts = allowed_hosts(options);
  sandbox.caller = std::make_shared<Caller>(call_forms(observations));
  // Without a word the others that share the database keep theirs.
  if (!options.disabled_services.empty()) {
    sandbox.stores.hold(Turn::kStore)->set_disabled_services(options.disabled_services);
  }
  for (const auto& each : observations) sandbox.operation_names.push_back(operation_name(each));
  begin_with_faults(options, sandbox);
  const Operations operations = all_operations();
  serve(
      options.serving, options.limits,
      [&](const Request& request) { return answer(sandbox, operations, request); },
      [&](const Reached& reached) {
        sandbox.caller->set_address([&options, reached] { return own_address(options, reached); });
        platform::install(quiet_platform());
      },
      // Nobody answers the sandbox's own calls any more.
      [] { detail::interrupt_exchanges(true); });
}

/// What one worker keeps for the journal another lets go of. With a heap for each thread every heap
/// grows as far as its share of that ever does, which has no end; in one heap the whole has its
/// bound.
void share_one_heap() {
#ifdef M_ARENA_MAX
  ::mallopt(M_ARENA_MAX, 1);
#endif
}

int run(int argc, char** argv) {
  share_one_heap();
  // A reader of standard output that has gone is no reason to end.
  std::signal(SIGPIPE, SIG_IGN);
  if (const auto status = run_command(argc, argv)) return *status;
  Options options;
  if (const auto status = read_options(argc, argv, options)) return *status;
  try {
    run_sandbox(options);
    return 0;
  } catch (const std::exception& error) {
    return complain(error.what(), kFailedStatus);
  }
}

}  // namespace
}  // namespace bvconn::sandbox

int main(int argc, char** argv) {
  return bvconn::sandbox::run(argc, argv);
}
