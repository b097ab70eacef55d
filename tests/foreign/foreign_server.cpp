#include "foreign/foreign_server.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <thread>

namespace bvconn::test {
namespace {

constexpr std::chrono::seconds kPatience{20};
constexpr std::string_view kAddress = "http://127.0.0.1:";

/// A server ends with this status where it lacks what it stands on; a shell says 127 of a program
/// that is not there, and so does the child below.
constexpr int kLacksItsStack = 77;
constexpr int kNoSuchProgram = 127;

std::string in_folder(std::string_view name) {
  return std::string(BVCONN_FOREIGN_FOLDER "/").append(name);
}

std::vector<std::string> command_of(std::string_view stack) {
  if (stack == "php") return {"php", in_folder("php/start.php")};
  if (stack == "perl") return {"perl", in_folder("perl/services.pl")};
  return {BVCONN_FOREIGN_GSOAP};
}

std::string packages_of(std::string_view stack) {
  if (stack == "php") return "PHP's SOAP server is missing: install php-cli and php-soap";
  if (stack == "perl") return "Perl's SOAP::Lite is missing: install libsoap-lite-perl";
  return "gSOAP is missing: install gsoap and libgsoap-dev, and configure anew";
}

}  // namespace

ForeignServer::ForeignServer(std::string_view stack) {
  start(command_of(stack));
  wait_until_it_listens();
  if (const auto status = ended(); status == kLacksItsStack || status == kNoSuchProgram) {
    missing_ = packages_of(stack);
  }
}

ForeignServer::~ForeignServer() {
  if (child_ <= 0) return;
  ::kill(child_, SIGKILL);
  ::waitpid(child_, nullptr, 0);
}

void ForeignServer::start(std::vector<std::string> words) {
  const std::string output = folder_.file("output");
  const std::string seen = folder_.file("seen");
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  const pid_t parent = ::getpid();
  child_ = ::fork();
  if (child_ != 0) return;
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (::getppid() != parent) ::_exit(1);
  const int file = ::open(output.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
  ::dup2(file, STDOUT_FILENO);
  ::dup2(file, STDERR_FILENO);
  ::setenv("FOREIGN_SEEN", seen.c_str(), 1);
  ::execvp(pointers[0], pointers.data());
  ::_exit(kNoSuchProgram);
}

std::optional<int> ForeignServer::ended() {
  int status = 0;
  if (child_ <= 0 || ::waitpid(child_, &status, WNOHANG) != child_) return std::nullopt;
  child_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void ForeignServer::wait_until_it_listens() {
  const auto deadline = std::chrono::steady_clock::now() + kPatience;
  while (std::chrono::steady_clock::now() < deadline) {
    const std::string printed = output();
    const std::size_t at = printed.find(kAddress);
    const std::size_t end = printed.find_first_not_of(
        "0123456789", at == std::string::npos ? at : at + kAddress.size());
    if (at != std::string::npos && end != std::string::npos) {
      url_ = printed.substr(at, end - at) + "/soap";
      return;
    }
    siginfo_t gone{};
    if (::waitid(P_PID, static_cast<id_t>(child_), &gone, WEXITED | WNOHANG | WNOWAIT) == 0 &&
        gone.si_pid == child_) {
      return;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
}

std::vector<std::string> ForeignServer::take_seen() {
  const std::string all = files_test::bytes_of(folder_.file("seen"));
  std::vector<std::string> lines;
  while (taken_ < all.size()) {
    const std::size_t end = std::min(all.find('\n', taken_), all.size());
    lines.push_back(all.substr(taken_, end - taken_));
    taken_ = end + 1;
  }
  return lines;
}

std::string ForeignServer::output() const {
  return files_test::bytes_of(folder_.file("output"));
}

}  // namespace bvconn::test
