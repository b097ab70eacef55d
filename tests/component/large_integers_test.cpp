#include <gtest/gtest.h>

#include <cstring>
#include <limits>

#include "bvconn/component/values.h"
#include "component/host.h"

// Integers of 64 bits on their way to hosts that know none.
namespace bvconn::component {
namespace {

namespace vt = variant_type;

constexpr std::int64_t kFifteenDigits = 999'999'999'999'999;

OwnedVariant given(std::int64_t number) {
  return record_from_variant(Variant(number));
}

Variant back(const VariantRecord& record) {
  automation::Value value;
  CallDocuments documents;
  EXPECT_EQ(value_from_record(record, automation::ValueType::kVariant, value, documents), kOk);
  return std::get<Variant>(value);
}

TEST(LargeIntegers, ThatFitComeWith32Bits) {
  for (const std::int64_t number : {std::int64_t{0}, std::int64_t{-4711},
                                    std::int64_t{std::numeric_limits<std::int32_t>::min()},
                                    std::int64_t{std::numeric_limits<std::int32_t>::max()}}) {
    const OwnedVariant record = given(number);
    EXPECT_EQ((*record).type, vt::kInt32);
    EXPECT_EQ((*record).value.int32, number);
  }
}

TEST(LargeIntegers, OfUpToFifteenDigitsAreDoubles) {
  for (const std::int64_t number : {std::int64_t{2'147'483'648}, std::int64_t{-2'147'483'649},
                                    kFifteenDigits, -kFifteenDigits}) {
    const OwnedVariant record = given(number);
    ASSERT_EQ((*record).type, vt::kDouble);
    EXPECT_EQ(static_cast<std::int64_t>((*record).value.number), number);
  }
}

TEST(LargeIntegers, OfMoreDigitsAreDecimalsAndComeBackWhole) {
  for (const std::int64_t number :
       {kFifteenDigits + 1, -kFifteenDigits - 1, std::numeric_limits<std::int64_t>::max(),
        std::numeric_limits<std::int64_t>::min()}) {
    const OwnedVariant record = given(number);
    ASSERT_EQ((*record).type, vt::kDecimal);
    DecimalRecord decimal{};
    std::memcpy(&decimal, &*record, sizeof decimal);
    EXPECT_EQ(decimal.scale, 0);
    EXPECT_EQ(decimal.high, 0u);
    EXPECT_EQ(decimal.sign, number < 0 ? 0x80 : 0);
    EXPECT_EQ(back(*record), Variant(number));
  }
  const OwnedVariant smallest = given(std::numeric_limits<std::int64_t>::min());
  DecimalRecord decimal{};
  std::memcpy(&decimal, &*smallest, sizeof decimal);
  EXPECT_EQ(decimal.low, 0x8000'0000'0000'0000U);
}

// Beyond 64 bits, with a fraction, or of no more digits than a double shows.
TEST(LargeIntegers, OtherDecimalsComeBackAsTheNearestDouble) {
  DecimalRecord decimal{vt::kDecimal, 0, 0, 0, 0x8000'0000'0000'0000U};
  VariantRecord record{};
  std::memcpy(&record, &decimal, sizeof decimal);
  EXPECT_EQ(back(record), Variant(0x1p63));
  decimal = {vt::kDecimal, 1, 0, 0, 99'999'999'999'999'995};
  std::memcpy(&record, &decimal, sizeof decimal);
  EXPECT_EQ(back(record), Variant(9'999'999'999'999'999.5));
  decimal = {vt::kDecimal, 0, 0x80, 0, static_cast<std::uint64_t>(kFifteenDigits)};
  std::memcpy(&record, &decimal, sizeof decimal);
  EXPECT_EQ(back(record), Variant(-999'999'999'999'999.0));
}

TEST(LargeIntegers, InAnArrayAreTheSame) {
  const OwnedVariant record = record_from_variant(
      VariantArray(std::vector<Variant>{std::int64_t{5}, std::int64_t{1} << 60}));
  const auto* elements = static_cast<const VariantRecord*>((*record).value.array->data);
  EXPECT_EQ(elements[0].type, vt::kInt32);
  EXPECT_EQ(elements[1].type, vt::kDecimal);
}

}  // namespace
}  // namespace bvconn::component
