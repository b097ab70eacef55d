#include "bvconn/component/memory.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "bvconn/component/text.h"
#include "component/host.h"

namespace bvconn::component {
namespace {

namespace vt = variant_type;

VariantRecord owned_text(std::u16string_view text) {
  VariantRecord record{};
  record.type = vt::kString;
  record.value.string = alloc_string(text.data(), text.size());
  return record;
}

TEST(ComponentMemory, AnArrayOfTextsSaysWhatItHolds) {
  const char16_t* const texts[] = {u"one", nullptr, u"three"};
  ArrayRecord* array = create_string_array(texts, 3);
  ASSERT_NE(array, nullptr);
  EXPECT_EQ(array->dimensions, 1);
  EXPECT_EQ(array->element_size, 8u);
  EXPECT_EQ(array->locks, 0u);
  EXPECT_EQ(array->features, 0x0180);
  EXPECT_EQ(array->bounds[0].count, 3u);
  EXPECT_EQ(array->bounds[0].lower, 0);
  EXPECT_EQ(element_type_of(*array), vt::kString);
  const auto* elements = static_cast<StringPointer*>(array->data);
  EXPECT_EQ(test::text_behind(elements[0]), u"one");
  EXPECT_EQ(elements[1], nullptr);
  EXPECT_EQ(test::text_behind(elements[2]), u"three");
  EXPECT_EQ(destroy_array(array, vt::kString), kOk);
}

TEST(ComponentMemory, AnArraysTypeStandsInTheFourBytesBeforeItsRecord) {
  ArrayRecord* array = create_array(vt::kVariant, 2);
  ASSERT_NE(array, nullptr);
  std::uint32_t type = 0;
  std::memcpy(&type, reinterpret_cast<const char*>(array) - 4, 4);
  EXPECT_EQ(type, 12u);
  EXPECT_EQ(array->features, 0x0880);
  EXPECT_EQ(array->element_size, 24u);
  EXPECT_EQ(destroy_array(array, vt::kVariant), kOk);
}

TEST(ComponentMemory, AnArrayWithoutElementsIsStillAllocated) {
  ArrayRecord* array = create_array(vt::kUint8, 0);
  ASSERT_NE(array, nullptr);
  EXPECT_NE(array->data, nullptr);
  EXPECT_EQ(array->element_size, 1u);
  EXPECT_EQ(destroy_array(array, vt::kUint8), kOk);
}

TEST(ComponentMemory, ThereIsNoArrayOfNothing) {
  EXPECT_EQ(create_array(vt::kEmpty, 1), nullptr);
  EXPECT_EQ(create_array(vt::kNull, 1), nullptr);
}

TEST(ComponentMemory, AnArrayOfObjectsHoldsAReferenceToEach) {
  for (const std::uint16_t type : {vt::kDispatch, vt::kUnknown}) {
    test::CountingSink object(kNullGuid);
    VariantRecord source = test::variant(static_cast<std::uint16_t>(vt::kArray | type));
    source.value.array = create_array(type, 2);
    ASSERT_NE(source.value.array, nullptr);
    EXPECT_EQ(source.value.array->features, type == vt::kDispatch ? 0x0480 : 0x0280);
    // The second element stays null.
    static_cast<IUnknownAbi**>(source.value.array->data)[0] = &object;
    object.AddRef();
    EXPECT_EQ(object.references, 2u);
    VariantRecord copy{};
    ASSERT_EQ(copy_variant(&copy, &source), kOk);
    EXPECT_EQ(object.references, 3u);
    EXPECT_EQ(clear_variant(&source), kOk);
    EXPECT_EQ(object.references, 2u);
    EXPECT_EQ(clear_variant(&copy), kOk);
    EXPECT_EQ(object.references, 1u);
  }
}

TEST(ComponentMemory, ElementsAreAsWideAsTheirType) {
  const std::vector<std::pair<std::uint16_t, std::uint32_t>> widths{
      {vt::kInt8, 1},     {vt::kUint8, 1},   {vt::kInt16, 2},    {vt::kUint16, 2},
      {vt::kBoolean, 2},  {vt::kInt32, 4},   {vt::kUint32, 4},   {vt::kInt, 4},
      {vt::kUint, 4},     {vt::kFloat, 4},   {vt::kInt64, 8},    {vt::kUint64, 8},
      {vt::kDouble, 8},   {vt::kDate, 8},    {vt::kCurrency, 8}, {vt::kString, 8},
      {vt::kDispatch, 8}, {vt::kUnknown, 8}, {vt::kDecimal, 16}, {vt::kVariant, 24}};
  for (const auto& [type, width] : widths) {
    ArrayRecord* array = create_array(type, 3);
    ASSERT_NE(array, nullptr) << type;
    EXPECT_EQ(array->element_size, width) << type;
    EXPECT_EQ(element_type_of(*array), type);
    EXPECT_EQ(destroy_array(array, type), kOk);
  }
}

TEST(ComponentMemory, ACopyOfNumbersHasItsOwn) {
  VariantRecord source{};
  source.type = vt::kArray | vt::kInt16;
  source.value.array = create_array(vt::kInt16, 3);
  auto* numbers = static_cast<std::int16_t*>(source.value.array->data);
  numbers[2] = 17;
  VariantRecord copy{};
  ASSERT_EQ(copy_variant(&copy, &source), kOk);
  numbers[2] = 18;
  EXPECT_EQ(copy.type, vt::kArray | vt::kInt16);
  EXPECT_EQ(copy.value.array->bounds[0].count, 3u);
  EXPECT_EQ(static_cast<std::int16_t*>(copy.value.array->data)[2], 17);
  EXPECT_EQ(clear_variant(&source), kOk);
  EXPECT_EQ(clear_variant(&copy), kOk);
}

// What a host made is read as it says only where it says it of one row of elements of that width.
TEST(ComponentMemory, AnArrayThatContradictsItsTypeIsNotCopied) {
  VariantRecord source{};
  source.type = vt::kArray | vt::kInt32;
  source.value.array = create_array(vt::kInt16, 2);
  VariantRecord target = owned_text(u"kept");
  EXPECT_EQ(copy_variant(&target, &source), kBadVariantType);
  EXPECT_EQ(test::text_behind(target.value.string), u"kept");
  source.type = vt::kArray | vt::kInt16;
  source.value.array->dimensions = 2;
  EXPECT_EQ(copy_variant(&target, &source), kBadVariantType);
  source.value.array->dimensions = 1;
  EXPECT_EQ(clear_variant(&source), kOk);
  EXPECT_EQ(clear_variant(&target), kOk);
}

TEST(ComponentMemory, ALockedArrayIsNotCopiedOver) {
  VariantRecord target{};
  target.type = vt::kArray | vt::kUint8;
  target.value.array = create_array(vt::kUint8, 5);
  target.value.array->locks = 1;
  ArrayRecord* const kept = target.value.array;
  VariantRecord source = owned_text(u"text");
  EXPECT_EQ(copy_variant(&target, &source), kArrayIsLocked);
  EXPECT_EQ(target.value.array, kept);
  EXPECT_EQ(test::text_behind(source.value.string), u"text");
  kept->locks = 0;
  EXPECT_EQ(clear_variant(&target), kOk);
  EXPECT_EQ(clear_variant(&source), kOk);
}

TEST(ComponentMemory, ALockedArrayStaysAndSoDoesItsVariant) {
  VariantRecord record{};
  record.type = vt::kArray | vt::kUint8;
  record.value.array = create_array(vt::kUint8, 5);
  record.value.array->locks = 1;
  EXPECT_EQ(clear_variant(&record), kArrayIsLocked);
  EXPECT_EQ(record.type, vt::kArray | vt::kUint8);
  record.value.array->locks = 0;
  EXPECT_EQ(clear_variant(&record), kOk);
}

TEST(ComponentMemory, ClearingLeavesAnEmptyVariant) {
  VariantRecord record = owned_text(u"text");
  EXPECT_EQ(clear_variant(&record), kOk);
  EXPECT_EQ(record.type, vt::kEmpty);
  EXPECT_EQ(record.value.string, nullptr);
}

TEST(ComponentMemory, ClearingAReferenceFreesNothingBehindIt) {
  test::HostString text(u"the host's");
  StringPointer pointer = text.get();
  VariantRecord record{};
  record.type = vt::kByReference | vt::kString;
  record.value.string_reference = &pointer;
  EXPECT_EQ(clear_variant(&record), kOk);
  EXPECT_EQ(test::text_behind(pointer), u"the host's");
}

TEST(ComponentMemory, ClearingAnObjectGivesBackOneReference) {
  test::CountingSink object(kNullGuid);
  object.AddRef();
  VariantRecord record = test::of_object(&object);
  EXPECT_EQ(clear_variant(&record), kOk);
  EXPECT_EQ(object.references, 1u);
}

TEST(ComponentMemory, ACopyOwnsItsTextsAndSharesItsObjects) {
  test::CountingSink object(kNullGuid);
  VariantRecord source{};
  source.type = vt::kArray | vt::kVariant;
  source.value.array = create_array(vt::kVariant, 2);
  source.value.array->bounds[0].lower = 1;
  auto* elements = static_cast<VariantRecord*>(source.value.array->data);
  elements[0] = owned_text(u"text");
  object.AddRef();
  elements[1] = test::of_object(&object);

  VariantRecord copy = owned_text(u"freed by the copy");
  ASSERT_EQ(copy_variant(&copy, &source), kOk);
  EXPECT_EQ(object.references, 3u);
  ASSERT_EQ(clear_variant(&source), kOk);
  EXPECT_EQ(object.references, 2u);
  EXPECT_EQ(copy.value.array->bounds[0].lower, 1);
  const auto* copies = static_cast<VariantRecord*>(copy.value.array->data);
  EXPECT_EQ(test::text_behind(copies[0].value.string), u"text");
  ASSERT_EQ(clear_variant(&copy), kOk);
  EXPECT_EQ(object.references, 1u);
}

TEST(ComponentMemory, ACopyOfAnArrayOfTextsHasTextsOfItsOwn) {
  const char16_t* const texts[] = {u"one", u"two"};
  VariantRecord source{};
  source.type = vt::kArray | vt::kString;
  source.value.array = create_string_array(texts, 2);
  VariantRecord copy{};
  ASSERT_EQ(copy_variant(&copy, &source), kOk);
  ASSERT_EQ(clear_variant(&source), kOk);
  const auto* copies = static_cast<StringPointer*>(copy.value.array->data);
  EXPECT_EQ(test::text_behind(copies[1]), u"two");
  EXPECT_EQ(clear_variant(&copy), kOk);
}

TEST(ComponentMemory, CopyingAVariantOntoItselfKeepsIt) {
  VariantRecord record = owned_text(u"kept");
  EXPECT_EQ(copy_variant(&record, &record), kOk);
  EXPECT_EQ(test::text_behind(record.value.string), u"kept");
  clear_variant(&record);
}

TEST(ComponentMemory, NullPointersAreRefused) {
  VariantRecord record{};
  EXPECT_EQ(clear_variant(nullptr), kNullPointer);
  EXPECT_EQ(copy_variant(nullptr, &record), kNullPointer);
  EXPECT_EQ(copy_variant(&record, nullptr), kNullPointer);
  EXPECT_EQ(create_string_array(nullptr, 1), nullptr);
  EXPECT_EQ(destroy_array(nullptr, vt::kString), kOk);
}

TEST(ComponentMemory, ClearingAnExceptionFreesItsTexts) {
  ExceptionRecord exception{};
  exception.source = alloc_string(u"Source", 6);
  exception.description = alloc_string(u"Description", 11);
  exception.help_file = alloc_string(u"Help", 4);
  exception.result = kFailed;
  clear_exception(&exception);
  EXPECT_EQ(exception.source, nullptr);
  EXPECT_EQ(exception.result, 0);
}

}  // namespace
}  // namespace bvconn::component
