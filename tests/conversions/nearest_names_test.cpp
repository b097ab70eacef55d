#include "bvconn/platform/conversions/nearest_names.h"

#include <gtest/gtest.h>

namespace bvconn {
namespace {

using Names = std::vector<std::string>;

TEST(SlipsBetween, CountsLettersToInsertRemoveChangeAndSwap) {
  EXPECT_EQ(slips_between("", ""), 0U);
  EXPECT_EQ(slips_between("GetInvoice", "getinvoice"), 0U);
  EXPECT_EQ(slips_between("GetInvoice", "GetInvoce"), 1U);
  EXPECT_EQ(slips_between("GetInvoice", "GetInvoicer"), 1U);
  EXPECT_EQ(slips_between("GetInvoice", "GotInvoice"), 1U);
  EXPECT_EQ(slips_between("GetInvoice", "GteInvoice"), 1U);
  EXPECT_EQ(slips_between("GetInvoice", "GetSAPInvoice"), 3U);
  EXPECT_EQ(slips_between("abc", ""), 3U);
}

TEST(NearestNames, AreTheBestOnesAlone) {
  const Names known{"SearchForBrands", "SearchForBrand", "SearchForVendors"};
  EXPECT_EQ(nearest_names("searchforbrands", known), Names{"SearchForBrands"});
  EXPECT_EQ(nearest_names("SearchForBrandz", known), (Names{"SearchForBrands", "SearchForBrand"}));
  EXPECT_EQ(nearest_names("SomethingElse", known), Names());
}

TEST(DidYouMean, AsksForUpToThreeNames) {
  EXPECT_EQ(did_you_mean("lamq", {"lamp"}), "; did you mean lamp?");
  EXPECT_EQ(did_you_mean("lamq", {"lamp", "lama", "lame"}), "; did you mean lamp, lama or lame?");
  EXPECT_EQ(did_you_mean("lamq", {"lamp", "lama", "lame", "lamb"}), "");
  EXPECT_EQ(did_you_mean("lamq", {"chair"}), "");
}

}  // namespace
}  // namespace bvconn
