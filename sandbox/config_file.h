#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace bvconn::sandbox {

/// Says in one line what is wrong with a file of options.
class BadConfig : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The options of a file in TOML as words of a command line: "port = 8080" is "--port=8080",
/// "verbose = true" is "--verbose", and an array gives an option several times. Files are looked
/// for beside it. An option that the command line gave already, or one that excludes it, is left
/// out. Throws BadConfig.
std::vector<std::string> words_of_config(const std::string& file, const CLI::App& app);

}  // namespace bvconn::sandbox
