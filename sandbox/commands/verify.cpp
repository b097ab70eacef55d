#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "sandbox/commands/command.h"
#include "sandbox/commands/exchange_text.h"
#include "sandbox/contract/words.h"

namespace bvconn::sandbox {
namespace {

using nlohmann::json;

struct Asked {
  std::string operation;
  std::vector<std::string> where;
  std::string session;
  std::string route;
  std::string outcome;
  std::string since;
  std::size_t count = 0;
  std::size_t at_least = 0;
  std::size_t at_most = 0;
  bool as_json = false;
  json counts = json::object();
};

json body_of(const Asked& asked) {
  json body = asked.counts;
  body["operation"] = asked.operation;
  const auto put = [&](const char* name, const std::string& value) {
    if (!value.empty()) body[name] = value;
  };
  put("session", asked.session);
  put("route", asked.route);
  put("outcome", asked.outcome);
  put("since", asked.since);
  for (const std::string& each : asked.where) {
    const std::size_t equals = each.find('=');
    if (equals == std::string::npos || equals == 0) {
      throw std::invalid_argument("--where is written as strInvoiceUID=INV-1001, not '" + each +
                                  "'");
    }
    body["where"][each.substr(0, equals)] = each.substr(equals + 1);
  }
  return body;
}

/// "2 times", "once", "never".
std::string times_text(std::size_t count) {
  if (count == 0) return "never";
  return count == 1 ? "once" : std::to_string(count) + " times";
}

std::string result_text(const json& result) {
  std::string text = result["asked"].get<std::string>() + ": asked for " +
                     times_text(result["count"].get<std::size_t>()) + ", expected " +
                     result["expected"].get<std::string>() + "\n";
  if (!result["matched"].empty() && !result["holds"].get<bool>()) {
    text.append("  exchanges ")
        .append(listed(result["matched"], ", ", [](const json& each) { return each.dump(); }))
        .append("\n");
  }
  if (const auto dropped = result["dropped"].get<std::uint64_t>(); dropped > 0) {
    text.append("  ").append(counted(dropped, "older exchange"));
    text.append(" no longer kept were not looked at\n");
  }
  if (result["holds"].get<bool>()) return text;
  for (const json& each : result["nearest"]) {
    text.append("near miss: ").append(exchange_line(each)).append("\n");
    text.append(differences_text(each));
  }
  const auto kept = result["kept"].get<std::size_t>();
  if (result["nearest"].empty() && result["matched"].empty()) {
    text.append("  none of the ").append(counted(kept, "exchange")).append(" comes near\n");
  }
  return text;
}

int run(Client& client, const Asked& asked) {
  const ClientReply reply =
      client.send("POST", "/admin/verify", body_of(asked).dump(), "application/json");
  if (reply.status == 400) {
    show(reply);
    return kUsageStatus;
  }
  if (reply.status != 200) return show(reply);
  const json result = json::parse(reply.body);
  const bool holds = result["holds"].get<bool>();
  if (asked.as_json) {
    show(reply);
  } else {
    std::fputs(result_text(result).c_str(), holds ? stdout : stderr);
  }
  return holds ? kDoneStatus : kFailedStatus;
}

}  // namespace

RunCommand prepare_verify(CLI::App& command) {
  auto asked = std::make_shared<Asked>();
  command
      .add_option("OPERATION", asked->operation,
                  "BVInvoiceConnector.GetInvoice, BVInvoiceConnector.* or *")
      ->required();
  const auto* const count =
      command.add_option("--count", asked->count, "It was asked for exactly so often");
  const auto* const least =
      command.add_option("--at-least", asked->at_least,
                         "It was asked for so often or more; once without any of these");
  const auto* const most =
      command.add_option("--at-most", asked->at_most, "It was asked for so often or less");
  command
      .add_option("--where", asked->where,
                  "With this argument, as strInvoiceUID=INV-1001; may be given more than once")
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  command.add_option("--session", asked->session,
                     "In this session; without an envelope, by this user");
  command.add_option("--route", asked->route, "By soap or dal");
  command.add_option("--outcome", asked->outcome,
                     "With this outcome; without it, any but refused counts");
  command.add_option("--since", asked->since, "From this moment on, as 2026-01-31T12:00:00Z");
  command.add_flag("--json", asked->as_json, "Print what the sandbox answers");
  return [asked, count, least, most](Client& client) {
    if (count->count() > 0) asked->counts["count"] = asked->count;
    if (least->count() > 0) asked->counts["atLeast"] = asked->at_least;
    if (most->count() > 0) asked->counts["atMost"] = asked->at_most;
    return run(client, *asked);
  };
}

}  // namespace bvconn::sandbox
