#include "bvconn/component/foreign_objects.h"

#include <gtest/gtest.h>

#include <map>

#include "bvconn/component/lifetime.h"
#include "bvconn/component/named_object.h"
#include "bvconn/component/shapes.h"
#include "bvconn/component/soap_objects.h"
#include "bvconn/component/values.h"
#include "component/host.h"
#include "component/throwing_object.h"

namespace bvconn::component {
namespace {

namespace vt = variant_type;
using automation::Value;
using automation::ValueType;

// An application's own list of nodes: what it is asked for it makes.
using Item = std::function<IDispatchAbi*(std::int32_t index)>;

class OwnNodes final : public NamedObject<> {
 public:
  OwnNodes(std::int32_t count, Item item) : count_(count), item_(std::move(item)) {}

 private:
  enum : DispatchId { kCount = 1, kItem };
  const MemberTable& table() const override {
    static const MemberTable kTable(
        {read_only(kCount, "Count"), method(kItem, "Item", {required("i", ValueType::kInt32)})});
    return kTable;
  }
  OwnedVariant call(const NamedMember& member, std::span<const Value> values) override {
    if (member.id == kCount) return record_from_variant(Variant(count_));
    return record_from_object(item_(variant_at(values, 0).int32()));
  }
  void put(const NamedMember&, std::span<const Value>) override {}

  std::int32_t count_;
  Item item_;
};

// An application's own node. `Value` of one with children would be an error.
class OwnNode final : public NamedObject<> {
 public:
  OwnNode(std::string name, Variant value) : name_(std::move(name)), value_(std::move(value)) {}
  OwnNode(std::string name, std::int32_t count, Item item)
      : name_(std::move(name)), count_(count), item_(std::move(item)) {}

 private:
  enum : DispatchId { kName = 1, kValue, kNodes };
  const MemberTable& table() const override {
    static const MemberTable kTable(
        {read_only(kName, "Name"), read_only(kValue, "Value"), read_only(kNodes, "Nodes")});
    return kTable;
  }
  OwnedVariant call(const NamedMember& member, std::span<const Value>) override {
    if (member.id == kName) return record_from_variant(Variant(name_));
    if (member.id == kNodes) return record_from_object(new OwnNodes(count_, item_));
    if (count_ != 0) throw std::runtime_error("a node with children has no value");
    return record_from_variant(value_);
  }
  void put(const NamedMember&, std::span<const Value>) override {}

  const std::string name_;
  const Variant value_;
  const std::int32_t count_ = 0;
  const Item item_;
};

// An array as scripts have it: its members are what the map holds.
class OwnMembers final : public NamedObject<> {
 public:
  explicit OwnMembers(const std::map<std::string, Variant>& members) : table_(members_of(members)) {
    for (const auto& [name, value] : members) values_.push_back(value);
  }

 private:
  static MemberTable members_of(const std::map<std::string, Variant>& members) {
    std::vector<NamedMember> list;
    DispatchId id = 0;
    for (const auto& [name, value] : members) list.push_back(read_only(++id, name));
    return MemberTable(std::move(list));
  }
  const MemberTable& table() const override { return table_; }
  OwnedVariant call(const NamedMember& member, std::span<const Value>) override {
    return record_from_variant(values_[static_cast<std::size_t>(member.id - 1)]);
  }
  void put(const NamedMember&, std::span<const Value>) override {}

  std::vector<Variant> values_;
  const MemberTable table_;
};

// An application's own document: keeps the bytes that it is loaded with.
class OwnDocument final : public NamedObject<> {
 public:
  explicit OwnDocument(std::vector<std::string>& loaded) : loaded_(loaded) {}

 private:
  const MemberTable& table() const override {
    static const MemberTable kTable({method(1, "load", {required("source", ValueType::kVariant)})});
    return kTable;
  }
  OwnedVariant call(const NamedMember&, std::span<const Value> values) override {
    const Variant source = variant_at(values, 0);
    const Bytes& bytes = source.bytes();
    loaded_.emplace_back(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (bytes.empty()) throw std::runtime_error("nothing to load");
    return record_from_variant(Variant(true));
  }
  void put(const NamedMember&, std::span<const Value>) override {}

  std::vector<std::string>& loaded_;
};

struct Taken {
  Hresult result = kUnexpected;
  Value value;
};

Taken take(IDispatchAbi* owned, ValueType type, CallDocuments& documents) {
  const test::Held<IDispatchAbi> object(owned);
  Taken taken;
  taken.result = value_from_record(test::of_object(object.get()), type, taken.value, documents);
  return taken;
}

Taken take(IDispatchAbi* owned, ValueType type) {
  CallDocuments documents;
  return take(owned, type, documents);
}

SoapNode node_in(const Taken& taken) {
  EXPECT_EQ(taken.result, kOk);
  return taken.result == kOk ? std::get<Variant>(taken.value).node() : SoapNode();
}

TEST(ForeignObjects, ANodeOfTheApplicationsOwnIsCopiedWithItsChildren) {
  const Item children = [](std::int32_t index) -> IDispatchAbi* {
    if (index == 0) return new OwnNode("Number", Variant("4711"));
    return new OwnNode("Lines", 1, [](std::int32_t) -> IDispatchAbi* {
      return new OwnNode("Amount", Variant(12.5));
    });
  };
  const SoapNode order = node_in(take(new OwnNode("Order", 2, children), ValueType::kSoapNode));
  EXPECT_EQ(order.Name(), "Order");
  ASSERT_EQ(order.Nodes().Count(), 2u);
  EXPECT_EQ(order.Nodes().Item(0).Name(), "Number");
  EXPECT_EQ(order.Nodes().Item(0).Value(), Variant("4711"));
  const SoapNode lines = order.Nodes().Item(1);
  EXPECT_EQ(lines.Nodes().Item(0).Name(), "Amount");
  EXPECT_EQ(lines.Nodes().Item(0).Value(), Variant(12.5));
}

TEST(ForeignObjects, ANodeIsOneAsAVariantToo) {
  const SoapNode node = node_in(take(new OwnNode("Key", Variant("K")), ValueType::kVariant));
  EXPECT_EQ(node.Name(), "Key");
  EXPECT_EQ(node.Value(), Variant("K"));
}

TEST(ForeignObjects, ANodeOfOursBelowOneOfTheApplicationsStaysTheVeryNode) {
  const SoapNode inner = SoapNode::make("Inner");
  const SoapNode outer =
      node_in(take(new OwnNode("Outer", 1, [&](std::int32_t) { return make_node_object(inner); }),
                   ValueType::kSoapNode));
  EXPECT_EQ(outer.Nodes().Item(0), inner);
}

TEST(ForeignObjects, ANodeThatHoldsItselfIsATypeMismatch) {
  Item self;
  self = [&](std::int32_t) -> IDispatchAbi* { return new OwnNode("Circle", 1, self); };
  EXPECT_EQ(take(new OwnNode("Circle", 1, self), ValueType::kSoapNode).result, kTypeMismatch);
  // Twice on each level: it must end long before the deepest one has been seen everywhere.
  Item twice;
  twice = [&](std::int32_t) -> IDispatchAbi* { return new OwnNode("Circle", 2, twice); };
  EXPECT_EQ(take(new OwnNode("Circle", 2, twice), ValueType::kSoapNode).result, kTypeMismatch);
}

TEST(ForeignObjects, AChildThatIsNoNodeIsATypeMismatch) {
  const Item nothing = [](std::int32_t) -> IDispatchAbi* { return nullptr; };
  EXPECT_EQ(take(new OwnNode("Order", 1, nothing), ValueType::kSoapNode).result, kTypeMismatch);
}

TEST(ForeignObjects, AnArrayOfAScriptIsReadByItsIndices) {
  const std::map<std::string, Variant> members{
      {"length", Variant(std::int32_t{3})}, {"0", Variant("U1")}, {"2", Variant(std::int32_t{3})}};
  const Taken variant = take(new OwnMembers(members), ValueType::kVariant);
  ASSERT_EQ(variant.result, kOk);
  EXPECT_EQ(std::get<Variant>(variant.value).array().items(),
            (std::vector<Variant>{"U1", Variant(), std::int32_t{3}}));
  const Taken texts = take(new OwnMembers(members), ValueType::kStringArray);
  ASSERT_EQ(texts.result, kOk);
  EXPECT_EQ(std::get<StringArray>(texts.value), StringArray({"U1", "", "3"}));
}

TEST(ForeignObjects, AnArrayWithoutItemsIsAllocated) {
  const Taken texts =
      take(new OwnMembers({{"length", Variant(std::int32_t{0})}}), ValueType::kStringArray);
  ASSERT_EQ(texts.result, kOk);
  EXPECT_TRUE(std::get<StringArray>(texts.value).allocated());
  EXPECT_EQ(std::get<StringArray>(texts.value).size(), 0u);
}

TEST(ForeignObjects, AnArrayOfNoLengthThatOneHasIsATypeMismatch) {
  for (const std::int32_t length : {-1, 1'000'001}) {
    EXPECT_EQ(take(new OwnMembers({{"length", Variant(length)}}), ValueType::kVariant).result,
              kTypeMismatch);
  }
}

TEST(ForeignObjects, AnArrayIsNoNodeAndAnythingElseNeither) {
  const std::map<std::string, Variant> array{{"length", Variant(std::int32_t{0})}};
  EXPECT_EQ(take(new OwnMembers(array), ValueType::kSoapNode).result, kTypeMismatch);
  const std::map<std::string, Variant> name{{"Name", Variant("only")}};
  for (const ValueType type : {ValueType::kSoapNode, ValueType::kVariant, ValueType::kStringArray,
                               ValueType::kXMLDocument}) {
    EXPECT_EQ(take(new OwnMembers(name), type).result, kTypeMismatch);
  }
}

TEST(ForeignObjects, ADocumentOfTheApplicationsOwnIsLoadedAfterTheCall) {
  std::vector<std::string> loaded;
  const test::Held<IDispatchAbi> object(new OwnDocument(loaded));
  CallDocuments documents;
  Value value;
  ASSERT_EQ(
      value_from_record(test::of_object(object.get()), ValueType::kXMLDocument, value, documents),
      kOk);
  std::get<XMLDocument*>(value)->load("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a>\xFC</a>");
  EXPECT_TRUE(loaded.empty());
  documents.load_all();
  EXPECT_EQ(
      loaded,
      (std::vector<std::string>{"<?xml version=\"1.0\" encoding=\"UTF-8\"?><a>\xC3\xBC</a>"}));
}

// Its host may let go of it while the call waits for the server.
TEST(ForeignObjects, ADocumentOfOursLivesAsLongAsTheCallThatFillsIt) {
  ASSERT_EQ(can_unload(), kOk);
  {
    CallDocuments documents;
    const Taken taken = take(make_document_object(), ValueType::kXMLDocument, documents);
    ASSERT_EQ(taken.result, kOk);
    ASSERT_EQ(can_unload(), kFalse);
    EXPECT_TRUE(std::get<XMLDocument*>(taken.value)->load("<a/>"));
  }
  EXPECT_EQ(can_unload(), kOk);
}

TEST(ForeignObjects, AnObjectThatThrowsIsOneThatFails) {
  for (const bool knows_names : {true, false}) {
    test::ThrowingObject object(knows_names);
    for (const ValueType type :
         {ValueType::kString, ValueType::kSoapNode, ValueType::kStringArray}) {
      CallDocuments documents;
      Value value;
      EXPECT_EQ(value_from_record(test::of_object(object.get()), type, value, documents),
                kTypeMismatch);
    }
    EXPECT_GE(object.calls, 3);
  }
  test::ThrowingObject object(true);
  CallDocuments documents;
  ASSERT_NE(documents.stand_in(object.get()), nullptr);
  documents.load_all();
  EXPECT_EQ(object.calls, 2);
}

TEST(ForeignObjects, ADocumentThatCannotBeLoadedIsNoError) {
  std::vector<std::string> loaded;
  const test::Held<IDispatchAbi> object(new OwnDocument(loaded));
  CallDocuments documents;
  ASSERT_NE(documents.stand_in(object.get()), nullptr);
  documents.load_all();
  EXPECT_EQ(loaded, std::vector<std::string>{""});
}

}  // namespace
}  // namespace bvconn::component
