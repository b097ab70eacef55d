#include "system.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "file_tail.h"
#include "text_lines.h"

namespace bvconn::tool {
namespace {

constexpr int kOwnerOnly = 0600;

}  // namespace

void survive_broken_pipes() {
  std::signal(SIGPIPE, SIG_IGN);
}

void hold_standard_files() {
  for (const int file : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(file, F_GETFD) >= 0 || errno != EBADF) continue;
    // The lowest number that is free: this one.
    static_cast<void>(::open("/dev/null", file == STDIN_FILENO ? O_WRONLY : O_RDONLY));
  }
}

std::vector<std::string> command_line(int argc, const char* const* argv) {
  std::vector<std::string> words;
  for (int i = 1; i < argc; ++i) words.emplace_back(argv[i]);
  return words;
}

std::optional<std::string> variable_of(const char* name) {
  const char* value = std::getenv(name);
  if (value == nullptr) return std::nullopt;
  return value;
}

void set_variable(const char* name, const std::string& value) {
  ::setenv(name, value.c_str(), 1);
}

std::vector<std::string> variables() {
  std::vector<std::string> all;
  for (char** each = environ; *each != nullptr; ++each) all.emplace_back(*each);
  return all;
}

std::string user_settings_folder() {
  const std::string folder = variable_of("XDG_CONFIG_HOME").value_or("");
  if (!folder.empty()) return folder;
  const std::string home = variable_of("HOME").value_or("");
  return home.empty() ? "" : home + "/.config";
}

std::string system_name() {
  utsname system{};
  if (::uname(&system) != 0) return "";
  return std::string(system.sysname) + " " + system.release + " " + system.machine;
}

std::string distribution_name() {
  constexpr std::size_t kMost = std::size_t{64} << 10;
  for (const std::string& each : lines_of(file_tail("/etc/os-release", kMost).text)) {
    if (each.starts_with("PRETTY_NAME=")) return each.substr(each.find('=') + 1);
  }
  return "";
}

std::string local_time_text() {
  const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  std::array<char, 64> time{};
  std::tm local{};
  ::localtime_r(&now, &local);
  std::strftime(time.data(), time.size(), "%Y-%m-%dT%H:%M:%S%z", &local);
  return time.data();
}

std::ptrdiff_t write_standard_output(const char* text, std::size_t count) {
  return ::write(STDOUT_FILENO, text, count);
}

int make_private_file(const std::string& path) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, kOwnerOnly);
  if (file < 0) return errno;
  ::close(file);
  return 0;
}

std::string trouble_with_appending(const std::string& path) {
  constexpr int kFlags = O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
  const int file = ::open(path.c_str(), kFlags, kOwnerOnly);
  if (file < 0) return std::strerror(errno);
  struct stat state {};
  const bool regular = ::fstat(file, &state) == 0 && S_ISREG(state.st_mode);
  ::close(file);
  return regular ? "" : "it is no regular file";
}

bool is_standard_input_a_folder() {
  struct stat input {};
  return ::fstat(STDIN_FILENO, &input) == 0 && S_ISDIR(input.st_mode);
}

}  // namespace bvconn::tool
