#include "bvconn/catalogues/bv_methods.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "catalogues/bv_methods_expected.h"

namespace bvconn {
namespace {

using test::kOddWireNames;
using test::kRowsForTheApplication;

struct Row {
  std::string_view property;
  std::string (BVMethods::*wire_name)() const;
};

constexpr Row kRows[] = {
#define BVCONN_METHOD(property, wire_name) {#property, &BVMethods::property},
#include "bvconn/catalogues/bv_methods_rows.inc"
#undef BVCONN_METHOD
};

std::string with_small_first_letter(std::string_view name) {
  std::string result(name);
  if (result.front() >= 'A' && result.front() <= 'Z') {
    result.front() = static_cast<char>(result.front() - 'A' + 'a');
  }
  return result;
}

std::string expected_wire_name(std::string_view property) {
  const auto odd = std::find_if(kOddWireNames.begin(), kOddWireNames.end(),
                                [&](const auto& row) { return row.property == property; });
  return odd != kOddWireNames.end() ? std::string(odd->wire_name)
                                    : with_small_first_letter(property);
}

std::vector<std::string_view> properties_named(std::string_view wire_name) {
  const BVMethods methods;
  std::vector<std::string_view> properties;
  for (const auto& row : kRows) {
    if ((methods.*row.wire_name)() == wire_name) properties.push_back(row.property);
  }
  return properties;
}

std::string in_small_letters(std::string_view name) {
  std::string result(name);
  for (char& c : result) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return result;
}

std::set<std::string> rows_read_by_connectors() {
  static const std::regex kRow("BVMethods::(\\w+)");
  std::set<std::string> rows;
  const auto folder = std::filesystem::path(BVCONN_SOURCE_DIR) / "bvconn/connectors";
  for (const auto& file : std::filesystem::recursive_directory_iterator(folder)) {
    if (file.path().extension() != ".cpp") continue;
    std::ifstream stream(file.path());
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    for (std::sregex_iterator found(text.begin(), text.end(), kRow), end; found != end; ++found) {
      rows.insert((*found)[1]);
    }
  }
  return rows;
}

using Names = std::vector<std::string_view>;

TEST(BVMethods, HasTheExpectedWireNameInEveryRow) {
  const BVMethods methods;
  for (const auto& row : kRows) {
    EXPECT_EQ((methods.*row.wire_name)(), expected_wire_name(row.property)) << row.property;
  }
}

// Hosts look a name up whatever its letters, and the compiler knows nothing of that.
TEST(BVMethods, NamesNoPropertyTwiceWhateverItsLetters) {
  std::set<std::string> names;
  for (const auto& row : kRows) {
    EXPECT_TRUE(names.insert(in_small_letters(row.property)).second) << row.property;
  }
}

TEST(BVMethods, ListsOnlyTrueExceptionsToTheRuleOfTheSmallFirstLetter) {
  for (const auto& odd : kOddWireNames) {
    EXPECT_NE(odd.wire_name, with_small_first_letter(odd.property)) << odd.property;
    EXPECT_TRUE(std::any_of(std::begin(kRows), std::end(kRows), [&](const Row& row) {
      return row.property == odd.property;
    })) << odd.property;
  }
}

// Which rows the connectors read is seen in their sources: an operation's block names its row.
TEST(BVMethods, KeepsThe41RowsThatOnlyTheApplicationReads) {
  const std::set<std::string> read = rows_read_by_connectors();
  Names unread;
  for (const auto& row : kRows) {
    if (!read.contains(std::string(row.property))) unread.push_back(row.property);
  }
  EXPECT_EQ(unread, Names(kRowsForTheApplication.begin(), kRowsForTheApplication.end()));
  EXPECT_EQ(unread.size(), 41U);
}

TEST(BVMethods, SavesByOneWireNameInFourRows) {
  EXPECT_EQ(properties_named("save"), (Names{"Save", "SaveOrder", "SaveProject", "SaveQuote"}));
}

TEST(BVMethods, ConvertsToAQuoteByOneWireNameInTwoRows) {
  EXPECT_EQ(properties_named("convertToQuote"), (Names{"ConvertToQuote", "ProjectToQuote"}));
}

TEST(BVMethods, KeepsTheCapitalGOfGetConfigXmlInBothItsRows) {
  EXPECT_EQ(properties_named("GetConfigXML"), (Names{"GetConfigXML", "GetTorvexXML"}));
  EXPECT_EQ(properties_named("getConfigXML"), Names{});
}

TEST(BVMethods, GivesEveryOtherWireNameToOneRowOnly) {
  const BVMethods methods;
  for (const auto& row : kRows) {
    const std::string wire_name = (methods.*row.wire_name)();
    if (wire_name == "save" || wire_name == "convertToQuote" || wire_name == "GetConfigXML")
      continue;
    EXPECT_EQ(properties_named(wire_name), Names{row.property});
  }
}

TEST(BVMethods, LeavesANameThatBeginsSmallAsItIs) {
  const BVMethods methods;
  EXPECT_EQ(methods.getOrdersForQuote(), "getOrdersForQuote");
  EXPECT_EQ(methods.searchForPHAverage(), "searchForPHAverage");
  EXPECT_EQ(methods.updateRFQ(), "updateRFQ");
}

TEST(BVMethods, SpeaksTheServersWordsWhereTheyDifferFromTheClients) {
  const BVMethods methods;
  EXPECT_EQ(methods.GetAllBrimvaleDistributors(), "searchForBrimvaleDistributors");
  EXPECT_EQ(methods.GetCommissionStatement(), "getCommissionData");
  EXPECT_EQ(methods.GetSAPCommissionStatement(), "getSAPCommissionData");
  EXPECT_EQ(methods.SearchForReturnReasons(), "searchForOrderReasons");
  EXPECT_EQ(methods.GetAllRMAReturnReasons(), "getRMAReturnCodes");
  EXPECT_EQ(methods.GetCatalogNumbersFromInvoice(), "getInvoiceInformation");
}

TEST(BVMethods, SpellsAcknowledgementAsTheServerDoes) {
  const BVMethods methods;
  EXPECT_EQ(methods.NewAcknowledgment(), "newAcknowledgement");
  EXPECT_EQ(methods.GetAcknowledgmentOverview(), "getAllAcknowledgementOverview");
  EXPECT_EQ(methods.GetAcknowledgments(), "getAcknowledgments");
  EXPECT_EQ(methods.GetAcknowledgement(), "getAcknowledgement");
}

TEST(BVMethods, KeepsTheMisspellingOfAxillary) {
  EXPECT_EQ(BVMethods().SearchForCustomerAxillaryInfo(), "searchForCustomerAxillaryInfo");
}

TEST(BVMethods, HasItsLongestNameForTheTypeAheadFile) {
  const BVMethods methods;
  const std::string longest = methods.CheckTypeAheadFile();
  EXPECT_EQ(longest, "checkTypeAheadFileIfItDoesNotExistThenKickOffPrimeTypeAhead");
  for (const auto& row : kRows) {
    if (row.property != "CheckTypeAheadFile") {
      EXPECT_LT((methods.*row.wire_name)().size(), longest.size()) << row.property;
    }
  }
}

TEST(BVMethods, ShortensThePrintoutsButNotTheirDefaults) {
  const BVMethods methods;
  EXPECT_EQ(methods.GetOrderPrintout(), "getOrderPrint");
  EXPECT_EQ(methods.SaveOrderPrintout(), "saveOrderPrint");
  EXPECT_EQ(methods.GetOrderPrintoutDefaults(), "getOrderPrintoutDefaults");
  EXPECT_EQ(methods.SaveOrderPrintoutDefault(), "saveOrderPrintoutDefault");
}

}  // namespace
}  // namespace bvconn
