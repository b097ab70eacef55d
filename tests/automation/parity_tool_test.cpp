#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "automation/scripted_server.h"
#include "automation/tool_process.h"

namespace bvconn::test {
namespace {

using testing::HasSubstr;
using testing::Not;

/// The calls of a server's two routes, in the order in which parity makes them.
class Parity {
 public:
  Parity(const std::string& by_soap, const std::string& by_dal, const std::string& disabled = "") {
    server.reply(reply_envelope(by_soap));
    server.reply("token");   // Login
    server.reply(disabled);  // GetDisabledServices
    server.reply(reply_envelope(by_dal));
  }

  Tool::Outcome run(std::vector<std::string> more = {}) {
    std::vector<std::string> words{"parity",
                                   "BVOrderConnector.getSAPOrderView",
                                   "aServerURL=" + server.url(),
                                   "aSessionID=session-secret",
                                   "aOrderGID=G1",
                                   "aIncludePrice=true",
                                   "--dal",
                                   server.url()};
    words.insert(words.end(), more.begin(), more.end());
    return Tool::run(words);
  }

  ScriptedServer server;
};

TEST(Parity, EqualAnswersCanGoByTheDal) {
  const std::string answer = "<return><Number>1</Number><Lines><Line>a</Line></Lines></return>";
  Parity parity(answer, answer);
  const Tool::Outcome outcome = parity.run();
  EXPECT_EQ(outcome.out,
            "BVOrderConnector.getSAPOrderView: equal; this method can go by the DAL.\n");
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  const auto requests = parity.server.requests();
  ASSERT_EQ(requests.size(), 4U);
  EXPECT_THAT(requests[3].line, HasSubstr("/OrderService/getSAPOrderView"));
}

TEST(Parity, BothRoutesGetWhatAPipeGivesButOnce) {
  ScriptedServer server;
  for (const char* reply : {"<return/>", "token", "", "<return/>"}) {
    server.reply(std::string_view(reply).starts_with('<') ? reply_envelope(reply) : reply);
  }
  const Tool::Outcome outcome =
      Tool::run({"parity", "BVOrderConnector.getSAPOrderView", "aServerURL=" + server.url(),
                 "aSessionID=S", "aOrderGID=@-", "aIncludePrice=true", "--dal", server.url()},
                "@G 1");
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  const auto requests = server.requests();
  ASSERT_EQ(requests.size(), 4U);
  EXPECT_THAT(requests[0].body, HasSubstr(">@G 1<"));
  EXPECT_THAT(requests[3].body, HasSubstr("@G 1"));
}

TEST(Parity, DifferencesStandSideBySide) {
  Parity parity("<return><Number>1</Number><Line>a</Line><Line>b</Line></return>",
                "<return><Number>2</Number><Line>a</Line><More>c</More></return>");
  const Tool::Outcome outcome = parity.run();
  EXPECT_EQ(outcome.out,
            "                SOAP      DAL\n"
            "return/Number   \"1\"       \"2\"\n"
            "return/Line[2]  \"b\"       (absent)\n"
            "return/More     (absent)  \"c\"\n"
            "BVOrderConnector.getSAPOrderView: different; this method cannot go by the DAL as it "
            "is.\n");
  EXPECT_EQ(outcome.status, 1);
}

TEST(Parity, TheOrderOfFieldsCounts) {
  Parity parity("<return><A>1</A><B>2</B></return>", "<return><B>2</B><A>1</A></return>");
  const Tool::Outcome outcome = parity.run();
  EXPECT_THAT(outcome.out, HasSubstr("(order)  return/A  return/B\n"));
  EXPECT_EQ(outcome.status, 1);
}

TEST(Parity, SecretsAreNotShown) {
  const TemporaryFolder folder;
  Parity parity("<return><A>session-secret</A><Password>one-secret</Password></return>",
                "<return><A>login-secret</A><Password>other-secret</Password></return>");
  const Tool::Outcome outcome =
      parity.run({"--user", "u", "--password-file", folder.file("p", "login-secret\n")});
  EXPECT_THAT(outcome.out, HasSubstr("return/Password  ***"));
  EXPECT_THAT(outcome.out + outcome.err, Not(HasSubstr("secret")));
  EXPECT_THAT(parity.server.requests().at(1).body, HasSubstr("\"login-secret\""));
}

TEST(Parity, AShortSessionLeavesTheAnswersReadable) {
  ScriptedServer server;
  server.reply(reply_envelope("<return>Sold</return>"));
  server.reply("token");
  server.reply("");
  server.reply(reply_envelope("<return>Shipped</return>"));
  const Tool::Outcome outcome =
      Tool::run({"parity", "BVOrderConnector.getSAPOrderView", "aServerURL=" + server.url(),
                 "aSessionID=S", "aOrderGID=G1", "aIncludePrice=true", "--dal", server.url()});
  EXPECT_THAT(outcome.out, HasSubstr("\"Sold\"  \"Shipped\"\n"));
}

TEST(Parity, AMethodThatIsDisabledIsComparedAllTheSame) {
  Parity parity("<return/>", "<return/>", "urn:OrderService.getSAPOrderView|");
  const Tool::Outcome outcome = parity.run();
  EXPECT_EQ(outcome.out,
            "BVOrderConnector.getSAPOrderView: equal; this method can go by the DAL; it is "
            "disabled there at present.\n");
  EXPECT_EQ(outcome.status, 0);
}

TEST(Parity, AFailedRouteGivesNoVerdict) {
  Parity parity("<return/>", "not an envelope<");
  const Tool::Outcome outcome = parity.run();
  EXPECT_THAT(outcome.out, HasSubstr("No verdict: both routes have to give an answer.\n"));
  EXPECT_EQ(outcome.status, 1);
}

TEST(Parity, ASaveIsNotDoneTwiceUnasked) {
  ScriptedServer server;
  const Tool::Outcome outcome =
      Tool::run({"parity", "BVProjectConnector.SaveProject", "aServerURL=" + server.url(),
                 "aSessionID=S", "aProject=<P/>", "--dal", server.url()});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_THAT(outcome.err, HasSubstr("--twice allows it"));
  EXPECT_TRUE(server.requests().empty());
}

TEST(Parity, AnOperationWithOneRouteIsNotCompared) {
  const Tool::Outcome outcome =
      Tool::run({"parity", "BVInvoiceConnector.GetInvoice", "aServerURL=" + dead_url(),
                 "aSessionID=S", "strInvoiceUID=U", "--dal", dead_url()});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_THAT(outcome.err, HasSubstr("the data access layer does not serve this operation"));
}

}  // namespace
}  // namespace bvconn::test
