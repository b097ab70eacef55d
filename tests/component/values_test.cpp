#include "bvconn/component/values.h"

#include <gtest/gtest.h>

#include <limits>

#include "bvconn/component/soap_objects.h"
#include "bvconn/component/text.h"
#include "component/host.h"

namespace bvconn::component {
namespace {

namespace vt = variant_type;
using automation::Value;
using automation::ValueType;
using test::HostString;

// No object of these tests is a document of the application's own.
Hresult converted(const VariantRecord& record, ValueType type, Value& value) {
  CallDocuments none;
  return value_from_record(record, type, value, none);
}

// What an argument of the type takes from the variant; fails the test when it does not convert.
Variant taken(const VariantRecord& record, ValueType type) {
  Value value;
  EXPECT_EQ(converted(record, type, value), kOk);
  const auto* held = std::get_if<Variant>(&value);
  return held == nullptr ? Variant("(nothing)") : *held;
}

Hresult refusal(const VariantRecord& record, ValueType type) {
  Value value;
  return converted(record, type, value);
}

TEST(ComponentValues, ScalarsComeAsTheTypeNextToTheirOwn) {
  VariantRecord record = test::variant(vt::kInt8);
  record.value.int8 = -8;
  EXPECT_EQ(taken(record, ValueType::kVariant), Variant(std::int16_t{-8}));
  record = test::variant(vt::kUint8);
  record.value.uint8 = 200;
  EXPECT_EQ(taken(record, ValueType::kVariant), Variant(std::int16_t{200}));
  EXPECT_EQ(taken(test::of_int16(-300), ValueType::kVariant), Variant(std::int16_t{-300}));
  record = test::variant(vt::kUint16);
  record.value.uint16 = 65535;
  EXPECT_EQ(taken(record, ValueType::kVariant), Variant(std::int32_t{65535}));
  EXPECT_EQ(taken(test::of_int32(-70000), ValueType::kVariant), Variant(std::int32_t{-70000}));
  record = test::variant(vt::kInt);
  record.value.int32 = 70001;
  EXPECT_EQ(taken(record, ValueType::kVariant), Variant(std::int32_t{70001}));
  record = test::variant(vt::kUint32);
  record.value.uint32 = 4'000'000'000U;
  EXPECT_EQ(taken(record, ValueType::kVariant), Variant(std::int64_t{4'000'000'000}));
  record.type = vt::kUint;
  EXPECT_EQ(taken(record, ValueType::kVariant), Variant(std::int64_t{4'000'000'000}));
  record = test::variant(vt::kInt64);
  record.value.int64 = -5'000'000'000;
  EXPECT_EQ(taken(record, ValueType::kVariant), Variant(std::int64_t{-5'000'000'000}));
  record = test::variant(vt::kUint64);
  record.value.uint64 = 6'000'000'000U;
  EXPECT_EQ(taken(record, ValueType::kVariant), Variant(std::int64_t{6'000'000'000}));
  record = test::variant(vt::kFloat);
  record.value.single = 0.5F;
  EXPECT_EQ(taken(record, ValueType::kVariant), Variant(0.5));
  EXPECT_EQ(taken(test::of_double(2.75), ValueType::kVariant), Variant(2.75));
  record = test::variant(vt::kCurrency);
  record.value.currency = 123456;
  EXPECT_EQ(taken(record, ValueType::kVariant), Variant(12.3456));
}

VariantRecord decimal(std::uint32_t high, std::uint64_t low, std::uint8_t scale,
                      std::uint8_t sign = 0) {
  const DecimalRecord number{vt::kDecimal, scale, sign, high, low};
  VariantRecord record{};
  std::memcpy(&record, &number, sizeof number);
  return record;
}

TEST(ComponentValues, ADecimalIsTheNearestDouble) {
  EXPECT_EQ(taken(decimal(0, 0, 0), ValueType::kVariant), Variant(0.0));
  EXPECT_EQ(taken(decimal(0, 123456, 4), ValueType::kVariant), Variant(12.3456));
  EXPECT_EQ(taken(decimal(0, 5, 1, 0x80), ValueType::kVariant), Variant(-0.5));
  // 2 to the 95th, and the largest of all: 96 bits set.
  EXPECT_EQ(taken(decimal(0x80000000U, 0, 0), ValueType::kVariant), Variant(0x1p95));
  EXPECT_EQ(taken(decimal(0xFFFFFFFFU, ~std::uint64_t{0}, 0), ValueType::kVariant),
            Variant(79228162514264337593543950335.0));
  EXPECT_EQ(taken(decimal(0, 1, 28), ValueType::kVariant), Variant(1e-28));
  EXPECT_EQ(taken(decimal(0, 250, 2), ValueType::kString), Variant("2.5"));
}

TEST(ComponentValues, ADecimalOfNoFormThatOneHasIsATypeMismatch) {
  EXPECT_EQ(refusal(decimal(0, 1, 29), ValueType::kVariant), kTypeMismatch);
  EXPECT_EQ(refusal(decimal(0, 1, 0, 1), ValueType::kVariant), kTypeMismatch);
}

TEST(ComponentValues, ADecimalPassesByReferenceAndInArrays) {
  DecimalRecord number{0, 2, 0x80, 0, 1234};
  VariantRecord reference = test::variant(vt::kByReference | vt::kDecimal);
  reference.value.reference = &number;
  EXPECT_EQ(taken(reference, ValueType::kVariant), Variant(-12.34));
  VariantRecord array = test::variant(vt::kArray | vt::kDecimal);
  array.value.array = create_array(vt::kDecimal, 2);
  static_cast<DecimalRecord*>(array.value.array->data)[1] = number;
  const Variant taken_array = taken(array, ValueType::kVariant);
  EXPECT_EQ(taken_array.array().items(), (std::vector<Variant>{0.0, -12.34}));
  clear_variant(&array);
}

TEST(ComponentValues, ABooleanIsTrueWhenItIsNotZero) {
  EXPECT_EQ(taken(test::of_boolean(-1), ValueType::kVariant), Variant(true));
  EXPECT_EQ(taken(test::of_boolean(1), ValueType::kVariant), Variant(true));
  EXPECT_EQ(taken(test::of_boolean(0), ValueType::kVariant), Variant(false));
}

TEST(ComponentValues, EmptyAndNullAreEmptyAndTheMarkerIsMissing) {
  EXPECT_TRUE(taken(test::variant(vt::kEmpty), ValueType::kVariant).empty());
  EXPECT_TRUE(taken(test::variant(vt::kNull), ValueType::kVariant).empty());
  EXPECT_TRUE(taken(test::missing(), ValueType::kVariant).missing());
  EXPECT_TRUE(is_missing(test::missing()));
  VariantRecord other = test::missing();
  other.value.error = kTypeMismatch;
  EXPECT_FALSE(is_missing(other));
  EXPECT_EQ(refusal(other, ValueType::kVariant), kTypeMismatch);
}

TEST(ComponentValues, ADateIsDaysSinceTheEndOf1899) {
  VariantRecord record = test::variant(vt::kDate);
  record.value.date = 39087.25;  // 2007-01-05 06:00
  EXPECT_EQ(taken(record, ValueType::kVariant).date(),
            from_civil({.year = 2007, .month = 1, .day = 5, .hour = 6}));
  record.value.date = -1.25;  // the fraction of an earlier day counts upwards too
  EXPECT_EQ(taken(record, ValueType::kVariant).date(),
            from_civil({.year = 1899, .month = 12, .day = 29, .hour = 6}));
  record.value.date = 1e9;
  EXPECT_EQ(refusal(record, ValueType::kVariant), kOverflow);
  record.value.date = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(refusal(record, ValueType::kVariant), kOverflow);
}

TEST(ComponentValues, ATextArgumentTakesWhateverHasAText) {
  HostString text(u"Gr\u00F6\u00DFe");
  EXPECT_EQ(taken(test::of_string(text), ValueType::kString), Variant("Gr\xC3\xB6\xC3\x9F"
                                                                      "e"));
  EXPECT_EQ(taken(test::of_int32(4711), ValueType::kString), Variant("4711"));
  EXPECT_EQ(taken(test::of_double(0.1), ValueType::kString), Variant("0.1"));
  EXPECT_EQ(taken(test::of_boolean(-1), ValueType::kString), Variant("True"));
  EXPECT_EQ(taken(test::variant(vt::kEmpty), ValueType::kString), Variant(""));
  EXPECT_EQ(taken(test::variant(vt::kString), ValueType::kString), Variant(""));
}

TEST(ComponentValues, TextWithALoneSurrogateIsATypeMismatch) {
  const char16_t lone[] = {u'a', 0xD800};
  HostString text(std::u16string_view(lone, 2));
  EXPECT_EQ(refusal(test::of_string(text), ValueType::kString), kTypeMismatch);
  EXPECT_EQ(refusal(test::of_string(text), ValueType::kVariant), kTypeMismatch);
}

TEST(ComponentValues, NumbersAndBooleansAreReadFromTextByThePlatformsRules) {
  HostString number(u" 12 ");
  HostString word(u"true");
  HostString neither(u"twelve");
  EXPECT_EQ(taken(test::of_string(number), ValueType::kInt32), Variant(std::int32_t{12}));
  EXPECT_EQ(taken(test::of_string(number), ValueType::kInt16), Variant(std::int16_t{12}));
  EXPECT_EQ(taken(test::of_string(word), ValueType::kBoolean), Variant(true));
  EXPECT_EQ(refusal(test::of_string(neither), ValueType::kInt32), kTypeMismatch);
  EXPECT_EQ(refusal(test::of_string(neither), ValueType::kBoolean), kTypeMismatch);
}

TEST(ComponentValues, ANumberOutOfRangeIsAnOverflow) {
  EXPECT_EQ(refusal(test::of_int32(40000), ValueType::kInt16), kOverflow);
  EXPECT_EQ(refusal(test::of_double(3e9), ValueType::kInt32), kOverflow);
  VariantRecord record = test::variant(vt::kUint64);
  record.value.uint64 = std::numeric_limits<std::uint64_t>::max();
  EXPECT_EQ(refusal(record, ValueType::kVariant), kOverflow);
}

TEST(ComponentValues, ReferencesAreFollowedToTheirValue) {
  HostString text(u"behind");
  StringPointer pointer = text.get();
  VariantRecord record = test::variant(vt::kByReference | vt::kString);
  record.value.string_reference = &pointer;
  EXPECT_EQ(taken(record, ValueType::kString), Variant("behind"));
  // A reference to a variant that is a reference itself.
  EXPECT_EQ(taken(test::reference_to(record), ValueType::kString), Variant("behind"));

  std::int16_t truth = kVariantTrue;
  record = test::variant(vt::kByReference | vt::kBoolean);
  record.value.boolean_reference = &truth;
  EXPECT_EQ(taken(record, ValueType::kBoolean), Variant(true));

  std::int32_t number = -5;
  record = test::variant(vt::kByReference | vt::kInt32);
  record.value.int32_reference = &number;
  EXPECT_EQ(taken(record, ValueType::kVariant), Variant(std::int32_t{-5}));

  VariantRecord marker = test::missing();
  EXPECT_TRUE(is_missing(test::reference_to(marker)));
}

TEST(ComponentValues, AReferenceToNothingIsANullPointerAndACircleAMismatch) {
  EXPECT_EQ(refusal(test::variant(vt::kByReference | vt::kString), ValueType::kString),
            kNullPointer);
  VariantRecord circle{};
  circle = test::reference_to(circle);
  EXPECT_EQ(refusal(circle, ValueType::kVariant), kTypeMismatch);
}

TEST(ComponentValues, AnArrayThatHoldsItselfIsATypeMismatch) {
  VariantRecord array = test::variant(vt::kArray | vt::kVariant);
  array.value.array = create_array(vt::kVariant, 1);
  auto* element = static_cast<VariantRecord*>(array.value.array->data);
  *element = test::reference_to(array);
  EXPECT_EQ(refusal(array, ValueType::kVariant), kTypeMismatch);
  *element = VariantRecord{};
  clear_variant(&array);
}

class ArrayOfTexts : public testing::Test {
 protected:
  ArrayOfTexts() {
    const char16_t* const texts[] = {u"U1", nullptr, u"U3"};
    record.type = vt::kArray | vt::kString;
    record.value.array = create_string_array(texts, 3);
  }
  ~ArrayOfTexts() override { clear_variant(&record); }

  VariantRecord record{};
};

TEST_F(ArrayOfTexts, BecomesAStringArrayOrAnArrayOfVariants) {
  Value value;
  ASSERT_EQ(converted(record, ValueType::kStringArray, value), kOk);
  EXPECT_EQ(std::get<StringArray>(value), StringArray({"U1", "", "U3"}));
  const Variant variant = taken(record, ValueType::kVariant);
  ASSERT_EQ(variant.array().size(), 3u);
  EXPECT_EQ(variant.array().items()[2], Variant("U3"));
}

TEST_F(ArrayOfTexts, IsReadWhateverIndexItBeginsWith) {
  record.value.array->bounds[0].lower = 1;
  Value value;
  ASSERT_EQ(converted(record, ValueType::kStringArray, value), kOk);
  EXPECT_EQ(std::get<StringArray>(value).items().front(), "U1");
}

TEST_F(ArrayOfTexts, PassesByReference) {
  VariantRecord reference = test::variant(vt::kByReference | vt::kArray | vt::kString);
  reference.value.array_reference = &record.value.array;
  Value value;
  ASSERT_EQ(converted(reference, ValueType::kStringArray, value), kOk);
  EXPECT_EQ(std::get<StringArray>(value).size(), 3u);
}

TEST_F(ArrayOfTexts, WithAnotherSizeOfElementOrTwoDimensionsIsATypeMismatch) {
  record.value.array->element_size = kPointer / 2;
  EXPECT_EQ(refusal(record, ValueType::kVariant), kTypeMismatch);
  EXPECT_EQ(refusal(record, ValueType::kStringArray), kTypeMismatch);
  record.value.array->element_size = kPointer;
  record.value.array->dimensions = 2;
  EXPECT_EQ(refusal(record, ValueType::kVariant), kTypeMismatch);
  record.value.array->dimensions = 1;
}

TEST_F(ArrayOfTexts, IsNoText) {
  EXPECT_EQ(refusal(record, ValueType::kString), kTypeMismatch);
}

TEST(ComponentValues, AnArrayThatIsNotThereIsNotAllocated) {
  Value value;
  ASSERT_EQ(converted(test::variant(vt::kArray | vt::kString), ValueType::kStringArray, value),
            kOk);
  EXPECT_FALSE(std::get<StringArray>(value).allocated());
  EXPECT_FALSE(
      taken(test::variant(vt::kArray | vt::kVariant), ValueType::kVariant).array().allocated());
  EXPECT_EQ(refusal(test::of_int32(1), ValueType::kStringArray), kTypeMismatch);
}

TEST(ComponentValues, AnArrayOfVariantsKeepsTheTypeOfEach) {
  VariantRecord record = test::variant(vt::kArray | vt::kVariant);
  record.value.array = create_array(vt::kVariant, 3);
  auto* elements = static_cast<VariantRecord*>(record.value.array->data);
  elements[0] = test::of_int32(7);
  elements[1] = test::of_boolean(kVariantTrue);
  elements[2].type = vt::kString;
  elements[2].value.string = alloc_string(u"U3", 2);
  const Variant value = taken(record, ValueType::kVariant);
  EXPECT_EQ(value.array().items(), (std::vector<Variant>{std::int32_t{7}, true, "U3"}));
  Value strings;
  ASSERT_EQ(converted(record, ValueType::kStringArray, strings), kOk);
  EXPECT_EQ(std::get<StringArray>(strings), StringArray({"7", "True", "U3"}));
  clear_variant(&record);
}

TEST(ComponentValues, AnArrayOfBytesIsBytes) {
  VariantRecord record = test::variant(vt::kArray | vt::kUint8);
  record.value.array = create_array(vt::kUint8, 3);
  std::memcpy(record.value.array->data, "\x00\x7F\xFF", 3);
  EXPECT_EQ(taken(record, ValueType::kVariant).bytes(),
            (Bytes{std::byte{0}, std::byte{0x7F}, std::byte{0xFF}}));
  clear_variant(&record);
}

TEST(ComponentValues, ANodeObjectIsTheVeryNode) {
  SoapNode node = SoapNode::make("Project");
  test::Held<IDispatchAbi> object(make_node_object(node));
  EXPECT_EQ(taken(test::of_object(object.get()), ValueType::kSoapNode).node(), node);
  EXPECT_EQ(taken(test::of_object(object.get()), ValueType::kVariant).node(), node);
}

TEST(ComponentValues, AnArrayOfObjectsIsOneOfTheirNodes) {
  const SoapNode node = SoapNode::make("Project");
  VariantRecord array = test::variant(vt::kArray | vt::kDispatch);
  array.value.array = create_array(vt::kDispatch, 1);
  static_cast<IDispatchAbi**>(array.value.array->data)[0] = make_node_object(node);
  const Variant held = taken(array, ValueType::kVariant);
  ASSERT_EQ(held.array().size(), 1u);
  EXPECT_EQ(held.array().items()[0].node(), node);
  clear_variant(&array);
}

TEST(ComponentValues, NoObjectIsAnEmptyReference) {
  EXPECT_FALSE(taken(test::of_object(nullptr), ValueType::kSoapNode).node());
  EXPECT_FALSE(taken(test::variant(vt::kUnknown), ValueType::kSoapNode).node());
  EXPECT_FALSE(taken(test::variant(vt::kEmpty), ValueType::kSoapNode).node());
}

TEST(ComponentValues, AForeignObjectOrADocumentIsNoNode) {
  test::CountingSink foreign(kNullGuid);
  EXPECT_EQ(refusal(test::of_object(&foreign), ValueType::kSoapNode), kTypeMismatch);
  EXPECT_EQ(foreign.references, 1u);
  test::Held<IDispatchAbi> document(make_document_object());
  EXPECT_EQ(refusal(test::of_object(document.get()), ValueType::kSoapNode), kTypeMismatch);
  EXPECT_EQ(refusal(test::of_int32(1), ValueType::kSoapNode), kTypeMismatch);
}

TEST(ComponentValues, ADocumentArgumentTakesADocumentOrNothing) {
  test::Held<IDispatchAbi> document(make_document_object());
  Value value;
  ASSERT_EQ(converted(test::of_object(document.get()), ValueType::kXMLDocument, value), kOk);
  EXPECT_NE(std::get<XMLDocument*>(value), nullptr);
  ASSERT_EQ(converted(test::of_object(nullptr), ValueType::kXMLDocument, value), kOk);
  EXPECT_EQ(std::get<XMLDocument*>(value), nullptr);
  test::Held<IDispatchAbi> node(make_node_object(SoapNode::make("Project")));
  EXPECT_EQ(refusal(test::of_object(node.get()), ValueType::kXMLDocument), kTypeMismatch);
  EXPECT_EQ(refusal(test::of_int32(1), ValueType::kXMLDocument), kTypeMismatch);
}

TEST(ComponentValues, ResultsHaveTheTypeOfTheirValue) {
  EXPECT_EQ((*record_from_variant(Variant())).type, vt::kEmpty);
  EXPECT_TRUE(is_missing(*record_from_variant(Variant::Missing())));
  const OwnedVariant truth = record_from_variant(Variant(true));
  EXPECT_EQ((*truth).type, vt::kBoolean);
  EXPECT_EQ((*truth).value.boolean, -1);
  EXPECT_EQ((*record_from_variant(Variant(false))).value.boolean, 0);
  EXPECT_EQ((*record_from_variant(Variant(std::int16_t{-2}))).type, vt::kInt16);
  EXPECT_EQ((*record_from_variant(Variant(std::int16_t{-2}))).value.int16, -2);
  EXPECT_EQ((*record_from_variant(Variant(std::int32_t{-3}))).type, vt::kInt32);
  EXPECT_EQ((*record_from_variant(Variant(std::int32_t{-3}))).value.int32, -3);
  EXPECT_EQ((*record_from_variant(Variant(1.5))).type, vt::kDouble);
  EXPECT_EQ((*record_from_variant(Variant(1.5))).value.number, 1.5);
}

TEST(ComponentValues, ResultTextsAreUtf16AndAQualifiedNameItsLocalPart) {
  const OwnedVariant text = record_from_variant(Variant("\xE2\x82\xAC 5"));
  EXPECT_EQ((*text).type, vt::kString);
  EXPECT_EQ(test::text_behind((*text).value.string), u"\u20AC 5");
  const OwnedVariant name = record_from_variant(Variant(QualifiedName{"urn:space", "Client"}));
  EXPECT_EQ(test::text_behind((*name).value.string), u"Client");
}

TEST(ComponentValues, AResultDateIsDaysSinceTheEndOf1899) {
  const OwnedVariant date =
      record_from_variant(Variant(from_civil({.year = 2007, .month = 1, .day = 5, .hour = 18})));
  EXPECT_EQ((*date).type, vt::kDate);
  EXPECT_EQ((*date).value.date, 39087.75);
}

TEST(ComponentValues, ResultArraysComeAsArrays) {
  const OwnedVariant texts = record_from_value(StringArray({"a", "b"}));
  EXPECT_EQ((*texts).type, vt::kArray | vt::kString);
  EXPECT_EQ((*texts).value.array->bounds[0].count, 2u);
  const OwnedVariant variants =
      record_from_variant(VariantArray(std::vector<Variant>{std::int32_t{1}, "two"}));
  EXPECT_EQ((*variants).type, vt::kArray | vt::kVariant);
  const auto* elements = static_cast<const VariantRecord*>((*variants).value.array->data);
  EXPECT_EQ(elements[0].value.int32, 1);
  EXPECT_EQ(test::text_behind(elements[1].value.string), u"two");
  const OwnedVariant unallocated = record_from_variant(VariantArray());
  EXPECT_EQ((*unallocated).type, vt::kArray | vt::kVariant);
  EXPECT_EQ((*unallocated).value.array, nullptr);
  const OwnedVariant bytes = record_from_variant(Variant(Bytes{std::byte{9}, std::byte{8}}));
  EXPECT_EQ((*bytes).type, vt::kArray | vt::kUint8);
  EXPECT_EQ(static_cast<const unsigned char*>((*bytes).value.array->data)[1], 8);
}

TEST(ComponentValues, AnEmptyReferenceComesAsAnObjectThatIsNotThere) {
  const OwnedVariant node = record_from_variant(Variant(SoapNode()));
  EXPECT_EQ((*node).type, vt::kDispatch);
  EXPECT_EQ((*node).value.dispatch, nullptr);
  const OwnedVariant envelope = record_from_value(SoapEnvelope());
  EXPECT_EQ((*envelope).type, vt::kDispatch);
  EXPECT_EQ((*envelope).value.dispatch, nullptr);
  const OwnedVariant transport = record_from_value(std::shared_ptr<HTTPTransport>());
  EXPECT_EQ((*transport).value.dispatch, nullptr);
  const OwnedVariant object = record_from_value(std::shared_ptr<ServiceObject>());
  EXPECT_EQ((*object).value.dispatch, nullptr);
  EXPECT_EQ((*record_from_value(Value())).type, vt::kEmpty);
}

}  // namespace
}  // namespace bvconn::component
