#include "bvconn/core/joined_codes.h"

#include <gtest/gtest.h>

namespace bvconn {
namespace {

TEST(JoinedCodes, StandBetweenSemicolonsWithoutTheBlanksAroundThem) {
  EXPECT_EQ(joined_codes({" A-1", "B 2 ", "C-3"}), "A-1;B 2;C-3");
}

TEST(JoinedCodes, LoseBlanksAloneAndNoOtherWhiteSpace) {
  EXPECT_EQ(joined_codes({"\tA ", " B\n"}), "\tA;B\n");
}

TEST(JoinedCodes, KeepThePlacesOfEmptyOnes) {
  EXPECT_EQ(joined_codes({"A", "", " ", "B", ""}), "A;;;B;");
  EXPECT_EQ(joined_codes({"", "B"}), ";B");
}

TEST(JoinedCodes, OfOneOrNoneHaveNoSemicolon) {
  EXPECT_EQ(joined_codes({" A "}), "A");
  EXPECT_EQ(joined_codes({""}), "");
  EXPECT_EQ(joined_codes({}), "");
}

}  // namespace
}  // namespace bvconn
