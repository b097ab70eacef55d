#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <type_traits>
#include <vector>

#include "sandbox/commands/command.h"
#include "sandbox/faults/fault_forms.h"

namespace bvconn::sandbox {
namespace {

constexpr std::string_view kPath = "/admin/faults";
constexpr std::string_view kJson = "application/json";

std::string option_name(const FaultField& field) {
  std::string name = "--" + std::string(field.name);
  std::replace(name.begin(), name.end(), '_', '-');
  return name;
}

std::string kinds_text() {
  std::string text = "Kinds:\n";
  for (const FaultKind& each : fault_kinds()) {
    constexpr std::size_t kWidth = 16;
    std::string name(each.name);
    name.resize(kWidth, ' ');
    text.append("  ").append(name).append(each.summary);
    std::string_view separator = " (";
    for (const FaultField& field : fault_fields()) {
      if (field.is_common || !takes(each, field)) continue;
      text.append(separator).append(option_name(field));
      separator = ", ";
    }
    text.append(separator == ", " ? ")\n" : "\n");
  }
  return text;
}

/// The value of an option in the type of its field; a text that is none of it is refused by what
/// reads the whole fault.
nlohmann::json value_of(const FaultField& field, const std::string& text) {
  return std::visit(
      [&text](auto member) -> nlohmann::json {
        using Value =
            typename std::decay_t<decltype(std::declval<FaultRule&>().*member)>::value_type;
        if constexpr (std::is_same_v<Value, std::string>) return text;
        auto value = nlohmann::json::parse(text, nullptr, false);
        return value.is_discarded() ? nlohmann::json(text) : value;
      },
      field.member);
}

struct AddOptions {
  std::string kind;
  std::string file;
  std::map<std::string, std::string> values;  ///< by the field's name
};

void add_options(CLI::App& command, const std::shared_ptr<AddOptions>& options) {
  command.footer(kinds_text());
  auto* const kind = command.add_option("KIND", options->kind, "What goes wrong");
  command.add_option("--file", options->file, "The faults of a file in TOML in its place")
      ->excludes(kind);
  for (const FaultField& field : fault_fields()) {
    command.add_option_function<std::string>(
        option_name(field),
        [options, name = std::string(field.name)](const std::string& text) {
          options->values[name] = text;
        },
        std::string(field.summary));
  }
}

/// The faults as the sandbox is asked for them. What is wrong with them is told before it is asked,
/// but for the names of operations, which only a running one knows.
nlohmann::ordered_json asked_for(const AddOptions& options) {
  auto faults = nlohmann::ordered_json::array();
  if (!options.file.empty()) {
    for (const FaultRule& each : faults_from_file(options.file, {}))
      faults.push_back(to_json(each));
    return faults;
  }
  if (options.kind.empty()) throw std::invalid_argument("faults add needs a KIND or --file");
  nlohmann::json object{{"kind", options.kind}};
  for (const FaultField& field : fault_fields()) {
    const auto found = options.values.find(std::string(field.name));
    if (found != options.values.end())
      object[std::string(field.name)] = value_of(field, found->second);
  }
  faults.push_back(to_json(fault_from_json(object, {})));
  return faults;
}

int add(Client& client, const AddOptions& options) {
  std::string faults;
  try {
    faults = asked_for(options).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
  } catch (const BadFault& error) {
    throw std::invalid_argument(error.what());
  }
  const ClientReply reply = client.send("POST", kPath, faults, kJson);
  if (reply.status != 200) return show(reply);
  // Their names alone, one a line, for a script that removes them again.
  const auto added = nlohmann::json::parse(reply.body);
  for (const auto& each : added["faults"]) {
    std::puts(each["name"].get<std::string>().c_str());
  }
  return kDoneStatus;
}

int remove(Client& client, const std::vector<std::string>& names) {
  for (const std::string& each : names) {
    const ClientReply reply = client.send("DELETE", std::string(kPath) + "/" + url_encoded(each));
    if (reply.status != 200) return show(reply);
  }
  return kDoneStatus;
}

int clear(Client& client) {
  const ClientReply reply = client.send("DELETE", kPath);
  return reply.status == 200 ? kDoneStatus : show(reply);
}

}  // namespace

RunCommand prepare_faults(CLI::App& command) {
  command.require_subcommand(1);
  command.fallthrough();
  auto run = std::make_shared<RunCommand>();
  auto options = std::make_shared<AddOptions>();
  auto* const adding = command.add_subcommand("add", "Let calls go wrong from now on");
  add_options(*adding, options);
  adding->callback([=] { *run = [=](Client& client) { return add(client, *options); }; });
  command.add_subcommand("list", "The faults in force, and how often each has hit")->callback([=] {
    *run = [](Client& client) { return show(client.send("GET", kPath)); };
  });
  auto names = std::make_shared<std::vector<std::string>>();
  auto* const removing = command.add_subcommand("remove", "Take some back by their names");
  removing->add_option("NAME", *names, "Their names")->required();
  removing->callback([=] { *run = [=](Client& client) { return remove(client, *names); }; });
  command.add_subcommand("clear", "Take all back")->callback([=] { *run = clear; });
  return [run](Client& client) { return (*run)(client); };
}

}  // namespace bvconn::sandbox
