#include <CLI/CLI.hpp>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>

#include "sandbox/commands/command.h"

namespace bvconn::sandbox {
namespace {

constexpr const char* kPath = "/admin/stubs";

std::string content_of(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  std::string content{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  if (!stream) throw std::runtime_error("cannot read " + file);
  return content;
}

}  // namespace

RunCommand prepare_stubs(CLI::App& command) {
  auto value = std::make_shared<std::string>();
  command.require_subcommand(1);
  auto* const add = command.add_subcommand("add", "Set the stubs that stand in a file, in JSON");
  add->add_option("FILE", *value)->required();
  auto* const remove = command.add_subcommand("remove", "Take one back");
  remove->add_option("ID", *value)->required();
  const auto* const list = command.add_subcommand("list", "Show those that are set");
  command.add_subcommand("clear", "Take all back");
  for (auto* const each : command.get_subcommands({})) each->fallthrough();
  return [value, add, remove, list](Client& client) {
    if (add->parsed()) {
      return show(client.send("POST", kPath, content_of(*value), "application/json"));
    }
    if (remove->parsed()) {
      return show(client.send("DELETE", std::string(kPath) + "/" + url_encoded(*value)));
    }
    return show(client.send(list->parsed() ? "GET" : "DELETE", kPath));
  };
}

}  // namespace bvconn::sandbox
