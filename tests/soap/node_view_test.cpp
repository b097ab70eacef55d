#include "bvconn/platform/soap/node_view.h"

#include "soap/soap_test.h"

namespace bvconn {
namespace {

using detail::text_of_first;
using soap_test::parsed;

constexpr std::string_view kValues =
    "<r><a>one</a><a>two</a><b xsi:type='xsd:int'> 7 </b><c xsi:type='xsd:QName'>xsd:int</c>"
    "<d xsi:type='xsd:boolean'>1</d><e xsi:nil='true'/><f/><g xsi:type='xsd:double'>1e20</g>"
    "<h xsi:type='xsd:QName'>x:y:z</h><i>&lt;&#13;</i><j href='#1'/></r><m id='1'>far</m>";

TEST(TextOfFirst, IsTheTextOfTheValue) {
  const SoapNodes nodes = parsed(kValues).Parameters();
  EXPECT_EQ(text_of_first(nodes, "a"), "one");
  EXPECT_EQ(text_of_first(nodes, "b"), "7");
  EXPECT_EQ(text_of_first(nodes, "c"), "int");
  EXPECT_EQ(text_of_first(nodes, "d"), "True");
  EXPECT_EQ(text_of_first(nodes, "e"), "");
  EXPECT_EQ(text_of_first(nodes, "f"), "");
  EXPECT_EQ(text_of_first(nodes, "i"), "<\r");
  EXPECT_EQ(text_of_first(nodes, "j"), "far");
  EXPECT_EQ(text_of_first(nodes, "k"), std::nullopt);
  for (const SoapNode& node : nodes) {
    const std::string name = node.Name();
    EXPECT_EQ(text_of_first(nodes, name), to_text(nodes.ItemByName(name).Value())) << name;
  }
}

TEST(TextOfFirst, IsThatOfANodeThatWasMadeOrChanged) {
  const SoapNodes nodes = parsed(kValues).Parameters();
  nodes.Item(0).Value(Variant(12.5));
  nodes.Item(3).Value(Variant("now a text"));
  SoapNodes(nodes).Create("made", true);
  EXPECT_EQ(text_of_first(nodes, "a"), "12.5");
  EXPECT_EQ(text_of_first(nodes, "c"), "now a text");
  EXPECT_EQ(text_of_first(nodes, "made"), "True");
}

TEST(TextOfFirst, FailsAsTheValueDoes) {
  const auto number = [](std::string_view body) {
    const SoapNodes nodes = parsed(body).Parameters();
    return test::error_of([&] { text_of_first(nodes, "a"); }).number;
  };
  EXPECT_EQ(number("<r><a><b/></a></r>"), error_numbers::kTypeMismatch);
  EXPECT_EQ(number("<r><a soapenc:arrayType='xsd:int[1]'><i>1</i></a></r>"),
            error_numbers::kTypeMismatch);
  EXPECT_EQ(number("<r><a xsi:type='xsd:int'>seven</a></r>"), error_numbers::kTypeMismatch);
  EXPECT_EQ(test::error_of([] { text_of_first(SoapNodes(), "a"); }).number,
            error_numbers::kObjectNotSet);
}

}  // namespace
}  // namespace bvconn
