#include "bvconn/connectors/search/bv_search_connector.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "bvconn/core/session_state.h"
#include "bvconn/platform/error_numbers.h"
#include "support/error_of.h"
#include "support/recording_platform.h"

// What the wire files cannot state: arrays of many elements, the interface as C++ callers see it,
// and what is left on the transport.
namespace bvconn {
namespace {

using Lines = std::vector<std::string>;
using test::envelope_text;
using test::error_of;
using test::RecordingPlatform;

constexpr std::string_view kUrl = "http://h/";

StringArray codes(std::size_t count) {
  return std::vector<std::string>(count, "c");
}

// "c;c;…;c"
std::string joined_codes_text(std::size_t count) {
  std::string text = "c";
  for (std::size_t i = 1; i < count; ++i) text += ";c";
  return text;
}

struct DalWorld : RecordingPlatform {
  DalWorld() {
    use_dal();
    for (const char* operation :
         {"SearchForPH", "searchForPHAverage", "SearchForCustomers", "SearchForOrders",
          "OrdersSearchEmailExport", "SearchForBrands", "SearchForManufacturers"}) {
      dal_answers[std::string("SearchService.") + operation] =
          envelope_text("r", "<return>R-5</return>");
    }
  }
};

TEST(SearchForPHAverage, FailsOnTheDalRouteWhenTheLastIndexNeedsMoreThan16Bits) {
  DalWorld world;
  const Error error =
      error_of([] { BVSearchConnector().searchForPHAverage("S", kUrl, codes(32769)); });
  EXPECT_EQ(error.number, error_numbers::kOverflow);
  EXPECT_EQ(world.record.dal, Lines{});
  EXPECT_EQ(world.record.log.front(), "EnterMethod BVSearchConnector.SearchForPHAverage 1");
  EXPECT_TRUE(
      world.record.log.back().starts_with("LogError BVSearchConnector.SearchForPHAverage 6 "))
      << world.record.log.back();
}

TEST(SearchForPHAverage, PassesAsManyElementsAs16BitsCanCount) {
  DalWorld world;
  BVSearchConnector().searchForPHAverage("S", kUrl, codes(32768), "T", "D", "A", "C");
  EXPECT_EQ(world.record.dal,
            Lines{"SearchService.searchForPHAverage(\"D\", \"T\", \"A\", \"C\", \"" +
                  joined_codes_text(32768) + "\")"});
}

TEST(SearchForPHAverage, SendsAnArrayOfAnyLengthBySoap) {
  RecordingPlatform world;
  world.reply(envelope_text("r", "<return>R-5</return>"));
  BVSearchConnector().searchForPHAverage("S", kUrl, codes(32769));
  EXPECT_NE(world.sent.at(0).text.find("SOAP-ENC:arrayType=\"xsd:string[32769]\""),
            std::string::npos);
}

TEST(SearchForPH, CountsItsElementsIn32Bits) {
  DalWorld world;
  BVSearchConnector().SearchForPH("S", kUrl, codes(32769), "D", "A", "C");
  EXPECT_EQ(world.record.dal, Lines{"SearchService.SearchForPH(\"D\", \"A\", \"C\", \"" +
                                    joined_codes_text(32769) + "\")"});
}

TEST(SearchForCustomers, FailsByItsCppDefaultsBeforeAnythingIsSent) {
  RecordingPlatform world;
  const Error error = error_of([] { BVSearchConnector().SearchForCustomers("S", kUrl); });
  EXPECT_EQ(error.number, error_numbers::kTypeMismatch);
  EXPECT_TRUE(world.sent.empty());
  EXPECT_EQ(world.record.all, Lines{});
}

TEST(SearchForCustomers, ComplainsOfTheFirstTextThatIsNoBooleanOnBothRoutes) {
  const SearchForCustomersCriteria criteria{
      .ExSearch = "first", .OnlyActive = "second", .OnlyBrimvale = "third"};
  const auto call = [&] { BVSearchConnector().SearchForCustomers("S", kUrl, criteria); };
  {
    RecordingPlatform world;
    EXPECT_NE(error_of(call).description.find("first"), std::string::npos);
  }
  DalWorld world;
  EXPECT_NE(error_of(call).description.find("first"), std::string::npos);
  EXPECT_EQ(world.record.dal, Lines{});
}

TEST(SearchForAllAgents, LeavesTheAgentOutByItsCppDefault) {
  RecordingPlatform world;
  world.reply(envelope_text("r", "<return>R-5</return>"));
  BVSearchConnector().SearchForAllAgents("S", kUrl);
  EXPECT_NE(world.sent.at(0).text.find("<m:searchForAllAgents xmlns:m=\"urn:SearchService\"/>"),
            std::string::npos)
      << world.sent.at(0).text;
}

TEST(SearchForAllAgents, SendsAnyNumberThatFits16BitsAsSuch) {
  for (const Variant& agent : {Variant(std::int32_t{7}), Variant(7.0), Variant("7")}) {
    RecordingPlatform world;
    world.reply(envelope_text("r", "<return>R-5</return>"));
    BVSearchConnector().SearchForAllAgents("S", kUrl, agent);
    EXPECT_NE(world.sent.at(0).text.find("<agentID xsi:type=\"xsd:short\">7</agentID>"),
              std::string::npos)
        << world.sent.at(0).text;
  }
}

TEST(SearchForCustomer, ATimeThatRoundsToNothingIsNotMinusZero) {
  RecordingPlatform world;
  world.use_dal();
  world.dal_answers["SearchService.SearchForCustomer"] = envelope_text("r", "<return>R</return>");
  // The start is taken in whole seconds: 101.
  world.timer = {100.75, 100.996};
  BVSearchConnector().SearchForCustomer("S", kUrl, "C");
  EXPECT_EQ(world.record.log.at(1),
            "LogAtLevel 16 BVSearchConnector.SearchForCustomer() \"Total time in method: 0\" 0");
}

TEST(SearchForManufacturers, GivesAVariantThatHoldsTheNode) {
  DalWorld world;
  const Variant result = BVSearchConnector().SearchForManufacturers("S", kUrl);
  ASSERT_TRUE(result.is(Variant::Type::kNode));
  EXPECT_EQ(result.node().Name(), "return");
  EXPECT_EQ(to_text(result.node().Value()), "R-5");
}

TEST(SearchForOrders, TakesItsCriteriaByName) {
  DalWorld world;
  const SoapNode result =
      BVSearchConnector().SearchForOrders("S", kUrl, {.PONbr = "P-5", .OnlyHFR = true});
  EXPECT_EQ(to_text(result.Value()), "R-5");
  EXPECT_EQ(world.record.dal,
            Lines{"SearchService.SearchForOrders(\"\", \"\", \"\", \"\", \"P-5\", \"\", \"\", "
                  "\"\", \"\", \"\", \"\", \"\", \"\", \"\", \"\", \"\", \"\", \"\", false, true, "
                  "\"\", \"\", \"\")"});
}

TEST(SearchForOrders, PassesALargeNumberOfTheContractorsFirstOrderWithAllItsDigits) {
  RecordingPlatform world;
  world.use_dal();
  world.dal_answers["SearchService.SearchForOrders"] = envelope_text("r", "<return>R</return>");
  BVSearchConnector().SearchForOrders("S", kUrl, {.ContractorFirstPO = Variant(4500000000.0)});
  ASSERT_EQ(world.record.dal.size(), 1U);
  EXPECT_TRUE(world.record.dal[0].ends_with(", \"4500000000\")")) << world.record.dal[0];
}

TEST(SearchForOrdersForEmail, GivesAnEmptyReference) {
  DalWorld world;
  EXPECT_FALSE(BVSearchConnector().SearchForOrdersForEmail("S", kUrl));
  EXPECT_EQ(world.record.dal.size(), 1U);
}

TEST(SearchConnector, IsMadeAndEndedWithoutALine) {
  RecordingPlatform world;
  { [[maybe_unused]] const BVSearchConnector connector{}; }
  EXPECT_EQ(world.record.all, Lines{});
}

TEST(SearchConnector, ItsResultsOutliveIt) {
  DalWorld world;
  std::optional<BVSearchConnector> connector(std::in_place);
  const SoapNode brands = connector->SearchForBrands("S", kUrl);
  connector.reset();
  EXPECT_EQ(to_text(brands.Value()), "R-5");
}

TEST(InventorySearches, GoOutUnderTheSoapActionOfTheRequestBefore) {
  RecordingPlatform world;
  for (int i = 0; i < 3; ++i) world.reply(envelope_text("r", "<return>R-5</return>"));
  BVSearchConnector connector;
  connector.SearchForBrands("S", kUrl);
  connector.SearchForTotalInventory("<info/>", "S", kUrl);
  connector.SearchForInventory("<info/>", "S", kUrl);
  Lines actions;
  std::copy_if(world.record.transport.begin(), world.record.transport.end(),
               std::back_inserter(actions),
               [](const std::string& line) { return line.starts_with("SOAPAction"); });
  EXPECT_EQ(actions, Lines{"SOAPAction \"urn:SearchService\""});
}

TEST(SearchForTotalInventory, SubtractsTwoReadingsOfThe32BitTimer) {
  // The steps of the timer are 1/256 of a second in the morning and 1/16384 soon after
  // midnight. Each reading is the nearest step, and their difference is shown in full.
  struct Case {
    double start;
    double end;
    std::string seconds;
  };
  for (const Case& each :
       {Case{36000.1, 36000.35, "0.25"}, Case{1000.0, 1000.7, "0.70001220703125"},
        Case{86399.9, 0.5, "-86399.3984375"}}) {
    RecordingPlatform world;
    world.timer = {each.start, each.end};
    world.reply(envelope_text("r", "<a>1</a>"));
    BVSearchConnector().SearchForTotalInventory("<info/>", "S", kUrl);
    EXPECT_EQ(world.record.log.back(),
              "LogAtLevel 16 BVSearchConnectory.SearchForTotalInventory \"Time to search Total "
              "Inventory: " +
                  each.seconds + "\" 0");
  }
}

TEST(InventorySearches, FailInReceiveWithTheErrorAsItWasRaisedAndNoContact) {
  for (const bool total : {true, false}) {
    RecordingPlatform world;
    world.fail_receive(Error(51, "HTTPTransport", "why", "help.chm", 12));
    const Error error = error_of([&] {
      BVSearchConnector connector;
      total ? connector.SearchForTotalInventory("<info/>", "S", kUrl)
            : connector.SearchForInventory("<info/>", "S", kUrl);
    });
    EXPECT_EQ(error.number, 51);
    EXPECT_EQ(error.source, "HTTPTransport");
    EXPECT_EQ(error.description, "why");
    EXPECT_EQ(error.helpFile, "help.chm");
    EXPECT_EQ(error.helpContext, 12);
    EXPECT_TRUE(session().LastHeartBeat == Date{});
    EXPECT_EQ(world.record.log.back(), "ExitMethod Global.DefaultTimeout 2");
  }
}

}  // namespace
}  // namespace bvconn
