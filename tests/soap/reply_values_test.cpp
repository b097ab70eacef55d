#include <stdlib.h>
#include <time.h>

#include <cmath>
#include <limits>

#include "soap/soap_test.h"

namespace bvconn {
namespace {

using soap_test::first_parameter;
using test::error_of;
using Type = Variant::Type;

Variant value_of(std::string_view type, std::string_view text) {
  return first_parameter("<a xsi:type='" + std::string(type) + "'>" + std::string(text) + "</a>")
      .Value();
}

void expect_mismatch(std::string_view type, std::string_view text) {
  EXPECT_EQ(error_of([&] { value_of(type, text); }).number, 13) << type << " " << text;
}

Variant moment(CivilDate civil) {
  return Variant(from_civil(civil));
}

TEST(ReadValue, WithoutTypeIsAString) {
  EXPECT_EQ(first_parameter("<a>5</a>").Value(), Variant("5"));
  EXPECT_EQ(first_parameter("<a>5</a>").Type(), "");
}

TEST(ReadValue, OfAnUnknownTypeIsAString) {
  EXPECT_EQ(value_of("GID", "5"), Variant("5"));
  EXPECT_EQ(value_of("xsd:anyURI", "urn:5"), Variant("urn:5"));
  EXPECT_EQ(value_of("xsd:anyType", " 5 "), Variant(" 5 "));
  EXPECT_EQ(value_of("nowhere:int", "5"), Variant("5"));
  EXPECT_EQ(first_parameter("<a xmlns:t='urn:t' xsi:type='t:int'>5</a>").Value(), Variant("5"));
}

TEST(ReadValue, KeepsTheTypeWithoutItsPrefix) {
  EXPECT_EQ(first_parameter("<a xsi:type='xsd:int'>5</a>").Type(), "int");
  EXPECT_EQ(first_parameter("<a xmlns:t='urn:t' xsi:type='t:GID'>5</a>").Type(), "GID");
  EXPECT_EQ(first_parameter("<a xsi:type='alone'>5</a>").Type(), "alone");
}

TEST(ReadValue, OfWholeNumbersHasTheVariantThatHoldsThem) {
  EXPECT_EQ(value_of("xsd:short", "-32768"), Variant(std::int16_t{-32768}));
  EXPECT_EQ(value_of("xsd:byte", "-128"), Variant(std::int16_t{-128}));
  EXPECT_EQ(value_of("xsd:unsignedByte", "255"), Variant(std::int16_t{255}));
  EXPECT_EQ(value_of("xsd:int", "2147483647"), Variant(2147483647));
  EXPECT_EQ(value_of("xsd:unsignedShort", "65535"), Variant(65535));
  EXPECT_EQ(value_of("xsd:long", "-9223372036854775808"),
            Variant(std::numeric_limits<std::int64_t>::min()));
  EXPECT_EQ(value_of("xsd:unsignedInt", "4294967295"), Variant(std::int64_t{4294967295}));
  EXPECT_EQ(value_of("xsd:integer", "5000000000"), Variant(std::int64_t{5'000'000'000}));
  EXPECT_EQ(value_of("xsd:positiveInteger", "1"), Variant(std::int64_t{1}));
}

TEST(ReadValue, OfNumbersMayHaveASignLeadingZerosAndBlanksAround) {
  EXPECT_EQ(value_of("xsd:int", "+5"), Variant(5));
  EXPECT_EQ(value_of("xsd:int", " \n007\t"), Variant(7));
  EXPECT_EQ(value_of("xsd:double", "+1234.5"), Variant(1234.5));
  EXPECT_EQ(value_of("xsd:double", "1.0E+300"), Variant(1e300));
  EXPECT_EQ(value_of("xsd:float", "-2.5e-3"), Variant(-0.0025));
  EXPECT_EQ(value_of("xsd:decimal", ".5"), Variant(0.5));
  EXPECT_EQ(value_of("xsd:decimal", "5."), Variant(5.0));
}

TEST(ReadValue, OfALargeDecimalIsPlainAsText) {
  EXPECT_EQ(to_text(value_of("xsd:decimal", "100000")), "100000");
  EXPECT_EQ(to_text(value_of("xsd:double", "-0")), "0");
}

TEST(ReadValue, OfFloatsKnowsInfinityAndNoNumber) {
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(value_of("xsd:double", "INF"), Variant(infinity));
  EXPECT_EQ(value_of("xsd:double", "-INF"), Variant(-infinity));
  EXPECT_TRUE(std::isnan(value_of("xsd:float", "NaN").number()));
  EXPECT_EQ(value_of("xsd:double", "1e-999"), Variant(0.0));
}

TEST(ReadValue, OfBooleansIsWordOrDigit) {
  EXPECT_EQ(value_of("xsd:boolean", "true"), Variant(true));
  EXPECT_EQ(value_of("xsd:boolean", "false"), Variant(false));
  EXPECT_EQ(value_of("xsd:boolean", " 1 "), Variant(true));
  EXPECT_EQ(value_of("xsd:boolean", "0"), Variant(false));
}

TEST(ReadValue, OfStringsIsKeptAsItStands) {
  EXPECT_EQ(value_of("xsd:string", " true "), Variant(" true "));
  EXPECT_EQ(value_of("soapenc:string", "5"), Variant("5"));
}

TEST(ReadValue, OfBytesComesInTwoForms) {
  const Bytes bytes{std::byte{0x00}, std::byte{0xFF}, std::byte{0x10}, std::byte{0x41}};
  EXPECT_EQ(value_of("xsd:base64Binary", "AP8QQQ=="), Variant(bytes));
  EXPECT_EQ(value_of("soapenc:base64", " AP8Q\nQQ = ="), Variant(bytes));
  EXPECT_EQ(value_of("xsd:hexBinary", "00fF1041"), Variant(bytes));
  EXPECT_EQ(value_of("xsd:hexBinary", ""), Variant(Bytes{}));
  EXPECT_EQ(value_of("xsd:base64Binary", ""), Variant(Bytes{}));
}

TEST(ReadValue, OfDatesHasNoZone) {
  EXPECT_EQ(value_of("xsd:dateTime", "2007-01-05T13:04:09"), moment({.year = 2007,
                                                                     .month = 1,
                                                                     .day = 5,
                                                                     .hour = 13,
                                                                     .minute = 4,
                                                                     .second = 9,
                                                                     .millisecond = 0}));
  EXPECT_EQ(value_of("xsd:dateTime", "2008-02-29T23:59:59.1234567"), moment({.year = 2008,
                                                                             .month = 2,
                                                                             .day = 29,
                                                                             .hour = 23,
                                                                             .minute = 59,
                                                                             .second = 59,
                                                                             .millisecond = 123}));
  EXPECT_EQ(value_of("xsd:dateTime", "2007-12-31T24:00:00"), moment({.year = 2008,
                                                                     .month = 1,
                                                                     .day = 1,
                                                                     .hour = 0,
                                                                     .minute = 0,
                                                                     .second = 0,
                                                                     .millisecond = 0}));
  EXPECT_EQ(value_of("xsd:date", "2007-01-05"), moment({.year = 2007,
                                                        .month = 1,
                                                        .day = 5,
                                                        .hour = 0,
                                                        .minute = 0,
                                                        .second = 0,
                                                        .millisecond = 0}));
}

#if !defined(_WIN32)

/// Sets the zone of the process for the length of a test, as its environment can wherever the
/// system does not keep the zone to itself.
class ZoneOf {
 public:
  explicit ZoneOf(const char* zone) {
    const char* before = getenv("TZ");
    if (before != nullptr) before_ = before;
    had_one_ = before != nullptr;
    setenv("TZ", zone, 1);
    tzset();
  }
  ~ZoneOf() {
    if (had_one_) {
      setenv("TZ", before_.c_str(), 1);
    } else {
      unsetenv("TZ");
    }
    tzset();
  }

 private:
  std::string before_;
  bool had_one_ = false;
};

TEST(ReadValue, OfDatesWithAZoneBecomesLocalTime) {
  const ZoneOf east("EST5EDT,M3.2.0,M11.1.0");
  EXPECT_EQ(value_of("xsd:dateTime", "2007-01-05T03:04:05Z"), moment({.year = 2007,
                                                                      .month = 1,
                                                                      .day = 4,
                                                                      .hour = 22,
                                                                      .minute = 4,
                                                                      .second = 5,
                                                                      .millisecond = 0}));
  EXPECT_EQ(value_of("xsd:dateTime", "2007-07-05T03:04:05.5+02:00"), moment({.year = 2007,
                                                                             .month = 7,
                                                                             .day = 4,
                                                                             .hour = 21,
                                                                             .minute = 4,
                                                                             .second = 5,
                                                                             .millisecond = 500}));
  EXPECT_EQ(value_of("xsd:dateTime", "2007-01-05T03:04:05-05:00"), moment({.year = 2007,
                                                                           .month = 1,
                                                                           .day = 5,
                                                                           .hour = 3,
                                                                           .minute = 4,
                                                                           .second = 5,
                                                                           .millisecond = 0}));
  EXPECT_EQ(value_of("xsd:date", "2007-01-05Z"), moment({.year = 2007,
                                                         .month = 1,
                                                         .day = 5,
                                                         .hour = 0,
                                                         .minute = 0,
                                                         .second = 0,
                                                         .millisecond = 0}))
      << "a day stays the day that it names";
}

TEST(VariantToDate, TakesAMomentWithAZoneAsLocalTimeToo) {
  const ZoneOf east("EST5EDT,M3.2.0,M11.1.0");
  const Date evening = from_civil({.year = 2007, .month = 1, .day = 4, .hour = 22, .minute = 4});
  EXPECT_EQ(to_date("2007-01-05T03:04:00Z"), evening);
  EXPECT_EQ(to_date(" 2007-01-05T05:04:00+02:00\n"), evening);
}

#endif

TEST(ReadValue, OfAQualifiedNameIsResolvedWhereItStands) {
  EXPECT_EQ(first_parameter("<a xmlns:t='urn:t' xsi:type='xsd:QName'> t:x </a>").Value(),
            Variant(QualifiedName{"urn:t", "x"}));
  EXPECT_EQ(first_parameter("<a xmlns:t='urn:t' xsi:type='xsd:QName'>t:x</a>").Type(), "QName");
}

TEST(ReadValue, KnowsTheTypesOfAllThreeSchemas) {
  for (const char* schema :
       {"http://www.w3.org/2001/XMLSchema", "http://www.w3.org/2000/10/XMLSchema",
        "http://www.w3.org/1999/XMLSchema"}) {
    const std::string node = "<a xmlns:s='" + std::string(schema) + "' xmlns:i='" + schema +
                             "-instance' i:type='s:int'>5</a>";
    EXPECT_EQ(first_parameter(node).Value(), Variant(5)) << schema;
  }
  EXPECT_EQ(first_parameter("<a xmlns:s='http://www.w3.org/1999/XMLSchema'"
                            " xsi:type='s:timeInstant'>2007-01-05T00:00:00</a>")
                .Value()
                .type(),
            Type::kDate);
  EXPECT_EQ(value_of("soapenc:int", "6"), Variant(6));
}

TEST(ReadValue, TakesTheTypeFromAnElementNamedAfterOne) {
  EXPECT_EQ(first_parameter("<soapenc:int>5</soapenc:int>").Value(), Variant(5));
  EXPECT_EQ(first_parameter("<soapenc:int>5</soapenc:int>").Type(), "");
}

TEST(ReadValue, AnUnprefixedTypeIsInTheDefaultNamespace) {
  EXPECT_EQ(
      first_parameter("<a xmlns='http://www.w3.org/2001/XMLSchema' xsi:type='int'>5</a>").Value(),
      Variant(5));
}

TEST(ReadValue, ThatDoesNotFitItsTypeFailsWith13AndNamesBoth) {
  const Error error = error_of([] { value_of("xsd:int", "12x"); });
  EXPECT_EQ(error.number, 13);
  EXPECT_EQ(error.source, "BVConn");
  EXPECT_EQ(error.description,
            "Type mismatch: the text \"12x\" of the node \"a\" is not of its type int");
  expect_mismatch("xsd:int", "");
  expect_mismatch("xsd:int", "1.5");
  expect_mismatch("xsd:int", "+-5");
  expect_mismatch("xsd:int", "2147483648");
  expect_mismatch("xsd:short", "40000");
  expect_mismatch("xsd:unsignedByte", "-1");
  expect_mismatch("xsd:positiveInteger", "0");
  expect_mismatch("xsd:long", "9223372036854775808");
  expect_mismatch("xsd:double", "");
  expect_mismatch("xsd:double", "inf");
  expect_mismatch("xsd:double", "nan");
  expect_mismatch("xsd:double", "1,5");
  expect_mismatch("xsd:double", "1e999");
  expect_mismatch("xsd:double", "0x10");
  expect_mismatch("xsd:boolean", "True");
  expect_mismatch("xsd:boolean", "yes");
  expect_mismatch("xsd:base64Binary", "AP8");
  expect_mismatch("xsd:base64Binary", "A===");
  expect_mismatch("xsd:base64Binary", "AP8Q!QQ=");
  expect_mismatch("xsd:base64Binary", "AA==AAAA");
  expect_mismatch("xsd:hexBinary", "0");
  expect_mismatch("xsd:hexBinary", "0g");
}

TEST(ReadValue, DatesThatDoNotExistFailWith13) {
  for (const char* text : {"",
                           "2007-01-05",
                           "2007-02-29T00:00:00",
                           "2007-13-01T00:00:00",
                           "2007-00-01T00:00:00",
                           "2007-01-32T00:00:00",
                           "0000-01-01T00:00:00",
                           "2007-01-05T24:00:01",
                           "2007-01-05T23:60:00",
                           "2007-01-05T23:59:60",
                           "2007-01-05T00:00:00.",
                           "2007-01-05T00:00:00+15:00",
                           "2007-01-05T00:00:00+0100",
                           "2007-01-05T00:00:00 x",
                           "2007-01-05 00:00:00",
                           "1/5/2007",
                           "2007-01-05T1:04:09",
                           "2007-01-05T13-04:09",
                           "2007-01-05T13:04",
                           "2007-01-05T13:04:0x"}) {
    expect_mismatch("xsd:dateTime", text);
  }
  expect_mismatch("xsd:date", "2007-01-05T00:00:00");
}

TEST(ReadValue, TheRestOfTheReplyIsReadableBesideAnUnfitValue) {
  const SoapEnvelope reply =
      soap_test::parsed("<r><a xsi:type='xsd:int'>x</a><b xsi:type='xsd:int'>2</b></r>");
  EXPECT_EQ(reply.Parameters().Item(1).Value(), Variant(2));
  EXPECT_EQ(error_of([&] { reply.Parameters().Item(0).Value(); }).number, 13);
}

TEST(ReadValue, NilIsEmptyAndTold) {
  for (const char* nil : {"xsi:nil='true'", "xsi:nil='1'", "xsi:nil=' true '",
                          "xmlns:i='http://www.w3.org/1999/XMLSchema-instance' i:null='1'",
                          "xmlns:i='http://www.w3.org/1999/XMLSchema-instance' i:null='true'",
                          "xsi:type='xsd:int' xsi:nil='true'"}) {
    const SoapNode node = first_parameter("<a " + std::string(nil) + "/>");
    EXPECT_TRUE(node.nil()) << nil;
    EXPECT_TRUE(node.Value().empty()) << nil;
  }
}

TEST(ReadValue, NilThatIsFalseIsAnOrdinaryElement) {
  for (const char* nil : {"xsi:nil='false'", "xsi:nil='0'", "nil='true'"}) {
    const SoapNode node = first_parameter("<a " + std::string(nil) + ">x</a>");
    EXPECT_FALSE(node.nil()) << nil;
    EXPECT_EQ(node.Value(), Variant("x")) << nil;
  }
}

TEST(ReadValue, OfANodeWithChildrenIsANodeWithTheSameNameAndNodes) {
  const SoapNode node = first_parameter("<order><a>1</a><b>2</b></order>");
  const SoapNode value = to_node(node.Value());
  EXPECT_EQ(value.Name(), "order");
  EXPECT_EQ(soap_test::names_of(value.Nodes()), "a b");
  EXPECT_EQ(value.Nodes().Item(1), node.Nodes().Item(1));
}

}  // namespace
}  // namespace bvconn
