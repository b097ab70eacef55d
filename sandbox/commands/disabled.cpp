#include <CLI/CLI.hpp>
#include <memory>

#include "sandbox/commands/command.h"

namespace bvconn::sandbox {

RunCommand prepare_disabled(CLI::App& command) {
  auto text = std::make_shared<std::string>();
  const auto* const given = command.add_option(
      "TEXT", *text, "From now on, as 'urn:HeartBeatService.beat|'; '' for none");
  return [text, given](Client& client) {
    return show(given->count() == 0 ? client.send("GET", "/admin/disabled")
                                    : client.send("POST", "/admin/disabled", *text));
  };
}

}  // namespace bvconn::sandbox
