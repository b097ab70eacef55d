// Where there is no PostgreSQL server, the tests that need one are skipped, and so is the program
// as a whole. One that is skipped though there was a server has lost it on the way, which is a
// failure.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>

#include "sandbox/postgres_server.h"

namespace {

constexpr int kFailed = 1;
/// What the program's entry among the tests takes for "skipped".
constexpr int kNoServer = 77;

}  // namespace

int main(int argc, char** argv) {
  ::testing::InitGoogleMock(&argc, argv);
  const bool has_server = bvconn::test::PostgresServer::shared().missing().empty();
  if (const int status = RUN_ALL_TESTS(); status != 0) return status;
  if (!has_server) return kNoServer;
  const int skipped = ::testing::UnitTest::GetInstance()->skipped_test_count();
  if (skipped == 0) return 0;
  std::fprintf(stderr, "%d tests were skipped though there was a server\n", skipped);
  return kFailed;
}
