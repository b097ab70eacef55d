#include "sandbox/sandbox_process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <thread>

namespace bvconn::test {
namespace {

constexpr std::chrono::seconds kPatience{20};

struct Pipe {
  int read_end = -1;
  int write_end = -1;
};

Pipe make_pipe() {
  std::array<int, 2> ends{};
  // Closed in the child but for the copies that it gets as its own three.
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return {};
  return {.read_end = ends[0], .write_end = ends[1]};
}

void close_once(int& descriptor) {
  if (descriptor >= 0) ::close(descriptor);
  descriptor = -1;
}

}  // namespace

SandboxProcess::SandboxProcess(const std::vector<std::string>& arguments) {
  const Pipe input = make_pipe();
  const Pipe output = make_pipe();
  const Pipe error_output = make_pipe();
  std::vector<std::string> words{BVSANDBOX};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  child_ = ::fork();
  if (child_ == 0) {
    ::dup2(input.read_end, STDIN_FILENO);
    ::dup2(output.write_end, STDOUT_FILENO);
    ::dup2(error_output.write_end, STDERR_FILENO);
    ::execv(argv[0], argv.data());
    ::_exit(127);
  }
  ::close(input.read_end);
  ::close(output.write_end);
  ::close(error_output.write_end);
  input_ = input.write_end;
  output_ = output.read_end;
  error_output_ = error_output.read_end;
  read_ready_line();
}

SandboxProcess::~SandboxProcess() {
  if (child_ > 0) {
    ::kill(child_, SIGKILL);
    ::waitpid(child_, nullptr, 0);
  }
  close_once(input_);
  close_once(output_);
  close_once(error_output_);
}

void SandboxProcess::read_ready_line() {
  const auto deadline = std::chrono::steady_clock::now() + kPatience;
  while (std::chrono::steady_clock::now() < deadline) {
    pollfd waiting{.fd = output_, .events = POLLIN, .revents = 0};
    if (::poll(&waiting, 1, 100) != 1) continue;
    char c = 0;
    if (::read(output_, &c, 1) != 1) return;
    if (c != '\n') {
      ready_line_.push_back(c);
      continue;
    }
    constexpr std::string_view kKey = "\"port\":";
    const auto at = ready_line_.find(kKey);
    if (at == std::string::npos) return;
    const char* const first = ready_line_.data() + at + kKey.size();
    std::from_chars(first, ready_line_.data() + ready_line_.size(), port_);
    return;
  }
}

std::optional<int> SandboxProcess::end_by(int signal) {
  ::kill(child_, signal);
  return wait();
}

void SandboxProcess::close_input() {
  close_once(input_);
}

std::optional<int> SandboxProcess::wait() {
  const auto deadline = std::chrono::steady_clock::now() + kPatience;
  int status = 0;
  while (::waitpid(child_, &status, WNOHANG) == 0) {
    if (std::chrono::steady_clock::now() > deadline) return std::nullopt;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  child_ = -1;
  std::array<char, 4096> bytes{};
  for (ssize_t count = 0; (count = ::read(error_output_, bytes.data(), bytes.size())) > 0;) {
    errors_.append(bytes.data(), static_cast<std::size_t>(count));
  }
  if (!WIFEXITED(status)) return std::nullopt;
  return WEXITSTATUS(status);
}

RawReply SandboxProcess::soap(std::string_view service, std::string_view method,
                              std::string_view parameters) {
  return soap_text(envelope_text(service, method, parameters), service);
}

RawReply SandboxProcess::soap_text(std::string_view text, std::string_view soap_action) {
  const std::string headers = "Content-Type: text/xml; charset=utf-8\r\nSOAPAction: \"" +
                              std::string(soap_action) + "\"\r\n";
  return exchange(port_, http_request("POST", "/soap", headers, text));
}

RawReply SandboxProcess::dal(std::string_view path, std::string_view body, std::string_view token) {
  std::string headers = "Content-Type: application/json\r\n";
  if (!token.empty()) headers.append("Authorization: Bearer ").append(token).append("\r\n");
  return exchange(port_, http_request("POST", "/dal/" + std::string(path), headers, body));
}

std::string SandboxProcess::login() {
  return dal("AuthenticationService/Login", R"({"arguments":["anna","secret","1.0","US"]})")
      .header("Session-Token");
}

std::string envelope_text(std::string_view service, std::string_view method,
                          std::string_view parameters) {
  std::string text =
      "<SOAP-ENV:Envelope xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\""
      " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
      " xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\">"
      "<SOAP-ENV:Header><userID>S1</userID></SOAP-ENV:Header><SOAP-ENV:Body><m:";
  text.append(method).append(" xmlns:m=\"").append(service).append("\">").append(parameters);
  text.append("</m:").append(method).append("></SOAP-ENV:Body></SOAP-ENV:Envelope>");
  return text;
}

}  // namespace bvconn::test
