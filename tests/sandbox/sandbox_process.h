#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sandbox/raw_client.h"

namespace bvconn::test {

/// The real bvsandbox as a child process, which ends with this object at the latest.
class SandboxProcess {
 public:
  /// Starts it with these arguments and waits for its ready line.
  explicit SandboxProcess(const std::vector<std::string>& arguments = {"--port", "0"});
  ~SandboxProcess();
  SandboxProcess(const SandboxProcess&) = delete;
  SandboxProcess& operator=(const SandboxProcess&) = delete;

  /// The first line that it wrote, without its end; "" when it ended without one.
  const std::string& ready_line() const { return ready_line_; }
  /// The port that the ready line names.
  std::uint16_t port() const { return port_; }

  pid_t process() const { return child_; }
  /// Sends the signal and waits for its end; gives the exit status.
  std::optional<int> end_by(int signal);
  /// Ends its standard input.
  void close_input();
  /// Waits for its end; gives the exit status, or nothing for one that goes on or was killed.
  std::optional<int> wait();
  /// Everything that it wrote to standard error, once it has ended.
  const std::string& errors() const { return errors_; }

  /// A SOAP envelope with the header userID, as a whole HTTP request to /soap.
  RawReply soap(std::string_view service, std::string_view method, std::string_view parameters);
  /// Any text as a SOAP request.
  RawReply soap_text(std::string_view text, std::string_view soap_action);
  /// A call of the data access layer, with the token if it is not empty.
  RawReply dal(std::string_view path, std::string_view body, std::string_view token = "");
  /// Logs in and gives the token.
  std::string login();

 private:
  void read_ready_line();

  pid_t child_ = -1;
  int input_ = -1;
  int output_ = -1;
  int error_output_ = -1;
  std::string ready_line_;
  std::string errors_;
  std::uint16_t port_ = 0;
};

/// A request's envelope as text.
std::string envelope_text(std::string_view service, std::string_view method,
                          std::string_view parameters);

}  // namespace bvconn::test
