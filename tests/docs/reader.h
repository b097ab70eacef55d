#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "automation/tool_process.h"
#include "sandbox/sandbox_process.h"

namespace bvconn::test {

/// A port of this machine that belongs to nobody else; connections to it are refused.
class HeldPort {
 public:
  HeldPort();
  ~HeldPort();
  HeldPort(const HeldPort&) = delete;
  HeldPort& operator=(const HeldPort&) = delete;
  void let_go();
  std::string text() const { return std::to_string(number_); }

 private:
  std::uint16_t number_ = 0;
  int claim_ = -1;
  int socket_ = -1;
};

/// Somebody who follows a page: types its commands in a shell, in a home folder of his own, and
/// starts a sandbox where the page does. A folder `BVConnector` in that home stands for the clone
/// of this project, built.
///
/// Port 8080 of the page is that of the sandbox, wherever that really listens; on 8081 nobody does.
class Reader {
 public:
  struct Outcome {
    int status = 0;
    std::string printed;  ///< both streams, in order, in the words of a page
  };

  Reader();

  /// Types these lines. Folder and exported variables stay as they leave them for the next ones. A
  /// line that starts a sandbox is over when that is ready, as if it ran in a terminal of its own.
  /// @param stops  Stops at the first command that fails.
  Outcome type(std::string_view commands, bool stops);

  /// Writes a file, "~/" in front of its name for the home, else where the last command left off.
  void write(const std::string& name, const std::string& text);

  TemporaryFolder home;

 private:
  Outcome run(const std::string& script, bool stops);
  std::string start_sandbox(const std::string& command);
  std::string in_page_words(std::string text) const;
  std::string at_real_ports(std::string text) const;

  HeldPort sandbox_port_;
  HeldPort nobodys_port_;
  std::unique_ptr<SandboxProcess> sandbox_;
  std::string folder_;
};

/// The status with which a script says that a program that it needs is not on this machine.
inline constexpr int kProgramMissing = 77;

}  // namespace bvconn::test
