// The same start tags again and again, so often that they are no longer read but known: what they
// mean must still depend on what is around them.
#include "soap/soap_test.h"

namespace bvconn {
namespace {

using soap_test::first_parameter;
using soap_test::parsed;

constexpr std::size_t kOften = 60;

std::string often(std::string_view text) {
  std::string result;
  for (std::size_t i = 0; i < kOften; ++i) result += text;
  return result;
}

/// The value of each child of an element with this content.
std::vector<Variant> values_of(const std::string& content) {
  std::vector<Variant> values;
  for (const SoapNode& node : first_parameter("<all>" + content + "</all>").Nodes()) {
    values.push_back(node.Value());
  }
  return values;
}

TEST(ReadRepeated, ValuesHaveTheTypeOfTheirTags) {
  const auto values =
      values_of(often("<a xsi:type='xsd:int'>7</a><a xsi:type='xsd:short'>7</a>"
                      "<a>7</a><a xsi:nil='true'/><a xsi:nil='1'>7</a><a/>"));
  ASSERT_EQ(values.size(), 6 * kOften);
  for (std::size_t i = 0; i < values.size(); i += 6) {
    EXPECT_EQ(values[i], Variant(7)) << i;
    EXPECT_EQ(values[i + 1], Variant(std::int16_t{7})) << i;
    EXPECT_EQ(values[i + 2], Variant("7")) << i;
    EXPECT_EQ(values[i + 3], Variant()) << i;
    EXPECT_EQ(values[i + 4], Variant()) << i;
    EXPECT_EQ(values[i + 5], Variant("")) << i;
  }
}

TEST(ReadRepeated, ItemsHaveTheTypeOfTheArrayAroundThem) {
  const std::string untyped = "<a><i>1</i></a>";
  const std::string typed = "<a soapenc:arrayType='xsd:int[1]'><i>1</i></a>";
  const std::string own = "<a soapenc:arrayType='xsd:int[1]'><i xsi:type='xsd:short'>1</i></a>";
  const SoapNode all = first_parameter("<all>" + often(untyped + typed + own) + "</all>");
  ASSERT_EQ(all.Nodes().Count(), 3 * kOften);
  for (std::size_t i = 0; i < all.Nodes().Count(); i += 3) {
    EXPECT_EQ(all.Nodes().Item(i).Nodes().Item(0).Value(), Variant("1")) << i;
    EXPECT_EQ(all.Nodes().Item(i + 1).Nodes().Item(0).Value(), Variant(1)) << i;
    EXPECT_EQ(all.Nodes().Item(i + 2).Nodes().Item(0).Value(), Variant(std::int16_t{1})) << i;
  }
}

TEST(ReadRepeated, QualifiedNamesHaveTheNamespacesOfTheirPlace) {
  const std::string name = "<q xsi:type='xsd:QName'>p:x</q>";
  const SoapNode all = first_parameter(
      "<all>" + often("<a xmlns:p='urn:1'>" + name + "</a><a xmlns:p='urn:2'>" + name + "</a>") +
      "</all>");
  for (std::size_t i = 0; i < all.Nodes().Count(); i += 2) {
    EXPECT_EQ(all.Nodes().Item(i).Nodes().Item(0).Value(), Variant(QualifiedName{"urn:1", "x"}));
    EXPECT_EQ(all.Nodes().Item(i + 1).Nodes().Item(0).Value(),
              Variant(QualifiedName{"urn:2", "x"}));
  }
}

TEST(ReadRepeated, ReferencesLeadToTheirTarget) {
  const SoapEnvelope envelope = parsed("<r>" + often("<a href='#1'/>") +
                                       "</r><multiRef id='1' xsi:type='xsd:int'>5</multiRef>");
  ASSERT_EQ(envelope.Parameters().Count(), kOften);
  for (const SoapNode& node : envelope.Parameters()) EXPECT_EQ(node.Value(), Variant(5));
}

TEST(ReadRepeated, TextBesideChildrenDoesNotCount) {
  const SoapNode all =
      first_parameter("<all>" + often("<a>x<b>1</b>y</a><a>x</a><a>&amp;x</a>") + "</all>");
  for (std::size_t i = 0; i < all.Nodes().Count(); i += 3) {
    EXPECT_EQ(all.Nodes().Item(i).Nodes().Item(0).Value(), Variant("1")) << i;
    EXPECT_EQ(all.Nodes().Item(i + 1).Value(), Variant("x")) << i;
    EXPECT_EQ(all.Nodes().Item(i + 2).Value(), Variant("&x")) << i;
  }
}

TEST(ReadRepeated, OnlyTheFaultsOwnCodeIsAQualifiedName) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  const std::string code = "<faultcode>soapenv:x</faultcode>";
  try {
    envelope.Parse(soap_test::reply_text("<soapenv:Fault><detail>" + often(code) + "</detail>" +
                                         code + "</soapenv:Fault>"),
                   "");
    FAIL() << "read a fault as a success";
  } catch (const Error& error) {
    EXPECT_EQ(error.number, error_numbers::kSoapFault);
  }
  const SoapNodes found = envelope.Parameters();
  EXPECT_EQ(found.Item(1).Value(),
            Variant(QualifiedName{"http://schemas.xmlsoap.org/soap/envelope/", "x"}));
  for (const SoapNode& node : found.Item(0).Nodes()) EXPECT_EQ(node.Value(), Variant("soapenv:x"));
}

}  // namespace
}  // namespace bvconn
