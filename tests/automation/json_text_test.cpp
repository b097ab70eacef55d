#include "json_text.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "batch_request.h"
#include "bvconn/platform/conversions/date.h"
#include "node_tree.h"
#include "support/error_of.h"

namespace bvconn::test {
namespace {

using automation::Value;
using tool::Json;

SoapNode tree() {
  return node_from_xml("<return><InvoiceNumber>4711</InvoiceNumber></return>");
}

TEST(JsonText, NothingIsNull) {
  EXPECT_EQ(tool::json_value({}), "null");
  EXPECT_EQ(tool::json_value(Variant()), "null");
  EXPECT_EQ(tool::json_value(Variant(SoapNode())), "null");
  EXPECT_EQ(tool::json_value(SoapEnvelope()), "null");
  EXPECT_EQ(tool::json_value(std::shared_ptr<ServiceObject>()), "null");
}

TEST(JsonText, SimpleValuesAreJson) {
  EXPECT_EQ(tool::json_value(Variant("a\"b\n")), R"("a\"b\n")");
  EXPECT_EQ(tool::json_value(Variant(true)), "true");
  EXPECT_EQ(tool::json_value(Variant(std::int16_t{-2})), "-2");
  EXPECT_EQ(tool::json_value(Variant(std::int32_t{70000})), "70000");
  EXPECT_EQ(tool::json_value(Variant(std::int64_t{9007199254740993})), "9007199254740993");
  EXPECT_EQ(tool::json_value(Variant(2.5)), "2.5");
  EXPECT_EQ(tool::json_value(Variant(from_civil({.year = 2007, .month = 1, .day = 5, .hour = 0}))),
            R"({"date":"2007-01-05T00:00:00"})");
  EXPECT_EQ(tool::json_value(Variant(QualifiedName{"urn:x", "Server"})), R"("Server")");
}

TEST(JsonText, NumbersThatJsonLacksAreText) {
  EXPECT_EQ(tool::json_value(Variant(std::numeric_limits<double>::infinity())), R"("INF")");
  EXPECT_EQ(tool::json_value(Variant(std::numeric_limits<double>::quiet_NaN())), R"("NaN")");
}

TEST(JsonText, BytesAreBase64) {
  const auto bytes = [](std::string_view text) {
    Bytes result;
    for (const char c : text) result.push_back(static_cast<std::byte>(c));
    return Variant(result);
  };
  EXPECT_EQ(tool::json_value(bytes("")), R"("")");
  EXPECT_EQ(tool::json_value(bytes("f")), R"("Zg==")");
  EXPECT_EQ(tool::json_value(bytes("fo")), R"("Zm8=")");
  EXPECT_EQ(tool::json_value(bytes("foo")), R"("Zm9v")");
  EXPECT_EQ(tool::json_value(bytes("\xFF\xFE\xFD")), R"("//79")");
}

TEST(JsonText, TextThatIsNotUtf8IsReplaced) {
  EXPECT_EQ(tool::json_string("a\xFFz"), "\"a\xEF\xBF\xBDz\"");
}

TEST(JsonText, ArraysHoldTheirItems) {
  EXPECT_EQ(tool::json_value(Variant(VariantArray(
                {Variant("x"), Variant(std::int32_t{1}), Variant(VariantArray({Variant(true)}))}))),
            R"(["x",1,[true]])");
  EXPECT_EQ(tool::json_value(Variant(VariantArray(std::vector<Variant>{}))), "[]");
  EXPECT_EQ(tool::json_value(Variant(VariantArray())), "null");
}

TEST(JsonText, ANodeHasNameValueAndNodes) {
  EXPECT_EQ(tool::json_value(Variant(tree())),
            R"({"node":{"name":"return","value":null,"nodes":[)"
            R"({"name":"InvoiceNumber","value":"4711","nodes":[]}]}})");
}

TEST(JsonText, SiblingsKeepTheirOrder) {
  EXPECT_EQ(tool::json_value(Variant(node_from_xml("<r><a>1</a><b><c>2</c></b><d>3</d></r>"))),
            R"({"node":{"name":"r","value":null,"nodes":[)"
            R"({"name":"a","value":"1","nodes":[]},)"
            R"({"name":"b","value":null,"nodes":[{"name":"c","value":"2","nodes":[]}]},)"
            R"({"name":"d","value":"3","nodes":[]}]}})");
}

TEST(JsonText, NilAndNamespaceAreAddedWhereTheyApply) {
  EXPECT_EQ(tool::json_value(Variant(node_from_xml(
                R"(<n:r xmlns:n="urn:n" xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance">)"
                R"(<v xsi:nil="true"/></n:r>)"))),
            R"({"node":{"name":"r","value":null,"nodes":[)"
            R"({"name":"v","value":null,"nodes":[],"nil":true}],"namespace":"urn:n"}})");
}

/// A node with children of these fields, whose types are those of XML Schema.
SoapNode typed_tree(const std::string& fields) {
  return node_from_xml(R"(<r xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance")"
                       R"( xmlns:xsd="http://www.w3.org/2001/XMLSchema")"
                       R"( xmlns:SOAP-ENC="http://schemas.xmlsoap.org/soap/encoding/">)" +
                       fields + "</r>");
}

TEST(JsonText, AValueThatIsNotOfItsTypeIsItsRawTextAndTheRestStands) {
  EXPECT_EQ(tool::json_value(
                Variant(typed_tree(R"(<Amount xsi:type="xsd:int">1 2</Amount><Name>N</Name>)"))),
            R"({"node":{"name":"r","value":null,"nodes":[)"
            R"({"name":"Amount","value":"1 2","nodes":[],"unreadable":)"
            R"("Type mismatch: the text \"1 2\" of the node \"Amount\" is not of its type int"},)"
            R"({"name":"Name","value":"N","nodes":[]}]}})");
}

TEST(JsonText, AnArrayWithAnItemThatCannotBeReadShowsItsItems) {
  const Json shown = Json::parse(tool::json_value(
      Variant(typed_tree(R"(<l SOAP-ENC:arrayType="xsd:int[2]"><i>7</i><i>x</i></l>)"))));
  const Json& list = shown["node"]["nodes"][0];
  EXPECT_EQ(list["value"], nullptr);
  EXPECT_TRUE(list.contains("unreadable"));
  EXPECT_EQ(list["nodes"][0], Json::parse(R"({"name":"i","value":7,"nodes":[]})"));
  EXPECT_EQ(list["nodes"][1]["value"], "x");
  EXPECT_TRUE(list["nodes"][1].contains("unreadable"));
}

TEST(JsonText, ANodeThatWrapsAnotherShowsThatOnesContent) {
  SoapNode outer = SoapNode::make("outer");
  outer.Value(Variant(tree()));
  EXPECT_EQ(tool::json_value(Variant(outer)),
            R"({"node":{"name":"outer","value":null,"nodes":[)"
            R"({"name":"InvoiceNumber","value":"4711","nodes":[]}]}})");
}

TEST(JsonText, AVeryDeepTreeIsWritten) {
  constexpr int kDepth = 9000;
  SoapNode root = SoapNode::make("n");
  SoapNode last = root;
  for (int i = 1; i < kDepth; ++i) last = last.Nodes().Create("n", Variant());
  const std::string text = tool::json_value(Variant(root));
  std::size_t count = 0;
  for (std::size_t at = text.find("\"name\""); at != std::string::npos;
       at = text.find("\"name\"", at + 1)) {
    ++count;
  }
  EXPECT_EQ(count, std::size_t{kDepth});
}

TEST(JsonText, ATreeThatSharesItsPartsEndlesslyIsAnError) {
  SoapNode shared = SoapNode::make("leaf");
  for (int i = 0; i < 60; ++i) {
    SoapNode twice = SoapNode::make("n");
    twice.Nodes().Append(shared);
    twice.Nodes().Append(shared);
    shared = twice;
  }
  const Error error = error_of([&] { tool::json_value(Variant(shared), 10000); });
  EXPECT_EQ(hex_number(error.number), "0x80044206");
}

TEST(JsonText, ArraysThatShareTheirItemsEndlesslyAreAnErrorToo) {
  std::string body = "<r><return href='#0'/></r>";
  for (int i = 0; i < 60; ++i) {
    const std::string item = " href='#" + std::to_string(i + 1) + "'/>";
    body += "<m id='" + std::to_string(i) + "' enc:arrayType='xsd:anyType[2]'><b" + item + "<c" +
            item + "</m>";
  }
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.Parse(
      "<e:Envelope xmlns:e='http://schemas.xmlsoap.org/soap/envelope/'"
      " xmlns:enc='http://schemas.xmlsoap.org/soap/encoding/'"
      " xmlns:xsd='http://www.w3.org/2001/XMLSchema'><e:Body>" +
          body + "<m id='60'/></e:Body></e:Envelope>",
      "");
  const SoapNode given = envelope.Parameters().Item(0);
  const Error error = error_of([&] { tool::json_value(Variant(given), 10000); });
  EXPECT_EQ(hex_number(error.number), "0x80044206");
}

TEST(JsonText, ANamespaceIsCountedForEveryNodeThatIsInIt) {
  std::string items;
  for (int i = 0; i < 2000; ++i) items += "<a/>";
  const SoapNode all =
      node_from_xml("<r xmlns='" + std::string(1'000'000, 'u') + "'>" + items + "</r>");
  const Error error = error_of([&] { tool::require_printable(Variant(all)); });
  EXPECT_EQ(hex_number(error.number), "0x80044206");
}

TEST(JsonText, AnEnvelopeShowsMethodHeadersAndParameters) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.SetMethod("getInvoice", "urn:InvoiceService");
  envelope.Headers().Create("userID", "S");
  envelope.Parameters().Create("param", "U1");
  EXPECT_EQ(tool::json_value(envelope),
            R"({"envelope":{"method":"getInvoice",)"
            R"("headers":[{"name":"userID","value":"S","nodes":[]}],)"
            R"("parameters":[{"name":"param","value":"U1","nodes":[]}]}})");
}

TEST(JsonText, AnErrorHasItsFiveValuesAndTheNumberInHex) {
  EXPECT_EQ(tool::json_error(Error(-2147204607, "SoapEnvelope", "text", "help", 3)),
            R"({"number":-2147204607,"hex":"0x80044201","source":"SoapEnvelope",)"
            R"("description":"text","helpFile":"help","helpContext":3})");
}

TEST(JsonText, AMissingArgumentIsTold) {
  EXPECT_EQ(tool::json_argument(Variant(Variant::Missing{})), R"({"missing":true})");
  EXPECT_EQ(tool::json_argument(Variant()), "null");
}

TEST(NodeTree, HasOneIndentedLineForEachNode) {
  EXPECT_EQ(tool::node_tree(node_from_xml(
                R"(<return xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance">)"
                R"(<Number>4711</Number><Lines><Line>a&#10;b</Line></Lines><C xsi:nil="1"/>)"
                R"(</return>)")),
            "return\n"
            "  Number = 4711\n"
            "  Lines\n"
            "    Line = \"a\\nb\"\n"
            "  C is nil\n");
}

TEST(NodeTree, ShowsWhatCannotBeReadAndThenTheRest) {
  EXPECT_EQ(tool::node_tree(typed_tree(R"(<A xsi:type="xsd:int">x</A><B>2</B>)")),
            "r\n"
            "  A = x (unreadable: Type mismatch: the text \"x\" of the node \"A\" is not of its "
            "type int)\n"
            "  B = 2\n");
}

TEST(RawMember, IsTheTextAsItWasWritten) {
  EXPECT_EQ(tool::raw_member(R"({"id":1,"call":"x"})", "id"), "1");
  EXPECT_EQ(tool::raw_member(R"({"call":"x","id": 1.50 })", "id"), "1.50");
  EXPECT_EQ(tool::raw_member(R"({"id":12345678901234567890123})", "id"), "12345678901234567890123");
  EXPECT_EQ(tool::raw_member(R"({"a":{"id":2},"b":"id\"","id":{"x":[1, "}"]}})", "id"),
            R"({"x":[1, "}"]})");
  EXPECT_EQ(tool::raw_member(R"({"\u0069d":"s"})", "id"), R"("s")");
  EXPECT_EQ(tool::raw_member(R"({"call":"x"})", "id"), "null");
  EXPECT_EQ(tool::raw_member("{}", "id"), "null");
}

}  // namespace
}  // namespace bvconn::test
