#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "automation/scripted_server.h"
#include "automation/tool_process.h"

namespace bvconn::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

Tool::Outcome get_invoice(const std::string& url) {
  return Tool::run({"call", "BVInvoiceConnector.GetInvoice", "aServerURL=" + url,
                    "aSessionID=session-secret", "strInvoiceUID=U1", "--show-exchange"});
}

TEST(ShowExchange, GoesToStandardErrorAndLeavesTheAnswerAlone) {
  ScriptedServer server;
  server.reply(reply_envelope("<return>4711</return>"));
  const Tool::Outcome outcome = get_invoice(server.url());
  EXPECT_EQ(outcome.out, "return = 4711\n");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(
      outcome.err,
      AllOf(HasSubstr("exchange 1: BVInvoiceConnector.GetInvoice by SOAP at 2"),
            HasSubstr("\n  to          " + server.url() + "\n"),
            HasSubstr("\n  SOAPAction  \"urn:InvoiceService\"\n"),
            HasSubstr("\n  outcome     answered\n"), HasSubstr("\n  HTTP        200\n"),
            HasSubstr("          <param xsi:type=\"xsd:string\">U1</param>\n"),
            HasSubstr("    HTTP/1.1 200 OK\n"), HasSubstr("        <return>4711</return>\n")));
}

TEST(ShowExchange, HidesTheSession) {
  ScriptedServer server;
  server.reply(reply_envelope("<return>session-secret</return>"));
  EXPECT_THAT(get_invoice(server.url()).err,
              AllOf(HasSubstr("<return>***</return>"), Not(HasSubstr("session-secret"))));
}

TEST(ShowExchange, FollowsTheErrorOfACallThatFailed) {
  ScriptedServer server;
  server.reply(fault_envelope("10041", "No such invoice"));
  const Tool::Outcome outcome = get_invoice(server.url());
  EXPECT_EQ(outcome.out, "");
  EXPECT_NE(outcome.status, 0);
  const std::size_t failed = outcome.err.find("bvconn: BVInvoiceConnector.GetInvoice failed: ");
  const std::size_t view = outcome.err.find("exchange 1: ");
  ASSERT_NE(failed, std::string::npos);
  ASSERT_NE(view, std::string::npos);
  EXPECT_LT(failed, view);
  // The mapped error has no words of its own.
  EXPECT_THAT(outcome.err,
              AllOf(HasSubstr("No such invoice"), HasSubstr("raised      0x80042739")));
}

TEST(ShowExchange, TellsThatNothingWasSent) {
  const Tool::Outcome unreachable = get_invoice(dead_url());
  EXPECT_THAT(unreachable.err, HasSubstr("\n  outcome     not sent\n"));
  const Tool::Outcome silent =
      Tool::run({"call", "BVHeartBeatConnector.UpdateHeartBeatTime", "--show-exchange"});
  EXPECT_EQ(silent.err, "bvconn: nothing was sent\n");
  EXPECT_EQ(silent.status, 0);
}

}  // namespace
}  // namespace bvconn::test
