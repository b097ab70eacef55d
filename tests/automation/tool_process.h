#pragma once

#include <sys/types.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace bvconn::test {

/// A folder of its own for a test, removed at its end.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path operator/(const std::string& name) const { return path_ / name; }
  /// Writes a file and gives its path.
  std::string file(const std::string& name, const std::string& contents) const;

 private:
  std::filesystem::path path_;
};

std::string read_text(const std::filesystem::path& path);

/// The real program `bvconn` as a child process. Its settings, logs and home are in a folder of the
/// test's own, whatever the environment says.
class Tool {
 public:
  struct Outcome {
    int status = -1;  ///< exit status; 128 + signal where one ended it
    std::string out;
    std::string err;
    std::vector<std::string> lines() const;  ///< of `out`
  };

  explicit Tool(std::vector<std::string> arguments);
  Tool(std::vector<std::string> arguments, const std::filesystem::path& home,
       const std::map<std::string, std::string>& environment);
  ~Tool();
  Tool(const Tool&) = delete;
  Tool& operator=(const Tool&) = delete;

  void send(const std::string& text);
  void signal(int number) const;
  /// The next line of the output, waited for; "" when none comes within some seconds.
  std::string read_line();
  /// Ends the input and gives everything that was not read yet.
  Outcome finish();

  static Outcome run(std::vector<std::string> arguments, const std::string& input = "");
  /// The same, with settings, logs and home in this folder, and further environment variables.
  static Outcome run_in(const std::filesystem::path& home, std::vector<std::string> arguments,
                        const std::map<std::string, std::string>& environment = {});
  /// A batch of these lines.
  static Outcome batch(const std::vector<std::string>& requests,
                       std::vector<std::string> options = {});

  TemporaryFolder folder;

 private:
  bool read_more();

  std::filesystem::path home_;
  pid_t child_ = -1;
  int in_ = -1;
  int out_ = -1;
  std::string unread_;
};

}  // namespace bvconn::test
