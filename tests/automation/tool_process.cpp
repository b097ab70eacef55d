#include "automation/tool_process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace bvconn::test {
namespace {

constexpr int kPatience_ms = 60000;

[[noreturn]] void run_child(const std::vector<std::string>& arguments, int in, int out,
                            const std::string& home,
                            const std::map<std::string, std::string>& environment) {
  const int err = ::open((home + "/stderr").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  ::dup2(in, STDIN_FILENO);
  ::dup2(out, STDOUT_FILENO);
  ::dup2(err, STDERR_FILENO);
  for (const char* name :
       {"BVCONN_LOG_MASK", "BVCONN_LOG_FILE", "BVCONN_TRACE_FILE", "BVCONN_EXCHANGES",
        "BVCONN_PROFILE", "BVCONN_SERVER", "BVCONN_SESSION", "BVCONN_DAL_URL", "BVCONN_DAL_USER",
        "BVCONN_DAL_PASSWORD_FILE", "BVCONN_DAL_SALES_ORG", "BVCONN_DAL_APP_VERSION",
        "BVCONN_TIMEOUT", "BVCONN_CA_FILE", "BVCONN_CLIENT_CERT", "BVCONN_CLIENT_KEY", "http_proxy",
        "HTTP_PROXY", "NO_COLOR"}) {
    ::unsetenv(name);
  }
  for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME"}) {
    ::setenv(name, home.c_str(), 1);
  }
  ::setenv("BVCONN_MACHINE_SETTINGS", (home + "/machine.toml").c_str(), 1);
  ::setenv("BVCONN_USER_SETTINGS", (home + "/user.toml").c_str(), 1);
  for (const auto& [name, value] : environment) ::setenv(name.c_str(), value.c_str(), 1);
  std::vector<char*> pointers;
  // In its place a program of another system can be tried.
  const char* tried = std::getenv("BVCONN_TRIED_TOOL");
  std::string program = tried != nullptr ? tried : BVCONN_TOOL;
  pointers.push_back(program.data());
  std::vector<std::string> copies = arguments;
  for (std::string& argument : copies) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  ::execv(program.c_str(), pointers.data());
  ::_exit(127);
}

}  // namespace

TemporaryFolder::TemporaryFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "bvconn-test-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
  path_ = name;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryFolder::file(const std::string& name, const std::string& contents) const {
  std::ofstream(path_ / name, std::ios::binary) << contents;
  return (path_ / name).string();
}

std::string read_text(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<std::string> Tool::Outcome::lines() const {
  std::vector<std::string> result;
  std::istringstream text(out);
  for (std::string line; std::getline(text, line);) result.push_back(line);
  return result;
}

Tool::Tool(std::vector<std::string> arguments) : Tool(std::move(arguments), "", {}) {}

Tool::Tool(std::vector<std::string> arguments, const std::filesystem::path& home,
           const std::map<std::string, std::string>& environment)
    : home_(home.empty() ? folder.path() : home) {
  // A child that ended early must show as its exit status, not end the test.
  ::signal(SIGPIPE, SIG_IGN);
  int in[2];
  int out[2];
  if (::pipe2(in, O_CLOEXEC) != 0 || ::pipe2(out, O_CLOEXEC) != 0) {
    throw std::runtime_error("no pipes");
  }
  child_ = ::fork();
  if (child_ < 0) throw std::runtime_error("no child process");
  if (child_ == 0) {
    ::signal(SIGPIPE, SIG_DFL);
    run_child(arguments, in[0], out[1], home_.string(), environment);
  }
  ::close(in[0]);
  ::close(out[1]);
  in_ = in[1];
  out_ = out[0];
}

Tool::~Tool() {
  if (in_ >= 0) ::close(in_);
  if (out_ >= 0) ::close(out_);
  if (child_ > 0) {
    ::kill(child_, SIGKILL);
    ::waitpid(child_, nullptr, 0);
  }
}

void Tool::send(const std::string& text) {
  for (std::size_t sent = 0; sent < text.size();) {
    const ssize_t count = ::write(in_, text.data() + sent, text.size() - sent);
    if (count <= 0) return;
    sent += static_cast<std::size_t>(count);
  }
}

void Tool::signal(int number) const {
  ::kill(child_, number);
}

bool Tool::read_more() {
  pollfd waiting{.fd = out_, .events = POLLIN, .revents = 0};
  if (::poll(&waiting, 1, kPatience_ms) <= 0) return false;
  char buffer[65536];
  const ssize_t count = ::read(out_, buffer, sizeof(buffer));
  if (count <= 0) return false;
  unread_.append(buffer, static_cast<std::size_t>(count));
  return true;
}

std::string Tool::read_line() {
  std::size_t seen = 0;
  std::size_t end = std::string::npos;
  while ((end = unread_.find('\n', seen)) == std::string::npos) {
    seen = unread_.size();
    if (!read_more()) return "";
  }
  std::string line = unread_.substr(0, end);
  unread_.erase(0, end + 1);
  return line;
}

Tool::Outcome Tool::finish() {
  ::close(std::exchange(in_, -1));
  while (read_more()) {
  }
  int status = 0;
  ::waitpid(std::exchange(child_, -1), &status, 0);
  return {.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
          .out = std::exchange(unread_, ""),
          .err = read_text(home_ / "stderr")};
}

Tool::Outcome Tool::run(std::vector<std::string> arguments, const std::string& input) {
  Tool tool(std::move(arguments));
  tool.send(input);
  return tool.finish();
}

Tool::Outcome Tool::run_in(const std::filesystem::path& home, std::vector<std::string> arguments,
                           const std::map<std::string, std::string>& environment) {
  return Tool(std::move(arguments), home, environment).finish();
}

Tool::Outcome Tool::batch(const std::vector<std::string>& requests,
                          std::vector<std::string> options) {
  options.insert(options.begin(), "batch");
  std::string input;
  for (const std::string& request : requests) input.append(request).append("\n");
  return run(std::move(options), input);
}

}  // namespace bvconn::test
