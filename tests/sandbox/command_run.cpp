#include "sandbox/command_run.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <memory>

namespace bvconn::test {
namespace {

struct CloseFile {
  void operator()(FILE* file) const { fclose(file); }
};
using File = std::unique_ptr<FILE, CloseFile>;

std::string text_of(FILE* file) {
  std::string text;
  rewind(file);
  std::array<char, 4096> piece{};
  while (const std::size_t size = fread(piece.data(), 1, piece.size(), file)) {
    text.append(piece.data(), size);
  }
  return text;
}

}  // namespace

CommandRun run_sandbox(const std::vector<std::string>& arguments) {
  // Files, which take any amount while nobody reads.
  const File out(tmpfile());
  const File err(tmpfile());
  std::vector<std::string> words{BVSANDBOX};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  const pid_t child = ::fork();
  if (child == 0) {
    ::dup2(::open("/dev/null", O_RDONLY | O_CLOEXEC), STDIN_FILENO);
    ::dup2(fileno(out.get()), STDOUT_FILENO);
    ::dup2(fileno(err.get()), STDERR_FILENO);
    // One that serves where it should have ended is not waited for.
    constexpr unsigned kPatience_s = 60;
    ::alarm(kPatience_s);
    ::execv(argv[0], argv.data());
    ::_exit(127);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return {.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1,
          .out = text_of(out.get()),
          .err = text_of(err.get())};
}

CommandRun ask_sandbox(std::uint16_t port, std::vector<std::string> arguments) {
  const std::string url = "http://127.0.0.1:" + std::to_string(port);
  arguments.insert(arguments.begin() + 1, {"--url", url});
  return run_sandbox(arguments);
}

}  // namespace bvconn::test
