#include "sandbox/serving.h"

#include <unistd.h>

#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>

#include "sandbox/contract/words.h"

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
  // The line is for programs; a person at a terminal gets words.
  if (::isatty(STDERR_FILENO) == 0) return;
  std::fputs(("bvsandbox: SOAP on " + base + "/soap, data access layer on " + base +
              "/dal; Ctrl-C ends it\n")
                 .c_str(),
             stderr);
}

}  // namespace

void serve(Server& server, bool until_eof) {
  server.stop_on_signals();
  if (until_eof) server.stop_when_input_ends();
  tell_ready(server.port());
  server.run();
}

void tell_exchange(const Request& request, const Reply& reply) {
  const std::string line =
      request.method + " " + request.target + " " + request.header("SOAPAction").value_or("-") +
      " " + std::to_string(reply.status) + (reply.remark.empty() ? "" : " " + reply.remark);
  std::fputs((one_line(line) + "\n").c_str(), stderr);
}

}  // namespace bvconn::sandbox
