#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "files/temp_folder.h"
#include "sandbox/replay/dal_call.h"
#include "sandbox/replay/differences.h"
#include "sandbox/replay/player.h"

namespace bvconn::test {
namespace {

using sandbox::AskedRequest;
using sandbox::Player;
using sandbox::PlayOrder;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;

/// Made once: it runs the whole library.
const sandbox::RequestReader& reader() {
  static const auto made = std::make_unique<sandbox::RequestReader>();
  return *made;
}

wire::WireStep get_invoice(const std::string& uid, const std::string& reply = "") {
  wire::WireStep step;
  step.member = "BVInvoiceConnector.GetInvoice";
  step.url = "http://server/soap";
  step.soap_action = "urn:InvoiceService";
  step.user_id = "S-1";
  step.request = R"(<m:getInvoice xmlns:m="urn:InvoiceService"><param xsi:type="xsd:string">)" +
                 uid + "</param></m:getInvoice>";
  step.reply = "<return>" + reply + "</return>";
  return step;
}

wire::WireStep order_view(const std::string& arguments) {
  wire::WireStep step;
  step.member = "BVOrderConnector.getSAPOrderView";
  step.dal = {"OrderService.getSAPOrderView(" + arguments + ")"};
  step.reply = "<return>view</return>";
  return step;
}

AskedRequest asked(const wire::WireStep& step) {
  return reader().read(sandbox::http_request_of(step));
}

Player player_of(const std::vector<wire::WireStep>& steps, PlayOrder order = PlayOrder::kAny) {
  std::vector<sandbox::Recorded> recorded;
  for (const auto& step : steps) {
    recorded.push_back({.place = "f.wire:" + std::to_string(recorded.size() + 1),
                        .request = asked(step),
                        .reply = sandbox::reply_of(step)});
  }
  return {std::move(recorded), order};
}

TEST(Replay, WhatWasMaskedStandsForAnyText) {
  EXPECT_TRUE(sandbox::stands_for("***", "secret"));
  EXPECT_TRUE(sandbox::stands_for("***", ""));
  EXPECT_TRUE(sandbox::stands_for("<a>***</a><b>***</b>", "<a>1</a><b>2</b>"));
  EXPECT_TRUE(sandbox::stands_for("", ""));
  EXPECT_FALSE(sandbox::stands_for("<a>***</a>", "<a>1</b>"));
  EXPECT_FALSE(sandbox::stands_for("<a>***</a>", "<b>1</a>"));
  EXPECT_FALSE(sandbox::stands_for("x***x", "x"));
  EXPECT_FALSE(sandbox::stands_for("a", "b"));
  EXPECT_FALSE(sandbox::stands_for("", "b"));
}

TEST(Replay, ARequestIsKnownByItsOperationAndArguments) {
  const AskedRequest invoice = asked(get_invoice("INV-1"));
  EXPECT_THAT(invoice.operations, ElementsAre("BVInvoiceConnector.GetInvoice"));
  ASSERT_EQ(invoice.arguments.size(), 1U);
  EXPECT_EQ(invoice.arguments[0].name, "strInvoiceUID");
  EXPECT_EQ(invoice.arguments[0].text, "INV-1");
  const AskedRequest view = asked(order_view("\"O-2\", true"));
  EXPECT_EQ(view.title(), "BVOrderConnector.getSAPOrderView");
  ASSERT_EQ(view.arguments.size(), 2U);
  EXPECT_EQ(view.arguments[1].name, "aIncludePrice");
  EXPECT_EQ(view.arguments[1].text, "true");
}

TEST(Replay, WhoAsksIsNoPartOfARequest) {
  wire::WireStep other = get_invoice("INV-1");
  other.user_id = "***";
  other.soap_action = "none";
  EXPECT_TRUE(sandbox::stands_for(asked(other), asked(get_invoice("INV-1"))));
}

TEST(Replay, TheTextOfARequestIsAnArgumentLikeItsOwn) {
  wire::WireStep step;
  step.dal = {"OrderService.getSAPInfo({request})"};
  step.user_id = "S-1";
  step.request =
      R"(<m:getSAPInfo xmlns:m="urn:OrderService"><param xsi:type="xsd:string">O-2</param>)"
      R"(<param xsi:type="xsd:string">A-3</param><param xsi:type="xsd:string">C-4</param>)"
      "</m:getSAPInfo>";
  const AskedRequest info = asked(step);
  ASSERT_EQ(info.arguments.size(), 3U);
  EXPECT_EQ(info.arguments[2].name, "aCustomerGID");
  EXPECT_EQ(info.arguments[2].text, "C-4");
  step.user_id = "S-2";
  EXPECT_TRUE(sandbox::stands_for(info, asked(step)));
}

TEST(Replay, ALineOfACallIsTheJsonThatGoesOut) {
  const auto call = sandbox::dal_call_of(
      R"(A.one("a, \"b\") {request}", true, 5, missing, empty, {request}) by name)", "<r/>");
  ASSERT_TRUE(call);
  EXPECT_EQ(call->object, "A");
  EXPECT_EQ(call->operation, "one");
  EXPECT_EQ(call->body, R"({"arguments":["a, \"b\") {request}", true, 5, null, null, "<r/>"]})");
  for (const char* line : {"", "A.one", "one(1)", "A.one(1", "A.one(x)", "A.one(\"1)"}) {
    EXPECT_FALSE(sandbox::dal_call_of(line, "")) << line;
  }
}

TEST(Replay, ABodyThatIsNoCallHasNoArguments) {
  EXPECT_FALSE(sandbox::dal_arguments("[1]"));
  EXPECT_FALSE(sandbox::dal_arguments("{\"arguments\":1}"));
  const std::string deep(100'000, '[');
  EXPECT_FALSE(sandbox::dal_arguments("{\"arguments\":" + deep));
  EXPECT_THAT(*sandbox::dal_arguments(R"({"arguments":[["a",1,null],{"b":1}]})"),
              ElementsAre("a;1;", R"({"b":1})"));
}

TEST(Replay, TheSameRequestGetsItsRepliesInTurnAndThenTheLastAgain) {
  Player player =
      player_of({get_invoice("A", "first"), get_invoice("B", "other"), get_invoice("A", "second")});
  const AskedRequest a = asked(get_invoice("A"));
  EXPECT_THAT(player.answer(a).body, HasSubstr("<return>first</return>"));
  EXPECT_THAT(player.answer(a).body, HasSubstr("<return>second</return>"));
  EXPECT_THAT(player.answer(a).body, HasSubstr("<return>second</return>"));
  EXPECT_THAT(player.answer(asked(get_invoice("B"))).body, HasSubstr("<return>other</return>"));
}

TEST(Replay, InOrderEachExchangeIsUsedOnceAndInItsTurn) {
  Player player = player_of({get_invoice("A", "1"), get_invoice("B", "2")}, PlayOrder::kRecorded);
  EXPECT_THAT(player.answer(asked(get_invoice("B"))).body,
              HasSubstr("BVInvoiceConnector.GetInvoice as it was asked is not the next recorded "
                        "exchange, f.wire:1: strInvoiceUID is 'A' there, 'B' here<"));
  EXPECT_THAT(player.answer(asked(get_invoice("A"))).body, HasSubstr("<return>1</return>"));
  EXPECT_THAT(player.answer(asked(get_invoice("B"))).body, HasSubstr("<return>2</return>"));
  const auto late = player.answer(asked(get_invoice("A")));
  EXPECT_EQ(late.status, 500);
  EXPECT_THAT(late.body, HasSubstr("BVInvoiceConnector.GetInvoice was asked after the last "
                                   "recorded exchange, f.wire:2<"));
}

TEST(Replay, AnUnmatchedRequestIsToldTheNearestAndAllThatDiffers) {
  Player player = player_of({order_view("\"O-1\", false"), order_view("\"O-2\", true")});
  const auto reply = player.answer(asked(order_view("\"O-3\", true")));
  EXPECT_EQ(reply.status, 404);
  EXPECT_EQ(reply.body,
            R"({"description":"No recorded exchange answers BVOrderConnector.getSAPOrderView as )"
            R"(it was asked; the nearest is f.wire:2: aOrderGID is 'O-2' there, 'O-3' here",)"
            R"("number":-2147201501,"source":"OrderService"})");
}

TEST(Replay, AnUnknownOperationIsToldTheOneOfTheNearestName) {
  Player player = player_of({order_view("\"O-1\", false"), get_invoice("A")});
  wire::WireStep other = get_invoice("A");
  other.request = R"(<m:getInvoices xmlns:m="urn:InvoiceService"/>)";
  EXPECT_THAT(player.answer(asked(other)).body,
              HasSubstr("No recorded exchange answers getInvoices of urn:InvoiceService as it was "
                        "asked; the nearest is f.wire:2: it is BVInvoiceConnector.GetInvoice<"));
}

TEST(Replay, WhatDiffersIsShownWhereItDiffersAndWithinOneKibibyte) {
  const std::string text(100'000, 'x');
  Player player = player_of({get_invoice(text + "1" + text)});
  const auto reply = player.answer(asked(get_invoice(text + "2" + text)));
  EXPECT_THAT(reply.body, HasSubstr("is '…xxxxxxxxxxxxxxxx1xxx"));
  EXPECT_THAT(reply.body, HasSubstr("here</faultstring>"));
  const auto begin = reply.body.find("<faultstring>") + std::string("<faultstring>").size();
  EXPECT_LE(reply.body.find("</faultstring>") - begin, 1024U);
}

TEST(Replay, ALoginThatWasNotRecordedIsGranted) {
  Player player = player_of({order_view("\"O-1\", false")});
  wire::WireStep login;
  login.dal = {R"(AuthenticationService.Login("anna", "secret", "1.0", "US"))"};
  const auto reply = player.answer(asked(login));
  EXPECT_EQ(reply.status, 200);
  ASSERT_EQ(reply.headers.size(), 2U);
  EXPECT_EQ(reply.headers[1].name, "Session-Token");
  login.dal = {"AuthenticationService.GetDisabledServices()"};
  EXPECT_EQ(player.answer(asked(login)).body, "");
}

TEST(Replay, ARecordedLoginIsTheOneThatIsAnswered) {
  wire::WireStep login;
  login.dal = {R"(AuthenticationService.Login("anna", "***", "1.0", "US"))"};
  login.raw = "welcome";
  login.headers = {"Content-Type: text/plain", "Session-Token: ***"};
  Player player = player_of({login});
  login.dal = {R"(AuthenticationService.Login("anna", "secret", "1.0", "US"))"};
  const auto reply = player.answer(asked(login));
  EXPECT_EQ(reply.body, "welcome");
  ASSERT_EQ(reply.headers.size(), 2U);
  EXPECT_EQ(reply.headers[1].value, "***");
  login.dal = {R"(AuthenticationService.Login("otto", "secret", "1.0", "US"))"};
  EXPECT_EQ(player.answer(asked(login)).status, 404);
}

class ReplayFolder : public ::testing::Test {
 protected:
  std::string complaint(std::string_view name, std::string_view content) {
    std::ofstream(folder_.file(name)) << content;
    try {
      sandbox::load_recording(folder_.file(""), reader());
    } catch (const std::runtime_error& error) {
      return error.what();
    }
    return "";
  }

  files_test::TempFolder folder_;
};

TEST_F(ReplayFolder, WithoutAnExchangeIsRefused) {
  EXPECT_THAT(complaint("a.txt", "claim: x"), EndsWith("holds no recorded exchange"));
}

TEST_F(ReplayFolder, WithAFileThatIsNoRecordingIsRefusedByItsLine) {
  EXPECT_THAT(complaint("a.wire", "claim: a\nwhat is this\n"),
              EndsWith("/a.wire' is no recording: line 2: a key and a colon are expected"));
  EXPECT_THAT(complaint("a.wire", "claim: a\ncall: C.one\ndal: nonsense\n"),
              EndsWith("/a.wire' is no recording: line 2: 'nonsense' is no call"));
  EXPECT_THAT(complaint("a.wire", "claim: a\ncall: C.one\ndal: A.b()\nstatus: 7\n"),
              EndsWith("/a.wire' is no recording: line 2: '7' is no status of a reply"));
  EXPECT_THAT(complaint("a.wire", "claim: a\ncall: C.one\ndal: A.b()\nheader: none\n"),
              EndsWith("/a.wire' is no recording: line 2: 'none' is no header"));
}

}  // namespace
}  // namespace bvconn::test
