#include "sandbox/serving.h"

#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>

#include "sandbox/contract/words.h"

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

void tell_ready(const Server& server, const std::string& authority_file) {
  const std::string base = server.url();
  nlohmann::ordered_json line;
  line["ready"] = true;
  line["port"] = server.port();
  line["soap"] = base + "/soap";
  line["dal"] = base + "/dal";
  if (!authority_file.empty()) line["authority"] = authority_file;
  std::puts(line.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace).c_str());
  std::fflush(stdout);
  // The line is for programs; a person at a terminal gets words.
  if (::isatty(STDERR_FILENO) == 0) return;
  const std::string trusted =
      authority_file.empty() ? "" : "; clients trust it with BVCONN_CA_FILE=" + authority_file;
  std::fputs(("bvsandbox: SOAP on " + base + "/soap, a page for browsers on " + base +
              "/, data access layer on " + base + "/dal" + trusted + "; Ctrl-C ends it\n")
                 .c_str(),
             stderr);
}

}  // namespace

void serve(Server& server, bool until_eof, const std::string& authority_file) {
  take_all_descriptors();
  server.stop_on_signals();
  if (until_eof) server.stop_when_input_ends();
  tell_ready(server, authority_file);
  server.run();
}

void tell_exchange(const Request& request, const Reply& reply) {
  const std::string line =
      request.method + " " + request.target + " " + request.header("SOAPAction").value_or("-") +
      " " + std::to_string(reply.status) + (reply.remark.empty() ? "" : " " + reply.remark);
  std::fputs((one_line(line) + "\n").c_str(), stderr);
}

}  // namespace bvconn::sandbox
