// The example of an application with a screen, as its user runs it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <string>
#include <utility>

#include "live/own_files.h"
#include "sandbox/sandbox_process.h"
#include "support/misbehaving_server.h"

namespace bvconn::test {
namespace {

/// Both streams in order, and the exit status.
std::pair<std::string, int> run_example(const std::string& arguments) {
  const OwnFiles files;
  FILE* pipe =
      popen((std::string("'") + BVCONN_WORKER_THREAD + "' " + arguments + " 2>&1").c_str(), "r");
  if (pipe == nullptr) return {"", -1};
  std::string output;
  std::array<char, 4096> piece{};
  while (const std::size_t size = fread(piece.data(), 1, piece.size(), pipe)) {
    output.append(piece.data(), size);
  }
  const int status = pclose(pipe);
  return {output, WIFEXITED(status) ? WEXITSTATUS(status) : -1};
}

TEST(WorkerThread, HandsTheAnswerOfTheSandboxToTheScreen) {
  const SandboxProcess sandbox;
  const auto [output, status] =
      run_example("http://127.0.0.1:" + std::to_string(sandbox.port()) + "/soap session-1");
  EXPECT_THAT(output, testing::MatchesRegex("[1-9][0-9]* brands\n"));
  EXPECT_EQ(status, 0);
}

TEST(WorkerThread, ClosesAlsoWhereTheServerNeverAnswers) {
  MisbehavingServer server;
  server.answer(answers::never());
  const auto begin = std::chrono::steady_clock::now();
  const auto [output, status] = run_example(server.url() + " session-1 1");
  EXPECT_THAT(output, testing::StartsWith("Time-out in the exchange with " + server.url()));
  EXPECT_EQ(status, 0);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(30));
}

TEST(WorkerThread, SaysHowItIsCalled) {
  const auto [output, status] = run_example("one");
  EXPECT_EQ(output, "usage: worker_thread SERVER-URL SESSION [SECONDS]\n");
  EXPECT_EQ(status, 2);
}

}  // namespace
}  // namespace bvconn::test
