#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/http/http_transport.h"
#include "support/error_of.h"
#include "support/misbehaving_server.h"

namespace bvconn::test {

/// Seconds that `action` takes.
inline double seconds_of(const std::function<void()>& action) {
  const auto begin = std::chrono::steady_clock::now();
  action();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

/// A transport of its own for each test, and a server that waits for a script. A request whose
/// answer was not scripted gets "<ok/>". No call may take longer than the transport's time-out.
class TransportTest : public testing::Test {
 protected:
  TransportTest() { transport->Timeout(10000); }

  std::string call(std::string_view text = "<question/>") {
    transport->Send(server.url(), text);
    return transport->Receive("UTF-8");
  }

  /// Fails in Send, with this number, and leaves a transport that works.
  Error expect_send_fails(std::int32_t number) {
    const Error error = error_of([&] { transport->Send(secret_url(), "<question/>"); });
    expect_described(error, number);
    EXPECT_EQ(error_of([&] { transport->Receive("UTF-8"); }).number, error_numbers::kBadReply);
    expect_next_call_works();
    return error;
  }

  /// Passes Send and fails in Receive, with this number, and leaves a transport that works.
  Error expect_receive_fails(std::int32_t number) {
    EXPECT_NO_THROW(transport->Send(secret_url(), "<question/>"));
    const Error error = error_of([&] { transport->Receive("UTF-8"); });
    expect_described(error, number);
    expect_next_call_works();
    return error;
  }

  void expect_next_call_works() { EXPECT_EQ(call("<next/>"), "<ok/>"); }

  /// The server's address with a user name and a password, which no description may show.
  std::string secret_url() const { return "http://joe:pass%20word@" + server.host() + "/soap?q=1"; }

  void expect_described(const Error& error, std::int32_t number) const {
    EXPECT_EQ(hex_number(error.number), hex_number(number)) << error.description;
    EXPECT_EQ(error.source, "HTTPTransport");
    EXPECT_THAT(error.description, testing::HasSubstr("http://" + server.host() + "/soap?q=1"));
    EXPECT_THAT(error.description, testing::Not(testing::HasSubstr("word")));
    EXPECT_THAT(error.description, testing::Not(testing::HasSubstr("joe")));
  }

  MisbehavingServer server;
  std::shared_ptr<HTTPTransport> transport = make_http_transport();
};

/// A folder that goes with the test.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "bvconn-http-XXXXXX").string();
    EXPECT_NE(mkdtemp(pattern.data()), nullptr);
    path_ = pattern;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string operator/(std::string_view name) const { return path_ + "/" + std::string(name); }

 private:
  std::string path_;
};

}  // namespace bvconn::test
