#include "soap/soap_test.h"

namespace bvconn {
namespace {

using soap_test::first_parameter;
using soap_test::names_of;
using soap_test::parsed;
using soap_test::reply_text;
using test::error_of;

constexpr std::string_view kFault =
    "<soapenv:Fault><faultcode xmlns:f='urn:codes'>f:10041</faultcode>"
    "<faultstring>No such invoice</faultstring><detail><a>1</a></detail></soapenv:Fault>";

/// The number of the error that a Parse of this text fails with.
std::string failure(std::string text, std::string_view encoding = "") {
  const SoapEnvelope envelope = SoapEnvelope::make();
  const Error error = error_of([&] { envelope.Parse(std::move(text), encoding); });
  EXPECT_EQ(error.source, "SoapEnvelope");
  return hex_number(error.number);
}

TEST(Parse, TakesTheChildrenOfTheBodysFirstElement) {
  const SoapEnvelope reply = parsed(
      "<ns1:getInvoiceResponse xmlns:ns1='urn:I'><a>1</a><b><c>2</c></b></ns1:getInvoiceResponse>");
  EXPECT_EQ(reply.MethodName(), "getInvoiceResponse");
  EXPECT_EQ(names_of(reply.Parameters()), "a b");
  EXPECT_EQ(reply.Parameters().Item(0).Value(), Variant("1"));
  EXPECT_EQ(reply.Parameters().Item(1).Nodes().Item(0).Value(), Variant("2"));
}

TEST(Parse, ResultsAreFoundByPositionAndLocalName) {
  const SoapEnvelope reply = parsed("<r><x:s-gensym22 xmlns:x='urn:x'>1</x:s-gensym22></r>");
  EXPECT_EQ(reply.Parameters().Item(0).Value(), Variant("1"));
  EXPECT_EQ(reply.Parameters().ItemByName("s-gensym22", "").Namespace(), "urn:x");
  EXPECT_EQ(reply.Parameters().ItemByName("s-gensym22", "urn:x").Value(), Variant("1"));
}

TEST(Parse, ReadsTheHeaders) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.Parse(
      "<e:Envelope xmlns:e='http://schemas.xmlsoap.org/soap/envelope/'>"
      "<e:Header><userID>S1</userID></e:Header><e:Body><op/></e:Body></e:Envelope>",
      "");
  EXPECT_EQ(envelope.Headers().ItemByName("userID").Value(), Variant("S1"));
  EXPECT_EQ(envelope.MethodName(), "op");
  EXPECT_EQ(envelope.Parameters().Count(), 0U);
}

TEST(Parse, ReplacesAllThatTheRequestHeld) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.Headers().Create("userID", "S1");
  envelope.EncodingStyle(kSoapEncoding);
  envelope.SetMethod("ask", "urn:q");
  envelope.Parameters().Create("question", "6*9");
  envelope.Parse(reply_text("<askResponse><answer>42</answer></askResponse>"), "");
  EXPECT_EQ(envelope.MethodName(), "askResponse");
  EXPECT_EQ(envelope.EncodingStyle(), "");
  EXPECT_EQ(envelope.Headers().Count(), 0U);
  EXPECT_EQ(names_of(envelope.Parameters()), "answer");
}

TEST(Parse, AnEmptyBodyIsNoParametersAndNoMethod) {
  const SoapEnvelope reply = parsed("");
  EXPECT_EQ(reply.MethodName(), "");
  EXPECT_EQ(reply.Parameters().Count(), 0U);
  EXPECT_EQ(hex_number(error_of([&] { reply.Parameters().Item(0); }).number), "0x80044204");
  const std::string text = reply.Serialize();
  EXPECT_TRUE(text.ends_with("<SOAP-ENV:Body/></SOAP-ENV:Envelope>")) << text;
}

TEST(Parse, NoBytesAreNotWellFormed) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  const Error error = error_of([&] { envelope.Parse("", ""); });
  EXPECT_EQ(hex_number(error.number), "0x80044202");
  EXPECT_EQ(error.description, "The reply is empty");
}

TEST(Parse, WhatIsNotWellFormedIsRefusedWithItsPlace) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  const Error error = error_of([&] { envelope.Parse("<a>\n<b></a>", ""); });
  EXPECT_EQ(hex_number(error.number), "0x80044202");
  EXPECT_EQ(error.source, "SoapEnvelope");
  EXPECT_TRUE(error.description.starts_with("The reply is not well-formed XML: line 2, column "))
      << error.description;
  EXPECT_EQ(failure("no XML at all"), "0x80044202");
  EXPECT_EQ(failure("<a/>"), "0x80044203");
  EXPECT_EQ(failure("<!DOCTYPE a><a/>"), "0x80044202");
  EXPECT_EQ(failure(reply_text("<a>&nbsp;</a>")), "0x80044202");
  EXPECT_EQ(failure(reply_text("<a/>").substr(0, 200)), "0x80044202");
  EXPECT_EQ(failure(reply_text("<x:a/>")), "0x80044202");
}

TEST(Parse, AnotherDocumentIsNoEnvelope) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  const Error error = error_of([&] { envelope.Parse("<html><body/></html>", ""); });
  EXPECT_EQ(hex_number(error.number), "0x80044203");
  EXPECT_EQ(error.description,
            "The reply is not a SOAP 1.1 envelope: the document element is \"html\"");
  EXPECT_EQ(failure("<Envelope><Body/></Envelope>"), "0x80044203");
  EXPECT_EQ(failure("<e:Envelope xmlns:e='http://schemas.xmlsoap.org/soap/envelope/'/>"),
            "0x80044203");
  EXPECT_EQ(failure("<e:Body xmlns:e='http://schemas.xmlsoap.org/soap/envelope/'/>"), "0x80044203");
}

TEST(Parse, AnEnvelopeOfSoap12IsRefusedByName) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  const Error error = error_of([&] {
    envelope.Parse(
        "<e:Envelope xmlns:e='http://www.w3.org/2003/05/soap-envelope'>"
        "<e:Body><a/></e:Body></e:Envelope>",
        "");
  });
  EXPECT_EQ(hex_number(error.number), "0x80044203");
  EXPECT_NE(error.description.find("SOAP 1.2"), std::string::npos) << error.description;
}

TEST(Parse, AFaultLeavesItsElementsInTheParameters) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  const Error error = error_of([&] { envelope.Parse(reply_text(kFault), ""); });
  EXPECT_EQ(hex_number(error.number), "0x80044201");
  EXPECT_EQ(error.source, "SoapEnvelope");
  EXPECT_EQ(error.description, "The reply is a SOAP fault");
  EXPECT_EQ(envelope.MethodName(), "Fault");
  EXPECT_EQ(names_of(envelope.Parameters()), "faultcode faultstring detail");
  EXPECT_EQ(envelope.Parameters().ItemByName("faultstring").Value(), Variant("No such invoice"));
}

TEST(Parse, AFaultWrittenAgainIsAFaultAgain) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  error_of([&] { envelope.Parse(reply_text(kFault), ""); });
  const SoapEnvelope second = SoapEnvelope::make();
  EXPECT_EQ(hex_number(error_of([&] { second.Parse(envelope.Serialize(), ""); }).number),
            "0x80044201");
  EXPECT_EQ(second.Parameters().Item(0).Value(), Variant(QualifiedName{"urn:codes", "10041"}));
}

TEST(Parse, AFaultElsewhereIsNoFault) {
  EXPECT_EQ(parsed("<r><soapenv:Fault/></r>").MethodName(), "r");
  EXPECT_EQ(parsed("<Fault><faultcode>1</faultcode></Fault>").Parameters().Item(0).Value(),
            Variant("1"));
}

/// The value of the faultcode element of a fault.
Variant fault_code(std::string_view element, std::string_view declarations = "") {
  const SoapEnvelope envelope = SoapEnvelope::make();
  const std::string fault = "<soapenv:Fault" + std::string(declarations) + ">" +
                            std::string(element) + "</soapenv:Fault>";
  error_of([&] { envelope.Parse(reply_text(fault), ""); });
  return envelope.Parameters().ItemByName("faultcode", "").Value();
}

TEST(FaultCode, IsAQualifiedNameResolvedWhereItStands) {
  EXPECT_EQ(fault_code("<faultcode>soapenv:Server</faultcode>"),
            Variant(QualifiedName{"http://schemas.xmlsoap.org/soap/envelope/", "Server"}));
  EXPECT_EQ(fault_code("<faultcode> f:10041\n</faultcode>", " xmlns:f='urn:outer'"),
            Variant(QualifiedName{"urn:outer", "10041"}));
  EXPECT_EQ(fault_code("<faultcode xmlns:f='urn:inner'>f:1</faultcode>", " xmlns:f='urn:outer'"),
            Variant(QualifiedName{"urn:inner", "1"}));
}

TEST(FaultCode, WithoutPrefixIsInTheDefaultNamespaceOrInNone) {
  EXPECT_EQ(fault_code("<faultcode>10041</faultcode>"), Variant(QualifiedName{"", "10041"}));
  EXPECT_EQ(fault_code("<faultcode xmlns='urn:d'>10041</faultcode>"),
            Variant(QualifiedName{"urn:d", "10041"}));
}

TEST(FaultCode, WithAnUndeclaredPrefixKeepsItsLocalPart) {
  EXPECT_EQ(fault_code("<faultcode>nowhere:10041</faultcode>"),
            Variant(QualifiedName{"", "10041"}));
}

TEST(FaultCode, LosesTheBlanksBehindItsPrefix) {
  EXPECT_EQ(fault_code("<faultcode>soapenv: 10041</faultcode>"),
            Variant(QualifiedName{"http://schemas.xmlsoap.org/soap/envelope/", "10041"}));
  EXPECT_EQ(fault_code("<faultcode>a:101:\t no '2'</faultcode>"),
            Variant(QualifiedName{"", "no '2'"}));
}

TEST(FaultCode, IsAQualifiedNameWhateverItsType) {
  EXPECT_EQ(fault_code("<faultcode xsi:type='xsd:QName'>soapenv:Client</faultcode>"),
            Variant(QualifiedName{"http://schemas.xmlsoap.org/soap/envelope/", "Client"}));
  EXPECT_EQ(to_text(fault_code("<faultcode xsi:type='xsd:string'>10011</faultcode>")), "10011");
}

TEST(FaultCode, IsFoundInANamespaceToo) {
  EXPECT_EQ(to_text(fault_code("<soapenv:faultcode>soapenv:7</soapenv:faultcode>")), "7");
}

TEST(FaultCode, OutsideAFaultIsOrdinaryText) {
  EXPECT_EQ(first_parameter("<faultcode>a:1</faultcode>").Value(), Variant("a:1"));
}

TEST(Parse, ThatFailsLeavesTheEnvelopeAsItWas) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.Headers().Create("userID", "S1");
  envelope.SetMethod("op", "urn:o");
  envelope.EncodingStyle("style");
  envelope.Parameters().Create("p", "1");
  const std::string before = envelope.Serialize();
  for (const std::string& text :
       {std::string(), std::string("<a"), std::string("<a/>"),
        reply_text("<r><a href='#none'/></r>"), reply_text("<r id='1'><a href='#1'/></r>")}) {
    error_of([&] { envelope.Parse(text, ""); });
    EXPECT_EQ(envelope.Serialize(), before) << text;
  }
}

TEST(Parse, TheEncodingArgumentOverridesTheDeclaration) {
  const std::string text =
      "<?xml version='1.0' encoding='UTF-8'?>"
      "<e:Envelope xmlns:e='http://schemas.xmlsoap.org/soap/envelope/'>"
      "<e:Body><r><a>\xE4</a></r></e:Body></e:Envelope>";
  EXPECT_EQ(failure(text), "0x80044202");
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.Parse(text, "ISO-8859-1");
  EXPECT_EQ(envelope.Parameters().Item(0).Value(), Variant("\xC3\xA4"));
}

TEST(Parse, TheDeclarationDecidesWithoutTheArgument) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.Parse(
      "<?xml version='1.0' encoding='windows-1252'?>"
      "<e:Envelope xmlns:e='http://schemas.xmlsoap.org/soap/envelope/'>"
      "<e:Body><r><a>\x80</a></r></e:Body></e:Envelope>",
      "");
  EXPECT_EQ(envelope.Parameters().Item(0).Value(), Variant("\xE2\x82\xAC"));
  EXPECT_EQ(failure(reply_text(""), "no-such-encoding"), "0x80044202");
}

TEST(Parse, DescribesInOneLineOfTextWhateverTheReplyHolds) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  const Error encoding =
      error_of([&] { envelope.Parse("<?xml version='1.0' encoding='UT\xF0\x46\n-8'?><a/>", ""); });
  EXPECT_EQ(encoding.description,
            "The reply is not well-formed XML: line 1, column 31: the encoding 'UT\\xF0F\\n-8' is "
            "not known");
  const Error version = error_of([&] { envelope.Parse("<?xml version='2\n\xC2\x85'?><a/>", ""); });
  EXPECT_EQ(
      version.description,
      "The reply is not well-formed XML: line 1, column 16: version '2\\n\\xC2\\x85' of XML is "
      "not known");
  const Error later = error_of(
      [&] { envelope.Parse("<e:Envelope xmlns:e='urn:&#13;&#10;x/soap-envelope'/>", ""); });
  EXPECT_EQ(
      later.description,
      "The reply is an envelope of SOAP 1.2 (\"urn:\\r\\nx/soap-envelope\"); only SOAP 1.1 is "
      "understood");
}

TEST(Parse, TheNodesOutliveTheEnvelope) {
  SoapNode node;
  {
    const SoapEnvelope reply = parsed("<r><a><b><c>deep</c></b></a></r>");
    node = reply.Parameters().Item(0).Nodes().Item(0);
  }
  EXPECT_EQ(node.Name(), "b");
  EXPECT_EQ(node.Nodes().Item(0).Value(), Variant("deep"));
}

TEST(Parse, ALaterParseDoesNotTouchTheNodesOfTheFirst) {
  const SoapEnvelope envelope = parsed("<r><a>first</a></r>");
  const SoapNode node = envelope.Parameters().Item(0);
  const SoapNodes list = envelope.Parameters();
  envelope.Parse(reply_text("<r><b>second</b><c/></r>"), "");
  EXPECT_EQ(node.Value(), Variant("first"));
  EXPECT_EQ(list.Count(), 1U);
  EXPECT_EQ(envelope.Parameters().Count(), 2U);
}

TEST(Parse, ShortRepliesStayWhereTheyAre) {
  // A text this short lies inside its std::string object, which moves.
  const SoapNode node = node_from_xml("<a>b</a>");
  EXPECT_EQ(node.Name(), "a");
  EXPECT_EQ(node.Value(), Variant("b"));
}

TEST(Parse, IgnoresTextBesideElementsAndWhatIsNoText) {
  const SoapNode node = first_parameter("<a>\n text <!-- c --><b>1</b> more <?pi x?> <c/> end</a>");
  EXPECT_EQ(names_of(node.Nodes()), "b c");
  EXPECT_TRUE(node.Value().is(Variant::Type::kNode));
}

TEST(Parse, TextIsKeptWholeWithItsBlanks) {
  EXPECT_EQ(first_parameter("<a>  x &lt;<!-- c --> y<![CDATA[<&>]]>\r\nz </a>").Value(),
            Variant("  x < y<&>\nz "));
  EXPECT_EQ(first_parameter("<a>   </a>").Value(), Variant("   "));
  EXPECT_EQ(first_parameter("<a/>").Value(), Variant(""));
  EXPECT_EQ(first_parameter("<a></a>").Value(), Variant(""));
}

TEST(Parse, ElementsAfterTheBodyAreAllowed) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.Parse(
      "<e:Envelope xmlns:e='http://schemas.xmlsoap.org/soap/envelope/'><e:Body><r><a/></r></e:Body>"
      "<x:trailer xmlns:x='urn:x'/></e:Envelope>",
      "");
  EXPECT_EQ(names_of(envelope.Parameters()), "a");
}

TEST(Parse, TheMethodIsTheFirstElementThatIsARoot) {
  EXPECT_EQ(parsed("<multiRef id='1' soapenc:root='0'>x</multiRef>"
                   "<r soapenc:root='1'><a href='#1'/></r>")
                .MethodName(),
            "r");
  EXPECT_EQ(parsed("<r soapenc:root='0'><a/></r>").MethodName(), "r");
}

TEST(Parse, ReadsTheEncodingStyleThatHoldsForTheMethod) {
  EXPECT_EQ(parsed("<r soapenv:encodingStyle='urn:style'><a soapenv:encodingStyle='no'/></r>"
                   "<multiRef soapenv:encodingStyle='other'/>")
                .EncodingStyle(),
            "urn:style");
}

}  // namespace
}  // namespace bvconn
