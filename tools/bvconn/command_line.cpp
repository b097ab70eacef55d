#include "command_line.h"

#include <algorithm>
#include <string>

namespace bvconn::tool {

void add_connection_options(CLI::App& command, ConnectionOptions& options,
                            std::initializer_list<std::string_view> left_out) {
  constexpr const char* kGroup = "Connection";
  command
      .add_option_function<std::string>(
          "--profile", [&options](const std::string& name) { options.profile = name; },
          "Take what is not given here from this profile (or BVCONN_PROFILE)")
      ->type_name("NAME")
      ->group(kGroup);
  for (const ConnectionField& field : kConnectionFields) {
    if (std::find(left_out.begin(), left_out.end(), field.name) != left_out.end()) continue;
    command
        .add_option_function<std::string>(
            "--" + std::string(field.name),
            [&options, name = field.name](const std::string& text) { options.given[name] = text; },
            std::string(field.help) + " (or " + std::string(field.variable) + ")")
        ->type_name(std::string(field.type))
        ->group(kGroup);
  }
}

}  // namespace bvconn::tool
