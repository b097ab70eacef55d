#include "soap/soap_test.h"

namespace bvconn {
namespace {

using soap_test::first_parameter;
using soap_test::names_of;
using test::error_of;

VariantArray array_of(std::vector<Variant> items) {
  return VariantArray(std::move(items));
}

/// The value of an array element with these attributes and this content.
Variant array_value(std::string_view attributes, std::string_view content) {
  return first_parameter("<list " + std::string(attributes) + ">" + std::string(content) +
                         "</list>")
      .Value();
}

constexpr std::string_view kArray = "xsi:type='soapenc:Array' soapenc:arrayType='xsd:string[2]'";

TEST(ReadArray, GivesItsItemsAsValuesAndAsNodes) {
  const SoapNode node =
      first_parameter("<list " + std::string(kArray) + "><item>a</item><item>b</item></list>");
  EXPECT_EQ(node.Value(), Variant(StringArray{"a", "b"}));
  EXPECT_EQ(node.Type(), "Array");
  EXPECT_EQ(names_of(node.Nodes()), "item item");
}

TEST(ReadArray, ItemsMayHaveAnyName) {
  EXPECT_EQ(array_value(kArray, "<string>a</string><x:y xmlns:x='urn:x'>b</x:y>"),
            Variant(StringArray{"a", "b"}));
}

TEST(ReadArray, ItemsWithoutTypeHaveThatOfTheArray) {
  EXPECT_EQ(array_value("soapenc:arrayType='xsd:int[3]'",
                        "<i>1</i><i xsi:type='xsd:short'>2</i><i xsi:nil='1'/>"),
            Variant(array_of({1, std::int16_t{2}, Variant()})));
}

TEST(ReadArray, NamesItemsAfterTheirTypeInTheEncodingsNamespace) {
  EXPECT_EQ(array_value("soapenc:arrayType='xsd:anyType[2]'",
                        "<soapenc:int>1</soapenc:int><soapenc:string>2</soapenc:string>"),
            Variant(array_of({1, "2"})));
}

TEST(ReadArray, IsMarkedByAnyOfThreeSigns) {
  EXPECT_EQ(array_value("xsi:type='soapenc:Array'", "<i>a</i>"), Variant(StringArray{"a"}));
  EXPECT_EQ(array_value("soapenc:arrayType='xsd:string[1]'", "<i>a</i>"),
            Variant(StringArray{"a"}));
  EXPECT_EQ(array_value("xmlns:t='urn:t' xsi:type='t:ArrayOfString'"
                        " soapenc:arrayType='xsd:string[1]'",
                        "<i>a</i>"),
            Variant(StringArray{"a"}));
  EXPECT_EQ(first_parameter("<soapenc:Array><i>a</i></soapenc:Array>").Value(),
            Variant(StringArray{"a"}));
}

TEST(ReadArray, WithoutAMarkIsANodeWithChildren) {
  EXPECT_TRUE(array_value("xmlns:t='urn:t' xsi:type='t:Array'", "<i>a</i><i>b</i>")
                  .is(Variant::Type::kNode));
}

TEST(ReadArray, WithoutItemsIsAllocatedAndEmpty) {
  const Variant empty = array_value("soapenc:arrayType='xsd:string[0]'", " ");
  EXPECT_TRUE(empty.array().allocated());
  EXPECT_EQ(empty.array().size(), 0U);
}

TEST(ReadArray, BelievesNoNumberThatItClaims) {
  EXPECT_EQ(array_value("soapenc:arrayType='xsd:string[2000000000]'", "<i>a</i>"),
            Variant(StringArray{"a"}));
  EXPECT_EQ(array_value("soapenc:arrayType='xsd:string[]'", "<i>a</i>"), Variant(StringArray{"a"}));
  EXPECT_EQ(array_value("soapenc:arrayType='xsd:string[1,1,3]' soapenc:offset='[999999999]'",
                        "<i soapenc:position='[888888888]'>a</i><i>b</i>"),
            Variant(StringArray{"a", "b"}));
  EXPECT_EQ(array_value("soapenc:arrayType='nonsense'", "<i>a</i>"), Variant(StringArray{"a"}));
}

TEST(ReadArray, HoldsNodesForItemsWithChildren) {
  const SoapNode node =
      first_parameter("<list xmlns:t='urn:t' soapenc:arrayType='t:Bean[1]'><i><a>1</a></i></list>");
  const auto items = node.Value().array().items();
  EXPECT_EQ(to_node(items[0]), node.Nodes().Item(0));
  EXPECT_EQ(names_of(to_node(items[0]).Nodes()), "a");
}

TEST(ReadArray, MayHoldArrays) {
  const Variant expected(array_of({StringArray{"a"}, StringArray{"b", "c"}}));
  EXPECT_EQ(array_value("soapenc:arrayType='xsd:string[][2]'",
                        "<i soapenc:arrayType='xsd:string[1]'><j>a</j></i>"
                        "<i soapenc:arrayType='xsd:string[2]'><j>b</j><j>c</j></i>"),
            expected);
  EXPECT_EQ(
      array_value("soapenc:arrayType='xsd:string[][2]'", "<i><j>a</j></i><i><j>b</j><j>c</j></i>"),
      expected)
      << "the items are arrays even when only the outer one says so";
}

TEST(ReadArray, OfArraysOfNumbersPassesTheTypeDown) {
  EXPECT_EQ(array_value("soapenc:arrayType='xsd:int[,][1]'", "<i><j>1</j><j>2</j></i>"),
            Variant(array_of({array_of({1, 2})})));
}

TEST(ReadArray, InTheOtherSchemasIsAnArrayToo) {
  EXPECT_EQ(first_parameter("<a xmlns:i='http://www.w3.org/1999/XMLSchema-instance'"
                            " xmlns:d='http://www.w3.org/1999/XMLSchema' i:type='soapenc:Array'"
                            " soapenc:arrayType='d:int[1]'><x>5</x></a>")
                .Value(),
            Variant(array_of({5})));
}

TEST(ReadArray, ItemThatDoesNotFitFailsWith13) {
  EXPECT_EQ(error_of([] { array_value("soapenc:arrayType='xsd:int[1]'", "<i>x</i>"); }).number, 13);
}

/// An array element with these attributes and this content, read and sent on.
std::string again(std::string_view attributes, std::string_view content) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.Parameters().Append(
      first_parameter("<l " + std::string(attributes) + ">" + std::string(content) + "</l>"));
  return soap_test::parameters_text(envelope);
}

TEST(ReadArray, WithoutItemsKeepsTheirType) {
  EXPECT_EQ(again("xsi:type='soapenc:Array' soapenc:arrayType='xsd:string[0]'", ""),
            "<l xsi:type=\"SOAP-ENC:Array\" SOAP-ENC:arrayType=\"xsd:string[0]\"/>");
  EXPECT_EQ(again("xmlns:t='urn:t' soapenc:arrayType='t:Bean[]'", " "),
            "<l xmlns:i=\"urn:t\" SOAP-ENC:arrayType=\"i:Bean[0]\"/>");
  EXPECT_EQ(again("soapenc:arrayType='xsd:anyType[0]'", ""),
            "<l SOAP-ENC:arrayType=\"xsd:anyType[0]\"/>");
  EXPECT_EQ(again("xsi:type='soapenc:Array'", ""),
            "<l xsi:type=\"SOAP-ENC:Array\" SOAP-ENC:arrayType=\"xsd:anyType[0]\"/>")
      << "it said nothing";
}

TEST(ReadArray, IsWrittenWithTheTypeThatItWasReadWith) {
  EXPECT_EQ(again("soapenc:arrayType='xsd:anyType[1]'", "<i xsi:type='xsd:string'>a</i>"),
            "<l SOAP-ENC:arrayType=\"xsd:anyType[1]\"><i xsi:type=\"xsd:string\">a</i></l>");
  EXPECT_EQ(again("soapenc:arrayType='xsd:decimal[2]'", "<i>1</i><i xsi:type='xsd:int'>2</i>"),
            "<l SOAP-ENC:arrayType=\"xsd:decimal[2]\"><i>1</i><i xsi:type=\"xsd:int\">2</i></l>");
  EXPECT_EQ(
      again("soapenc:arrayType='xsd:string[][1]'", "<i soapenc:arrayType='xsd:string[0]'/>"),
      "<l SOAP-ENC:arrayType=\"xsd:string[][1]\"><i SOAP-ENC:arrayType=\"xsd:string[0]\"/></l>");
}

TEST(ReadArray, ThatGetsAValueOfAnotherTypeIsOneOfAnything) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  const SoapNode list = first_parameter("<l soapenc:arrayType='xsd:string[0]'/>");
  envelope.Parameters().Append(list);
  list.Nodes().Create("i", "a");
  EXPECT_EQ(soap_test::parameters_text(envelope),
            "<l SOAP-ENC:arrayType=\"xsd:string[1]\"><i>a</i></l>");
  list.Nodes().Create("i", std::int32_t{2});
  EXPECT_EQ(soap_test::parameters_text(envelope),
            "<l SOAP-ENC:arrayType=\"xsd:anyType[2]\"><i xsi:type=\"xsd:string\">a</i>"
            "<i xsi:type=\"xsd:int\">2</i></l>");
}

TEST(ReadArray, ThatIsGivenAnotherValueForgetsItsType) {
  SoapNode list = first_parameter("<l soapenc:arrayType='xsd:int[0]'/>");
  list.Value(Variant(VariantArray(std::vector<Variant>{})));
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.Parameters().Append(list);
  EXPECT_EQ(soap_test::parameters_text(envelope),
            "<l xsi:type=\"SOAP-ENC:Array\" SOAP-ENC:arrayType=\"xsd:string[0]\"/>");
}

TEST(ReadArray, IsWrittenAsOneAgain) {
  EXPECT_EQ(again(kArray, "<s>a</s><s>b</s>"),
            "<l xsi:type=\"SOAP-ENC:Array\" SOAP-ENC:arrayType=\"xsd:string[2]\">"
            "<s>a</s><s>b</s></l>");
  EXPECT_EQ(again("xmlns:t='urn:t' soapenc:arrayType='t:Bean[1]'", "<i><a>1</a></i>"),
            "<l xmlns:i=\"urn:t\" SOAP-ENC:arrayType=\"i:Bean[1]\"><i><a>1</a></i></l>");
  EXPECT_EQ(again("soapenc:arrayType='xsd:anyType[2]'", "<i>a</i><i xsi:type='xsd:int'>1</i>"),
            "<l SOAP-ENC:arrayType=\"xsd:anyType[2]\"><i>a</i><i xsi:type=\"xsd:int\">1</i></l>");
}

TEST(ReadArray, InMoreThan256ArraysHasNoValue) {
  std::string content = "<i>x</i>";
  for (int depth = 0; depth < 300; ++depth) {
    content = "<i soapenc:arrayType='xsd:anyType[1]'>" + content + "</i>";
  }
  const SoapNode node = first_parameter(content);
  const Error error = error_of([&] { node.Value(); });
  EXPECT_EQ(hex_number(error.number), "0x80044206");
  EXPECT_EQ(error.source, "SoapNodes");
  SoapNode inner = node;
  for (int depth = 0; depth < 100; ++depth) inner = inner.Nodes().Item(0);
  EXPECT_EQ(inner.Value().array().size(), 1U) << "200 arrays are within the limit";
}

}  // namespace
}  // namespace bvconn
