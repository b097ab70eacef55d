#include "bvconn/platform/soap/variant.h"

#include <limits>

#include "soap/soap_test.h"

namespace bvconn {
namespace {

using test::error_of;
using Type = Variant::Type;

TEST(Variant, KnowsTheTypeThatItWasMadeWith) {
  EXPECT_EQ(Variant().type(), Type::kEmpty);
  EXPECT_EQ(Variant(Variant::Missing{}).type(), Type::kMissing);
  EXPECT_EQ(Variant(true).type(), Type::kBoolean);
  EXPECT_EQ(Variant(std::int16_t{2}).type(), Type::kInt16);
  EXPECT_EQ(Variant(3).type(), Type::kInt32);
  EXPECT_EQ(Variant(std::int64_t{4}).type(), Type::kInt64);
  EXPECT_EQ(Variant(0.5).type(), Type::kDouble);
  EXPECT_EQ(Variant("six").type(), Type::kString);
  EXPECT_EQ(Variant(Date{7}).type(), Type::kDate);
  EXPECT_EQ(Variant(Bytes{std::byte{8}}).type(), Type::kBytes);
  EXPECT_EQ(Variant(VariantArray()).type(), Type::kArray);
  EXPECT_EQ(Variant(SoapNode::make("nine")).type(), Type::kNode);
  EXPECT_EQ(Variant(QualifiedName{"urn:ten", "ten"}).type(), Type::kQualifiedName);
}

TEST(Variant, ThatIsMissingEqualsAnotherThatIs) {
  EXPECT_EQ(Variant(Variant::Missing{}), Variant(Variant::Missing{}));
  EXPECT_NE(Variant(Variant::Missing{}), Variant());
}

TEST(Variant, GivesItsValueToStrictAccess) {
  const SoapNode node = SoapNode::make("n");
  EXPECT_EQ(Variant(false).boolean(), false);
  EXPECT_EQ(Variant(std::int16_t{-2}).int16(), -2);
  EXPECT_EQ(Variant(-3).int32(), -3);
  EXPECT_EQ(Variant(std::int64_t{-4}).int64(), -4);
  EXPECT_EQ(Variant(-0.25).number(), -0.25);
  EXPECT_EQ(Variant("s").string(), "s");
  EXPECT_EQ(Variant(Date{99}).date(), Date{99});
  EXPECT_EQ(Variant(Bytes{std::byte{1}}).bytes(), Bytes{std::byte{1}});
  EXPECT_EQ(Variant(StringArray{"a", "b"}).array().items()[1].string(), "b");
  EXPECT_EQ(Variant(node).node(), node);
  EXPECT_EQ(Variant(QualifiedName{"u", "l"}).qualified_name().name_space, "u");
}

TEST(Variant, StrictAccessToAnotherTypeIsATypeMismatch) {
  const Error error = error_of([] { static_cast<void>(Variant("1").int32()); });
  EXPECT_EQ(error.number, 13);
  EXPECT_EQ(error.source, "BVConn");
  EXPECT_EQ(error.description, "Type mismatch: the value is string, not int32");
  EXPECT_EQ(error_of([] { static_cast<void>(Variant(1).int16()); }).number, 13);
  EXPECT_EQ(error_of([] { static_cast<void>(Variant().string()); }).number, 13);
  EXPECT_EQ(error_of([] { static_cast<void>(Variant(1).boolean()); }).number, 13);
  EXPECT_EQ(error_of([] { static_cast<void>(Variant(1).number()); }).number, 13);
  EXPECT_EQ(error_of([] { static_cast<void>(Variant(1).array()); }).number, 13);
}

TEST(Variant, IsEqualOnlyWithTheSameTypeAndValue) {
  EXPECT_EQ(Variant(1), Variant(1));
  EXPECT_NE(Variant(1), Variant(std::int16_t{1}));
  EXPECT_NE(Variant(), Variant(Variant::Missing{}));
  EXPECT_EQ(Variant(StringArray{"x"}), Variant(StringArray{"x"}));
  const SoapNode node = SoapNode::make("n");
  EXPECT_EQ(Variant(node), Variant(SoapNode(node)));
  EXPECT_NE(Variant(node), Variant(SoapNode::make("n")));
}

TEST(StringArray, IsNotAllocatedUntilItIsFilled) {
  EXPECT_FALSE(StringArray().allocated());
  EXPECT_TRUE(StringArray(std::vector<std::string>{}).allocated());
  EXPECT_NE(StringArray(), StringArray(std::vector<std::string>{}));
}

TEST(StringArray, UpperBoundIsTheLastIndex) {
  EXPECT_EQ((StringArray{"a", "b", "c"}).upper_bound(), 2);
  EXPECT_EQ(StringArray(std::vector<std::string>{}).upper_bound(), -1);
}

TEST(StringArray, UpperBoundOfOneThatWasNeverAllocatedFailsWith9) {
  const Error error = error_of([] { static_cast<void>(StringArray().upper_bound()); });
  EXPECT_EQ(error.number, 9);
  EXPECT_EQ(error.source, "BVConn");
}

TEST(VariantArray, CopiesKeepWhetherItIsAllocated) {
  const VariantArray none;
  const VariantArray empty{std::vector<Variant>{}};
  VariantArray copy = none;
  EXPECT_FALSE(copy.allocated());
  copy = empty;
  EXPECT_TRUE(copy.allocated());
  EXPECT_EQ(copy.size(), 0U);
  EXPECT_NE(none, empty);
  EXPECT_FALSE(Variant(StringArray()).array().allocated());
  EXPECT_TRUE(Variant(StringArray(std::vector<std::string>{})).array().allocated());
}

TEST(VariantToText, WritesSimpleValues) {
  EXPECT_EQ(to_text(Variant()), "");
  EXPECT_EQ(to_text(Variant(true)), "True");
  EXPECT_EQ(to_text(Variant(false)), "False");
  EXPECT_EQ(to_text(Variant(std::int16_t{-7})), "-7");
  EXPECT_EQ(to_text(Variant(70000)), "70000");
  EXPECT_EQ(to_text(Variant(std::int64_t{5'000'000'000})), "5000000000");
  EXPECT_EQ(to_text(Variant(0.1)), "0.1");
  EXPECT_EQ(to_text(Variant("as it is ")), "as it is ");
  EXPECT_EQ(to_text(Variant(from_civil({.year = 2007,
                                        .month = 1,
                                        .day = 5,
                                        .hour = 13,
                                        .minute = 4,
                                        .second = 9,
                                        .millisecond = 0}))),
            "1/5/2007 1:04:09 PM");
  EXPECT_EQ(to_text(Variant(from_civil({.year = 2007, .month = 1, .day = 5}))), "1/5/2007");
  EXPECT_EQ(to_text(Variant(Date{})), "12:00:00 AM");
  EXPECT_EQ(to_text(Variant(4500000000.0)), "4500000000");
  EXPECT_EQ(to_text(Variant(-0.0)), "0");
  EXPECT_EQ(to_text(Variant(1e-5)), "1E-05");
  EXPECT_EQ(to_text(Variant(QualifiedName{"urn:x", "10041"})), "10041");
}

TEST(VariantToText, FailsWith13ForWhatIsNoText) {
  EXPECT_EQ(error_of([] { to_text(Variant(Variant::Missing{})); }).number, 13);
  EXPECT_EQ(error_of([] { to_text(Variant(Bytes{})); }).number, 13);
  EXPECT_EQ(error_of([] { to_text(Variant(StringArray{"a"})); }).number, 13);
  EXPECT_EQ(error_of([] { to_text(Variant(SoapNode::make("n"))); }).number, 13);
}

TEST(VariantToBoolean, FollowsTheRulesOfThePlatform) {
  EXPECT_FALSE(to_boolean(Variant()));
  EXPECT_TRUE(to_boolean(Variant(true)));
  EXPECT_TRUE(to_boolean(Variant(-1)));
  EXPECT_FALSE(to_boolean(Variant(std::int64_t{0})));
  EXPECT_TRUE(to_boolean(Variant(0.5)));
  EXPECT_TRUE(to_boolean(Variant("tRUE")));
  EXPECT_FALSE(to_boolean(Variant("0")));
  EXPECT_EQ(error_of([] { to_boolean(Variant("yes")); }).number, 13);
  EXPECT_EQ(error_of([] { to_boolean(Variant("")); }).number, 13);
  EXPECT_EQ(error_of([] { to_boolean(Variant(Variant::Missing{})); }).number, 13);
  EXPECT_EQ(error_of([] { to_boolean(Variant(SoapNode::make("n"))); }).number, 13);
}

TEST(VariantToInteger, RoundsHalvesToTheEvenNumber) {
  EXPECT_EQ(to_int16(Variant(2.5)), 2);
  EXPECT_EQ(to_int32(Variant("3.5")), 4);
  EXPECT_EQ(to_int32(Variant()), 0);
  EXPECT_EQ(to_int16(Variant(12)), 12);
  EXPECT_EQ(to_int32(Variant(true)), -1);
}

TEST(VariantToInteger, FailsWith6OutsideTheRange) {
  EXPECT_EQ(to_int16(Variant(32767)), 32767);
  const Error error = error_of([] { to_int16(Variant(32768)); });
  EXPECT_EQ(error.number, 6);
  EXPECT_EQ(error.description, "Overflow: 32768 does not fit int16");
  EXPECT_EQ(error_of([] { to_int16(Variant("-32769")); }).number, 6);
  EXPECT_EQ(error_of([] { to_int32(Variant(std::int64_t{1} << 31)); }).number, 6);
  EXPECT_EQ(error_of([] { to_int32(Variant(std::numeric_limits<double>::infinity())); }).number, 6);
}

TEST(VariantToNumber, FailsWith13ForWhatIsNone) {
  EXPECT_EQ(to_double(Variant("1.5e2")), 150);
  EXPECT_EQ(to_double(Variant(QualifiedName{"", "10041"})), 10041);
  EXPECT_EQ(error_of([] { to_double(Variant("abc")); }).number, 13);
  EXPECT_EQ(error_of([] { to_int32(Variant("abc")); }).number, 13);
  EXPECT_EQ(error_of([] { to_int16(Variant(StringArray())); }).number, 13);
  EXPECT_EQ(error_of([] { to_int32(Variant(StringArray())); }).number, 13);
  EXPECT_EQ(error_of([] { to_double(Variant(SoapNode::make("n"))); }).number, 13);
}

TEST(VariantToDate, GivesADateAsItIsAndReadsText) {
  const Date afternoon = from_civil({.year = 2007, .month = 1, .day = 31, .hour = 15, .minute = 4});
  EXPECT_EQ(to_date(Variant(afternoon)), afternoon);
  EXPECT_EQ(to_date("2007-01-31T15:04:00"), afternoon);
  EXPECT_EQ(to_date("2007-01-31 15:04"), afternoon);
  EXPECT_EQ(to_date("1/31/2007 3:04 PM"), afternoon);
  EXPECT_EQ(to_date(" January 31, 2007 15:04\n"), afternoon);
  EXPECT_EQ(to_date(Variant(QualifiedName{"", "1/31/2007 15:04"})), afternoon);
}

TEST(VariantToDate, TakesTheEndOfADayAsTheBeginningOfTheNext) {
  EXPECT_EQ(to_date("2007-12-31T24:00:00"), from_civil({.year = 2008, .month = 1, .day = 1}));
}

TEST(VariantToDate, FailsWith13ForWhatIsNone) {
  for (const Variant& value :
       {Variant("soon"), Variant(""), Variant("12.5"), Variant("2007-02-30T00:00:00"), Variant(),
        Variant(Variant::Missing{}), Variant(39113.0), Variant(true), Variant(StringArray()),
        Variant(SoapNode::make("n"))}) {
    EXPECT_EQ(error_of([&] { to_date(value); }).number, 13) << type_name(value.type());
  }
  EXPECT_EQ(error_of([] { to_date(Variant()); }).description,
            "Type mismatch: the value is empty, not a date");
}

TEST(VariantToNode, GivesTheVeryNode) {
  const SoapNode node = SoapNode::make("n");
  EXPECT_EQ(to_node(Variant(node)), node);
  EXPECT_EQ(error_of([] { to_node(Variant("n")); }).number, 13);
  EXPECT_EQ(error_of([] { to_node(Variant()); }).number, 13);
}

}  // namespace
}  // namespace bvconn
