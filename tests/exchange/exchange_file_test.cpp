// The file that BVCONN_EXCHANGES names, as real calls write it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>
#include <vector>

#include "bvconn/connectors/session/bv_generic_connector.h"
#include "bvconn/core/session_state.h"
#include "files/temp_folder.h"
#include "live/own_files.h"
#include "support/misbehaving_server.h"
#include "support/recording_platform.h"

namespace bvconn::test {
namespace {

using files_test::ScopedEnvironment;
using files_test::TempFolder;
using nlohmann::json;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;

const std::string kReply =
    "<e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\"><e:Body>"
    "<r><return>R</return></r></e:Body></e:Envelope>";
const std::string kNowhere = "http://127.0.0.1:1/";

class ExchangeFile : public testing::Test {
 protected:
  static void send_to(const std::string& url) {
    BVGenericConnector().Send("urn:T", "m", "Root", SoapNode::make("n"), url, 5000, "SESSION-1");
  }
  void send_well() {
    server.answer(answers::reply(kReply));
    send_to(server.url("/soap"));
  }
  std::vector<json> lines() const {
    std::vector<json> parsed;
    for (const std::string& line : files_test::lines_of(file)) parsed.push_back(json::parse(line));
    return parsed;
  }

  TempFolder folder;
  std::string file = folder.file("exchanges.jsonl");
  ScopedEnvironment variable{"BVCONN_EXCHANGES", file};
  OwnFiles files;
  MisbehavingServer server;
};

TEST_F(ExchangeFile, HasALineForEachCallThatSaysWhoseItIs) {
  send_well();
  EXPECT_THROW(send_to(kNowhere), Error);
  const auto written = lines();
  ASSERT_THAT(written, SizeIs(2));
  EXPECT_EQ(written[0]["process"], ::getpid());
  EXPECT_EQ(written[0]["thread"], ::gettid());
  EXPECT_EQ(written[0]["number"], 1);
  EXPECT_EQ(written[0]["class"], "BVGenericConnector");
  EXPECT_EQ(written[0]["operation"], "Send");
  EXPECT_EQ(written[0]["reply"], kReply);
  EXPECT_EQ(written[0]["outcome"], "answered");
  EXPECT_EQ(written[1]["number"], 2);
  EXPECT_EQ(written[1]["outcome"], "not sent");
  EXPECT_EQ(written[1]["error"]["hex"], "0x80044301");
}

TEST_F(ExchangeFile, ShowsNoSessionIdentifier) {
  send_well();
  EXPECT_THAT(server.last_request().body, HasSubstr("SESSION-1"));
  EXPECT_THAT(files_test::bytes_of(file), Not(HasSubstr("SESSION-1")));
  EXPECT_THAT(lines().at(0)["request"].get<std::string>(), HasSubstr("***"));
}

TEST_F(ExchangeFile, IsItsOwnersAlone) {
  send_well();
  EXPECT_EQ(files_test::mode_of(file), 0600U);
}

TEST_F(ExchangeFile, IsWrittenAlsoWhereNothingIsKept) {
  session().KeepExchanges(0);
  send_well();
  send_well();
  EXPECT_THAT(lines(), SizeIs(2));
  EXPECT_FALSE(session().LastExchange().has_value());
}

TEST_F(ExchangeFile, HasTheLinesOfSeveralThreadsWhole) {
  constexpr int kThreads = 4;
  constexpr int kCalls = 20;
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([] {
      for (int call = 0; call < kCalls; ++call) EXPECT_THROW(send_to(kNowhere), Error);
    });
  }
  for (std::thread& thread : threads) thread.join();
  const auto written = lines();
  EXPECT_THAT(written, SizeIs(kThreads * kCalls));
}

TEST_F(ExchangeFile, LeavesAPipeAndAFolderAloneAndFailsNoCall) {
  ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
  send_well();
  EXPECT_TRUE(std::filesystem::is_fifo(file));
  std::filesystem::remove(file);
  std::filesystem::create_directory(file);
  send_well();
  EXPECT_TRUE(std::filesystem::is_empty(file));
}

TEST_F(ExchangeFile, IsNotWrittenByCallsInAWorldOfAnApplicationsOwn) {
  RecordingPlatform world;
  world.reply(kReply);
  send_to("http://h/");
  EXPECT_TRUE(session().LastExchange().has_value());
  EXPECT_FALSE(files_test::exists(file));
}

TEST(NoExchangeFile, IsWrittenWithoutTheVariable) {
  const ScopedEnvironment variable("BVCONN_EXCHANGES", nullptr);
  EXPECT_FALSE(platform::system_platform().exchange_listener());
}

}  // namespace
}  // namespace bvconn::test
