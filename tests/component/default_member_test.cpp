#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <utility>

#include "bvconn/component/named_object.h"
#include "bvconn/component/shapes.h"
#include "bvconn/component/soap_objects.h"
#include "bvconn/component/values.h"
#include "component/host.h"

// Objects that a host passes where a value is due.
namespace bvconn::component {
namespace {

namespace vt = variant_type;
using automation::Value;
using automation::ValueType;

// A field of a database, say: an object that stands for its value. Another member makes its text.
class OwnField final : public NamedObject<> {
 public:
  using Value = std::function<OwnedVariant()>;
  explicit OwnField(Value value, std::string name = "Value", std::string text = "Text")
      : value_(std::move(value)),
        table_({read_only(kDefaultMember, std::move(name)), method(1, std::move(text))}) {}

 private:
  const MemberTable& table() const override { return table_; }
  OwnedVariant call(const NamedMember& member, std::span<const automation::Value>) override {
    if (member.id != kDefaultMember) throw std::runtime_error("nobody asks for its text");
    return value_();
  }
  void put(const NamedMember&, std::span<const automation::Value>) override {}

  const Value value_;
  const MemberTable table_;
};

IDispatchAbi* field_of(const Variant& value) {
  return new OwnField([value] { return record_from_variant(value); });
}

struct Taken {
  Hresult result = kUnexpected;
  Value value;
};

Taken take(IDispatchAbi* owned, ValueType type) {
  const test::Held<IDispatchAbi> object(owned);
  CallDocuments documents;
  Taken taken;
  taken.result = value_from_record(test::of_object(object.get()), type, taken.value, documents);
  return taken;
}

TEST(DefaultMember, IsTheValueOfAnObjectThatHasOne) {
  EXPECT_EQ(take(field_of(Variant("INV-1")), ValueType::kString).value, Value(Variant("INV-1")));
  EXPECT_EQ(take(field_of(Variant("12")), ValueType::kInt32).value,
            Value(Variant(std::int32_t{12})));
  EXPECT_EQ(take(field_of(Variant(true)), ValueType::kBoolean).value, Value(Variant(true)));
  EXPECT_EQ(take(field_of(Variant(2.5)), ValueType::kVariant).value, Value(Variant(2.5)));
  EXPECT_EQ(take(field_of(Variant()), ValueType::kString).value, Value(Variant("")));
  const OwnField::Value inner = [] { return record_from_object(field_of(Variant("within"))); };
  EXPECT_EQ(take(new OwnField(inner), ValueType::kString).value, Value(Variant("within")));
}

TEST(DefaultMember, IsTheValueOfAnItemOfAnArrayToo) {
  VariantRecord element = test::of_object(field_of(Variant("U1")));
  const test::Held<IDispatchAbi> object(element.value.dispatch);
  ArrayRecord array{.dimensions = 1,
                    .features = array_feature::kVariants,
                    .element_size = sizeof(VariantRecord),
                    .locks = 0,
                    .data = &element,
                    .bounds = {{.count = 1, .lower = 0}}};
  VariantRecord record = test::variant(vt::kArray | vt::kVariant);
  record.value.array = &array;
  CallDocuments documents;
  Value value;
  ASSERT_EQ(value_from_record(record, ValueType::kStringArray, value, documents), kOk);
  EXPECT_EQ(std::get<StringArray>(value), StringArray({"U1"}));
}

TEST(DefaultMember, ThatFailsOrNeverEndsIsATypeMismatch) {
  const OwnField::Value fails = []() -> OwnedVariant { throw std::runtime_error("no record"); };
  EXPECT_EQ(take(new OwnField(fails), ValueType::kString).result, kTypeMismatch);
  OwnField::Value itself;
  itself = [&] { return record_from_object(new OwnField(itself)); };
  EXPECT_EQ(take(new OwnField(itself), ValueType::kString).result, kTypeMismatch);
  // It takes an argument.
  EXPECT_EQ(take(make_nodes_object(SoapNode::make().Nodes()), ValueType::kString).result,
            kTypeMismatch);
}

TEST(DefaultMember, ThatGivesATextThatEveryObjectOfItsKindHasIsNoValue) {
  const OwnField::Value text = [] { return record_from_variant(Variant("[object Object]")); };
  EXPECT_EQ(take(new OwnField(text, "toString"), ValueType::kString).result, kTypeMismatch);
  EXPECT_EQ(take(new OwnField(text, "Value", "hasOwnProperty"), ValueType::kString).result,
            kTypeMismatch);
  EXPECT_EQ(take(new OwnField(text, "Value", "ToString"), ValueType::kString).result, kOk);
}

}  // namespace
}  // namespace bvconn::component
