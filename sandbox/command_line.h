#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <string>

/// What all command lines of bvsandbox have in common.
namespace bvconn::sandbox {

/// Tells the user on standard error, in one line; gives the exit status.
int complain(const std::string& text, int status);

/// The exit status where a command line was not taken: it asked for help or for the version, or it
/// cannot be understood, which is told in one line.
int tell(const CLI::App& app, const CLI::ParseError& error);

/// Refuses what is no whole number of this range.
CLI::Validator whole_number(std::int64_t low, std::int64_t high);

}  // namespace bvconn::sandbox
