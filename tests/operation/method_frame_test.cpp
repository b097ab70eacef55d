#include "bvconn/operation/method_frame.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <array>
#include <memory>
#include <new>
#include <stdexcept>
#include <thread>

#include "bvconn/core/session_state.h"
#include "bvconn/platform/error_numbers.h"
#include "support/error_of.h"
#include "support/recording_platform.h"

namespace bvconn {
namespace {

using error_numbers::from_bits;
using error_numbers::kNoSuchNode;
using error_numbers::kSoapFault;
using Lines = std::vector<std::string>;
using test::envelope_text;
using test::error_of;
using test::fault_text;
using test::RecordingPlatform;

// The reply of a data access layer operation, so that the frame's tails are seen without `sendXML`.
Error error_of_reply(const Operation& operation, const std::string& reply) {
  return error_of(
      [&] { ConnectorMethodFrame(operation, [&](Call& call) { call.parse(reply).or_raise(); }); });
}

Error error_of_raise(const Operation& operation) {
  return error_of([&] {
    ConnectorMethodFrame(operation, [](Call&) { throw Error(51, "deep", "why", "help.chm", 12); });
  });
}

const std::string kFaultWithoutElements =
    "<e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\"><e:Body><e:Fault/>"
    "</e:Body></e:Envelope>";

constexpr LogBlock kLog{.cls = "BVThing", .method = "Do"};

TEST(MethodFrame, WritesEnterAndExitAndGivesTheResult) {
  RecordingPlatform world;
  constexpr Operation kOperation{.log = kLog};
  EXPECT_EQ(ConnectorMethodFrame(kOperation, [](Call&) { return 7; }), 7);
  EXPECT_EQ(world.record.all, (Lines{"EnterMethod BVThing.Do 1", "ExitMethod BVThing.Do 1"}));
}

TEST(MethodFrame, SoapRouteUsesTheServiceAsNamespaceAndSoapActionAndTheDefaultTimeout) {
  RecordingPlatform world;
  constexpr Operation kOperation{
      .log = kLog, .method = &BVMethods::GetCountries, .service = &BVServices::PostalService};
  world.reply(envelope_text("r", "<return>R</return>"));
  const SoapNode node = ConnectorMethodFrame(kOperation, {"http://h/", "S-1"}, [](Call& call) {
    return call.getEnvelope().params("P-2").send().first();
  });
  EXPECT_EQ(node.Value(), Variant("R"));
  const SoapEnvelope sent = SoapEnvelope::make();
  sent.Parse(world.sent.at(0).text, "");
  EXPECT_EQ(sent.MethodName(), "getCountries");
  EXPECT_NE(world.sent.at(0).text.find("<m:getCountries xmlns:m=\"urn:Postal\">"),
            std::string::npos);
  EXPECT_EQ(world.record.transport, (Lines{"NoProxy", "SOAPAction \"urn:Postal\"", "Timeout 300000",
                                           "Send \"http://h/\"", "Receive \"UTF-8\""}));
}

// What a request with the parameters that `fill` adds holds between the method's tags.
std::string parameters_of(const std::function<void(Call&)>& fill) {
  constexpr Operation kOperation{.log = kLog, .wire = "m"};
  const std::string text = ConnectorMethodFrame(kOperation, {"http://h/", "S-1"}, [&](Call& call) {
    fill(call.request());
    return call.request_text();
  });
  const std::size_t begin = text.find("<m>") + 3;
  return text.substr(begin, text.find("</m>") - begin);
}

TEST(Request, IsForTheSessionThatTheFrameWasGivenAndGoesToItsUrl) {
  RecordingPlatform world;
  constexpr Operation kOperation{.log = kLog, .wire = "m"};
  world.reply(envelope_text("r", ""));
  ConnectorMethodFrame(kOperation, {"http://h/", "S-1"},
                       [](Call& call) { call.request().send().or_raise(); });
  EXPECT_EQ(world.record.transport.at(3), "Send \"http://h/\"");
  EXPECT_NE(world.sent.at(0).text.find(">S-1</userID>"), std::string::npos)
      << world.sent.at(0).text;
}

TEST(Request, WithoutASessionHasNoUserId) {
  RecordingPlatform world;
  constexpr Operation kOperation{.log = kLog, .wire = "m"};
  const std::string text = ConnectorMethodFrame(kOperation, {"http://h/", "S-1"}, [](Call& call) {
    return call.request_without_session().request_text();
  });
  EXPECT_EQ(text.find("userID"), std::string::npos) << text;
}

TEST(Request, NamesBooleansAmongItsPlacesApart) {
  RecordingPlatform world;
  EXPECT_EQ(parameters_of([](Call& call) {
              call.params("first", true, std::int16_t{3}).params(Variant(false));
            }),
            "<param xsi:type=\"xsd:string\">first</param>"
            "<param_bool xsi:type=\"xsd:boolean\">true</param_bool>"
            "<param xsi:type=\"xsd:short\">3</param>"
            "<param xsi:type=\"xsd:boolean\">false</param>");
}

TEST(Request, TakesParametersInTheOrderOfTheCalls) {
  RecordingPlatform world;
  EXPECT_EQ(parameters_of([](Call& call) {
              call.add("GID", "G-1").append(SoapNode::make("Own")).add("Nbr", "N-2", "String");
            }),
            "<GID xsi:type=\"xsd:string\">G-1</GID><Own/><Nbr xsi:type=\"String\">N-2</Nbr>");
}

TEST(MethodFrame, AnotherRowCanBeTheSoapAction) {
  RecordingPlatform world;
  constexpr Operation kOperation{.log = kLog,
                                 .wire = "literalName",
                                 .service = &BVServices::Quote,
                                 .soap_action = &BVServices::Order};
  world.reply(envelope_text("r", ""));
  ConnectorMethodFrame(kOperation, {"http://h/", "S-1"},
                       [](Call& call) { call.request(kSoapEncoding).send().or_raise(); });
  EXPECT_EQ(world.record.transport.at(1), "SOAPAction \"urn:OrderService\"");
  EXPECT_NE(world.sent.at(0).text.find("<m:literalName xmlns:m=\"urn:QuoteService\" "
                                       "SOAP-ENV:encodingStyle="
                                       "\"http://schemas.xmlsoap.org/soap/encoding/\""),
            std::string::npos)
      << world.sent.at(0).text;
  // Made by hand: no lines of getEnvelope.
  for (const auto& line : world.record.log) {
    EXPECT_EQ(line.find("getEnvelope"), std::string::npos) << line;
  }
}

TEST(MethodFrame, ANodeStaysValidWithoutItsEnvelope) {
  RecordingPlatform world;
  constexpr Operation kOperation{.log = kLog};
  const SoapNode node = ConnectorMethodFrame(kOperation, [](Call& call) {
    return call.parse(envelope_text("r", "<a><b>deep</b></a>")).first();
  });
  EXPECT_EQ(node.Nodes().ItemByName("b").Value(), Variant("deep"));
}

TEST(MethodFrame, AReplyWithoutParametersFailsAtTheFirstAndThroughTheTail) {
  RecordingPlatform world;
  constexpr Operation kOperation{.log = kLog};
  const Error error = error_of([&] {
    ConnectorMethodFrame(kOperation,
                         [](Call& call) { return call.parse(envelope_text("r", "")).first(); });
  });
  EXPECT_EQ(error.number, kNoSuchNode);
  EXPECT_TRUE(world.record.log.back().starts_with("LogError BVThing.Do 0x80044204 \"SoapNodes\""));
}

TEST(MethodFrame, ANilAnswerIsNoBoolean) {
  RecordingPlatform world;
  constexpr Operation kOperation{.log = kLog};
  const std::string nil = envelope_text(
      "r", "<return xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:nil='true'/>");
  const Error error = error_of([&] {
    ConnectorMethodFrame(kOperation, [&](Call& call) { return call.parse(nil).boolean(); });
  });
  EXPECT_EQ(error.number, error_numbers::kTypeMismatch);
  EXPECT_EQ(error.source, "BVConn");
}

TEST(MethodFrame, ADataAccessLayerTextOfNothingFailsInParse) {
  RecordingPlatform world;
  constexpr Operation kOperation{.log = kLog};
  EXPECT_EQ(error_of_reply(kOperation, "").number, error_numbers::kNotWellFormed);
}

TEST(Route, IsTakenWhenNotDisabledSwitchedOnAndTheFurtherConditionHolds) {
  RecordingPlatform world;
  constexpr Operation kOperation{
      .log = kLog, .method = &BVMethods::SaveProject, .service = &BVServices::Project};
  const auto takes = [&](bool and_also) {
    return ConnectorMethodFrame(kOperation, [&](Call& call) { return call.takes_dal(and_also); });
  };
  EXPECT_FALSE(takes(true));
  session().UsingTorvexDAL = true;
  EXPECT_TRUE(takes(true));
  EXPECT_FALSE(takes(false));
  session().DisabledDALServices = "urn:ProjectService.save|";
  EXPECT_FALSE(takes(true));
  session().AllowDisabledDALMethods = true;
  EXPECT_TRUE(takes(true));
}

TEST(Route, CanBeAskedWithAnotherRow) {
  RecordingPlatform world;
  constexpr Operation kOperation{.log = kLog,
                                 .method = &BVMethods::UpdateUserProfile,
                                 .service = &BVServices::Maintenance,
                                 .route_method = &BVMethods::SetUserQuotePrintoutDefault};
  const auto takes = [&] {
    return ConnectorMethodFrame(kOperation, [](Call& call) { return call.takes_dal(); });
  };
  session().UsingTorvexDAL = true;
  session().DisabledDALServices = "urn:MaintenanceService.updateUserProfile|";
  EXPECT_TRUE(takes());
  session().DisabledDALServices = "urn:MaintenanceService.setUserQuotePrintoutDefault|";
  EXPECT_FALSE(takes());
}

TEST(PlainTailOfTheFrame, LogsAndRaisesThreeValues) {
  RecordingPlatform world;
  constexpr Operation kOperation{.log = kLog};
  const Error error = error_of_raise(kOperation);
  EXPECT_EQ(error.number, 51);
  EXPECT_EQ(error.source, "deep");
  EXPECT_EQ(error.description, "why");
  EXPECT_EQ(error.helpFile, "");
  EXPECT_EQ(error.helpContext, 0);
  EXPECT_EQ(world.record.log,
            (Lines{"EnterMethod BVThing.Do 1", "LogError BVThing.Do 51 \"deep\" \"why\" 0"}));
}

TEST(BareTail, LogsNothingAndRaisesAllFiveValues) {
  RecordingPlatform world;
  constexpr Operation kOperation{.log = {.cls = "BVThing", .method = "Do", .form = LogForm::kNone},
                                 .tail = Tail::kBare};
  const Error error = error_of_raise(kOperation);
  EXPECT_EQ(error.number, 51);
  EXPECT_EQ(error.source, "deep");
  EXPECT_EQ(error.description, "why");
  EXPECT_EQ(error.helpFile, "help.chm");
  EXPECT_EQ(error.helpContext, 12);
  EXPECT_TRUE(world.record.log.empty());
}

TEST(NoTail, LetsTheErrorPassAsItIs) {
  RecordingPlatform world;
  constexpr Operation kOperation{.log = {.cls = "BVThing", .method = "Do", .form = LogForm::kNone},
                                 .tail = Tail::kNone};
  const Error error = error_of_raise(kOperation);
  EXPECT_EQ(error.helpFile, "help.chm");
  EXPECT_EQ(error.helpContext, 12);
  EXPECT_TRUE(world.record.log.empty());
}

TEST(PlainTailWithoutItsLine, RaisesThreeValuesAndLogsNothing) {
  RecordingPlatform world;
  constexpr Operation kOperation{.log = {.cls = "BVThing", .method = "Do", .form = LogForm::kNone},
                                 .tail = Tail::kThreeValues};
  const Error error = error_of_raise(kOperation);
  EXPECT_EQ(error.number, 51);
  EXPECT_EQ(error.helpFile, "");
  EXPECT_EQ(error.helpContext, 0);
  EXPECT_TRUE(world.record.log.empty());
}

TEST(FaultStringTail, GivesTheServersTextForAFault) {
  RecordingPlatform world;
  constexpr Operation kOperation{.log = {.cls = "BVThing", .method = "Do", .form = LogForm::kNone},
                                 .tail = Tail::kFaultString};
  const Error fault = error_of_reply(kOperation, fault_text("Server", "server's words"));
  EXPECT_EQ(fault.number, kSoapFault);
  EXPECT_EQ(fault.description, "server's words");
  const Error other = error_of_raise(kOperation);
  EXPECT_EQ(other.description, "why");
  EXPECT_EQ(other.helpFile, "");
  EXPECT_EQ(other.helpContext, 0);
  EXPECT_EQ(error_of_reply(kOperation, kFaultWithoutElements).number, kNoSuchNode);
  EXPECT_TRUE(world.record.log.empty());
}

TEST(RfqTail, GivesAFaultANumberOfItsOwnAndTheServersText) {
  RecordingPlatform world;
  constexpr Operation kOperation{.log = {.cls = "BVThing", .method = "Do", .form = LogForm::kNone},
                                 .tail = Tail::kRfq};
  const Error fault = error_of_reply(kOperation, fault_text("Server", "server's words"));
  EXPECT_EQ(fault.number, from_bits(0x80042B5D));
  EXPECT_EQ(fault.source, "SoapEnvelope");
  EXPECT_EQ(fault.description, "server's words");
  const Error other = error_of_raise(kOperation);
  EXPECT_EQ(other.number, 51);
  EXPECT_EQ(other.description, "why");
  EXPECT_EQ(other.helpFile, "help.chm");
  EXPECT_EQ(other.helpContext, 12);
  EXPECT_EQ(error_of_reply(kOperation, kFaultWithoutElements).number, kNoSuchNode);
  EXPECT_TRUE(world.record.log.empty());
}

TEST(OverviewTail, LosesTheDescriptionInTheLogAndForTheCaller) {
  RecordingPlatform world;
  constexpr Operation kOperation{
      .log = {.cls = "BVThing", .method = "getOverview", .form = LogForm::kNone},
      .tail = Tail::kOverview};
  const Error error = error_of([&] {
    ConnectorMethodFrame(kOperation, [](Call& call) {
      call.error_name("getOverview(a, b, c)");
      throw Error(51, "deep", "why", "help.chm", 12);
    });
  });
  EXPECT_EQ(error.number, 51);
  EXPECT_EQ(error.source, "deep");
  EXPECT_EQ(error.description, "");
  EXPECT_EQ(error.helpFile, "");
  EXPECT_EQ(world.record.log, Lines{"LogError BVThing.getOverview(a, b, c) 51 \"deep\" \"\" 0"});
}

TEST(SwallowingTail, LogsAndReturnsAnEmptyResult) {
  RecordingPlatform world;
  constexpr Operation kOperation{.log = kLog, .tail = Tail::kSwallow};
  const SoapNode node =
      ConnectorMethodFrame(kOperation, [](Call&) -> SoapNode { throw Error(51, "deep", "why"); });
  EXPECT_FALSE(node);
  EXPECT_EQ(world.record.log,
            (Lines{"EnterMethod BVThing.Do 1", "LogError BVThing.Do 51 \"deep\" \"why\" 0"}));
}

constexpr std::array kFaults{
    FaultRow{.code = 10011, .number = from_bits(0x8004271B)},
    FaultRow{.code = 10012, .number = from_bits(0x8004271B)},
};
constexpr Operation kFaultCode{.log = kLog, .tail = Tail::kFaultCode, .faults = kFaults};

TEST(FaultCodeTail, MapsEachOfItsCodesUnderTheClassWithoutTheServersText) {
  RecordingPlatform world;
  for (const char* code : {"10011", "10012", " 10012 ", "1.0012E4", "x:10012"}) {
    std::string reply = fault_text(code, "server's words");
    reply.replace(reply.find("<e:Fault>"), 9, "<e:Fault xmlns:x='urn:x'>");
    const Error error = error_of_reply(kFaultCode, reply);
    EXPECT_EQ(error.number, from_bits(0x8004271B)) << code;
    EXPECT_EQ(error.source, "BVThing");
    EXPECT_EQ(error.description, "");
  }
}

TEST(FaultCodeTail, LogsTheFaultBeforeItMapsIt) {
  RecordingPlatform world;
  error_of_reply(kFaultCode, fault_text("10011", "server's words"));
  EXPECT_EQ(world.record.log, (Lines{"EnterMethod BVThing.Do 1",
                                     "LogError BVThing.Do 0x80044201 \"SoapEnvelope\" "
                                     "\"The reply is a SOAP fault\" 0"}));
}

TEST(FaultCodeTail, AnotherCodeOrAWordEndsAsTheFaultItself) {
  RecordingPlatform world;
  for (const char* code : {"10013", "Server", "-1"}) {
    const Error error = error_of_reply(kFaultCode, fault_text(code, "server's words"));
    EXPECT_EQ(error.number, kSoapFault) << code;
    EXPECT_EQ(error.source, "SoapEnvelope");
  }
}

TEST(FaultCodeTail, ACodeBeyond32BitsLeavesWithTheOverflow) {
  RecordingPlatform world;
  EXPECT_EQ(error_of_reply(kFaultCode, fault_text("99999999999", "t")).number, 6);
  // In range itself, but not together with the object-error base.
  EXPECT_EQ(error_of_reply(kFaultCode, fault_text("-300000", "t")).number, 6);
}

TEST(FaultCodeTail, AFaultWithoutACodeLeavesWithTheMissingNodeAfterTheFirstWasLogged) {
  RecordingPlatform world;
  const Error error = error_of_reply(kFaultCode, kFaultWithoutElements);
  EXPECT_EQ(error.number, kNoSuchNode);
  EXPECT_EQ(world.record.log.size(), 2U);
  EXPECT_TRUE(world.record.log.back().starts_with("LogError BVThing.Do 0x80044201"));
}

TEST(FaultCodeTail, AnErrorThatIsNoFaultLosesItsHelp) {
  RecordingPlatform world;
  const Error error = error_of_raise(kFaultCode);
  EXPECT_EQ(error.number, 51);
  EXPECT_EQ(error.source, "deep");
  EXPECT_EQ(error.description, "why");
  EXPECT_EQ(error.helpContext, 0);
}

/// What a body can throw besides an `Error`, and what becomes of it.
struct Thrown {
  std::function<void()> raise;
  std::int32_t number;
  std::string description;
};

std::vector<Thrown> thrown_things() {
  return {
      {[] { throw std::bad_alloc(); }, 7, "out of memory"},
      {[] { throw std::bad_array_new_length(); }, 7, "out of memory"},
      {[] { throw std::runtime_error("its words"); }, from_bits(0x80004005), "its words"},
      {[] { throw std::length_error("too long a text"); }, from_bits(0x80004005),
       "too long a text"},
      {[] { throw 42; }, from_bits(0x80004005), "an exception that says nothing of itself"},
  };
}

Error error_of_raise(const Operation& operation, const Thrown& thrown) {
  return error_of([&] { ConnectorMethodFrame(operation, [&](Call&) { thrown.raise(); }); });
}

TEST(NothingButErrors, LeaveAnOperationWhoseTailLogs) {
  for (const Tail tail : {Tail::kPlain, Tail::kFaultCode}) {
    for (const Thrown& thrown : thrown_things()) {
      RecordingPlatform world;
      const Error error = error_of_raise({.log = kLog, .tail = tail}, thrown);
      EXPECT_EQ(error.number, thrown.number);
      EXPECT_EQ(error.source, "BVConn");
      EXPECT_EQ(error.description, thrown.description);
      const std::string number = thrown.number == 7 ? "7" : "0x80004005";
      EXPECT_EQ(world.record.log, (Lines{"EnterMethod BVThing.Do 1",
                                         "LogError BVThing.Do " + number + " \"BVConn\" \"" +
                                             thrown.description + "\" 0"}));
    }
  }
}

TEST(NothingButErrors, LeaveAnOperationWhoseTailDoesNotLog) {
  for (const Tail tail :
       {Tail::kBare, Tail::kFaultString, Tail::kRfq, Tail::kThreeValues, Tail::kNone}) {
    for (const Thrown& thrown : thrown_things()) {
      RecordingPlatform world;
      const LogBlock silent{.cls = "BVThing", .method = "Do", .form = LogForm::kNone};
      const Error error = error_of_raise({.log = silent, .tail = tail}, thrown);
      EXPECT_EQ(error.number, thrown.number);
      EXPECT_EQ(error.source, "BVConn");
      EXPECT_EQ(error.description, thrown.description);
      EXPECT_TRUE(world.record.log.empty());
    }
  }
}

TEST(NothingButErrors, LoseTheirDescriptionInTheOverviewTail) {
  for (const Thrown& thrown : thrown_things()) {
    RecordingPlatform world;
    const Error error = error_of_raise({.log = kLog, .tail = Tail::kOverview}, thrown);
    EXPECT_EQ(error.number, thrown.number);
    EXPECT_EQ(error.source, "BVConn");
    EXPECT_EQ(error.description, "");
  }
}

TEST(NothingButErrors, AndNotEvenTheyLeaveATailThatSwallows) {
  for (const Thrown& thrown : thrown_things()) {
    RecordingPlatform world;
    constexpr Operation kOperation{.log = kLog, .tail = Tail::kSwallow};
    EXPECT_EQ(ConnectorMethodFrame(kOperation,
                                   [&](Call&) -> std::string {
                                     thrown.raise();
                                     return "not reached";
                                   }),
              "");
    EXPECT_TRUE(world.record.log.back().starts_with("LogError BVThing.Do ")) << world.record.log[1];
  }
}

TEST(NothingButErrors, LeaveAnOperationWhoseLoggerThrowsAnythingAtItsErrorLine) {
  for (const Tail tail : {Tail::kPlain, Tail::kFaultCode, Tail::kOverview, Tail::kSwallow}) {
    for (const Thrown& thrown : thrown_things()) {
      RecordingPlatform world;
      world.on_line = [&](const std::string& line) {
        if (line.starts_with("LogError")) thrown.raise();
      };
      const Error error = error_of_raise({.log = kLog, .tail = tail});
      EXPECT_EQ(error.number, thrown.number);
      EXPECT_EQ(error.source, "BVConn");
      EXPECT_EQ(error.description, thrown.description);
    }
  }
}

TEST(NothingButErrors, LeaveAnOperationWhoseLoggerOrServiceObjectThrowsAnything) {
  constexpr Operation kOperation{.log = kLog};
  for (const Thrown& thrown : thrown_things()) {
    for (const std::string where : {"EnterMethod BVThing.Do 1", "ExitMethod BVThing.Do 1",
                                    "HeartBeatService.sendHeartBeat()"}) {
      RecordingPlatform world;
      world.use_dal();
      world.dal_answers["HeartBeatService.sendHeartBeat"] = "";
      world.on_line = [&](const std::string& line) {
        if (line == where) thrown.raise();
      };
      const Error error = error_of([&] {
        ConnectorMethodFrame(kOperation,
                             [](Call& call) { call.dal().HeartBeatService().sendHeartBeat(); });
      });
      EXPECT_EQ(error.number, thrown.number);
      EXPECT_EQ(error.description, thrown.description);
      EXPECT_TRUE(world.record.log.back().starts_with("LogError BVThing.Do ")) << where;
    }
  }
}

TEST(NothingButErrors, LeaveAnOperationWhosePlatformLacksAFactory) {
  RecordingPlatform world;
  platform::Platform without_logger = platform::current();
  without_logger.logger = nullptr;
  const platform::ScopedPlatform scope(without_logger);
  constexpr Operation kOperation{.log = kLog};
  const Error error = error_of([&] { ConnectorMethodFrame(kOperation, [](Call&) {}); });
  EXPECT_EQ(error.number, from_bits(0x80004005));
  EXPECT_EQ(error.source, "BVConn");
}

TEST(NothingButErrors, ComeFromAnErrorThatTheApplicationMadeMoreOf) {
  RecordingPlatform world;
  struct Special : Error {
    Special() : Error(51, "deep", "why", "help.chm", 12) {}
  };
  constexpr Operation kOperation{.log = {.cls = "BVThing", .method = "Do", .form = LogForm::kNone},
                                 .tail = Tail::kBare};
  const Error error =
      error_of([&] { ConnectorMethodFrame(kOperation, [](Call&) { throw Special(); }); });
  EXPECT_EQ(error.number, 51);
  EXPECT_EQ(error.helpContext, 12);
}

// On Windows a thread that ends itself destroys nothing.
#if !defined(_WIN32)
TEST(NothingButErrors, ButTheEndOfAThreadPassesAnOperationByAndTakesEverythingWithIt) {
  std::shared_ptr<int> held = std::make_shared<int>(0);
  const std::weak_ptr<int> watched = held;
  std::thread([held = std::move(held)] {
    RecordingPlatform world;
    constexpr Operation kOperation{.log = kLog};
    ConnectorMethodFrame(kOperation, [kept = held](Call&) { pthread_exit(nullptr); });
    ADD_FAILURE() << "the thread went on";
  }).join();
  EXPECT_TRUE(watched.expired());
}
#endif

TEST(AFaultThatAServiceObjectRaises, FindsAnEmptyEnvelopeWhereTheTailLooksIntoIt) {
  for (const Tail tail : {Tail::kFaultCode, Tail::kFaultString, Tail::kRfq}) {
    RecordingPlatform world;
    const Operation operation{.log = kLog, .tail = tail, .faults = {}};
    const Error error = error_of([&] {
      ConnectorMethodFrame(operation,
                           [](Call&) { throw Error(kSoapFault, "SearchService", "a fault"); });
    });
    EXPECT_EQ(error.number, kNoSuchNode);
    EXPECT_EQ(error.source, "SoapNodes");
  }
}

TEST(AFaultThatAServiceObjectRaises, PassesTheTailsThatDoNotLookIntoTheEnvelope) {
  RecordingPlatform world;
  constexpr Operation kOperation{.log = kLog};
  const Error error = error_of([&] {
    ConnectorMethodFrame(kOperation,
                         [](Call&) { throw Error(kSoapFault, "SearchService", "a fault"); });
  });
  EXPECT_EQ(error.number, kSoapFault);
  EXPECT_EQ(error.description, "a fault");
}

TEST(Exchange, RunsInTwoStepsWithoutATimingLine) {
  RecordingPlatform world;
  constexpr Operation kOperation{
      .log = kLog, .method = &BVMethods::DeleteRemark, .service = &BVServices::Maintenance};
  world.reply(envelope_text("r", "<return>done</return>"));
  const std::string text = ConnectorMethodFrame(kOperation, {"http://h/", "S-1"}, [](Call& call) {
    return call.getEnvelope().params("R-2").exchange().text();
  });
  EXPECT_EQ(text, "done");
  EXPECT_EQ(world.record.transport.at(1), "SOAPAction \"urn:MaintenanceService\"");
  for (const auto& line : world.record.log) {
    EXPECT_EQ(line.find("Time to execute"), std::string::npos) << line;
  }
}

TEST(ExchangeOfText, ReadsTheReplyIntoTheCallsEnvelope) {
  RecordingPlatform world;
  constexpr Operation kOperation{.log = kLog};
  world.reply(envelope_text("r", "<return>done</return>"));
  const std::string text = ConnectorMethodFrame(kOperation, {"http://h/", "S-1"}, [](Call& call) {
    const auto transport = inline_transport(TracingRule::kLogFile);
    return call.exchange_text(*transport, "<literal/>").text();
  });
  EXPECT_EQ(text, "done");
  EXPECT_EQ(world.sent.at(0).text, "<literal/>");
  EXPECT_EQ(session().LastHeartBeat, Date{});
}

}  // namespace
}  // namespace bvconn
