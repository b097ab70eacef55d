#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace bvconn::tool {

struct OptionWords {
  std::string name;  ///< "--json"
  bool takes_value = false;
};

/// A subcommand as the command line knows it.
struct CommandWords {
  std::string name;
  std::vector<OptionWords> options;
  std::vector<std::string> subcommands{};  ///< of its own
};

/// `bvconn completion SHELL`: a script that makes bash, zsh or fish complete subcommands, classes,
/// operations, arguments and options. Gives the exit status.
int run_completion(const std::string& shell, std::ostream& out, std::ostream& err);

/// What can stand for the last of these words, which may be begun or empty; the words before it are
/// whole. It is what the scripts ask for, so that they know nothing themselves. A candidate that
/// ends in "." or "=" is to be continued.
std::vector<std::string> completions(const std::vector<std::string>& words,
                                     const std::vector<CommandWords>& commands);

}  // namespace bvconn::tool
