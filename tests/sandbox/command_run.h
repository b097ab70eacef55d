#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace bvconn::test {

/// What a bvsandbox that ended by itself left behind.
struct CommandRun {
  int status = -1;  ///< -1 where it did not end by itself
  std::string out;
  std::string err;
};

/// Runs bvsandbox with these arguments, and waits for its end.
CommandRun run_sandbox(const std::vector<std::string>& arguments);

/// The same, with --url for the sandbox at this port behind the command's name.
CommandRun ask_sandbox(std::uint16_t port, std::vector<std::string> arguments);

}  // namespace bvconn::test
