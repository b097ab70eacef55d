#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <utility>

#include "automation/tool_process.h"

namespace bvconn::test {

/// Lines of bash in which `bvconn` is the real program. Home, settings and logs are in a folder of
/// the test's own, and of the environment nothing counts but what is given.
class Shell {
 public:
  explicit Shell(std::map<std::string, std::string> environment = {})
      : environment_(std::move(environment)) {}

  Tool::Outcome run(const std::string& script) const;
  /// Writes the user's file of profiles.
  void profiles(const std::string& toml) const;

  TemporaryFolder folder;

 private:
  std::map<std::string, std::string> environment_;
};

/// A program at a terminal, and what it writes there.
class TerminalSession {
 public:
  /// Starts `bash` with this script.
  explicit TerminalSession(const std::string& script);
  ~TerminalSession();
  TerminalSession(const TerminalSession&) = delete;
  TerminalSession& operator=(const TerminalSession&) = delete;

  void type(const std::string& keys) const;
  /// Reads on until this text has come; false where it does not come within some seconds.
  bool wait_for(const std::string& text) { return wait_for_after(0, text); }
  /// The same for what comes behind so many bytes.
  bool wait_for_after(std::size_t begin, const std::string& text);
  /// Everything until its end.
  const std::string& read_to_end();
  const std::string& seen() const { return seen_; }

  TemporaryFolder folder;

 private:
  bool read_more();

  int terminal_ = -1;
  pid_t child_ = -1;
  std::string seen_;
};

/// The shell's word for a text.
std::string shell_quoted(const std::string& text);

/// Whether a program is installed.
bool is_installed(const std::string& program);

}  // namespace bvconn::test
