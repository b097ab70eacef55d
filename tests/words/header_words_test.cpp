#include "words/header_words.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace bvconn::test {
namespace {

using testing::ElementsAre;
using testing::Pair;

constexpr std::string_view kHeader = R"(
/// Of something else.
struct Criteria {
  int first = 0;
};

/// What the class
/// is for.
class BVCONN_EXPORT Sample {
 public:
  Sample();
  /// One.
  /// Two lines.
  std::string First(std::string_view aKey,
                    std::string_view aOther = "");

  // Serves both,
  // up to the blank line.
  void Second();
  /// Has words of its own too.
  void Third() const { return nothing_; }

  void Fourth();
  // Serves nothing.

  std::function<void()> Fifth;

 private:
  /// Hidden.
  void Sixth();
};
)";

std::vector<std::string> names_of(const ClassWords& words) {
  std::vector<std::string> names;
  for (const Declaration& each : words.declarations) names.push_back(each.name);
  return names;
}

TEST(HeaderWords, FindsTheClassByItsName) {
  EXPECT_TRUE(class_words(kHeader, "Sample"));
  EXPECT_FALSE(class_words(kHeader, "Samp"));
  EXPECT_EQ(class_words(kHeader, "Sample")->comment, "What the class is for.");
}

TEST(HeaderWords, SeesPublicDeclarationsAlone) {
  EXPECT_THAT(names_of(*class_words(kHeader, "Sample")),
              ElementsAre("Sample", "First", "Second", "Third", "Fourth", "Fifth"));
}

TEST(HeaderWords, AnOwnCommentBelongsToTheNextDeclarationAlone) {
  const auto words = class_words(kHeader, "Sample");
  EXPECT_EQ(words->declarations[1].own, "One. Two lines.");
  EXPECT_EQ(words->declarations[2].own, "");
  EXPECT_EQ(words->declarations[3].own, "Has words of its own too.");
}

TEST(HeaderWords, AGroupCommentServesUpToTheBlankLine) {
  const auto words = class_words(kHeader, "Sample");
  EXPECT_EQ(words->declarations[1].group, "");
  EXPECT_EQ(words->declarations[2].group, "Serves both, up to the blank line.");
  EXPECT_EQ(words->declarations[3].group, "Serves both, up to the blank line.");
  EXPECT_FALSE(words->declarations[4].documented());
  EXPECT_THAT(words->stray, ElementsAre("Serves nothing."));
}

TEST(HeaderWords, ARouteEndsWithItsSentence) {
  EXPECT_THAT(routes_in("One. Route: DAL `A.b` for \"x.y\", else SOAP `c`. More. Route: none."),
              ElementsAre("Route: DAL `A.b` for \"x.y\", else SOAP `c`.", "Route: none."));
}

TEST(HeaderWords, NamesStandInBackticksAfterTheirWord) {
  EXPECT_THAT(names_after("DAL", "DAL `A.b` or `C.d` by `kind`, else SOAP `e`"),
              ElementsAre("A.b", "C.d"));
  EXPECT_THAT(names_after("SOAP", "DAL `A.b` or `C.d` by `kind`, else SOAP `e`"), ElementsAre("e"));
}

TEST(HeaderWords, AServiceIsNoSOAPAction) {
  const std::string_view text =
      R"(`f` of "urn:One" or `BVServices.Two` under the SOAPAction "urn:Three")";
  EXPECT_THAT(services_in(text), ElementsAre("urn:One", "BVServices.Two"));
  EXPECT_EQ(soap_action_in(text), "urn:Three");
  EXPECT_EQ(soap_action_in("under the SOAPAction of the request before"), std::nullopt);
}

TEST(HeaderWords, ErrorNumbersStandInFixedPhrases) {
  EXPECT_THAT(numbers_in("error 13, error 91, error 130, 6 and 0x00000009"),
              ElementsAre(9, 13, 91));
  EXPECT_THAT(loose_numbers_in("error 13, with 91, 16 bits, \"9\""), ElementsAre("91"));
}

TEST(HeaderWords, AMappedCodeStandsWithItsNumber) {
  EXPECT_THAT(mapped_codes_in("0x00000A01 for the fault code 100, 0x00000A02 for the fault codes "
                              "200 and 300, 0x00000A03"),
              ElementsAre(Pair(100, 0xA01), Pair(200, 0xA02), Pair(300, 0xA02)));
}

TEST(HeaderWords, AnEllipsisStandsForAPartOfTheOperationsName) {
  EXPECT_TRUE(can_mean("get…Print", "getQuotePrint", "GetQuotePrintout"));
  EXPECT_FALSE(can_mean("get…Print", "getOrderPrint", "GetQuotePrintout"));
  EXPECT_TRUE(can_mean("…Service.Update…", "OrderService.UpdateOrder", "UpdateOrderComments"));
  EXPECT_FALSE(can_mean("…Service.Update…", "OrderService.UpdateComments", "UpdateOrderComments"));
  EXPECT_FALSE(can_mean("getPrint", "getprint", "getPrint"));
}

}  // namespace
}  // namespace bvconn::test
