#include "bvconn/testing/test_world.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "bvconn/connectors/documents/bv_rma_connector.h"
#include "bvconn/connectors/invoice/bv_invoice_connector.h"
#include "bvconn/connectors/search/bv_search_connector.h"
#include "bvconn/core/session_state.h"
#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/platform/error_numbers.h"
#include "support/error_of.h"

namespace bvconn::test {
namespace {

namespace numbers = error_numbers;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kUrl = "http://h/soap";

SoapNode invoice(std::string_view uid) {
  return BVInvoiceConnector().GetInvoice(kUrl, "S-1", uid);
}

SoapNode customer(std::string_view gid) {
  return BVSearchConnector().SearchForCustomer("S-2", kUrl, gid);
}

std::string text_of(const SoapNode& node) {
  return to_text(node.Value());
}

TEST(TestWorld, AnswersAnOperationByItsName) {
  TestWorld world;
  world.on("BVInvoiceConnector.GetInvoice").replies("<return><Number>4711</Number></return>");
  EXPECT_EQ(text_of(invoice("U-1").Nodes().ItemByName("Number")), "4711");
}

TEST(TestWorld, KeepsWhatAnOperationSent) {
  TestWorld world;
  world.on("BVInvoiceConnector.GetInvoice").replies("OK");
  invoice("U-1");
  ASSERT_EQ(world.calls().size(), 1U);
  const SeenCall call = world.last_call();
  EXPECT_EQ(call.cls, "BVInvoiceConnector");
  EXPECT_EQ(call.operation, "GetInvoice");
  EXPECT_EQ(call.name(), "BVInvoiceConnector.GetInvoice");
  EXPECT_EQ(call.route, ExchangeRoute::kSoap);
  EXPECT_EQ(call.url, kUrl);
  EXPECT_EQ(call.soap_action, "urn:InvoiceService");
  EXPECT_EQ(call.timeout_ms, 300000);
  EXPECT_EQ(call.session_id(), "S-1");
  EXPECT_EQ(call.envelope().MethodName(), "getInvoice");
  ASSERT_EQ(call.parameters().Count(), 1U);
  EXPECT_EQ(call.parameters().Item(0).Name(), "param");
  EXPECT_EQ(text_of(call.parameters().Item(0)), "U-1");
  EXPECT_THAT(call.text, HasSubstr("<m:getInvoice xmlns:m=\"urn:InvoiceService\">"));
}

TEST(TestWorld, KeepsWhatAServiceObjectWasAsked) {
  TestWorld world;
  world.use_dal();
  world.on("BVSearchConnector.SearchForCustomer").replies("C");
  EXPECT_EQ(text_of(customer("G-1")), "C");
  const SeenCall call = world.last_call();
  EXPECT_EQ(call.name(), "BVSearchConnector.SearchForCustomer");
  EXPECT_EQ(call.route, ExchangeRoute::kDal);
  EXPECT_EQ(call.object, "SearchService");
  EXPECT_EQ(call.object_operation, "SearchForCustomer");
  EXPECT_THAT(call.arguments, ElementsAre(Variant("G-1")));
  EXPECT_EQ(call.url, "");
}

TEST(TestWorld, AnswersAServiceObjectByItsOwnName) {
  TestWorld world;
  world.use_dal();
  world.on("SearchService.SearchForCustomer").replies("C");
  EXPECT_EQ(text_of(customer("G-1")), "C");
  EXPECT_EQ(world.calls("SearchService.SearchForCustomer").size(), 1U);
  EXPECT_EQ(world.calls("BVSearchConnector.SearchForCustomer").size(), 1U);
  EXPECT_EQ(world.calls("BVSearchConnector.SearchForBrands").size(), 0U);
}

TEST(TestWorld, ReadsTheRequestOfASaveOnEitherRoute) {
  TestWorld world;
  world.on("BVRMAConnector.SubmitRMA").replies("<return/>").repeatedly();
  const SoapNode rma = SoapNode::make("RMA");
  rma.Nodes().Create("Reason", "broken");
  BVRMAConnector().SubmitRMA(kUrl, "S-1", rma);
  world.use_dal();
  BVRMAConnector().SubmitRMA(kUrl, "S-1", rma);
  ASSERT_EQ(world.calls().size(), 2U);
  EXPECT_EQ(world.calls()[1].object, "RMAService");
  for (const SeenCall& call : world.calls()) {
    EXPECT_EQ(text_of(call.parameters().Item(0).Nodes().ItemByName("Reason")), "broken");
    EXPECT_EQ(call.session_id(), "S-1");
    EXPECT_THAT(call.texts(), ElementsAre("broken"));
  }
}

TEST(TestWorld, LogsWithTheMaskAndTheFileThatItWasGiven) {
  TestWorld world;
  world.set_log_mask(8);
  world.set_log_file("/nowhere/calls.log");
  EXPECT_EQ(session().Logger().LogMask(), 8);
  EXPECT_EQ(session().Logger().LogFilePath(), "/nowhere/calls.log");
}

TEST(TestWorld, KeepsTheMessagesThatAreShown) {
  const TestWorld world;
  platform::current().message_box()->show("The title", "what happened");
  EXPECT_THAT(world.record().messages, ElementsAre("The title | what happened"));
}

TEST(Shown, IsTheTypeAloneOfWhatIsNoText) {
  EXPECT_EQ(shown(Variant(Bytes{std::byte{1}})), "bytes");
  EXPECT_EQ(shown(Variant(StringArray{"a"})), "array");
  EXPECT_EQ(shown(Variant(SoapNode::make("n"))), "node");
  EXPECT_EQ(shown(Variant(4711)), "4711");
  EXPECT_EQ(shown(Variant("text")), "\"text\"");
}

TEST(ScriptedReply, IsTheTextOfOneParameterUnlessItIsXml) {
  TestWorld world;
  world.next().replies("a < b & c > d").replies("").replies("<x>1</x><y>2</y>");
  EXPECT_EQ(text_of(invoice("1")), "a < b & c > d");
  EXPECT_EQ(error_of([] { invoice("2"); }).number, numbers::kNoSuchNode);
  EXPECT_EQ(invoice("3").Name(), "x");
}

TEST(ScriptedReply, IsNamedAsServersNameIt) {
  TestWorld world;
  world.next().replies("OK");
  invoice("U-1");
  EXPECT_THAT(world.record().log,
              testing::Contains("LogAtLevel 16 Global.sendXML \"Time to execute "
                                "getInvoiceResponse: 0\" 0"));
}

TEST(ScriptedFault, ReachesTheCallerAsTheServersWouldOnBothRoutes) {
  TestWorld world;
  world.next().faults("Server", "no <such> customer & so on").repeatedly();
  const Error by_soap = error_of([] { customer("G-1"); });
  EXPECT_EQ(by_soap.number, numbers::kSoapFault);
  EXPECT_EQ(by_soap.description, "no <such> customer & so on");
  EXPECT_EQ(by_soap.outcome, Outcome::kAnswered);
  world.use_dal();
  EXPECT_EQ(error_of([] { customer("G-1"); }).number, numbers::kSoapFault);
}

TEST(ScriptedFault, IsMappedByItsCode) {
  TestWorld world;
  world.on("BVInvoiceConnector.GetInvoice").faults("10041", "gone");
  EXPECT_EQ(error_of([] { invoice("U-1"); }).number, numbers::kInvoiceFault);
}

TEST(ScriptedFailure, HasItsNumberAndTheOutcomeThatGoesWithIt) {
  TestWorld world;
  world.next().fails(numbers::kTimeout, "too slow").fails(numbers::kCannotConnect);
  const Error timeout = error_of([] { invoice("1"); });
  EXPECT_EQ(timeout.number, numbers::kTimeout);
  EXPECT_EQ(timeout.description, "too slow");
  EXPECT_EQ(timeout.outcome, Outcome::kUnknown);
  const Error unreachable = error_of([] { invoice("2"); });
  EXPECT_EQ(unreachable.number, numbers::kCannotConnect);
  EXPECT_EQ(unreachable.outcome, Outcome::kNotSent);
  EXPECT_THAT(world.record().transport, testing::Not(testing::Contains("Receive \"UTF-8\"")));
}

TEST(ScriptedFailure, OfAReplyComesWhenTheReplyIsReceived) {
  TestWorld world;
  world.next().fails(numbers::kHttpStatus);
  const Error error = error_of([] { invoice("1"); });
  EXPECT_EQ(error.number, numbers::kHttpStatus);
  EXPECT_EQ(error.outcome, Outcome::kAnswered);
  EXPECT_EQ(world.record().transport.back(), "Receive \"UTF-8\"");
}

TEST(ScriptedFailure, IsThatOfTheServiceObjectToo) {
  TestWorld world;
  world.use_dal();
  world.next().fails(Error(7001, "SearchService", "closed for today"));
  const Error error = error_of([] { customer("G-1"); });
  EXPECT_EQ(error.number, 7001);
  EXPECT_EQ(error.source, "SearchService");
}

TEST(ScriptedBytes, ArriveAsTheyAre) {
  TestWorld world;
  world.next().answers("").answers("<html/>");
  EXPECT_EQ(error_of([] { invoice("1"); }).number, numbers::kNotWellFormed);
  EXPECT_EQ(error_of([] { invoice("2"); }).number, numbers::kNotASoapEnvelope);
}

TEST(Script, GivesItsAnswersInOrder) {
  TestWorld world;
  world.on("BVInvoiceConnector.GetInvoice").replies("one").replies("two");
  world.next().replies("any");
  EXPECT_EQ(text_of(invoice("1")), "one");
  EXPECT_EQ(text_of(customer("G")), "any");
  EXPECT_EQ(text_of(invoice("2")), "two");
}

TEST(Script, RepeatsItsLastAnswerAlone) {
  TestWorld world;
  world.on("BVInvoiceConnector.GetInvoice").replies("first").replies("ever").repeatedly();
  EXPECT_EQ(text_of(invoice("1")), "first");
  for (int i = 0; i < 3; ++i) EXPECT_EQ(text_of(invoice("2")), "ever");
}

TEST(Script, IsForRequestsThatHoldItsTexts) {
  TestWorld world;
  world.on("BVInvoiceConnector.GetInvoice").with("U-2").replies("two");
  world.on("BVInvoiceConnector.GetInvoice").with("U-1").replies("one");
  EXPECT_EQ(text_of(invoice("U-1")), "one");
  EXPECT_EQ(text_of(invoice("U-2")), "two");
}

TEST(Script, ComputesAnAnswerFromTheRequest) {
  TestWorld world;
  world.on("BVInvoiceConnector.GetInvoice")
      .computes([](const SeenCall& call) {
        return ScriptedAnswer::reply("you asked for " + call.texts().at(0));
      })
      .repeatedly();
  EXPECT_EQ(text_of(invoice("U-7")), "you asked for U-7");
  EXPECT_EQ(text_of(invoice("U-8")), "you asked for U-8");
}

TEST(Script, OfAnUnknownNameFailsAtOnceAndSaysWhatMayBeMeant) {
  TestWorld world;
  const auto words = [&](const char* name) -> std::string {
    try {
      world.on(name);
    } catch (const std::invalid_argument& error) {
      return error.what();
    }
    return "";
  };
  EXPECT_EQ(words("BVInvoiceConnector.GetInvoce"),
            "TestWorld: there is no operation \"BVInvoiceConnector.GetInvoce\"; did you mean "
            "BVInvoiceConnector.GetInvoice?");
  EXPECT_EQ(words("SearchService.searchForCustomer"),
            "TestWorld: there is no operation \"SearchService.searchForCustomer\"; did you mean "
            "SearchService.SearchForCustomer?");
  EXPECT_EQ(words("GetInvoice"), "TestWorld: there is no operation \"GetInvoice\"");
}

TEST(UnaskedRequest, SaysWhatWasAskedWhatWasScriptedAndWhatIsNearest) {
  TestWorld world;
  world.on("BVInvoiceConnector.GetInvoice").with("U-1").replies("one");
  world.on("BVSearchConnector.SearchForBrands").replies("B").repeatedly();
  const Error error = error_of([] { invoice("U-2"); });
  EXPECT_EQ(error.number, numbers::kFailed);
  EXPECT_EQ(error.source, "TestWorld");
  EXPECT_EQ(error.description,
            "nobody scripted an answer for BVInvoiceConnector.GetInvoice\n"
            "  asked:    BVInvoiceConnector.GetInvoice by SOAP to http://h/soap, SOAPAction "
            "\"urn:InvoiceService\", with \"U-2\"\n"
            "  scripted: BVInvoiceConnector.GetInvoice with \"U-1\" (1 answer left)\n"
            "            BVSearchConnector.SearchForBrands (as often as it is asked)\n"
            "  nearest:  BVInvoiceConnector.GetInvoice with \"U-1\" (1 answer left)");
  EXPECT_THAT(world.problems(), ElementsAre(error.description));
  invoice("U-1");
}

TEST(UnaskedRequest, SaysSoWhereNothingWasScripted) {
  TestWorld world;
  world.use_dal();
  const Error error = error_of([] { customer("G-1"); });
  EXPECT_EQ(error.description,
            "nobody scripted an answer for BVSearchConnector.SearchForCustomer\n"
            "  asked:    BVSearchConnector.SearchForCustomer by SearchService.SearchForCustomer, "
            "with \"G-1\"\n"
            "  scripted: nothing");
  EXPECT_EQ(world.problems().size(), 1U);
}

TEST(UnaskedRequest, IsReportedWhenItComes) {
  std::vector<std::string> reported;
  TestWorld world([&](const std::string& problem) { reported.push_back(problem); });
  error_of([] { invoice("U-1"); });
  ASSERT_EQ(reported.size(), 1U);
  EXPECT_THAT(reported[0], StartsWith("nobody scripted an answer for"));
}

TEST(AnswerThatNobodyAskedFor, IsReportedAtTheWorldsEnd) {
  std::vector<std::string> reported;
  {
    TestWorld world([&](const std::string& problem) { reported.push_back(problem); });
    world.on("BVInvoiceConnector.GetInvoice").replies("one").replies("two").replies("three");
    world.on("BVSearchConnector.SearchForBrands").replies("B").repeatedly();
    invoice("U-1");
  }
  EXPECT_THAT(reported, ElementsAre("a scripted answer was never asked for: "
                                    "BVInvoiceConnector.GetInvoice (2 answers left)"));
}

TEST(Verify, FailsWithAllProblems) {
  TestWorld world;
  world.next().replies("one");
  try {
    world.verify();
    ADD_FAILURE() << "it found nothing";
  } catch (const std::logic_error& error) {
    EXPECT_STREQ(error.what(),
                 "TestWorld:\na scripted answer was never asked for: any request (1 answer left)");
  }
}

TEST(Verify, IsContentWithAScriptThatWasPlayed) {
  TestWorld world;
  world.next().replies("one");
  invoice("U-1");
  EXPECT_NO_THROW(world.verify());
}

TEST(TestWorldDeathTest, ProblemsThatNobodyLookedAtEndTheProgram) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(
      {
        TestWorld world;
        world.next().replies("one");
      },
      "TestWorld: a scripted answer was never asked for: any request");
}

TEST(TestWorldDeathTest, ProblemsDoNotHideTheFailureThatEndsTheTest) {
  EXPECT_THROW(
      {
        TestWorld world;
        world.next().replies("one");
        throw std::runtime_error("the test has failed");
      },
      std::runtime_error);
}

}  // namespace
}  // namespace bvconn::test
