#include <CLI/CLI.hpp>
#include <memory>

#include "sandbox/commands/command.h"

namespace bvconn::sandbox {
namespace {

/// A name as a part of a path; the sandbox says what a name may have in it.
std::string in_path(const std::string& name) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string path;
  for (const char c : name) {
    const auto byte = static_cast<unsigned char>(c);
    path.append("%").append(1, kDigits[byte >> 4U]).append(1, kDigits[byte & 15U]);
  }
  return path;
}

}  // namespace

RunCommand prepare_reset(CLI::App&) {
  return [](Client& client) { return show(client.send("POST", "/admin/reset")); };
}

RunCommand prepare_snapshot(CLI::App& command) {
  auto name = std::make_shared<std::string>();
  auto remove = std::make_shared<bool>(false);
  auto* const given = command.add_option(
      "NAME", *name, "Keep what there is now under this name; without, list all");
  command.add_flag("--remove", *remove, "Remove the snapshot instead")->needs(given);
  return [name, remove, given](Client& client) {
    if (given->count() == 0) return show(client.send("GET", "/admin/snapshots"));
    return show(client.send(*remove ? "DELETE" : "POST", "/admin/snapshots/" + in_path(*name)));
  };
}

RunCommand prepare_restore(CLI::App& command) {
  auto name = std::make_shared<std::string>();
  command.add_option("NAME", *name, "Put back what was kept under this name")->required();
  return [name](Client& client) {
    return show(client.send("POST", "/admin/restore/" + in_path(*name)));
  };
}

}  // namespace bvconn::sandbox
