#include "docs/reader.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "automation/shell.h"
#include "docs/page.h"

namespace bvconn::test {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kSandboxPort = "8080";
constexpr std::string_view kNobodysPort = "8081";

std::string replaced(std::string text, std::string_view what, std::string_view with) {
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at)) {
    text.replace(at, what.size(), with);
    at += with.size();
  }
  return text;
}

std::string replaced_number(const std::string& text, std::string_view number,
                            std::string_view with) {
  return std::regex_replace(text, std::regex("\\b" + std::string(number) + "\\b"),
                            std::string(with));
}

/// Binds the port without listening, so that connections to it are refused; -1 where it is taken.
int bind_port(std::uint16_t port) {
  const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(port);
  if (::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
    return socket;
  }
  ::close(socket);
  return -1;
}

/// A name that one process of this machine can have at a time, until it is closed; -1 where another
/// one has it.
int claim_name(const std::string& name) {
  const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  name.copy(address.sun_path + 1,
            sizeof address.sun_path - 1);  // The zero in front: it is no file.
  const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
  if (::bind(socket, reinterpret_cast<const sockaddr*>(&address), size) == 0) return socket;
  ::close(socket);
  return -1;
}

/// The clone of a reader: all that is in this one, with what was built, in a folder to write in.
void imitate_clone(const fs::path& clone) {
  fs::create_directories(clone / "build");
  for (const auto& entry : fs::directory_iterator(BVCONN_SOURCE_DIR)) {
    const auto name = entry.path().filename();
    if (name != "build" && name != ".git") fs::create_symlink(entry.path(), clone / name);
  }
  fs::create_symlink(BVCONN_BINARY_DIR, clone / "build" / "dev");
}

bool starts_sandbox(const std::string& line) {
  static const std::regex kStart(R"(^(\S*/)?bvsandbox( -.*)?$)");
  return std::regex_match(line, kStart) && line.find("--help") == std::string::npos;
}

}  // namespace

// Below those that the system gives to whoever asks for any. Other readers stay away from it as
// long as this one lives, also between letting go of it and the start of the sandbox.
HeldPort::HeldPort() {
  const int first = ::getpid();
  for (int step = 0; step < 10000 && socket_ < 0; ++step) {
    number_ = static_cast<std::uint16_t>(20000 + (first + step) % 10000);
    claim_ = claim_name("bvconn-docs-" + text());
    if (claim_ < 0) continue;
    socket_ = bind_port(number_);
    if (socket_ < 0) ::close(claim_);
  }
  if (socket_ < 0) throw std::runtime_error("no port is free");
}

HeldPort::~HeldPort() {
  let_go();
  ::close(claim_);
}

void HeldPort::let_go() {
  if (socket_ >= 0) ::close(std::exchange(socket_, -1));
}

Reader::Reader() : folder_(home.path().string()) {
  imitate_clone(home / "BVConnector");
}

Reader::Outcome Reader::type(std::string_view commands, bool stops) {
  Outcome all;
  std::string script;
  const auto run_what_was_typed = [&] {
    if (script.empty() || all.status != 0) return;
    const Outcome outcome = run(std::exchange(script, ""), stops);
    all.status = outcome.status;
    all.printed += outcome.printed;
  };
  for (const std::string& line : lines_of(commands)) {
    if (starts_sandbox(line)) {
      run_what_was_typed();
      all.printed += in_page_words(start_sandbox(line) + "\n");
    } else {
      script += line + "\n";
    }
  }
  run_what_was_typed();
  return all;
}

void Reader::write(const std::string& name, const std::string& text) {
  const fs::path path = name.starts_with("~/") ? home / name.substr(2) : fs::path(folder_) / name;
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << at_real_ports(text);
}

Reader::Outcome Reader::run(const std::string& script, bool stops) {
  const std::string own = home / ".reader";
  fs::create_directories(own);
  std::string text = "exec 2>&1\n";
  if (fs::exists(own + "/state")) text += "source " + shell_quoted(own + "/state") + "\n";
  text += "trap 'status=$?; { export -p; printf \"cd %q\\n\" \"$PWD\"; } >" + own +
          "/state; exit $status' EXIT\n"
          "needs() { command -v \"$1\" >/dev/null || exit " +
          std::to_string(kProgramMissing) + "; }\n";
  if (stops) text += "set -e -o pipefail\n";
  text += at_real_ports(script);
  home.file(".reader/script", text);
  const std::string path = fs::path(BVCONN_TOOL).parent_path().string() + ":" +
                           fs::path(BVSANDBOX).parent_path().string() +
                           ":/usr/local/bin:/usr/bin:/bin";
  const std::string command =
      "cd " + shell_quoted(home.path().string()) + " && env -i " + shell_quoted("PATH=" + path) +
      " " + shell_quoted("HOME=" + home.path().string()) + " LC_ALL=C.UTF-8 " +
      // Where the commands of bvsandbox look by themselves, at the real port.
      shell_quoted("BVSANDBOX_URL=http://127.0.0.1:" + sandbox_port_.text()) + " " +
      shell_quoted("BVCONN_MACHINE_SETTINGS=" + home.path().string() +
                   "/etc/bvconn/settings.toml") +
      " bash " + shell_quoted(own + "/script") + " >" + shell_quoted(own + "/printed") +
      " </dev/null";
  const int status = std::system(command.c_str());
  const std::string left = lines_of(read_text(own + "/state")).back();
  folder_ = left.substr(left.find(' ') + 1);
  return {.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
          .printed = in_page_words(read_text(own + "/printed"))};
}

std::string Reader::start_sandbox(const std::string& command) {
  std::istringstream words(command);
  std::string word;
  words >> word;
  // It ends with its input, so that it never outlives the test.
  std::vector<std::string> arguments{"--until-eof"};
  while (words >> word && word != "&") {
    if (arguments.back() == "--port") word = sandbox_port_.text();
    if (arguments.back() == "--db") word = folder_ + "/" + word;
    arguments.push_back(word);
  }
  sandbox_.reset();
  sandbox_port_.let_go();
  sandbox_ = std::make_unique<SandboxProcess>(arguments);
  if (sandbox_->port() == 0) throw std::runtime_error("no sandbox by: " + command);
  return sandbox_->ready_line();
}

std::string Reader::at_real_ports(std::string text) const {
  text = replaced(std::move(text), ":" + std::string(kSandboxPort), ":" + sandbox_port_.text());
  return replaced(std::move(text), ":" + std::string(kNobodysPort), ":" + nobodys_port_.text());
}

std::string Reader::in_page_words(std::string text) const {
  text = replaced_number(text, sandbox_port_.text(), kSandboxPort);
  text = replaced_number(text, nobodys_port_.text(), kNobodysPort);
  const std::string own = home.path().string();
  return replaced(replaced(std::move(text), own + "/etc/", "/etc/"), own, "~");
}

}  // namespace bvconn::test
