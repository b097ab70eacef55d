// Replies that are like one before are not read anew. Each is compared with what the reader makes
// of it in a scope in which no reply is known.
#include "bvconn/platform/soap/known_replies.h"

#include <random>
#include <vector>

#include "bvconn/platform/soap/envelope_access.h"
#include "bvconn/platform/soap/print.h"
#include "bvconn/platform/thread_record.h"
#include "soap/soap_test.h"

namespace bvconn {
namespace {

using detail::KnownReplies;
using detail::ThreadScope;
using soap_test::reply_text;

std::string value_text(const SoapNode& node) {
  try {
    const Variant value = node.Value();
    if (value.is(Variant::Type::kNode)) return "node";
    if (value.is(Variant::Type::kArray)) return "array of " + std::to_string(value.array().size());
    if (value.is(Variant::Type::kQualifiedName)) {
      return "{" + value.qualified_name().name_space + "}" + value.qualified_name().local;
    }
    return std::string(type_name(value.type())) + " " + to_text(value);
  } catch (const Error& error) {
    return "error " + std::to_string(error.number) + " " + error.description;
  }
}

void add(std::string& text, const SoapNode& node) {
  text += "(" + node.Name() + " {" + node.Namespace() + "} " + node.Type() +
          (node.nil() ? " nil " : " ") + value_text(node);
  for (const SoapNode& child : node.Nodes()) add(text, child);
  text += ")";
}

std::string described(const SoapEnvelope& envelope, bool is_fault) {
  std::string text = envelope.MethodName() + " style " + envelope.EncodingStyle();
  if (is_fault) text += " fault";
  text += " headers ";
  for (const SoapNode& node : envelope.Headers()) add(text, node);
  text += " parameters ";
  for (const SoapNode& node : envelope.Parameters()) add(text, node);
  return text;
}

/// All that can be asked of a reply, or the error.
std::string read(const std::string& reply) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  try {
    const bool is_fault = EnvelopeAccess::read(envelope, reply, "");
    return described(envelope, is_fault);
  } catch (const Error& error) {
    return "error " + std::to_string(error.number) + " " + error.description;
  }
}

std::string read_anew(const std::string& reply) {
  const ThreadScope nothing_is_known;
  return read(reply);
}

/// Whether a reply was like the first; what was read of it is right in any case.
bool is_known_after(const std::string& first, const std::string& reply) {
  const ThreadScope nothing_is_known;
  read(first);
  const std::size_t before = KnownReplies::of_thread().times_used();
  EXPECT_EQ(read(reply), read_anew(reply)) << reply;
  return KnownReplies::of_thread().times_used() != before;
}

bool bodies_are_alike(std::string_view first, std::string_view second) {
  return is_known_after(reply_text(first), reply_text(second));
}

constexpr std::string_view kInvoice =
    "<n:getInvoiceResponse xmlns:n='urn:InvoiceService'><r><number xsi:type='xsd:string'>4711"
    "</number><total xsi:type='xsd:double'>128.25</total><paid xsi:type='xsd:boolean'>true</paid>"
    "<note/><agent xsi:nil='true'/></r></n:getInvoiceResponse>";
constexpr std::string_view kFault =
    "<soapenv:Fault><faultcode>soapenv:Server</faultcode><faultstring>The ledger is closed"
    "</faultstring><detail><place>page 12</place></detail></soapenv:Fault>";

std::string with(std::string_view text, std::string_view old, std::string_view now) {
  std::string changed(text);
  const std::size_t at = changed.find(old);
  EXPECT_NE(at, std::string::npos) << old;
  return changed.replace(at, old.size(), now);
}

TEST(KnownReply, IsReadWithTheTextsThatItHasNow) {
  EXPECT_TRUE(bodies_are_alike(kInvoice, kInvoice));
  EXPECT_TRUE(bodies_are_alike(kInvoice, with(kInvoice, "4711", "4")));
  EXPECT_TRUE(bodies_are_alike(kInvoice, with(kInvoice, "4711", "4711 and 4712, both \"open\"")));
  EXPECT_TRUE(bodies_are_alike(kInvoice, with(with(kInvoice, "128.25", "7"), "true", "false")));
  EXPECT_TRUE(bodies_are_alike(kInvoice, with(kInvoice, "128.25", "no number")));
  EXPECT_TRUE(bodies_are_alike(kFault, with(kFault, "ledger", "book of all invoices")));
}

TEST(KnownReply, SaysWhatTheReaderWouldSay) {
  const ThreadScope nothing_is_known;
  read(reply_text(kInvoice));
  EXPECT_EQ(read(reply_text(with(with(kInvoice, "4711", "Harrow"), "128.25", "9.5"))),
            "getInvoiceResponse style  headers  parameters (r {}  node"
            "(number {} string string Harrow)(total {} double double 9.5)"
            "(paid {} boolean boolean True)(note {}  string )(agent {}  nil empty ))");
  EXPECT_EQ(KnownReplies::of_thread().times_used(), 1U);
}

TEST(KnownReply, HasItsHeadersAndItsEncodingStyle) {
  const std::string reply =
      "<e:Envelope xmlns:e='http://schemas.xmlsoap.org/soap/envelope/'><e:Header><id>S-1</id>"
      "</e:Header><e:Body e:encodingStyle='urn:style'><r><v>1</v></r></e:Body></e:Envelope>";
  EXPECT_TRUE(is_known_after(reply, with(with(reply, "S-1", "S-1000"), "<v>1<", "<v>long text<")));
  EXPECT_TRUE(is_known_after(reply, reply + ""));
  const std::string empty =
      "<e:Envelope xmlns:e='http://schemas.xmlsoap.org/soap/envelope/'><e:Body/></e:Envelope>";
  EXPECT_TRUE(is_known_after(empty, empty));
}

TEST(KnownReply, IsLeftToTheReaderWhereATextIsNotPlain) {
  for (const std::string_view text :
       {"", " ", " 4711", "\t4711", "47&amp;11", "47&#49;1", "47]11", "47]]>11", "47\n11",
        "47\r\n11", "K\xC3\xB6ln", "\xFF", "\x01", "<![CDATA[4711]]>", "4<!-- -->711",
        "<b>4711</b>", "47<11", "47&11", "4711\x7F"}) {
    EXPECT_FALSE(bodies_are_alike(kInvoice, with(kInvoice, "4711", text))) << text;
  }
  EXPECT_TRUE(bodies_are_alike(kInvoice, with(kInvoice, "4711", "4711 ")));
}

TEST(KnownReply, IsLeftToTheReaderWhereAnythingElseIsAnother) {
  for (const auto& [old, now] :
       std::vector<std::pair<std::string, std::string>>{{"<note/>", "<note />"},
                                                        {"<note/>", "<note></note>"},
                                                        {"<note/>", "<note>text</note>"},
                                                        {"<note/>", ""},
                                                        {"<note/>", "<note/><note/>"},
                                                        {"xsd:double", "xsd:string"},
                                                        {"'true'/>", "'false'/>"},
                                                        {"</number>", "</numbers>"},
                                                        {"urn:InvoiceService", "urn:OtherService"},
                                                        {"<r>", "<r> "},
                                                        {"</n:getInvoiceResponse>", ""}}) {
    EXPECT_FALSE(bodies_are_alike(kInvoice, with(kInvoice, old, now))) << now;
  }
  const std::string whole = reply_text(kInvoice);
  EXPECT_FALSE(is_known_after(whole, whole + "\n"));
  EXPECT_FALSE(is_known_after(whole, whole + "<!-- -->"));
  EXPECT_FALSE(is_known_after(whole + "\n", whole));
  EXPECT_FALSE(is_known_after(whole, whole.substr(0, whole.size() - 1)));
  EXPECT_FALSE(is_known_after(whole, "\xEF\xBB\xBF" + whole));
  EXPECT_FALSE(is_known_after(whole, with(whole, "UTF-8", "ISO-8859-1")));
}

// The qualified name in it has the namespace of a prefix.
TEST(KnownReply, IsLeftToTheReaderWhereAFaultHasAnotherCode) {
  EXPECT_FALSE(bodies_are_alike(kFault, with(kFault, "soapenv:Server", "soapenv:Client")));
  EXPECT_FALSE(bodies_are_alike(kFault, with(kFault, "soapenv:Server", "10041")));
  constexpr std::string_view kNumbered =
      "<soapenv:Fault><faultcode>10041</faultcode><faultstring>no</faultstring></soapenv:Fault>";
  EXPECT_FALSE(bodies_are_alike(kNumbered, with(kNumbered, "10041", "xsd:int")));
  EXPECT_TRUE(bodies_are_alike(kNumbered, with(kNumbered, ">no<", ">not at all<")));
}

TEST(KnownReply, IsNoneOfReferencesTypedArraysAndTextsThatTheReaderChanges) {
  for (const std::string_view body :
       {"<r><a href='#1'/></r><m id='1'><v>7</v></m>",
        "<r soapenc:arrayType='xsd:int[1]'><i>1</i></r>", "<r><a b='x&amp;y'>1</a><c>&lt;</c></r>",
        "<r><a>1\r\n</a></r>", "<r><a><![CDATA[1]]></a>&#49;</r>"}) {
    EXPECT_FALSE(bodies_are_alike(body, body)) << body;
  }
  EXPECT_TRUE(bodies_are_alike("<r><a><![CDATA[1]]></a></r>", "<r><a><![CDATA[1]]></a></r>"));
  EXPECT_TRUE(bodies_are_alike("<r><a xsi:type='soapenc:Array'/><b>1</b></r>",
                               "<r><a xsi:type='soapenc:Array'/><b>12</b></r>"));
}

// An array that holds a blank text is an empty array, one that holds another text is no array.
TEST(KnownReply, IsLeftToTheReaderWhereABlankTextMakesAnArray) {
  constexpr std::string_view kText = "<r><a xsi:type='soapenc:Array'>text</a></r>";
  EXPECT_FALSE(bodies_are_alike(kText, with(kText, "text", "  ")));
  EXPECT_FALSE(bodies_are_alike(kText, with(kText, "text", "")));
  EXPECT_TRUE(bodies_are_alike(kText, with(kText, "text", "other")));
}

TEST(KnownReply, IsNoneThatIsLongOrHasManyTextsOrNodes) {
  const auto of_nodes = [](int count, std::string_view node) {
    std::string body = "<r>";
    for (int i = 0; i < count; ++i) body += node;
    return body + "</r>";
  };
  EXPECT_TRUE(bodies_are_alike(of_nodes(64, "<a>1</a>"), of_nodes(64, "<a>22</a>")));
  EXPECT_FALSE(bodies_are_alike(of_nodes(65, "<a>1</a>"), of_nodes(65, "<a>22</a>")));
  EXPECT_TRUE(bodies_are_alike(of_nodes(125, "<a/>"), of_nodes(125, "<a/>")));
  EXPECT_FALSE(bodies_are_alike(of_nodes(126, "<a/>"), of_nodes(126, "<a/>")));
  const std::string longest = "<r><a>" + std::string(4096, 'x') + "</a></r>";
  EXPECT_FALSE(bodies_are_alike(longest, longest));
  EXPECT_FALSE(bodies_are_alike("<r><a>1</a></r>", longest));
}

TEST(KnownReply, CanBeChangedAndOutlivesWhatIsKnown) {
  SoapNode first;
  SoapNode second;
  {
    const ThreadScope nothing_is_known;
    const auto invoice = [](std::string_view number) {
      const SoapEnvelope envelope = SoapEnvelope::make();
      envelope.Parse(reply_text(with(kInvoice, "4711", number)), "");
      return envelope.Parameters().Item(0);
    };
    invoice("1");
    first = invoice("2");
    second = invoice("3");
    EXPECT_EQ(KnownReplies::of_thread().times_used(), 2U);
  }
  first.Nodes().ItemByName("number").Value(Variant("changed"));
  first.Nodes().Create("added", 7);
  second.Nodes().ItemByName("total").Name("sum");
  EXPECT_EQ(soap_test::names_of(first.Nodes()), "number total paid note agent added");
  EXPECT_EQ(first.Nodes().Item(0).Value(), Variant("changed"));
  EXPECT_EQ(soap_test::names_of(second.Nodes()), "number sum paid note agent");
  EXPECT_EQ(second.Nodes().Item(0).Value(), Variant("3"));
}

TEST(KnownReply, IsOneOfTheLastFewOfItsThread) {
  const ThreadScope nothing_is_known;
  const auto kind = [](int number, std::string_view text) {
    const std::string name = "n" + std::to_string(number);
    return reply_text("<r><" + name + ">" + std::string(text) + "</" + name + "></r>");
  };
  for (int number = 0; number < 4; ++number) read(kind(number, "x"));
  for (int number = 0; number < 4; ++number) {
    EXPECT_EQ(read(kind(number, "yy")), read_anew(kind(number, "yy")));
  }
  EXPECT_EQ(KnownReplies::of_thread().times_used(), 4U);
  read(kind(4, "x"));
  read(kind(4, "yy"));
  EXPECT_EQ(KnownReplies::of_thread().times_used(), 5U);
}

TEST(KnownReply, IsNotLookedForInVainForLong) {
  const ThreadScope nothing_is_known;
  KnownReplies& known = KnownReplies::of_thread();
  const std::string text = reply_text("<r/>");
  int wanted = 0;
  for (int i = 0; i < 8 + 64; ++i) {
    const std::string reply = reply_text("<r><n" + std::to_string(i) + "/></r>");
    EXPECT_EQ(read(reply), read_anew(reply));
  }
  EXPECT_TRUE(known.wants(text)) << "after a pause the next is learned";
  for (int i = 0; i < 8; ++i) read(reply_text("<r><m" + std::to_string(i) + "/></r>"));
  for (int i = 0; i < 64; ++i) wanted += known.wants(text) ? 1 : 0;
  EXPECT_EQ(wanted, 0);
  EXPECT_EQ(known.times_used(), 0U);
}

// Whatever a broken server makes of its replies: the verdict and the tree are those of the reader.
TEST(KnownReply, IsNeverReadOtherwiseThanAnew) {
  std::mt19937 random(7);
  const auto below = [&random](std::size_t bound) { return random() % bound; };
  constexpr std::string_view kBytes = "<>&/'\"=; ]\n\r\t\x01\xC3\xB6 az09:!-[";
  std::size_t used = 0;
  for (const std::string_view body : {kInvoice, kFault}) {
    const std::string first = reply_text(body);
    const ThreadScope nothing_is_known;
    read(first);
    for (int i = 0; i < 6000; ++i) {
      std::string reply = first;
      for (std::size_t changes = 1 + below(2); changes != 0; --changes) {
        const std::size_t at = below(reply.size());
        const char byte = below(2) == 0 ? kBytes[below(kBytes.size())] : reply[below(reply.size())];
        switch (below(3)) {
          case 0:
            reply[at] = byte;
            break;
          case 1:
            reply.insert(at, 1 + below(3), byte);
            break;
          default:
            reply.erase(at, 1 + below(3));
        }
      }
      ASSERT_EQ(read(reply), read_anew(reply)) << reply;
      read(first);
    }
    used += KnownReplies::of_thread().times_used();
  }
  EXPECT_GT(used, 12'000U);
}

}  // namespace
}  // namespace bvconn
