#include <CLI/CLI.hpp>
#include <array>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "sandbox/commands/command.h"
#include "sandbox/commands/exchange_text.h"

namespace bvconn::sandbox {
namespace {

using nlohmann::json;

struct Asked {
  std::uint64_t id = 0;
  std::array<std::pair<const char*, std::string>, 8> fields{{{"operation", ""},
                                                             {"route", ""},
                                                             {"session", ""},
                                                             {"outcome", ""},
                                                             {"since", ""},
                                                             {"until", ""},
                                                             {"after", ""},
                                                             {"limit", ""}}};
  std::vector<std::string> where;
  bool clear = false;
  bool as_json = false;
};

std::string& field(Asked& asked, std::string_view name) {
  for (auto& [known, value] : asked.fields) {
    if (name == known) return value;
  }
  return asked.fields.front().second;
}

std::string target_of(const Asked& asked) {
  std::string target = "/admin/journal";
  if (asked.id != 0) return target + "/" + std::to_string(asked.id);
  char joint = '?';
  const auto add = [&](const char* name, const std::string& value) {
    target.append(1, std::exchange(joint, '&')).append(name).append("=").append(url_encoded(value));
  };
  for (const auto& [name, value] : asked.fields) {
    if (!value.empty()) add(name, value);
  }
  for (const std::string& each : asked.where) add("where", each);
  return target;
}

int show_list(const json& answer) {
  for (const json& each : answer["exchanges"]) std::puts(exchange_line(each).c_str());
  const auto matched = answer["matched"].get<std::size_t>();
  const std::size_t shown = answer["exchanges"].size();
  if (shown < matched) {
    std::fprintf(stderr, "The latest %zu of %zu; --limit shows more.\n", shown, matched);
  }
  const auto dropped = answer["dropped"].get<std::uint64_t>();
  if (dropped > 0) {
    std::fprintf(stderr, "%llu older ones are no longer kept.\n",
                 static_cast<unsigned long long>(dropped));
  }
  return kDoneStatus;
}

int run(Client& client, const Asked& asked) {
  if (asked.clear) {
    const ClientReply reply = client.send("DELETE", "/admin/journal");
    return reply.status == 200 ? kDoneStatus : show(reply);
  }
  const ClientReply reply = client.send("GET", target_of(asked));
  if (reply.status != 200 || asked.as_json) return show(reply);
  const json answer = json::parse(reply.body);
  if (asked.id == 0) return show_list(answer);
  std::fputs(exchange_text(answer).c_str(), stdout);
  return kDoneStatus;
}

}  // namespace

RunCommand prepare_journal(CLI::App& command) {
  auto asked = std::make_shared<Asked>();
  const auto option = [&](const char* name, const char* text) {
    return command.add_option(std::string("--") + name, field(*asked, name), text);
  };
  auto* const id = command.add_option("ID", asked->id, "Show this exchange whole");
  id->check(CLI::PositiveNumber);
  option("operation", "Only of BVInvoiceConnector.GetInvoice, or BVInvoiceConnector.*");
  option("route", "Only by soap or dal");
  option("session", "Only of this session; without an envelope, of this user");
  option("outcome", "Only answered, warned, fault, refused, failed or injected");
  option("since", "Only from this moment on, as 2026-01-31T12:00:00Z");
  option("until", "Only up to this moment");
  command
      .add_option("--where", asked->where,
                  "Only with this argument, as strInvoiceUID=INV-1001; several times for several")
      ->allow_extra_args(false);
  option("after", "Only with a greater number");
  option("limit", "So many of the latest; 100 without it");
  command.add_flag("--json", asked->as_json, "Print what the sandbox answers");
  command.add_flag("--clear", asked->clear, "Forget all exchanges")->excludes(id);
  return [asked](Client& client) { return run(client, *asked); };
}

}  // namespace bvconn::sandbox
