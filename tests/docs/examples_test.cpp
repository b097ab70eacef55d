// The examples as a reader runs them, against the sandbox. What they are expected to print is what
// docs/sandbox.md tells of its data.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <regex>
#include <string>

#include "docs/page.h"
#include "docs/reader.h"
#include "support/misbehaving_server.h"

namespace bvconn::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::StartsWith;

constexpr const char* kSoap = " http://127.0.0.1:8080/soap S-1 ";

/// A reader in the folder of the built examples.
class Example : public testing::Test {
 protected:
  Example() { reader_.type("cd BVConnector/build/dev/examples\nbvsandbox --port 8080\n", true); }

  /// What the command prints; it has to end with this status.
  std::string run(const std::string& command, int status = 0) {
    const Reader::Outcome outcome = reader_.type("./" + command + "\n", false);
    EXPECT_EQ(outcome.status, status) << command << '\n' << outcome.printed;
    return outcome.printed;
  }

  Reader reader_;
};

TEST_F(Example, FirstProgramPrintsTheFieldsOfAnInvoice) {
  EXPECT_THAT(lines_of(run("first_program" + std::string(kSoap) + "INV-1002")),
              IsSupersetOf({"InvoiceUID: INV-1002", "InvoiceNumber: 700102"}));
}

TEST_F(Example, ErrorsAsksForAReview) {
  EXPECT_EQ(run("errors" + std::string(kSoap) + "PRJ-3004"), "The review is asked for.\n");
}

TEST_F(Example, ErrorsSaysOfAProjectThatIsNotThereThatTheServerAnswered) {
  const auto lines = lines_of(run("errors" + std::string(kSoap) + "PRJ-9999", 1));
  ASSERT_EQ(lines.size(), 4U);
  EXPECT_THAT(lines[0], StartsWith("0x80044201 from SoapEnvelope: "));
  EXPECT_THAT(lines[0], HasSubstr("'PRJ-9999'"));
  EXPECT_EQ(lines[2], "The same call will get the same answer.");
  EXPECT_EQ(lines[3], "It happened in BVProjectConnector.getExistingProject.");
}

TEST_F(Example, ErrorsSaysWhereNobodyListensThatTheCallMayBeMadeAgain) {
  const auto lines = lines_of(run("errors http://127.0.0.1:8081/soap S-1 PRJ-3004", 3));
  ASSERT_EQ(lines.size(), 4U);
  EXPECT_THAT(lines[0], StartsWith("0x80044301 from HTTPTransport: "));
  EXPECT_EQ(lines[2], "The call may be made again.");
}

TEST_F(Example, ErrorsSaysOfALostConnectionThatNobodyKnows) {
  MisbehavingServer server;
  server.answer(answers::close_before_status());
  const auto lines = lines_of(run("errors " + server.url() + " S-1 PRJ-3004", 1));
  ASSERT_EQ(lines.size(), 4U);
  EXPECT_THAT(lines[0], StartsWith("0x80044307 from HTTPTransport: "));
  EXPECT_EQ(lines[2], "Look whether it was done before calling again.");
}

TEST_F(Example, BothRoutesGetsTheSameOrderOnBoth) {
  const std::string user = " http://127.0.0.1:8080/dal anna ";
  const std::string printed = run("both_routes" + std::string(kSoap) + user + "secret ORD-5003");
  const std::string dal = "By dal, from http://127.0.0.1:8080/dal:\n";
  const std::string soap = "By soap, from http://127.0.0.1:8080/soap:\n";
  const std::size_t second = printed.find(dal);
  ASSERT_NE(second, std::string::npos) << printed;
  const std::string order = printed.substr(second + dal.size());
  EXPECT_THAT(order, HasSubstr("  GID = ORD-5003\n"));
  EXPECT_THAT(order, HasSubstr("Price = "));
  EXPECT_EQ(printed.substr(0, second), soap + order);
  EXPECT_THAT(run("both_routes" + std::string(kSoap) + user + "'' ORD-5003", 1),
              HasSubstr("no login: "));
}

TEST_F(Example, QuotesAndSaveMakesTheNextTwoQuotesAndRenamesTheProject) {
  EXPECT_EQ(run("quotes_and_save" + std::string(kSoap) + "PRJ-3005 'Elm Street & Co'"),
            "made Q4031\nmade Q4032\nQUO-4031 is QUOTED\nPRJ-3005 is named Elm Street & Co\n");
}

TEST_F(Example, PrintDefaultsChoosesForThisUser) {
  const auto first = lines_of(run("print_defaults" + std::string(kSoap) + "PI-102"));
  EXPECT_THAT(first, testing::Contains(StartsWith("PI-102  ")));
  ASSERT_GE(first.size(), 2U);
  EXPECT_EQ(first[first.size() - 2], "the default was none, and is PI-102");
  EXPECT_EQ(first.back(), "quotes are printed as PI-102");
  EXPECT_THAT(run("print_defaults" + std::string(kSoap) + "PI-101"),
              HasSubstr("the default was PI-102, and is PI-101\n"));
}

TEST_F(Example, ReconcileMakesTheNextReconcileAndLetsGoOfIt) {
  const auto lines = lines_of(run("reconcile" + std::string(kSoap) + "120"));
  EXPECT_THAT(lines, ElementsAre(testing::MatchesRegex("[1-9][0-9]* open invoices of agent 120"),
                                 "REC-10004 is RECONCILED", "REC-10004 is saved and unlocked"));
  EXPECT_EQ(run("reconcile" + std::string(kSoap) + "999"), "0 open invoices of agent 999\n");
}

TEST_F(Example, HeartBeatShowsEachBeat) {
  EXPECT_EQ(run("heart_beat" + std::string(kSoap) + "2 0"), "beat 1: OK\nbeat 2: OK\n");
}

TEST_F(Example, HeartBeatIsToldByItsEventThatTheServerIsOutOfReach) {
  EXPECT_THAT(lines_of(run("heart_beat http://127.0.0.1:8081/soap S-1 2 0", 1)),
              ElementsAre("the server is out of reach", StartsWith("beat 1: Cannot reach "),
                          "the server is out of reach", StartsWith("beat 2: Cannot reach ")));
}

TEST_F(Example, TwoThreadsEachMakeTheFirstExchangeOfTheirSession) {
  EXPECT_THAT(lines_of(run("two_threads" + std::string(kSoap) + "INV-1003 PRJ-3006")),
              ElementsAre(testing::MatchesRegex("invoice: [A-Z]+, exchange 1 of its thread"),
                          testing::MatchesRegex("project: .+, exchange 1 of its thread")));
}

TEST_F(Example, OwnTransportGivesBackWithoutAServerWhatItKept) {
  const std::string call = "own_transport ~/reply.xml S-1 INV-1004";
  const std::string kept = run(call + " http://127.0.0.1:8080/soap");
  EXPECT_THAT(kept, HasSubstr("  InvoiceNumber = 700104\n"));
  EXPECT_EQ(run(call), kept);
  EXPECT_THAT(run("own_transport ~/nothing.xml S-1 INV-1004", 1), StartsWith("0x80044306: no "));
}

TEST_F(Example, DemoShowsTheMainJob) {
  const std::string printed = run("demo ../sandbox/bvsandbox");
  for (const char* seen : {"\n1. ", "\n11. ", "urn:InvoiceService", "0x80042739", "0x80044301"}) {
    EXPECT_THAT(printed, HasSubstr(seen));
  }
}

TEST(Examples, AreAllNamedByGettingStarted) {
  const std::string page = read_text(BVCONN_SOURCE_DIR "/docs/getting-started.md");
  for (const auto& entry : std::filesystem::directory_iterator(BVCONN_SOURCE_DIR "/examples")) {
    const std::string name = entry.path().filename().string();
    if (name == "CMakeLists.txt" || name == "demo.cpp") continue;
    EXPECT_THAT(page, HasSubstr("examples/" + name));
  }
}

TEST(Examples, AreShortEnoughToBeReadAtASitting) {
  int examples = 0;
  for (const auto& entry : std::filesystem::directory_iterator(BVCONN_SOURCE_DIR "/examples")) {
    const std::string name = entry.path().filename().string();
    // The demo shows the whole of the main job, and is no example of one thing.
    if (entry.path().extension() != ".cpp" || name == "demo.cpp") continue;
    const auto lines = lines_of(read_text(entry.path()));
    EXPECT_LT(lines.size(), 60U) << name;
    EXPECT_THAT(lines.front(), StartsWith("// ")) << name << " does not say what it shows";
    ++examples;
  }
  EXPECT_GE(examples, 11);
}

}  // namespace
}  // namespace bvconn::test
