#include "automation/shell.h"

#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace bvconn::test {
namespace {

constexpr int kPatience_ms = 20000;

std::string search_path() {
  return std::filesystem::path(BVCONN_TOOL).parent_path().string() +
         ":/usr/local/bin:/usr/bin:/bin";
}

/// "env -i NAME=VALUE… " with a home in this folder.
std::string clean_environment(const TemporaryFolder& folder,
                              const std::map<std::string, std::string>& more) {
  const std::string home = folder.path().string();
  std::map<std::string, std::string> variables{{"PATH", search_path()},
                                               {"HOME", home},
                                               {"XDG_CONFIG_HOME", home},
                                               {"XDG_STATE_HOME", home},
                                               {"BVCONN_MACHINE_SETTINGS", home + "/machine.toml"},
                                               {"BVCONN_USER_SETTINGS", home + "/user.toml"},
                                               {"LC_ALL", "C.UTF-8"}};
  for (const auto& [name, value] : more) variables[name] = value;
  std::string text = "env -i ";
  for (const auto& [name, value] : variables) text += shell_quoted(name + "=" + value) + " ";
  return text;
}

}  // namespace

std::string shell_quoted(const std::string& text) {
  std::string word = "'";
  for (const char c : text) word += c == '\'' ? "'\\''" : std::string(1, c);
  return word + "'";
}

bool is_installed(const std::string& program) {
  return std::system(("command -v " + program + " >/dev/null 2>&1").c_str()) == 0;
}

Tool::Outcome Shell::run(const std::string& script) const {
  const std::string out = (folder / "out").string();
  const std::string err = (folder / "err").string();
  const std::string command = clean_environment(folder, environment_) + "bash " +
                              shell_quoted(folder.file("script", script)) + " >" +
                              shell_quoted(out) + " 2>" + shell_quoted(err) + " </dev/null";
  const int status = std::system(command.c_str());
  return {.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
          .out = read_text(out),
          .err = read_text(err)};
}

void Shell::profiles(const std::string& toml) const {
  std::filesystem::create_directories(folder / "bvconn");
  folder.file("bvconn/profiles.toml", toml);
}

TerminalSession::TerminalSession(const std::string& script) {
  const std::string command = clean_environment(folder, {{"TERM", "xterm"}}) + "bash " +
                              shell_quoted(folder.file("script", script));
  child_ = ::forkpty(&terminal_, nullptr, nullptr, nullptr);
  if (child_ < 0) throw std::runtime_error("no terminal");
  if (child_ == 0) {
    ::execl("/bin/sh", "sh", "-c", ("exec " + command).c_str(), static_cast<char*>(nullptr));
    ::_exit(127);
  }
}

TerminalSession::~TerminalSession() {
  ::close(terminal_);
  ::kill(child_, SIGKILL);
  ::waitpid(child_, nullptr, 0);
}

void TerminalSession::type(const std::string& keys) const {
  if (::write(terminal_, keys.data(), keys.size()) < 0) throw std::runtime_error("no terminal");
}

bool TerminalSession::read_more() {
  pollfd waiting{.fd = terminal_, .events = POLLIN, .revents = 0};
  if (::poll(&waiting, 1, kPatience_ms) <= 0) return false;
  std::array<char, 4096> buffer;
  // The end of the other side is an error of the read.
  const ssize_t count = ::read(terminal_, buffer.data(), buffer.size());
  if (count <= 0) return false;
  seen_.append(buffer.data(), static_cast<std::size_t>(count));
  return true;
}

bool TerminalSession::wait_for_after(std::size_t begin, const std::string& text) {
  while (seen_.find(text, begin) == std::string::npos) {
    if (!read_more()) return false;
  }
  return true;
}

const std::string& TerminalSession::read_to_end() {
  while (read_more()) {
  }
  return seen_;
}

}  // namespace bvconn::test
