#pragma once

#include <CLI/CLI.hpp>

#include <initializer_list>
#include <string_view>

#include "connection_options.h"

/// Options that several subcommands share.
namespace bvconn::tool {

/// `--profile` and an option for each field of a connection but those that are left out. Says of
/// each which environment variable stands in for it.
void add_connection_options(CLI::App& command, ConnectionOptions& options,
                            std::initializer_list<std::string_view> left_out = {});

}  // namespace bvconn::tool
