// What the record says of calls in a scripted world: with a transport and service objects that are
// not the library's own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "bvconn/connectors/documents/bv_acknowledgement_connector.h"
#include "bvconn/connectors/documents/bv_sales_instrument_connector.h"
#include "bvconn/connectors/invoice/bv_invoice_connector.h"
#include "bvconn/connectors/search/bv_search_connector.h"
#include "bvconn/connectors/session/bv_document_connector.h"
#include "bvconn/connectors/session/bv_generic_connector.h"
#include "bvconn/connectors/session/bv_heart_beat_connector.h"
#include "bvconn/core/recording.h"
#include "bvconn/core/session_state.h"
#include "bvconn/core/transport.h"
#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/platform/error_numbers.h"
#include "support/recording_platform.h"

namespace bvconn::test {
namespace {

namespace numbers = error_numbers;
using testing::HasSubstr;
using testing::Not;

constexpr char kUrl[] = "http://joe:secret@h/soap";

Error raised_by(const std::function<void()>& call) {
  try {
    call();
  } catch (const Error& error) {
    return error;
  }
  ADD_FAILURE() << "no error was raised";
  return Error(0, "", "");
}

Exchange last(Secrets secrets = Secrets::kMasked) {
  const auto exchange = session().LastExchange(secrets);
  if (exchange) return *exchange;
  ADD_FAILURE() << "nothing was recorded";
  return {};
}

TEST(RecordedCall, ShowsARequestAndItsReply) {
  RecordingPlatform world;
  const std::string reply = envelope_text("getInvoiceResponse", "<return>R</return>");
  world.reply(reply);
  BVInvoiceConnector().GetInvoice(kUrl, "SESSION-1", "U-7");
  const Exchange exchange = last();
  EXPECT_EQ(exchange.number, 1U);
  EXPECT_EQ(exchange.at, world.now);
  EXPECT_EQ(exchange.cls, "BVInvoiceConnector");
  EXPECT_EQ(exchange.operation, "GetInvoice");
  EXPECT_EQ(exchange.route, ExchangeRoute::kSoap);
  EXPECT_EQ(exchange.url, "http://***@h/soap");
  EXPECT_EQ(exchange.soap_action, "urn:InvoiceService");
  EXPECT_THAT(exchange.request.text, HasSubstr(">U-7</param>"));
  EXPECT_THAT(exchange.request.text, HasSubstr(">***</userID>"));
  EXPECT_EQ(exchange.reply.text, reply);
  EXPECT_EQ(exchange.reply.size, reply.size());
  EXPECT_EQ(exchange.outcome, Outcome::kAnswered);
  EXPECT_FALSE(exchange.error.has_value());
  EXPECT_FALSE(exchange.raised.has_value());
  EXPECT_EQ(exchange.http_status, 0);
  EXPECT_EQ(exchange.times, ExchangeTimes());
}

TEST(RecordedCall, ShowsSecretsWhereTheyAreAskedFor) {
  RecordingPlatform world;
  world.reply(envelope_text("r", "<return>R</return>"));
  BVInvoiceConnector().GetInvoice(kUrl, "SESSION-1", "U-7");
  EXPECT_EQ(last(Secrets::kShown).url, kUrl);
  EXPECT_EQ(last(Secrets::kShown).request.text, world.sent[0].text);
}

TEST(RecordedCall, KeepsTheServersWordsOfAFaultThatIsMapped) {
  RecordingPlatform world;
  world.reply(fault_text("SOAP-ENV:10041", "Invoice U-7 is closed"));
  const Error error = raised_by([] { BVInvoiceConnector().GetInvoice(kUrl, "S", "U-7"); });
  EXPECT_EQ(error.number, numbers::from_bits(0x80042739));
  EXPECT_EQ(error.description, "");
  EXPECT_EQ(error.outcome, Outcome::kAnswered);
  const Exchange exchange = last();
  ASSERT_TRUE(exchange.error.has_value());
  EXPECT_EQ(exchange.error->number, numbers::kSoapFault);
  EXPECT_EQ(exchange.error->description, "Invoice U-7 is closed");
  EXPECT_EQ(exchange.raised, numbers::from_bits(0x80042739));
  EXPECT_EQ(exchange.outcome, Outcome::kAnswered);
}

// The words of a fault may be anything that a server puts there.
TEST(RecordedCall, AFaultWhoseWordsAreNoTextIsThereAllTheSame) {
  RecordingPlatform world;
  world.reply(fault_text("SOAP-ENV:10041", "<words><word>closed</word></words>"));
  const Error error = raised_by([] { BVInvoiceConnector().GetInvoice(kUrl, "S", "U-7"); });
  const Exchange exchange = last();
  ASSERT_TRUE(exchange.error.has_value());
  EXPECT_EQ(exchange.raised, error.number);
  EXPECT_EQ(exchange.outcome, Outcome::kAnswered);
}

struct Failure {
  std::int32_t number;
  Outcome in_send;
  Outcome in_receive;
};

class FailedCall : public testing::TestWithParam<Failure> {};

TEST_P(FailedCall, SaysWhetherTheServerMayHaveActed) {
  RecordingPlatform world;
  const Error failure(GetParam().number, "HTTPTransport", "no luck with http://h/");
  world.fail_send(failure);
  const Error sent = raised_by([] { BVInvoiceConnector().GetInvoice("http://h/", "S", "U"); });
  EXPECT_EQ(sent.number, failure.number);
  EXPECT_EQ(sent.outcome, GetParam().in_send);
  EXPECT_EQ(last().outcome, GetParam().in_send);
  EXPECT_EQ(last().error->description, "no luck with http://h/");
  EXPECT_EQ(last().raised, failure.number);
  EXPECT_EQ(last().reply.size, 0U);
  world.fail_receive(failure);
  const Error received = raised_by([] { BVInvoiceConnector().GetInvoice("http://h/", "S", "U"); });
  EXPECT_EQ(received.outcome, GetParam().in_receive);
  EXPECT_EQ(last().outcome, GetParam().in_receive);
  EXPECT_EQ(last().number, 2U);
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, FailedCall,
    testing::Values(Failure{numbers::kCannotConnect, Outcome::kNotSent, Outcome::kAnswered},
                    Failure{numbers::kTls, Outcome::kNotSent, Outcome::kAnswered},
                    Failure{numbers::kProxy, Outcome::kNotSent, Outcome::kAnswered},
                    Failure{numbers::kBadUrlOrHeader, Outcome::kNotSent, Outcome::kAnswered},
                    Failure{numbers::kTimeout, Outcome::kUnknown, Outcome::kUnknown},
                    Failure{numbers::kConnectionLost, Outcome::kUnknown, Outcome::kUnknown},
                    Failure{numbers::kHttpStatus, Outcome::kUnknown, Outcome::kAnswered},
                    Failure{12345, Outcome::kUnknown, Outcome::kAnswered}));

TEST(RecordedCall, TakesTheOutcomeThatATransportSays) {
  RecordingPlatform world;
  Error failure(numbers::kTimeout, "HTTPTransport", "while connecting");
  failure.outcome = Outcome::kNotSent;
  world.fail_send(failure);
  const Error error = raised_by([] { BVInvoiceConnector().GetInvoice("http://h/", "S", "U"); });
  EXPECT_EQ(error.outcome, Outcome::kNotSent);
  EXPECT_EQ(last().outcome, Outcome::kNotSent);
}

TEST(RecordedCall, AnAnswerThatNobodyCanReadIsAnAnswer) {
  RecordingPlatform world;
  world.reply("<html>");
  const Error error = raised_by([] { BVInvoiceConnector().GetInvoice("http://h/", "S", "U"); });
  EXPECT_EQ(error.number, numbers::kNotWellFormed);
  EXPECT_EQ(error.outcome, Outcome::kAnswered);
  EXPECT_EQ(last().reply.text, "<html>");
  EXPECT_EQ(last().error->number, numbers::kNotWellFormed);
}

TEST(RecordedCall, OneThatCameToNoExchangeWasNotSent) {
  RecordingPlatform world;
  const std::string control_character = "\x01";
  const Error error =
      raised_by([&] { BVInvoiceConnector().GetInvoice("http://h/", "S", control_character); });
  EXPECT_EQ(error.number, numbers::kUnwritableText);
  EXPECT_EQ(error.outcome, Outcome::kNotSent);
  const Exchange exchange = last();
  EXPECT_EQ(exchange.operation, "GetInvoice");
  EXPECT_EQ(exchange.url, "http://h/");
  EXPECT_EQ(exchange.request.size, 0U);
  EXPECT_EQ(exchange.outcome, Outcome::kNotSent);
  EXPECT_EQ(exchange.error->number, numbers::kUnwritableText);
}

TEST(RecordedCall, WhatATransportThrowsThatIsNoErrorLeavesTheOutcomeUnknown) {
  RecordingPlatform world;
  world.reply(envelope_text("r", "<return>R</return>"));
  world.on_line = [](const std::string& line) {
    if (line.starts_with("Send ")) throw std::runtime_error("a bug of the application's");
  };
  const Error error = raised_by([] { BVInvoiceConnector().GetInvoice("http://h/", "S", "U"); });
  EXPECT_EQ(error.outcome, Outcome::kUnknown);
  EXPECT_EQ(last().outcome, Outcome::kUnknown);
  EXPECT_EQ(last().error->description, "a bug of the application's");
  EXPECT_EQ(last().raised, numbers::kFailed);
  world.on_line = nullptr;
  BVInvoiceConnector().GetInvoice("http://h/", "S", "U");
}

TEST(RecordedCall, GivesErrorsTheirOutcomeWithoutKeepingARecord) {
  RecordingPlatform world;
  session().KeepExchanges(0);
  world.fail_send(Error(numbers::kConnectionLost, "HTTPTransport", "gone"));
  const Error error = raised_by([] { BVInvoiceConnector().GetInvoice("http://h/", "S", "U"); });
  EXPECT_EQ(error.outcome, Outcome::kUnknown);
  EXPECT_FALSE(session().LastExchange().has_value());
}

TEST(RecordedCall, EveryTailKeepsTheOutcome) {
  RecordingPlatform world;
  const auto outcome_of = [&](const std::function<void()>& call) {
    world.fail_send(Error(numbers::kTimeout, "HTTPTransport", "too late"));
    return raised_by(call).outcome;
  };
  EXPECT_EQ(outcome_of([] { BVInvoiceConnector().GetInvoice("u", "S", "U"); }), Outcome::kUnknown);
  EXPECT_EQ(outcome_of([] { BVSearchConnector().SearchForBrands("S", "u"); }), Outcome::kUnknown);
  EXPECT_EQ(outcome_of([] { BVAcknowledgementConnector().getOverview("O", "u", "S"); }),
            Outcome::kUnknown);
  EXPECT_EQ(outcome_of([] { BVSalesInstrumentConnector().GetLineComments("a", "b", "u", "S"); }),
            Outcome::kUnknown);
}

TEST(RecordedCall, ASwallowedErrorIsInTheRecordAlone) {
  RecordingPlatform world;
  world.fail_send(Error(numbers::kCannotConnect, "HTTPTransport", "nobody there"));
  BVDocumentConnector().GetDocuments("http://h/", "G");
  EXPECT_EQ(last().cls, "BVDocumentConnector");
  EXPECT_EQ(last().error->description, "nobody there");
  EXPECT_FALSE(last().raised.has_value());
}

TEST(RecordedCall, AHeartBeatThatFailsIsInTheRecordAlone) {
  RecordingPlatform world;
  world.fail_send(Error(numbers::kConnectionLost, "HTTPTransport", "gone"));
  BVHeartBeatConnector().sendHeartBeat("http://h/", "SESSION", true);
  EXPECT_EQ(last().cls, "BVHeartBeatConnector");
  EXPECT_EQ(last().operation, "sendHeartBeat");
  EXPECT_EQ(last().outcome, Outcome::kUnknown);
  EXPECT_EQ(last().error->description, "gone");
  EXPECT_FALSE(last().raised.has_value());
  world.reply(envelope_text("beatResponse", "<return>NO</return>"));
  BVHeartBeatConnector().sendHeartBeat("http://h/", "SESSION", true);
  EXPECT_EQ(last().outcome, Outcome::kAnswered);
  EXPECT_EQ(last().error->number, numbers::kHeartBeatNotOk);
}

TEST(RecordedCall, ACallFromTheHandlerOfAFailedBeatHasARecordOfItsOwn) {
  RecordingPlatform world;
  BVHeartBeatConnector connector;
  connector.HeartBeatError = [&] {
    world.reply(envelope_text("r", "<return>R</return>"));
    BVInvoiceConnector().GetInvoice("http://h/", "S", "U");
  };
  world.fail_send(Error(numbers::kTimeout, "HTTPTransport", "too late"));
  connector.sendHeartBeat("http://h/", "S", false);
  const auto exchanges = session().Exchanges();
  ASSERT_EQ(exchanges.size(), 2U);
  EXPECT_EQ(exchanges[0].operation, "sendHeartBeat");
  EXPECT_EQ(exchanges[0].outcome, Outcome::kUnknown);
  EXPECT_EQ(exchanges[1].operation, "GetInvoice");
  EXPECT_EQ(exchanges[1].outcome, Outcome::kAnswered);
  EXPECT_FALSE(exchanges[1].error.has_value());
}

TEST(RecordedCall, TheGenericConnectorsRequestsAreThere) {
  RecordingPlatform world;
  world.reply(envelope_text("loginResponse", "<return>NEW-SESSION</return>"));
  SoapNode credentials = SoapNode::make();
  credentials.Nodes().Create("user", "joe");
  credentials.Nodes().Create("password", "hunter2");
  BVGenericConnector().Send("urn:Login", "login", "root", credentials, "http://h/");
  EXPECT_EQ(last().cls, "BVGenericConnector");
  EXPECT_EQ(last().operation, "Send");
  EXPECT_EQ(last().soap_action, "urn:Login");
  EXPECT_THAT(last().request.text, HasSubstr(">joe<"));
  EXPECT_THAT(last().request.text, Not(HasSubstr("hunter2")));
  EXPECT_THAT(last().reply.text, Not(HasSubstr("NEW-SESSION")));
}

TEST(RecordedCall, AnOperationThatRunsItsExchangeItselfIsThere) {
  RecordingPlatform world;
  world.reply(envelope_text("r", "<return>R</return>"));
  BVInvoiceConnector().GetInvoice("http://h/", "S", "U");
  world.reply(fault_text("c", "not in stock"));
  const Error error =
      raised_by([] { BVSearchConnector().SearchForTotalInventory("<i/>", "S", "http://h/2"); });
  EXPECT_EQ(error.outcome, Outcome::kAnswered);
  EXPECT_EQ(last().operation, "SearchForTotalInventory");
  EXPECT_EQ(last().url, "http://h/2");
  EXPECT_EQ(last().soap_action, "urn:InvoiceService");  // What the request before has left.
  EXPECT_EQ(last().error->description, "not in stock");
}

TEST(RecordedCall, AReplyThatIsLeftUnreadHasNoText) {
  RecordingPlatform world;
  world.reply("<unread/>");
  Global::sendXMLAndLoadDoc(nullptr, "urn:A", "<text/>", "http://h/");
  EXPECT_EQ(last().request.text, "<text/>");
  EXPECT_EQ(last().cls, "");
  EXPECT_EQ(last().reply.size, 0U);
  EXPECT_EQ(last().outcome, Outcome::kAnswered);
}

TEST(RecordedDalCall, ShowsArgumentsAndResult) {
  RecordingPlatform world;
  world.use_dal();
  session().DALUrl = "http://dal/";
  const std::string result = envelope_text("r", "<return>R</return>");
  world.dal_answers["SearchService.SearchForAllAgents"] = result;
  BVSearchConnector().SearchForAllAgents("S", "http://h/", 4711);
  const Exchange exchange = last();
  EXPECT_EQ(exchange.cls, "BVSearchConnector");
  EXPECT_EQ(exchange.operation, "SearchForAllAgents");
  EXPECT_EQ(exchange.route, ExchangeRoute::kDal);
  EXPECT_EQ(exchange.url, "http://dal/");
  EXPECT_EQ(exchange.object, "SearchService");
  EXPECT_EQ(exchange.object_operation, "SearchForAllAgents");
  ASSERT_EQ(exchange.arguments.size(), 1U);
  EXPECT_EQ(exchange.arguments[0].type, "int32");
  EXPECT_EQ(exchange.arguments[0].text.text, "4711");
  EXPECT_EQ(exchange.result.text, result);
  EXPECT_EQ(exchange.request.size, 0U);
  EXPECT_FALSE(exchange.soap_action.has_value());
  EXPECT_EQ(exchange.outcome, Outcome::kAnswered);
}

TEST(RecordedDalCall, KeepsTheWordsOfAServiceObjectsFailure) {
  RecordingPlatform world;
  world.use_dal();
  world.dal_errors.emplace("SearchService.SearchForAllAgents",
                           Error(4242, "Search", "agent 4711 is locked"));
  const Error error =
      raised_by([] { BVSearchConnector().SearchForAllAgents("S", "http://h/", 4711); });
  EXPECT_EQ(error.number, 4242);
  // Nobody can tell what became of it behind an object that is not the library's.
  EXPECT_EQ(error.outcome, Outcome::kUnknown);
  EXPECT_EQ(last().error->number, 4242);
  EXPECT_EQ(last().error->source, "Search");
  EXPECT_EQ(last().error->description, "agent 4711 is locked");
}

TEST(RecordedDalCall, OneWithoutServiceObjectsWasNotSent) {
  const RecordingPlatform world;
  session().DALUrl = "http://dal/";
  session().UsingTorvexDAL = true;
  const Error error = raised_by([] { BVSearchConnector().SearchForBrands("S", "http://h/"); });
  EXPECT_EQ(error.number, numbers::kObjectNotSet);
  EXPECT_EQ(error.outcome, Outcome::kNotSent);
  EXPECT_EQ(last().route, ExchangeRoute::kDal);
  EXPECT_EQ(last().operation, "SearchForBrands");
  EXPECT_EQ(last().url, "http://dal/");
  EXPECT_EQ(last().error->number, numbers::kObjectNotSet);
}

// Enough for every place of the record to have held one.
void make_requests(RecordingPlatform& world) {
  for (int i = 0; i < 100; ++i) {
    world.reply(envelope_text("getInvoiceResponse", "<return>R</return>"));
    BVInvoiceConnector().GetInvoice("http://h/", "S", "U-7");
  }
  ASSERT_EQ(last().soap_action, "urn:InvoiceService");
}

TEST(RecordedDalCall, HasNothingOfTheRequestThatHadItsPlace) {
  RecordingPlatform world;
  make_requests(world);
  world.use_dal();
  world.dal_answers["SearchService.SearchForBrands"] = envelope_text("r", "<return>R</return>");
  BVSearchConnector().SearchForBrands("S", "http://h/");
  EXPECT_FALSE(last().soap_action.has_value());
  EXPECT_EQ(last().request.text, "");
  EXPECT_EQ(last().reply.text, "");
}

TEST(RecordedCall, OneThatWasNotSentHasNothingOfTheRequestThatHadItsPlace) {
  RecordingPlatform world;
  make_requests(world);
  session().UsingTorvexDAL = true;
  raised_by([] { BVSearchConnector().SearchForBrands("S", "http://h/"); });
  EXPECT_EQ(last().outcome, Outcome::kNotSent);
  EXPECT_FALSE(last().soap_action.has_value());
  EXPECT_EQ(last().request.text, "");
}

TEST(RecordedDalCall, AFaultInItsTextHasTheServersWords) {
  RecordingPlatform world;
  world.use_dal();
  world.dal_answers["SearchService.SearchForBrands"] = fault_text("c", "no brands today");
  const Error error = raised_by([] { BVSearchConnector().SearchForBrands("S", "http://h/"); });
  EXPECT_EQ(error.outcome, Outcome::kAnswered);
  EXPECT_EQ(last().error->description, "no brands today");
}

TEST(RecordedDalCall, AFaultWhoseWordsAreNoTextHasThoseOfTheError) {
  RecordingPlatform world;
  world.use_dal();
  world.dal_answers["SearchService.SearchForBrands"] =
      fault_text("c", "<words><word>closed</word></words>");
  raised_by([] { BVSearchConnector().SearchForBrands("S", "http://h/"); });
  EXPECT_EQ(last().error->number, numbers::kSoapFault);
  EXPECT_EQ(last().error->description, "The reply is a SOAP fault");
}

class AnyObject final : public ServiceObject {
 public:
  std::string_view name() const override { return "AnyService"; }
  std::string invoke(std::string_view, std::span<const Variant>, bool) override { return "text"; }
  bool offers(std::string_view) const override { return false; }
};

TEST(RecordedDalCall, AnArrayIsShownByItsItemsAndADateInFull) {
  const RecordingPlatform world;
  AnyObject object;
  const std::vector<Variant> arguments{
      StringArray{"a", "b"}, from_civil({.year = 2007}), true, 1.5, Variant(), Variant::Missing{}};
  static_cast<void>(invoke_recorded(object, "Any", arguments, true));
  std::vector<std::string> shown;
  for (const auto& each : last().arguments) shown.push_back(each.type + " " + each.text.text);
  EXPECT_THAT(shown, testing::ElementsAre("array a|b", "date 2007-12-30T00:00:00", "boolean True",
                                          "double 1.5", "empty ", "missing "));
}

TEST(RecordedDalCall, ANodeIsShownAsXml) {
  const RecordingPlatform world;
  AnyObject object;
  const SoapNode node = SoapNode::make("quote");
  node.Nodes().Create("UID", "Q-1");
  const std::vector<Variant> arguments{Variant(node), Variant(SoapNode())};
  static_cast<void>(invoke_recorded(object, "Any", arguments, true));
  ASSERT_EQ(last().arguments.size(), 2U);
  EXPECT_THAT(last().arguments[0].text.text, HasSubstr("Q-1</UID></quote>"));
  EXPECT_EQ(last().arguments[1].text.text, "");
}

TEST(RecordedLogin, ThatIsRefusedShowsItsWordsAndNoPassword) {
  RecordingPlatform world;
  world.dal_answers["AuthenticationService.SetServerUrl"] = "";
  world.dal_errors.emplace("AuthenticationService.Login",
                           Error(49, "Authentication", "joe with hunter2 is unknown"));
  BVConnectorObject control;
  control.UserName("joe");
  control.Password("hunter2");
  control.InitTorvexDAL("http://dal/");
  const Exchange exchange = last();
  EXPECT_EQ(exchange.cls, "BVConnectorObject");
  EXPECT_EQ(exchange.operation, "InitTorvexDAL");
  EXPECT_EQ(exchange.object_operation, "Login");
  EXPECT_EQ(exchange.arguments[0].text.text, "joe");
  EXPECT_EQ(exchange.arguments[1].text.text, "***");
  EXPECT_EQ(exchange.error->number, 49);
  EXPECT_EQ(exchange.error->description, "joe with *** is unknown");
  EXPECT_EQ(last(Secrets::kShown).error->description, "joe with hunter2 is unknown");
}

TEST(RecordedLogin, ThatSucceedsHidesWhatItAnswered) {
  RecordingPlatform world;
  world.dal_answers["AuthenticationService.SetServerUrl"] = "";
  world.dal_answers["AuthenticationService.Login"] = "TOKEN-1";
  world.dal_answers["AuthenticationService.GetDisabledServices"] = "a.b|";
  BVConnectorObject().InitTorvexDAL("http://dal/");
  const auto exchanges = session().Exchanges();
  ASSERT_EQ(exchanges.size(), 3U);
  EXPECT_EQ(exchanges[1].result.text, "***");
  EXPECT_EQ(exchanges[2].result.text, "a.b|");
}

TEST(RecordedLogin, ThatLacksAServiceObjectIsThereToo) {
  RecordingPlatform world;
  world.dal_unmakeable.emplace("RMAService", Error(429, "Torvex", "not registered"));
  BVConnectorObject().InitTorvexDAL("http://dal/");
  EXPECT_EQ(last().operation, "InitTorvexDAL");
  EXPECT_EQ(last().outcome, Outcome::kNotSent);
  EXPECT_EQ(last().error->description, "not registered");
}

}  // namespace
}  // namespace bvconn::test
