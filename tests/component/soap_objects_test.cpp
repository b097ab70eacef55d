#include "bvconn/component/soap_objects.h"

#include <gtest/gtest.h>

#include "bvconn/component/handles.h"
#include "bvconn/component/memory.h"
#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/soap/xml_document.h"
#include "component/host.h"

namespace bvconn::component {
namespace {

namespace vt = variant_type;
using test::Held;
using test::HostString;
using test::Outcome;

class NodeByName : public testing::Test {
 protected:
  SoapNode node =
      node_from_xml("<Order xmlns='urn:o'><Number>4711</Number><City>Bonn</City></Order>");
  Held<IDispatchAbi> object{make_node_object(node)};
};

TEST_F(NodeByName, ShowsNameNamespaceAndWhetherItIsNil) {
  EXPECT_EQ(test::get(*object, u"Name").text(), u"Order");
  EXPECT_EQ(test::get(*object, u"Namespace").text(), u"urn:o");
  const Outcome nil = test::get(*object, u"nil");
  EXPECT_EQ(nil.value.type, vt::kBoolean);
  EXPECT_EQ(nil.value.value.boolean, kVariantFalse);
}

TEST_F(NodeByName, NumbersOfTheMembersAreStable) {
  EXPECT_EQ(test::find_id(*object, u"Name"), 1);
  EXPECT_EQ(test::find_id(*object, u"Namespace"), 2);
  EXPECT_EQ(test::find_id(*object, u"Type"), 3);
  EXPECT_EQ(test::find_id(*object, u"Value"), 4);
  EXPECT_EQ(test::find_id(*object, u"Nodes"), 5);
  EXPECT_EQ(test::find_id(*object, u"nil"), 6);
}

TEST_F(NodeByName, ChangesReachTheNodeItself) {
  HostString name(u"Quote");
  ASSERT_EQ(test::put(*object, u"Name", test::of_string(name)).result, kOk);
  ASSERT_EQ(test::put(*object, u"Value", test::of_int32(42)).result, kOk);
  EXPECT_EQ(node.Name(), "Quote");
  EXPECT_EQ(node.Value(), Variant(std::int32_t{42}));
  EXPECT_EQ(test::get(*object, u"Type").text(), u"int");
}

TEST_F(NodeByName, ItsNamespaceAndTypeCannotBeSet) {
  HostString text(u"urn:other");
  EXPECT_EQ(test::put(*object, u"Namespace", test::of_string(text)).result, kMemberNotFound);
  EXPECT_EQ(test::put(*object, u"Type", test::of_string(text)).result, kMemberNotFound);
}

TEST_F(NodeByName, ANodeIsSetAsValueByReferenceToo) {
  SoapNode inner = SoapNode::make("Inner");
  Held<IDispatchAbi> inner_object(make_node_object(inner));
  EXPECT_EQ(test::put(*object, u"Value", test::of_object(inner_object.get()), {},
                      call_flag::kPropertyPutReference)
                .result,
            kOk);
  EXPECT_EQ(node.Value().node(), inner);
}

TEST_F(NodeByName, TheValueOfANodeWithChildrenIsANode) {
  const Outcome value = test::get(*object, u"Value");
  ASSERT_EQ(value.value.type, vt::kDispatch);
  EXPECT_EQ(test::get(value.object(), u"Name").text(), u"Order");
}

TEST_F(NodeByName, ChildrenAreFoundByIndexAndByName) {
  const Outcome nodes = test::get(*object, u"Nodes");
  ASSERT_EQ(nodes.value.type, vt::kDispatch);
  EXPECT_EQ(test::get(nodes.object(), u"Count").value.value.int32, 2);
  const Outcome second = test::call(nodes.object(), u"Item", {test::of_int32(1)});
  EXPECT_EQ(test::get(second.object(), u"Name").text(), u"City");
  EXPECT_EQ(test::get(second.object(), u"Value").text(), u"Bonn");
  HostString name(u"Number");
  HostString name_space(u"urn:o");
  const Outcome first = test::call(nodes.object(), u"ItemByName",
                                   {test::of_string(name), test::of_string(name_space)});
  EXPECT_EQ(test::get(first.object(), u"Value").text(), u"4711");
  EXPECT_EQ(test::call(nodes.object(), u"ItemByName", {test::of_string(name)}).result, kOk);
}

TEST_F(NodeByName, ItemIsTheDefaultMemberReadOrCalled) {
  const Outcome nodes = test::get(*object, u"Nodes");
  EXPECT_EQ(test::find_id(nodes.object(), u"Item"), 0);
  const Outcome read =
      test::call_id(nodes.object(), kDefaultMember, call_flag::kPropertyGet, {test::of_int32(0)});
  EXPECT_EQ(test::get(read.object(), u"Name").text(), u"Number");
}

// Scripts write `node.Nodes(1)`, which arrives as a read of `Nodes` with an argument.
TEST_F(NodeByName, ArgumentsOfNodesGoToItsDefaultMember) {
  const auto nodes = test::find_id(*object, u"Nodes");
  constexpr std::uint16_t kEither = call_flag::kMethod | call_flag::kPropertyGet;
  for (const std::uint16_t flags : {call_flag::kMethod, call_flag::kPropertyGet, kEither}) {
    const Outcome second = test::call_id(*object, *nodes, flags, {test::of_int32(1)});
    EXPECT_EQ(second.result, kOk);
    EXPECT_EQ(test::get(second.object(), u"Name").text(), u"City");
  }
  const Outcome none = test::call_id(*object, *nodes, call_flag::kPropertyGet, {test::of_int32(2)});
  EXPECT_EQ(none.result, kException);
  EXPECT_EQ(none.exception.result, result_from_bits(0x80044204));
  HostString word(u"City");
  const Outcome wrong =
      test::call_id(*object, *nodes, call_flag::kPropertyGet, {test::of_string(word)});
  EXPECT_EQ(wrong.result, kTypeMismatch);
  EXPECT_EQ(wrong.argument_index, 0u);
}

TEST_F(NodeByName, ALookUpThatFindsNothingIsAnErrorOfTheNodes) {
  const Outcome nodes = test::get(*object, u"Nodes");
  HostString name(u"Street");
  for (const Outcome& outcome : {test::call(nodes.object(), u"ItemByName", {test::of_string(name)}),
                                 test::call(nodes.object(), u"Item", {test::of_int32(2)}),
                                 test::call(nodes.object(), u"Item", {test::of_int32(-1)})}) {
    EXPECT_EQ(outcome.result, kException);
    EXPECT_EQ(outcome.exception.result, result_from_bits(0x80044204));
    EXPECT_EQ(test::text_behind(outcome.exception.source), u"SoapNodes");
  }
}

TEST_F(NodeByName, CreateMakesAChildAndAppendTakesTheVeryNode) {
  const Outcome nodes = test::get(*object, u"Nodes");
  HostString name(u"Zip");
  HostString value(u"53111");
  HostString name_space(u"urn:z");
  const Outcome made =
      test::call(nodes.object(), u"Create",
                 {test::of_string(name), test::of_string(value), test::of_string(name_space)});
  ASSERT_EQ(made.value.type, vt::kDispatch);
  EXPECT_EQ(node.Nodes().Item(2).Name(), "Zip");
  EXPECT_EQ(node.Nodes().Item(2).Value(), Variant("53111"));
  EXPECT_EQ(node.Nodes().Item(2).Namespace(), "urn:z");

  SoapNode other = SoapNode::make("Other");
  Held<IDispatchAbi> other_object(make_node_object(other));
  EXPECT_EQ(test::call(nodes.object(), u"Append", {test::of_object(other_object.get())}).result,
            kOk);
  EXPECT_EQ(node.Nodes().Item(3), other);
}

TEST_F(NodeByName, CreateWithoutAValueMakesANodeThatIsNil) {
  const Outcome nodes = test::get(*object, u"Nodes");
  HostString name(u"Nothing");
  const Outcome made = test::call(nodes.object(), u"Create", {test::of_string(name)});
  EXPECT_EQ(test::get(made.object(), u"nil").value.value.boolean, kVariantTrue);
}

TEST_F(NodeByName, AppendingNothingIsError91) {
  const Outcome nodes = test::get(*object, u"Nodes");
  const Outcome outcome = test::call(nodes.object(), u"Append", {test::of_object(nullptr)});
  EXPECT_EQ(outcome.result, kException);
  EXPECT_EQ(outcome.exception.result, result_from_bits(0x800A005B));
}

class Enumeration : public NodeByName {
 protected:
  Enumeration() {
    const Outcome nodes = test::get(*object, u"Nodes");
    const Outcome made = test::call_id(nodes.object(), kNewEnumerator, call_flag::kPropertyGet);
    EXPECT_EQ(made.value.type, vt::kUnknown);
    items = test::ask<IEnumVariantAbi>(*made.value.value.unknown);
  }

  std::u16string next_name() {
    VariantRecord item{};
    if (items->Next(1, &item, nullptr) != kOk) return u"(end)";
    const std::u16string name = test::get(*item.value.dispatch, u"Name").text();
    clear_variant(&item);
    return name;
  }

  Held<IEnumVariantAbi> items;
};

TEST_F(Enumeration, GivesEachChildOnce) {
  EXPECT_EQ(next_name(), u"Number");
  EXPECT_EQ(next_name(), u"City");
  EXPECT_EQ(next_name(), u"(end)");
  EXPECT_EQ(items->Reset(), kOk);
  EXPECT_EQ(next_name(), u"Number");
}

TEST_F(Enumeration, GivesWhatIsLeftWhenMoreAreWanted) {
  VariantRecord found[3] = {};
  std::uint32_t fetched = 99;
  EXPECT_EQ(items->Next(3, found, &fetched), kFalse);
  EXPECT_EQ(fetched, 2u);
  for (VariantRecord& item : found) clear_variant(&item);
}

TEST_F(Enumeration, SkipsAndClonesItsPlace) {
  EXPECT_EQ(items->Skip(1), kOk);
  IEnumVariantAbi* copy = nullptr;
  ASSERT_EQ(items->Clone(&copy), kOk);
  EXPECT_EQ(next_name(), u"City");
  items.reset(copy);
  EXPECT_EQ(next_name(), u"City");
  EXPECT_EQ(items->Skip(1), kFalse);
}

TEST_F(Enumeration, RefusesNullPointers) {
  VariantRecord found[2] = {};
  std::uint32_t fetched = 0;
  EXPECT_EQ(items->Next(1, nullptr, &fetched), kNullPointer);
  EXPECT_EQ(items->Next(2, found, nullptr), kNullPointer);
  EXPECT_EQ(items->Clone(nullptr), kNullPointer);
}

TEST(EnvelopeByName, IsFilledAndSerialised) {
  SoapEnvelope envelope = SoapEnvelope::make();
  Held<IDispatchAbi> object(make_envelope_object(envelope));
  HostString method(u"getInvoice");
  HostString name_space(u"urn:InvoiceService");
  HostString style(u"urn:style");
  EXPECT_EQ(
      test::call(*object, u"SetMethod", {test::of_string(method), test::of_string(name_space)})
          .result,
      kOk);
  EXPECT_EQ(test::put(*object, u"EncodingStyle", test::of_string(style)).result, kOk);
  EXPECT_EQ(test::get(*object, u"MethodName").text(), u"getInvoice");
  EXPECT_EQ(test::get(*object, u"EncodingStyle").text(), u"urn:style");
  HostString header(u"userID");
  HostString parameter(u"param");
  const Outcome headers = test::get(*object, u"Headers");
  const Outcome parameters = test::get(*object, u"Parameters");
  test::call(headers.object(), u"Create", {test::of_string(header), test::of_int32(1)});
  test::call(parameters.object(), u"Create", {test::of_string(parameter), test::of_int32(2)});
  EXPECT_EQ(envelope.Headers().Item(0).Name(), "userID");
  EXPECT_EQ(envelope.Parameters().Item(0).Value(), Variant(std::int32_t{2}));
  const std::u16string text = test::call(*object, u"Serialize").text();
  EXPECT_NE(text.find(u"<m:getInvoice xmlns:m=\"urn:InvoiceService\""), std::u16string::npos);
}

constexpr std::string_view kReply =
    "<?xml version='1.0' encoding='ISO-8859-1'?>"
    "<e:Envelope xmlns:e='http://schemas.xmlsoap.org/soap/envelope/'><e:Body>"
    "<r><city>K\xF6ln</city></r></e:Body></e:Envelope>";

TEST(EnvelopeByName, ParsesBytesByTheirDeclaration) {
  Held<IDispatchAbi> object(make_envelope_object(SoapEnvelope::make()));
  VariantRecord bytes = test::variant(vt::kArray | vt::kUint8);
  bytes.value.array = create_array(vt::kUint8, static_cast<std::uint32_t>(kReply.size()));
  std::memcpy(bytes.value.array->data, kReply.data(), kReply.size());
  EXPECT_EQ(test::call(*object, u"Parse", {bytes}).result, kOk);
  clear_variant(&bytes);
  const Outcome parameters = test::get(*object, u"Parameters");
  const Outcome first =
      test::call_id(parameters.object(), kDefaultMember, call_flag::kMethod, {test::of_int32(0)});
  EXPECT_EQ(test::get(first.object(), u"Value").text(), u"K\u00F6ln");
}

TEST(EnvelopeByName, ParsesTextWhateverItsDeclarationSays) {
  Held<IDispatchAbi> object(make_envelope_object(SoapEnvelope::make()));
  std::u16string wide;
  for (const char byte : kReply) wide.push_back(static_cast<unsigned char>(byte));
  HostString text(wide);
  EXPECT_EQ(test::call(*object, u"Parse", {test::of_string(text)}).result, kOk);
  const Outcome parameters = test::get(*object, u"Parameters");
  const Outcome first = test::call(parameters.object(), u"Item", {test::of_int32(0)});
  EXPECT_EQ(test::get(first.object(), u"Value").text(), u"K\u00F6ln");
}

TEST(EnvelopeByName, TextThatIsNoXmlIsItsError) {
  Held<IDispatchAbi> object(make_envelope_object(SoapEnvelope::make()));
  HostString text(u"<a>");
  const Outcome outcome = test::call(*object, u"Parse", {test::of_string(text)});
  EXPECT_EQ(outcome.result, kException);
  EXPECT_EQ(outcome.exception.result, result_from_bits(0x80044202));
  EXPECT_EQ(test::text_behind(outcome.exception.source), u"SoapEnvelope");
}

TEST(DocumentByName, LoadsAndShowsItsText) {
  Held<IDispatchAbi> object(make_document_object());
  EXPECT_EQ(test::get(*object, u"xml").text(), u"");
  HostString text(u"<a b=\"1\"><c>2</c></a>");
  EXPECT_EQ(test::call(*object, u"load", {test::of_string(text)}).value.value.boolean,
            kVariantTrue);
  EXPECT_NE(test::get(*object, u"xml").text().find(u"<a b=\"1\">"), std::u16string::npos);
  const Outcome element = test::get(*object, u"documentElement");
  EXPECT_EQ(test::get(element.object(), u"Name").text(), u"a");
  HostString broken(u"<a>");
  EXPECT_EQ(test::call(*object, u"load", {test::of_string(broken)}).value.value.boolean,
            kVariantFalse);
  EXPECT_EQ(test::get(*object, u"documentElement").value.value.dispatch, nullptr);
}

TEST(Handles, AreGivenToTheirOwnCopyOfTheLibraryAlone) {
  Held<IDispatchAbi> node(make_node_object(SoapNode::make("n")));
  Held<IDispatchAbi> document(make_document_object());
  const auto node_handle = test::ask<INodeHandleAbi>(*node);
  const auto document_handle = test::ask<IDocumentHandleAbi>(*document);
  ASSERT_NE(node_handle, nullptr);
  ASSERT_NE(document_handle, nullptr);
  const int other_module = 0;
  const void* found_node = &other_module;
  void* found_document = nullptr;
  EXPECT_EQ(node_handle->GetNode(&other_module, &found_node), kNoInterface);
  EXPECT_EQ(found_node, nullptr);
  EXPECT_EQ(document_handle->GetDocument(&other_module, &found_document), kNoInterface);
  EXPECT_EQ(node_handle->GetNode(module_mark(), nullptr), kNullPointer);
  EXPECT_EQ(document_handle->GetDocument(module_mark(), nullptr), kNullPointer);
  EXPECT_EQ(node_handle->GetNode(module_mark(), &found_node), kOk);
  EXPECT_NE(found_node, nullptr);
}

}  // namespace
}  // namespace bvconn::component
