#pragma once

#include <CLI/CLI.hpp>

namespace bvconn::tool {

/// Puts examples and exit statuses below what each subcommand's `--help` says of its options.
void add_help_texts(CLI::App& app);

}  // namespace bvconn::tool
