#pragma once

#include <CLI/CLI.hpp>

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "completion_command.h"
#include "connection_options.h"

/// What the subcommands share of the command line.
namespace bvconn::tool {

/// `--profile` and an option for each field of a connection but those that are left out. Says of
/// each which environment variable stands in for it.
void add_connection_options(CLI::App& command, ConnectionOptions& options,
                            std::initializer_list<std::string_view> left_out = {});

/// What was mistyped in these words (a subcommand, an option), with the names that are near; ""
/// where it is something else.
std::string explain_slip(const CLI::App& app, const std::vector<std::string>& words);

/// The subcommands that these words begin with, and a colon; "" where there is none.
std::string command_prefix(const CLI::App& app, const std::vector<std::string>& words);

/// The subcommands with their options, for completion.
std::vector<CommandWords> command_words(const CLI::App& app);

}  // namespace bvconn::tool
