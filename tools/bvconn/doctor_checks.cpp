#include "doctor_checks.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <set>

#include "bvconn/platform/error.h"
#include "bvconn/platform/explain.h"
#include "bvconn/platform/platform.h"
#include "bvconn/platform/tls_files.h"
#include "doctor_calls.h"
#include "library_settings.h"
#include "mask_urls.h"
#include "reachability.h"
#include "system.h"
#include "target.h"

namespace bvconn::tool {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kNamePatience{5000};
constexpr milliseconds kConnectPatience{5000};
constexpr milliseconds kProxyPatience{2000};

Check ok(std::string name, std::string text) {
  return {.name = std::move(name), .state = CheckState::kOk, .text = std::move(text), .advice{}};
}

Check failed(std::string name, std::string text, std::string advice) {
  return {.name = std::move(name),
          .state = CheckState::kFailed,
          .text = std::move(text),
          .advice = std::move(advice)};
}

Check skipped(std::string name, std::string text) {
  return {
      .name = std::move(name), .state = CheckState::kSkipped, .text = std::move(text), .advice{}};
}

std::string took(milliseconds time) {
  return " (" + std::to_string(time.count()) + " ms)";
}

/// One line for each setting that cannot be used; one for all where they can.
void check_settings(std::vector<Check>& checks) {
  const std::string name = "settings";
  std::string text;
  std::set<std::string> told;
  const std::size_t before = checks.size();
  for (const SettingState& state : read_all_settings()) {
    const std::string setting(state.setting->name);
    if (state.failure) {
      if (!told.insert(state.place.name).second) continue;
      checks.push_back(failed(name, state.failure->description, explain(*state.failure)));
    } else if (state.wrong) {
      checks.push_back(failed(name, setting + " in " + state.place.name + " is " + state.remark,
                              "Correct it: bvconn settings set " + setting + " VALUE."));
    }
    text.append(text.empty() ? "" : ", ").append(setting).append("=").append(state.value);
  }
  if (checks.size() == before) checks.push_back(ok(name, text));
}

Check check_log() {
  const std::string name = "log";
  const automation::ClassInfo& info = find_class("BVConnectorObject");
  try {
    const std::string path = platform::current().logger()->LogFilePath();
    if (path.empty()) {
      return failed(name, "there is no log: this user has no home folder",
                    "Name a file with BVCONN_LOG_FILE.");
    }
    // A line of its own is the one that a call cannot do without, so its failure is not silent.
    info.find("SendDALMessageToLog")
        ->invoke(info.make().get(),
                 std::vector<automation::Value>{
                     Variant("bvconn doctor"), Variant("this line shows that the log is written")});
    return ok(name, path + " can be written");
  } catch (const Error& error) {
    return failed(name, error.description, explain(error));
  }
}

/// The library says nothing where this file cannot be written.
void check_exchanges(std::vector<Check>& checks) {
  const std::string path = variable_of("BVCONN_EXCHANGES").value_or("");
  if (path.empty()) return;
  const std::string trouble = trouble_with_appending(path);
  const std::string name = "exchanges";
  if (trouble.empty()) {
    checks.push_back(ok(name, path + " can be written"));
  } else {
    checks.push_back(failed(name, path + " cannot be written: " + trouble,
                            "Exchanges are lost. Name another file with BVCONN_EXCHANGES, or "
                            "give this user the right to write it."));
  }
}

/// The port of the proxy that every request takes; "" for none.
std::string proxy_port() {
  const SettingState state = read_setting(find_setting("tracePort"));
  return state.failure ? "" : state.value;
}

Check check_proxy(const std::string& port) {
  const std::string name = "proxy";
  if (port.empty()) {
    std::string text = "none; requests go straight to the server";
    for (const char* variable : {"http_proxy", "https_proxy", "HTTP_PROXY", "HTTPS_PROXY"}) {
      if (!variable_of(variable)) continue;
      text.append(" (").append(variable).append(" of the environment is not used)");
      break;
    }
    return ok(name, text);
  }
  const std::string where = "localhost:" + port;
  const Resolved resolved = resolve("localhost", port, kProxyPatience);
  const Connected connected = connect_to_any(resolved.addresses, kProxyPatience);
  if (resolved.trouble.empty() && connected.code == 0) {
    return ok(name, "every request goes through " + where + ", which answers");
  }
  return failed(name, "nothing answers at " + where + ", where tracePort sends every request",
                "Start the proxy that is to listen there, or do without: bvconn settings set "
                "tracePort ''.");
}

std::string connect_advice(int code, const HostAndPort& target) {
  switch (code) {
    case ECONNREFUSED:
      return "Nothing listens on port " + target.port +
             " there: start the server, or correct the port in its address.";
    case ETIMEDOUT:
      return "A firewall drops the connection, or the machine is off: ask those who run the "
             "network to open port " +
             target.port + ".";
    case ENETUNREACH:
    case EHOSTUNREACH:
      return "This machine has no way there: check its network or VPN, and the address.";
    default:
      return "Check the network and the address.";
  }
}

/// The steps up to the connection. @return whether there is one.
bool check_way(const std::string& url, bool by_proxy, std::vector<Check>& checks) {
  const auto target = host_and_port(url);
  if (!target) {
    checks.push_back(failed("name", "the address is no URL: " + mask_url(url),
                            "Write it with its scheme, as in http://server:8080/path."));
    checks.push_back(skipped("connect", "there is no name to connect to"));
    return false;
  }
  if (by_proxy) {
    checks.push_back(skipped("name", "the proxy looks up " + target->host));
    checks.push_back(skipped("connect", "the proxy connects to " + target->host));
    return true;
  }
  const Resolved resolved = resolve(target->host, target->port, kNamePatience);
  if (resolved.addresses.empty()) {
    checks.push_back(failed("name", target->host + ": " + resolved.trouble,
                            "The name is misspelt, or this machine's name server does not know it "
                            "or does not answer: check the address, the network and the VPN."));
    checks.push_back(skipped("connect", "the name leads nowhere"));
    return false;
  }
  checks.push_back(
      ok("name", target->host + " is " + resolved.addresses.front().text() + took(resolved.took)));
  const Connected connected = connect_to_any(resolved.addresses, kConnectPatience);
  const std::string where = connected.address + ", port " + target->port;
  if (connected.code == 0) {
    checks.push_back(ok("connect", where + " answers" + took(connected.took)));
    return true;
  }
  checks.push_back(failed("connect", where + ": " + std::strerror(connected.code),
                          connect_advice(connected.code, *target)));
  return false;
}

void check_server(const Connection& connection, std::vector<Check>& checks) {
  const std::string port = proxy_port();
  checks.push_back(check_proxy(port));
  const bool can_connect = checks.back().state == CheckState::kOk;
  if (connection.server.empty()) {
    for (const char* name : {"name", "connect", "TLS", "heart beat"}) {
      checks.push_back(skipped(name, "no server is named: --server, BVCONN_SERVER or a profile"));
    }
    return;
  }
  if (check_way(connection.server.text, !port.empty(), checks) && can_connect) {
    check_heart_beat(connection, checks);
    return;
  }
  checks.push_back(skipped("TLS", "there is no connection"));
  checks.push_back(skipped("heart beat", "there is no connection"));
}

}  // namespace

std::vector<Check> examine(const Connection& connection) {
  use_tls_files({.ca_file = connection.ca_file.text,
                 .client_cert = connection.client_cert.text,
                 .client_key = connection.client_key.text});
  std::vector<Check> checks;
  check_settings(checks);
  checks.push_back(check_log());
  check_exchanges(checks);
  check_server(connection, checks);
  check_dal(connection, checks);
  return checks;
}

std::string_view state_text(CheckState state) {
  switch (state) {
    case CheckState::kOk:
      return "OK";
    case CheckState::kFailed:
      return "FAILED";
    case CheckState::kSkipped:
      return "skipped";
  }
  return "";
}

}  // namespace bvconn::tool
