#include <cmath>
#include <limits>
#include <vector>

#include "soap/soap_test.h"

namespace bvconn {
namespace {

using soap_test::parameters_text;
using soap_test::written;
using test::error_of;

// What stands in front of the Body of a request without headers.
const std::string kStart =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
    "<SOAP-ENV:Envelope xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\""
    " xmlns:SOAP-ENC=\"http://schemas.xmlsoap.org/soap/encoding/\""
    " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
    " xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\">";
const std::string kEnd = "</SOAP-ENV:Body></SOAP-ENV:Envelope>";

TEST(SoapEnvelope, AnyUseOfAnEmptyReferenceFailsWith91) {
  const SoapEnvelope none;
  EXPECT_FALSE(none);
  EXPECT_EQ(error_of([&] { none.Serialize(); }).number, 91);
  EXPECT_EQ(error_of([&] { none.Parse("<a/>", ""); }).number, 91);
  EXPECT_EQ(error_of([&] { none.Headers(); }).number, 91);
  EXPECT_EQ(error_of([&] { none.Parameters(); }).number, 91);
  EXPECT_EQ(error_of([&] { none.SetMethod("m", "u"); }).number, 91);
  EXPECT_EQ(error_of([&] { none.MethodName(); }).number, 91);
  EXPECT_EQ(error_of([&] { none.EncodingStyle(); }).number, 91);
  EXPECT_EQ(error_of([&] { none.EncodingStyle("s"); }).number, 91);
}

TEST(SoapEnvelope, CopiesShareOneEnvelope) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  const SoapEnvelope copy = envelope;
  envelope.SetMethod("getOrder", "urn:O");
  EXPECT_EQ(copy.MethodName(), "getOrder");
  EXPECT_EQ(copy, envelope);
  EXPECT_NE(SoapEnvelope::make(), envelope);
}

TEST(Serialize, WritesHeadersMethodAndParametersInOrder) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.Headers().Create("userID", "S1", "", "", "");
  envelope.SetMethod("getInvoice", "urn:InvoiceService");
  envelope.Parameters().Create("param", "U1", "", "", "");
  envelope.Parameters().Create("param_bool", true, "", "", "");
  EXPECT_EQ(envelope.Serialize(),
            kStart +
                "<SOAP-ENV:Header><userID xsi:type=\"xsd:string\">S1</userID></SOAP-ENV:Header>"
                "<SOAP-ENV:Body><m:getInvoice xmlns:m=\"urn:InvoiceService\">"
                "<param xsi:type=\"xsd:string\">U1</param>"
                "<param_bool xsi:type=\"xsd:boolean\">true</param_bool>"
                "</m:getInvoice>" +
                kEnd);
}

TEST(Serialize, IsTheSameEachTime) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.SetMethod("op", "urn:x");
  envelope.Parameters().Create("p", StringArray{"a", "b"}, "urn:p", "T", "urn:t");
  const std::string once = envelope.Serialize();
  EXPECT_EQ(envelope.Serialize(), once);
}

TEST(Serialize, LeavesTheHeaderOutWhenItHasNoChildren) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.SetMethod("ping", "urn:p");
  EXPECT_EQ(envelope.Serialize(), kStart + "<SOAP-ENV:Body><m:ping xmlns:m=\"urn:p\"/>" + kEnd);
}

TEST(Serialize, AnEmptySessionIdStillMakesTheHeader) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.Headers().Create("userID", "");
  envelope.SetMethod("ping", "urn:p");
  EXPECT_EQ(envelope.Serialize(),
            kStart +
                "<SOAP-ENV:Header><userID xsi:type=\"xsd:string\"/></SOAP-ENV:Header>"
                "<SOAP-ENV:Body><m:ping xmlns:m=\"urn:p\"/>" +
                kEnd);
}

TEST(Serialize, AMethodWithoutNamespaceHasNoPrefix) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.SetMethod("ping", "");
  EXPECT_EQ(envelope.Serialize(), kStart + "<SOAP-ENV:Body><ping/>" + kEnd);
  envelope.Parameters().Create("p", "1");
  EXPECT_EQ(envelope.Serialize(),
            kStart + "<SOAP-ENV:Body><ping><p xsi:type=\"xsd:string\">1</p></ping>" + kEnd);
}

TEST(Serialize, WritesTheEncodingStyleOnceItWasSet) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  EXPECT_EQ(envelope.EncodingStyle(), "");
  envelope.SetMethod("op", "urn:o");
  envelope.EncodingStyle(kSoapEncoding);
  EXPECT_EQ(envelope.EncodingStyle(), "http://schemas.xmlsoap.org/soap/encoding/");
  EXPECT_EQ(envelope.Serialize(),
            kStart +
                "<SOAP-ENV:Body><m:op xmlns:m=\"urn:o\" SOAP-ENV:encodingStyle="
                "\"http://schemas.xmlsoap.org/soap/encoding/\"/>" +
                kEnd);
}

TEST(Serialize, DerivesTheTypeFromTheValue) {
  EXPECT_EQ(written("text"), "<p xsi:type=\"xsd:string\">text</p>");
  EXPECT_EQ(written(""), "<p xsi:type=\"xsd:string\"/>");
  EXPECT_EQ(written(true), "<p xsi:type=\"xsd:boolean\">true</p>");
  EXPECT_EQ(written(false), "<p xsi:type=\"xsd:boolean\">false</p>");
  EXPECT_EQ(written(std::int16_t{-5}), "<p xsi:type=\"xsd:short\">-5</p>");
  EXPECT_EQ(written(70000), "<p xsi:type=\"xsd:int\">70000</p>");
  EXPECT_EQ(written(std::int64_t{5'000'000'000}), "<p xsi:type=\"xsd:long\">5000000000</p>");
  EXPECT_EQ(written(from_civil({.year = 2007,
                                .month = 1,
                                .day = 5,
                                .hour = 0,
                                .minute = 0,
                                .second = 0,
                                .millisecond = 0})),
            "<p xsi:type=\"xsd:dateTime\">2007-01-05T00:00:00</p>");
}

TEST(Serialize, WritesFloatsInTheirShortestText) {
  using Limits = std::numeric_limits<double>;
  EXPECT_EQ(written(0.1), "<p xsi:type=\"xsd:double\">0.1</p>");
  EXPECT_EQ(written(2.0), "<p xsi:type=\"xsd:double\">2</p>");
  EXPECT_EQ(written(100000.0), "<p xsi:type=\"xsd:double\">1e+05</p>");
  EXPECT_EQ(written(4500000000.0), "<p xsi:type=\"xsd:double\">4.5e+09</p>");
  EXPECT_EQ(written(1e-5), "<p xsi:type=\"xsd:double\">1e-05</p>");
  EXPECT_EQ(written(-0.0), "<p xsi:type=\"xsd:double\">-0</p>");
  EXPECT_EQ(written(Limits::infinity()), "<p xsi:type=\"xsd:double\">INF</p>");
  EXPECT_EQ(written(-Limits::infinity()), "<p xsi:type=\"xsd:double\">-INF</p>");
  EXPECT_EQ(written(Limits::quiet_NaN()), "<p xsi:type=\"xsd:double\">NaN</p>");
}

TEST(Serialize, WritesBytesInBase64) {
  const auto bytes = [](std::string_view text) {
    Bytes made;
    for (const char c : text) made.push_back(static_cast<std::byte>(c));
    return made;
  };
  EXPECT_EQ(written(bytes("")), "<p xsi:type=\"xsd:base64Binary\"/>");
  EXPECT_EQ(written(bytes("f")), "<p xsi:type=\"xsd:base64Binary\">Zg==</p>");
  EXPECT_EQ(written(bytes("fo")), "<p xsi:type=\"xsd:base64Binary\">Zm8=</p>");
  EXPECT_EQ(written(bytes("foo")), "<p xsi:type=\"xsd:base64Binary\">Zm9v</p>");
  EXPECT_EQ(written(bytes("foobar")), "<p xsi:type=\"xsd:base64Binary\">Zm9vYmFy</p>");
  EXPECT_EQ(written(bytes("\xFF\xFE\xFB")), "<p xsi:type=\"xsd:base64Binary\">//77</p>");
}

TEST(Serialize, WritesNothingAsNil) {
  EXPECT_EQ(written(Variant()), "<p xsi:nil=\"true\"/>");
  EXPECT_EQ(written(Variant::Missing{}), "<p xsi:nil=\"true\"/>");
  EXPECT_EQ(written(SoapNode()), "<p xsi:nil=\"true\"/>");
}

TEST(Serialize, WritesAMadeNodeWithoutValueAsAnEmptyElement) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.Parameters().Append(SoapNode::make("List"));
  EXPECT_EQ(parameters_text(envelope), "<List/>");
}

TEST(Serialize, WritesAnArrayOfStrings) {
  EXPECT_EQ(written(StringArray{"a", "", "c"}),
            "<p xsi:type=\"SOAP-ENC:Array\" SOAP-ENC:arrayType=\"xsd:string[3]\">"
            "<item>a</item><item/><item>c</item></p>");
}

TEST(Serialize, WritesAnArrayWithoutItemsAllocatedOrNot) {
  const std::string empty = "<p xsi:type=\"SOAP-ENC:Array\" SOAP-ENC:arrayType=\"xsd:string[0]\"/>";
  EXPECT_EQ(written(StringArray(std::vector<std::string>{})), empty);
  EXPECT_EQ(written(StringArray()), empty);
}

TEST(Serialize, WritesAnArrayOfDifferentTypesWithTheTypeOfEachItem) {
  const SoapNode node = SoapNode::make("own name");
  node.Nodes().Create("a", "1");
  const VariantArray array(std::vector<Variant>{"s", 5, Variant(), node});
  EXPECT_EQ(written(array),
            "<p xsi:type=\"SOAP-ENC:Array\" SOAP-ENC:arrayType=\"xsd:anyType[4]\">"
            "<item xsi:type=\"xsd:string\">s</item><item xsi:type=\"xsd:int\">5</item>"
            "<item xsi:nil=\"true\"/><item><a xsi:type=\"xsd:string\">1</a></item></p>");
  EXPECT_EQ(written(VariantArray(std::vector<Variant>{1, 2})),
            "<p xsi:type=\"SOAP-ENC:Array\" SOAP-ENC:arrayType=\"xsd:anyType[2]\">"
            "<item xsi:type=\"xsd:int\">1</item><item xsi:type=\"xsd:int\">2</item></p>");
}

TEST(Serialize, WritesArraysInArrays) {
  const VariantArray array(std::vector<Variant>{StringArray{"a"}, StringArray{"b", "c"}});
  EXPECT_EQ(written(array),
            "<p xsi:type=\"SOAP-ENC:Array\" SOAP-ENC:arrayType=\"xsd:anyType[2]\">"
            "<item xsi:type=\"SOAP-ENC:Array\" SOAP-ENC:arrayType=\"xsd:string[1]\">"
            "<item>a</item></item>"
            "<item xsi:type=\"SOAP-ENC:Array\" SOAP-ENC:arrayType=\"xsd:string[2]\">"
            "<item>b</item><item>c</item></item></p>");
}

TEST(Serialize, WritesAWrappedNodeUnderTheOuterName) {
  const SoapNode project = node_from_xml("<Project><Name>N</Name></Project>");
  EXPECT_EQ(written(project), "<p><Name>N</Name></p>");
  EXPECT_EQ(project.Name(), "Project");
}

TEST(Serialize, WritesAnAppendedNodeUnderItsOwnName) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.Parameters().Append(node_from_xml("<Project><Name>N</Name></Project>"));
  EXPECT_EQ(parameters_text(envelope), "<Project><Name>N</Name></Project>");
}

TEST(Serialize, AWrappedSimpleNodeTakesItsTypeAlong) {
  SoapNode inner = SoapNode::make("inner");
  inner.Value(std::int16_t{3});
  EXPECT_EQ(written(inner), "<p xsi:type=\"xsd:short\">3</p>");
  inner.Value(Variant());
  EXPECT_EQ(written(inner), "<p xsi:nil=\"true\"/>");
}

TEST(Serialize, ANodeAppendedTwiceIsWrittenTwice) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  const SoapNode node = node_from_xml("<a><b>1</b></a>");
  envelope.Parameters().Append(node);
  envelope.Parameters().Append(node);
  EXPECT_EQ(parameters_text(envelope), "<a><b>1</b></a><a><b>1</b></a>");
}

TEST(Serialize, WritesAnExplicitTypeInsteadOfTheDerivedOne) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  SoapNodes& parameters = envelope.Parameters();
  parameters.Create("a", "1", "", "string", "http://www.w3.org/2001/XMLSchema");
  parameters.Create("b", "2", "", "GID", "urn:types");
  parameters.Create("c", "3", "", "alone", "");
  parameters.Create("d", Variant(), "", "string", "http://www.w3.org/2001/XMLSchema");
  EXPECT_EQ(parameters_text(envelope),
            "<a xsi:type=\"xsd:string\">1</a>"
            "<b xmlns:t=\"urn:types\" xsi:type=\"t:GID\">2</b>"
            "<c xsi:type=\"alone\">3</c>"
            "<d xsi:type=\"xsd:string\" xsi:nil=\"true\"/>");
}

TEST(Serialize, WritesNamespacesOfParametersWithPrefixes) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.SetMethod("op", "urn:method");
  const SoapNode a = node_from_xml("<a xmlns='urn:a'><b/><c xmlns='urn:c'/><d xmlns=''/></a>");
  envelope.Parameters().Append(a);
  envelope.Parameters().Append(node_from_xml("<e xmlns='urn:method'/>"));
  envelope.Parameters().Append(
      node_from_xml("<f xmlns='http://schemas.xmlsoap.org/soap/encoding/'/>"));
  EXPECT_EQ(envelope.Serialize(),
            kStart +
                "<SOAP-ENV:Body><m:op xmlns:m=\"urn:method\">"
                "<n:a xmlns:n=\"urn:a\"><n:b/><n:c xmlns:n=\"urn:c\"/><d/></n:a>"
                "<m:e/><SOAP-ENC:f/></m:op>" +
                kEnd);
}

TEST(Serialize, AnInnerNamespaceDoesNotOutliveItsElement) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.Parameters().Append(node_from_xml("<a xmlns='urn:a'><b xmlns='urn:b'><c/></b><d/></a>"));
  EXPECT_EQ(parameters_text(envelope),
            "<n:a xmlns:n=\"urn:a\"><n:b xmlns:n=\"urn:b\"><n:c/></n:b><n:d/></n:a>");
}

TEST(Serialize, WritesAQualifiedNameWithItsNamespace) {
  EXPECT_EQ(written(QualifiedName{"urn:codes", "Server.Auth"}),
            "<p xsi:type=\"xsd:QName\" xmlns:q=\"urn:codes\">q:Server.Auth</p>");
  EXPECT_EQ(written(QualifiedName{"", "10041"}), "<p xsi:type=\"xsd:QName\">10041</p>");
}

TEST(Serialize, EscapesWhatAReaderWouldTakeForMarkup) {
  EXPECT_EQ(written("a<b>&\"'c]]>"), "<p xsi:type=\"xsd:string\">a&lt;b&gt;&amp;\"'c]]&gt;</p>");
}

TEST(Serialize, KeepsLineEndsAndTabs) {
  EXPECT_EQ(written("a\r\nb\tc\rd"), "<p xsi:type=\"xsd:string\">a&#13;\nb\tc&#13;d</p>");
}

TEST(Serialize, EscapesQuotesAndWhiteSpaceInAttributes) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.SetMethod("op", "urn:<\"a\n\tb\"&");
  EXPECT_EQ(
      envelope.Serialize(),
      kStart + "<SOAP-ENV:Body><m:op xmlns:m=\"urn:&lt;&quot;a&#10;&#9;b&quot;&amp;\"/>" + kEnd);
}

TEST(Serialize, WritesCharactersBeyondAsciiAsTheyAre) {
  const std::string text = "\xC3\xA4 \xE2\x82\xAC \xF0\x9F\x92\xA1 \x7F \xC2\x85";
  EXPECT_EQ(written(text), "<p xsi:type=\"xsd:string\">" + text + "</p>");
}

TEST(Serialize, RefusesCharactersThatXmlCannotCarry) {
  using namespace std::string_view_literals;
  for (const auto text : {"\0"sv, "a\x01"sv, "\x1F"sv, "\xEF\xBF\xBE"sv, "\xEF\xBF\xBF"sv}) {
    EXPECT_EQ(hex_number(error_of([&] { written(text); }).number), "0x80044205");
  }
  const Error error = error_of([] { written("bell\a"); });
  EXPECT_EQ(error.source, "SoapEnvelope");
  EXPECT_EQ(error.description,
            "The text of the element \"p\" holds U+0007, which XML cannot carry");
}

TEST(Serialize, RefusesTextThatIsNotUtf8) {
  for (const char* text : {"\x80", "\xC3", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80"}) {
    const Error error = error_of([&] { written(text); });
    EXPECT_EQ(hex_number(error.number), "0x80044205");
    EXPECT_EQ(
        error.description,
        "The text of the element \"p\" holds bytes that are not UTF-8, which XML cannot carry");
  }
}

TEST(Serialize, RefusesItInAttributesToo) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.SetMethod("op", "urn:\x02");
  EXPECT_EQ(hex_number(error_of([&] { envelope.Serialize(); }).number), "0x80044205");
}

TEST(Serialize, RefusesWhatIsNoElementName) {
  for (const char* name : {"", "1a", "a b", "-a", "a:b", "a<b", "\xC3\x97", "a\x80"}) {
    const SoapEnvelope envelope = SoapEnvelope::make();
    envelope.SetMethod("op", "urn:o");
    envelope.Parameters().Create(name, "1");
    EXPECT_EQ(hex_number(error_of([&] { envelope.Serialize(); }).number), "0x80044205") << name;
    const SoapEnvelope method = SoapEnvelope::make();
    method.SetMethod(name, "urn:o");
    method.Parameters().Create("p", "1");
    EXPECT_EQ(hex_number(error_of([&] { method.Serialize(); }).number), "0x80044205") << name;
  }
}

TEST(Serialize, AcceptsNamesInAnyScript) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.Parameters().Create(
      "Gr\xC3\xB6\xC3\x9F"
      "e_1.x-y",
      "1");
  EXPECT_EQ(parameters_text(envelope),
            "<Gr\xC3\xB6\xC3\x9F"
            "e_1.x-y xsi:type=\"xsd:string\">1</Gr\xC3\xB6\xC3\x9F"
            "e_1.x-y>");
}

TEST(Serialize, RefusesTheNamespaceThatIsReservedForDeclarations) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.SetMethod("op", "");
  envelope.Parameters().Create("p", "1", "http://www.w3.org/2000/xmlns/");
  EXPECT_EQ(hex_number(error_of([&] { envelope.Serialize(); }).number), "0x80044205");
}

TEST(Serialize, WritesTheNamespaceOfXmlUnderItsOwnPrefix) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.Parameters().Append(node_from_xml("<xml:p>1</xml:p>"));
  EXPECT_EQ(parameters_text(envelope), "<xml:p>1</xml:p>");
}

TEST(Serialize, ATreeThatContainsItselfIsALimitPassed) {
  SoapNode node = SoapNode::make("loop");
  const SoapNode child = node.Nodes().Create("child", Variant());
  child.Nodes().Append(node);
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.SetMethod("op", "urn:o");
  envelope.Parameters().Append(node);
  const Error error = error_of([&] { envelope.Serialize(); });
  EXPECT_EQ(hex_number(error.number), "0x80044206");
  EXPECT_EQ(error.source, "SoapEnvelope");
  node.Value("");  // opens the circle, which would never be freed
}

TEST(Serialize, AfterAParseWritesWhatWasRead) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.Headers().Create("userID", "S & T");
  envelope.EncodingStyle(kSoapEncoding);
  envelope.SetMethod("getThings", "urn:Things");
  envelope.Parameters().Create("text", " a\r\n<b>\t ");
  envelope.Parameters().Create("count", std::int16_t{7}, "urn:c");
  envelope.Parameters().Create("list", StringArray{"x", "y"});
  envelope.Parameters().Create("mixed", VariantArray(std::vector<Variant>{1, "b", Variant()}));
  envelope.Parameters().Create("nothing", Variant());
  envelope.Parameters().Create("name", QualifiedName{"urn:q", "local"});
  envelope.Parameters().Create("typed", "1", "", "GID", "urn:types");
  const std::string text = envelope.Serialize();
  envelope.Parse(text, "");
  EXPECT_EQ(envelope.Serialize(), text);
  EXPECT_EQ(envelope.MethodName(), "getThings");
  EXPECT_EQ(envelope.EncodingStyle(), kSoapEncoding);
}

}  // namespace
}  // namespace bvconn
