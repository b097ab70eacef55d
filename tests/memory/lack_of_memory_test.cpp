#include <gtest/gtest.h>

#include <array>
#include <optional>

#include "bvconn/connectors/documents/bv_acknowledgement_connector.h"
#include "bvconn/connectors/documents/bv_quote_connector.h"
#include "bvconn/connectors/documents/bv_request_for_quote_connector.h"
#include "bvconn/connectors/documents/bv_submittal_connector.h"
#include "bvconn/connectors/invoice/bv_invoice_connector.h"
#include "bvconn/connectors/maintenance/bv_maintenance_connector.h"
#include "bvconn/connectors/search/bv_search_connector.h"
#include "bvconn/connectors/session/bv_document_connector.h"
#include "bvconn/connectors/session/bv_generic_connector.h"
#include "bvconn/connectors/session/bv_heart_beat_connector.h"
#include "bvconn/core/session_state.h"
#include "bvconn/core/settings.h"
#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/platform/error_numbers.h"
#include "memory/quiet_world.h"
#include "support/watched_memory.h"

// What becomes of a call when there is no memory for one of its allocations, for each of them in
// turn: what its contract says of error 7, a session that can be used, and a next call that is as
// good as ever.
namespace bvconn {
namespace {

using error_numbers::from_bits;
using error_numbers::kOutOfMemory;
using test::FailingMemory;
using test::QuietWorld;
using test::Shortage;

constexpr std::string_view kUrl = "http://a-server-with-a-long-name/soap";
constexpr std::string_view kSession = "a session of more than fifteen letters";
constexpr std::string_view kKey = "a key of more than fifteen letters";
constexpr std::string_view kWords = "the answer of more than fifteen letters";

std::string reply_of(std::string_view content) {
  return std::string(
             "<e:Envelope xmlns:e='http://schemas.xmlsoap.org/soap/envelope/'><e:Body>"
             "<response>")
      .append(content)
      .append("</response></e:Body></e:Envelope>");
}

std::string good_reply() {
  return reply_of(std::string("<return>").append(kWords).append("</return>"));
}

const std::string kFault =
    "<e:Envelope xmlns:e='http://schemas.xmlsoap.org/soap/envelope/'><e:Body><e:Fault>"
    "<faultcode>10041</faultcode><faultstring>the server's words, of some length</faultstring>"
    "</e:Fault></e:Body></e:Envelope>";

/// How a call ended; taken down without any memory.
template <class Result>
struct Ended {
  std::optional<Result> result;  ///< empty where it failed
  std::int32_t number = 0;       ///< of the `Error` that it failed with
  bool foreign = false;          ///< it failed with something else
  bool struck = false;           ///< there was no memory for something
  Shortage shortage = Shortage::kOnce;
};

template <class Call>
auto outcome_of(const Call& call) -> Ended<decltype(call())> {
  Ended<decltype(call())> outcome;
  try {
    outcome.result.emplace(call());
  } catch (const Error& error) {
    outcome.number = error.number;
  } catch (...) {
    outcome.foreign = true;
  }
  return outcome;
}

template <class Call>
auto outcome_of(const Call& call, std::size_t failing, Shortage shortage) {
  const FailingMemory memory(failing, shortage);
  auto outcome = outcome_of(call);
  outcome.struck = FailingMemory::has_struck();
  outcome.shortage = shortage;
  return outcome;
}

/// A call in a world, and what is good of it. `check` looks at a struck call before the next one.
template <class Call, class Good, class Check>
void run_short_of_memory(
    std::string_view reply, const Call& call, const Good& is_good, const Check& check,
    void (*prepare)() = [] {}) {
  for (const Shortage shortage : {Shortage::kOnce, Shortage::kOnward}) {
    std::size_t failing = 1;
    for (;; ++failing) {
      ASSERT_LT(failing, 2000U) << "more than a call can take";
      QuietWorld world(reply);
      prepare();
      const auto outcome = outcome_of([&] { return call(world); }, failing, shortage);
      EXPECT_FALSE(outcome.foreign) << "something but an Error left, at allocation " << failing;
      if (!outcome.struck) {
        EXPECT_TRUE(is_good(outcome)) << "with all the memory that it took";
        break;
      }
      SCOPED_TRACE("allocation " + std::to_string(failing) +
                   (shortage == Shortage::kOnward ? " onward" : ""));
      check(world, outcome);
      EXPECT_TRUE(is_good(outcome_of([&] { return call(world); }))) << "the next call";
    }
    EXPECT_GT(failing, 1U) << "it took no memory at all";
  }
}

/// The contract of most operations: error 7, logged where the tail logs, or the call went on
/// without the setting `TraceSoapTraffic`, and its end is the one that it has with memory.
template <class Good>
auto fails_with_7_unless_in_the_trace_setting(const Good& is_good, bool logs) {
  return [is_good, logs](const QuietWorld& world, const auto& outcome) {
    if (outcome.number != kOutOfMemory) {
      EXPECT_EQ(world.short_settings_logged, 1);
      EXPECT_TRUE(is_good(outcome));
    } else if (logs && outcome.shortage == Shortage::kOnce) {
      // Onward, there may have been none for the logger either.
      EXPECT_GT(world.errors_logged, 0);
    }
  };
}

const auto kGoodNode = [](const Ended<SoapNode>& outcome) {
  return outcome.result && outcome.result->Value() == Variant(std::string(kWords));
};
const auto kGoodText = [](const Ended<std::string>& outcome) { return outcome.result == kWords; };

/// Ends with this error when there is memory.
auto ends_with(std::int32_t number) {
  return [number](const auto& outcome) { return !outcome.result && outcome.number == number; };
}

template <class Call, class Good>
void expect_7(std::string_view reply, const Call& call, const Good& is_good, bool logs) {
  run_short_of_memory(
      reply, [&](QuietWorld&) { return call(); }, is_good,
      fails_with_7_unless_in_the_trace_setting(is_good, logs));
}

TEST(LackOfMemory, IsError7OfAnOperationWithThePlainTail) {
  const SoapNode node = SoapNode::make("root");
  expect_7(
      good_reply(),
      [&] {
        return BVGenericConnector().Send("urn:a-service-of-some-length", "aMethodOfSomeLength",
                                         "root", node, kUrl, 0, kSession);
      },
      kGoodNode, true);
  expect_7(
      good_reply(), [] { return BVQuoteConnector().getExistingQuote(kUrl, kSession, kKey); },
      kGoodNode, true);
}

TEST(LackOfMemory, IsError7OfAnOperationThatSendsInTwoSteps) {
  expect_7(
      good_reply(), [] { return BVMaintenanceConnector().DeleteRemark(kSession, kKey, kUrl); },
      kGoodText, true);
}

TEST(LackOfMemory, IsError7OfAnOperationWithALiteralRequest) {
  expect_7(
      good_reply(),
      [] { return BVSearchConnector().SearchForTotalInventory(kKey, kSession, kUrl); }, kGoodNode,
      false);
}

TEST(LackOfMemory, IsError7OnTheDataAccessLayerRoute) {
  run_short_of_memory(
      good_reply(), [](QuietWorld&) { return BVSearchConnector().SearchForBrands(kSession, kUrl); },
      kGoodNode,
      [](const QuietWorld&, const Ended<SoapNode>& outcome) {
        EXPECT_EQ(outcome.number, kOutOfMemory);
      },
      [] {
        BVConnectorObject().InitTorvexDAL(kUrl);
        BVConnectorObject().UseTorvexDAL();
      });
}

TEST(LackOfMemory, IsError7OfTheFaultCodeTail) {
  expect_7(
      kFault, [] { return BVInvoiceConnector().GetInvoice(kUrl, kSession, kKey); },
      ends_with(from_bits(0x80042739)), true);
}

TEST(LackOfMemory, IsError7OfTheBareTail) {
  expect_7(
      good_reply(), [] { return BVSearchConnector().SearchForBrands(kSession, kUrl); }, kGoodNode,
      false);
  expect_7(
      kFault, [] { return BVSearchConnector().SearchForBrands(kSession, kUrl); },
      ends_with(error_numbers::kSoapFault), false);
}

TEST(LackOfMemory, IsError7OfTheFaultStringTail) {
  expect_7(
      kFault, [] { return BVSearchConnector().SearchForAgents(kSession, kUrl, kKey); },
      ends_with(error_numbers::kSoapFault), false);
}

TEST(LackOfMemory, IsError7OfTheRfqTail) {
  expect_7(
      kFault, [] { return BVRequestForQuoteConnector().getRFQs(kKey, kUrl, kSession); },
      ends_with(from_bits(0x80042B5D)), false);
}

TEST(LackOfMemory, IsError7OfTheOverviewTail) {
  expect_7(
      good_reply(), [] { return BVAcknowledgementConnector().getOverview(kKey, kUrl, kSession); },
      kGoodNode, true);
  expect_7(
      kFault, [] { return BVAcknowledgementConnector().getOverview(kKey, kUrl, kSession); },
      ends_with(error_numbers::kSoapFault), true);
}

TEST(LackOfMemory, IsError7OfTheTailWithoutALine) {
  const SoapNode node = SoapNode::make("root");
  BVSubmittalConnector submittals;
  expect_7(
      good_reply(), [&] { return submittals.CreateSubmittal(kSession, node, kUrl); }, kGoodText,
      false);
}

TEST(LackOfMemory, IsError7OfAnOperationWithoutATail) {
  expect_7(
      reply_of("<return>true</return>"),
      [] { return BVQuoteConnector().canExpirationBeOveridden(kUrl, kSession, kKey); },
      [](const Ended<bool>& outcome) { return outcome.result == true; }, false);
}

TEST(LackOfMemory, IsLoggedByGetDocumentsWhichGivesNothing) {
  const auto is_good = [](const Ended<SoapNode>& outcome) {
    return outcome.result && *outcome.result && outcome.result->Nodes().Count() == 1 &&
           outcome.result->Nodes().Item(0).Value() == Variant(std::string(kWords));
  };
  run_short_of_memory(
      good_reply(), [](QuietWorld&) { return BVDocumentConnector().GetDocuments(kUrl, kKey); },
      is_good,
      [&](const QuietWorld& world, const Ended<SoapNode>& outcome) {
        if (world.errors_logged == 0) {
          // Not even the logger could be made, so the tail failed.
          EXPECT_EQ(outcome.number, kOutOfMemory);
          return;
        }
        EXPECT_EQ(world.last_logged, kOutOfMemory);
        if (outcome.result && *outcome.result) {
          EXPECT_EQ(world.short_settings_logged, 1);
          EXPECT_TRUE(is_good(outcome));
        }
      });
}

int beat(QuietWorld& world, BVHeartBeatConnector& connector) {
  const int before = world.beats_that_were_ok;
  connector.sendHeartBeat(kUrl, kSession, true);
  return world.beats_that_were_ok - before;
}

TEST(LackOfMemory, IsLoggedByAHeartBeatAndFailsNothing) {
  run_short_of_memory(
      reply_of("<return>OK</return>"),
      [](QuietWorld& world) {
        BVHeartBeatConnector connector;
        return beat(world, connector);
      },
      [](const Ended<int>& outcome) { return outcome.result == 1; },
      [](const QuietWorld& world, const Ended<int>& outcome) {
        // Where its tail can't make the logger or the clock either, that error leaves.
        EXPECT_TRUE(outcome.result || outcome.number == kOutOfMemory);
        EXPECT_TRUE(outcome.number == kOutOfMemory || world.last_logged == kOutOfMemory);
      });
}

TEST(LackOfMemory, IsLoggedByAHeartBeatThatFailedAndHasAHandlerToCall) {
  struct Large {
    std::array<char, 200> bytes{};
  };
  int events = 0;
  BVHeartBeatConnector connector;
  // Too large to be copied without memory.
  connector.HeartBeatError = [&events, large = Large()] { events += 1 + large.bytes[0]; };
  run_short_of_memory(
      good_reply(),
      [&](QuietWorld& world) {
        world.send_error.emplace(error_numbers::kTimeout, "", "");
        events = 0;
        connector.sendHeartBeat(kUrl, kSession);
        return events;
      },
      [](const Ended<int>& outcome) { return outcome.result == 1; },
      [](const QuietWorld& world, const Ended<int>& outcome) {
        EXPECT_TRUE(outcome.result || outcome.number == kOutOfMemory);
        EXPECT_TRUE(outcome.number == kOutOfMemory || world.errors_logged > 0);
      });
}

TEST(LackOfMemory, IsSwallowedByInitTorvexDAL) {
  run_short_of_memory(
      good_reply(),
      [](QuietWorld&) {
        BVConnectorObject().InitTorvexDAL(kUrl);
        return session().DisabledDALServices.size();
      },
      [](const Ended<std::size_t>& outcome) { return outcome.result == 26U; },
      [](const QuietWorld& world, const Ended<std::size_t>& outcome) {
        // Onward, not even the session of the world could be made.
        EXPECT_TRUE(outcome.result || outcome.number == kOutOfMemory);
        EXPECT_EQ(world.errors_logged, 0);
      });
}

TEST(LackOfMemory, IsShownByUseTorvexDAL) {
  QuietWorld world("");
  // Of a session that is not made yet.
  const platform::ScopedPlatform fresh(platform::current());
  {
    // The first thing that it needs is the session of this world.
    const FailingMemory memory(1, Shortage::kOnce);
    BVConnectorObject().UseTorvexDAL();
  }
  EXPECT_TRUE(world.shown_out_of_memory);
  EXPECT_FALSE(BVConnectorObject().UsingTorvexDAL());
  BVConnectorObject().UseTorvexDAL();
  EXPECT_TRUE(BVConnectorObject().UsingTorvexDAL());
}

TEST(LackOfMemory, IsError7OfTheSettingsThatAreCached) {
  const auto fails_with_7 = [](const QuietWorld&, const auto& outcome) {
    EXPECT_EQ(outcome.number, kOutOfMemory);
  };
  run_short_of_memory(
      "", [](QuietWorld&) { return Global::DefaultTimeout(); },
      [](const Ended<std::int32_t>& outcome) { return outcome.result == 60000; }, fails_with_7);
  run_short_of_memory(
      "", [](QuietWorld&) { return Global::TracePort(); },
      [](const Ended<std::string>& outcome) {
        return outcome.result == "a port of more than 15 letters";
      },
      fails_with_7);
}

TEST(LackOfMemory, MakesTraceSoapTrafficFalseAndIsLogged) {
  run_short_of_memory(
      "", [](QuietWorld&) { return Global::TraceSoapTraffic(); },
      [](const Ended<bool>& outcome) { return outcome.result == true; },
      [](const QuietWorld& world, const Ended<bool>& outcome) {
        if (outcome.number == kOutOfMemory) {
          EXPECT_EQ(world.errors_logged, 0) << "there was no logger, so its tail failed";
        } else {
          EXPECT_EQ(outcome.result, false);
          EXPECT_EQ(world.short_settings_logged, 1);
        }
      });
}

TEST(LackOfMemory, IsError7OfGettersAndSetters) {
  run_short_of_memory(
      "",
      [](QuietWorld&) {
        BVConnectorObject object;
        object.DALUrl(kUrl);
        object.GetDisabledDALServices(kKey);
        object.UserName(kKey);
        object.Password(kKey);
        object.AppVer(kKey);
        object.SalesOrg(kKey);
        object.HTTPTransportObject();
        object.IsDALDisabled(kKey, kKey);
        object.DALUrl();
        return object.GetDisabledDALServices();
      },
      [](const Ended<std::string>& outcome) { return outcome.result == kKey; },
      [](const QuietWorld&, const Ended<std::string>& outcome) {
        EXPECT_EQ(outcome.number, kOutOfMemory);
      });
}

TEST(LackOfMemory, DoesNotKeepASubmittalConnectorFromBeingMadeUnlessItCannotBeLogged) {
  run_short_of_memory(
      "",
      [](QuietWorld&) {
        const BVSubmittalConnector connector;
        return true;
      },
      [](const Ended<bool>& outcome) { return outcome.result == true; },
      [](const QuietWorld& world, const Ended<bool>& outcome) {
        if (outcome.result) {
          EXPECT_EQ(world.last_logged, kOutOfMemory);
        } else {
          EXPECT_EQ(outcome.number, kOutOfMemory);
          EXPECT_EQ(world.errors_logged, 0);
        }
      });
}

}  // namespace
}  // namespace bvconn
