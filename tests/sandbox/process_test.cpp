#include <gtest/gtest.h>
#include <signal.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <thread>

#include "sandbox/sandbox_process.h"

namespace bvconn::test {
namespace {

constexpr std::string_view kGetFirstInvoice = "<param xsi:type=\"xsd:string\">INV-1001</param>";

std::string first_invoice(SandboxProcess& sandbox) {
  return sandbox.soap("urn:InvoiceService", "getInvoice", kGetFirstInvoice).body;
}

class DatabaseFile : public ::testing::Test {
 protected:
  DatabaseFile()
      : folder_(std::filesystem::temp_directory_path() /
                ("bvsandbox-process-" + std::to_string(std::random_device{}()))) {
    std::filesystem::create_directory(folder_);
  }
  ~DatabaseFile() override { std::filesystem::remove_all(folder_); }

  std::string file() const { return (folder_ / "store.db").string(); }

 private:
  std::filesystem::path folder_;
};

TEST(SandboxProcess, TellsInOneLineWhereItListens) {
  SandboxProcess sandbox;
  const auto line = nlohmann::json::parse(sandbox.ready_line(), nullptr, false);
  ASSERT_TRUE(line.is_object()) << sandbox.ready_line();
  const std::string base = "http://127.0.0.1:" + std::to_string(sandbox.port());
  EXPECT_NE(sandbox.port(), 0);
  EXPECT_EQ(line, (nlohmann::json{{"ready", true},
                                  {"port", sandbox.port()},
                                  {"soap", base + "/soap"},
                                  {"dal", base + "/dal"}}));
}

TEST(SandboxProcess, EndsWellOnSigterm) {
  SandboxProcess sandbox;
  ASSERT_NE(sandbox.port(), 0);
  EXPECT_EQ(sandbox.end_by(SIGTERM), 0);
  EXPECT_EQ(sandbox.errors(), "");
}

TEST(SandboxProcess, EndsWellOnSigintWithAClientInTheMiddleOfARequest) {
  SandboxProcess sandbox;
  RawClient client(sandbox.port());
  ASSERT_TRUE(client.send("POST /soap HTTP/1.1\r\nContent-Length: 10\r\n\r\nabc"));
  EXPECT_EQ(sandbox.end_by(SIGINT), 0);
}

TEST(SandboxProcess, EndsWithStandardInputWhenAskedTo) {
  SandboxProcess sandbox({"--port", "0", "--until-eof"});
  ASSERT_NE(sandbox.port(), 0);
  sandbox.close_input();
  EXPECT_EQ(sandbox.wait(), 0);
}

TEST(SandboxProcess, OutlivesStandardInputOtherwise) {
  SandboxProcess sandbox;
  sandbox.close_input();
  // Time for it to notice, if it were listening.
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  EXPECT_EQ(exchange(sandbox.port(), http_request("GET", "/admin/disabled", "", "")).status, 200);
}

TEST(SandboxProcess, AUsageErrorIsStatusTwo) {
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--prot", "0"},
                                                    {"--port", "99999"},
                                                    {"--seed", "many"},
                                                    {"--memory", "--db", "x.db"}}) {
    SandboxProcess sandbox(arguments);
    EXPECT_EQ(sandbox.wait(), 2) << arguments[0];
    EXPECT_EQ(sandbox.ready_line(), "");
    EXPECT_NE(sandbox.errors(), "");
  }
}

TEST(SandboxProcess, APortInUseIsToldAndIsStatusOne) {
  SandboxProcess first;
  SandboxProcess second({"--port", std::to_string(first.port())});
  EXPECT_EQ(second.wait(), 1);
  EXPECT_NE(second.errors().find("127.0.0.1:" + std::to_string(first.port())), std::string::npos)
      << second.errors();
}

TEST(SandboxProcess, TheSameSeedGivesTheSameAnswer) {
  SandboxProcess first({"--memory", "--seed", "7"});
  SandboxProcess second({"--seed", "7"});
  SandboxProcess other({"--memory", "--seed", "8"});
  EXPECT_NE(first_invoice(first).find("INV-1001"), std::string::npos);
  EXPECT_EQ(first_invoice(first), first_invoice(second));
  EXPECT_NE(first_invoice(first), first_invoice(other));
}

TEST_F(DatabaseFile, KeepsItsDataAcrossRestarts) {
  std::string before;
  {
    SandboxProcess sandbox({"--db", file(), "--seed", "7"});
    before = first_invoice(sandbox);
    ASSERT_EQ(sandbox.end_by(SIGTERM), 0);
  }
  SandboxProcess sandbox({"--db", file()});
  EXPECT_NE(before.find("INV-1001"), std::string::npos);
  EXPECT_EQ(first_invoice(sandbox), before);
}

TEST_F(DatabaseFile, AnotherSeedForADatabaseThatHoldsDataIsStatusOne) {
  {
    SandboxProcess sandbox({"--db", file(), "--seed", "7"});
    ASSERT_EQ(sandbox.end_by(SIGTERM), 0);
  }
  SandboxProcess sandbox({"--db", file(), "--seed", "8"});
  EXPECT_EQ(sandbox.wait(), 1);
  EXPECT_NE(sandbox.errors().find("was filled from seed 7, not from 8"), std::string::npos)
      << sandbox.errors();
}

TEST_F(DatabaseFile, TwoServersStartOnOneNewDatabase) {
  SandboxProcess first({"--db", file(), "--seed", "7"});
  SandboxProcess second({"--db", file(), "--seed", "7"});
  EXPECT_NE(first_invoice(first).find("INV-1001"), std::string::npos);
  EXPECT_EQ(first_invoice(first), first_invoice(second));
}

TEST(SandboxProcess, GarbageDoesNotHurtIt) {
  SandboxProcess sandbox(
      {"--port", "0", "--max-body-bytes", "100000", "--request-deadline-ms", "200"});
  std::minstd_rand random(4711);
  for (int round = 0; round < 200; ++round) {
    std::string garbage(random() % 3000, '\0');
    for (char& c : garbage) c = static_cast<char>(random() % 256);
    RawClient client(sandbox.port());
    client.send(round % 2 == 0 ? garbage
                               : http_request("POST", round % 4 == 1 ? "/soap" : "/dal/x/y",
                                              round % 4 == 1 ? "Content-Type: text/xml\r\n"
                                                             : "Content-Type: application/json\r\n",
                                              garbage));
  }
  RawClient slow(sandbox.port());
  ASSERT_TRUE(slow.send("POST /soap HTTP/1.1\r\n"));
  EXPECT_EQ(exchange(sandbox.port(), http_request("POST", "/soap", "Content-Type: text/xml\r\n",
                                                  std::string(100'001, '<')))
                .status,
            413);
  EXPECT_EQ(slow.receive().status, 408);
  EXPECT_NE(first_invoice(sandbox).find("INV-1001"), std::string::npos);
  EXPECT_EQ(sandbox.end_by(SIGTERM), 0);
}

TEST(SandboxProcess, UnknownPathsAreNotFound) {
  SandboxProcess sandbox;
  EXPECT_EQ(exchange(sandbox.port(), http_request("POST", "/other", "", "")).status, 404);
  EXPECT_EQ(exchange(sandbox.port(), http_request("GET", "/page/other.js", "", "")).status, 404);
  EXPECT_EQ(exchange(sandbox.port(), http_request("GET", "/admin/other", "", "")).status, 404);
}

TEST(SandboxProcess, GetIsNotAllowedOnEitherProtocol) {
  SandboxProcess sandbox;
  for (const char* path : {"/soap", "/dal/HeartBeatService/sendHeartBeat"}) {
    const auto reply = exchange(sandbox.port(), http_request("GET", path, "", ""));
    EXPECT_EQ(reply.status, 405);
    EXPECT_EQ(reply.header("Allow"), "POST");
  }
}

}  // namespace
}  // namespace bvconn::test
