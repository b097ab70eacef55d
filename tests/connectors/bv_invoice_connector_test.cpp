#include "bvconn/connectors/invoice/bv_invoice_connector.h"

#include <gtest/gtest.h>

#include <functional>

#include "bvconn/core/session_state.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/soap_envelope.h"
#include "bvconn/platform/soap/variant.h"
#include "support/error_of.h"
#include "support/recording_platform.h"

namespace bvconn {
namespace {

using error_numbers::from_bits;
using error_numbers::kSoapFault;
using Lines = std::vector<std::string>;
using test::envelope_text;
using test::error_of;
using test::fault_text;
using test::RecordingPlatform;

Error error_of_get_invoice() {
  return error_of([] { BVInvoiceConnector().GetInvoice("http://h/", "S", "U"); });
}

TEST(GetInvoice, AFaultWithCode10041IsTheMappedErrorWithoutTheServersText) {
  RecordingPlatform world;
  world.reply(fault_text("10041", "server's words"));
  const Error error = error_of_get_invoice();
  EXPECT_EQ(error.number, from_bits(0x80042739));
  EXPECT_EQ(error.source, "BVInvoiceConnector");
  EXPECT_EQ(error.description, "");
  EXPECT_EQ(error.helpFile, "");
  EXPECT_EQ(error.helpContext, 0);
  EXPECT_EQ(world.record.log.back(),
            "LogError BVInvoiceConnector.GetInvoice 0x80044201 \"SoapEnvelope\" "
            "\"server's words\" 0");
}

TEST(GetInvoice, AFaultCodeThatIsAWordKeepsTheFaultWithTheServersText) {
  RecordingPlatform world;
  world.reply(fault_text("e:Server", "server's words"));
  const Error error = error_of_get_invoice();
  EXPECT_EQ(error.number, kSoapFault);
  EXPECT_EQ(error.source, "SoapEnvelope");
  EXPECT_EQ(error.description, "server's words");
}

TEST(GetInvoice, AFaultWithoutFaultcodeIsTheMissingNodeAfterTheFaultWasLogged) {
  RecordingPlatform world;
  world.reply(
      "<e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\"><e:Body><e:Fault>"
      "<faultstring>server's words</faultstring></e:Fault></e:Body></e:Envelope>");
  EXPECT_EQ(error_of_get_invoice().number, error_numbers::kNoSuchNode);
  EXPECT_EQ(world.record.log.back(),
            "LogError BVInvoiceConnector.GetInvoice 0x80044201 \"SoapEnvelope\" "
            "\"server's words\" 0");
}

TEST(GetInvoice, AReplyWithoutParametersFailsThroughTheTail) {
  RecordingPlatform world;
  world.reply(envelope_text("getInvoiceResponse", ""));
  EXPECT_EQ(error_of_get_invoice().number, error_numbers::kNoSuchNode);
  EXPECT_TRUE(
      world.record.log.back().starts_with("LogError BVInvoiceConnector.GetInvoice 0x80044204 "));
}

TEST(GetInvoice, AnErrorWithHelpReachesTheCallerWithoutIt) {
  RecordingPlatform world;
  // Not an error of the send: `sendXML` takes the help away before the operation's tail sees it.
  world.log_failure = {"EnterMethod BVInvoiceConnector.GetInvoice 1",
                       Error(51, "SessionLogger", "why", "help.chm", 12)};
  const Error error = error_of_get_invoice();
  EXPECT_EQ(error.number, 51);
  EXPECT_EQ(error.source, "SessionLogger");
  EXPECT_EQ(error.description, "why");
  EXPECT_EQ(error.helpFile, "");
  EXPECT_EQ(error.helpContext, 0);
}

TEST(GetInvoice, StaysOnTheSoapRouteWhateverTheSwitchSays) {
  RecordingPlatform world;
  world.use_dal();
  world.reply(envelope_text("getInvoiceResponse", "<return>R</return>"));
  EXPECT_EQ(BVInvoiceConnector().GetInvoice("http://h/", "S", "U").Value(), Variant("R"));
  EXPECT_TRUE(world.record.dal.empty());
}

TEST(GetInvoice, ALargeTreeComesBackWhole) {
  RecordingPlatform world;
  world.reply(envelope_text("getInvoiceResponse",
                            "<getInvoiceReturn><InvoiceNumber>4711</InvoiceNumber>"
                            "<Lines><Line><Qty>2</Qty></Line><Line><Qty>3</Qty></Line></Lines>"
                            "</getInvoiceReturn>"));
  const SoapNode invoice = BVInvoiceConnector().GetInvoice("http://h/", "S", "U");
  EXPECT_EQ(invoice.Name(), "getInvoiceReturn");
  EXPECT_EQ(invoice.Nodes().ItemByName("InvoiceNumber").Value(), Variant("4711"));
  EXPECT_EQ(invoice.Nodes().ItemByName("Lines").Nodes().Item(1).Nodes().Item(0).Value(),
            Variant("3"));
}

// A clock that notes its readings among the log's lines.
class NotingClock final : public Clock {
 public:
  explicit NotingClock(RecordingPlatform& world) : world_(world) {}
  Date now() override { return world_.now; }
  double timer() override {
    world_.note(&test::Record::log, "clock read");
    return 100;
  }

 private:
  RecordingPlatform& world_;
};

TEST(CommissionStatements, StartTheirClockBeforeTheLookUpsAndStopItWithTheAnswerInHand) {
  for (const std::string name : {"GetCommissionStatement", "GetSAPCommissionStatement"}) {
    SCOPED_TRACE(name);
    RecordingPlatform world;
    platform::Platform noting = platform::current();
    noting.clock = [&world] { return std::make_shared<NotingClock>(world); };
    const platform::ScopedPlatform scope(noting);
    world.reply(envelope_text("r", "<return>R</return>"));
    BVInvoiceConnector invoices;
    if (name == "GetCommissionStatement") {
      invoices.GetCommissionStatement("http://h/", "S", "K");
    } else {
      invoices.GetSAPCommissionStatement("http://h/", "S", "K");
    }
    const Lines& log = world.record.log;
    ASSERT_GE(log.size(), 7U);
    EXPECT_EQ(Lines(log.begin(), log.begin() + 3),
              (Lines{"EnterMethod BVInvoiceConnector." + name + " 1", "clock read",
                     "EnterMethod Global.getEnvelope 1"}));
    EXPECT_EQ(Lines(log.end() - 4, log.end()),
              (Lines{"ExitMethod Global.sendXML 1", "clock read",
                     "LogInfo BVInvoiceConnector." + name +
                         " \"Time to send and get response: 0.00 seconds.\" 0",
                     "ExitMethod BVInvoiceConnector." + name + " 1"}));
  }
}

using Body = std::function<void(BVInvoiceConnector&)>;

struct MappingCase {
  const char* name;      ///< in the error line
  const char* code;      ///< a fault code that the operation maps
  std::uint32_t raised;  ///< the error that it is
  const char* unmapped;  ///< one that it does not
  Body call;
};

const std::vector<MappingCase>& mapping_operations() {
  static const std::vector<MappingCase> cases{
      {"GetInvoice", "10041", 0x80042739, "10081",
       [](auto& invoices) { invoices.GetInvoice("http://h/", "S", "U"); }},
      {"GetInvoice", "10041", 0x80042739, "10011",
       [](auto& invoices) { invoices.GetSAPInvoice("http://h/", "S", "U"); }},
      {"SaveOrderReconcile", "10081", 0x80042761, "10041",
       [](auto& invoices) { invoices.SaveOrderReconcile("http://h/", "S", SoapNode::make("D")); }},
      {"GetOrderReconcile", "10011", 0x8004271B, "10010",
       [](auto& invoices) { invoices.GetOrderReconcile("http://h/", "S", "U", "A"); }},
      {"GetOrderReconcile", "10012", 0x8004271B, "10013",
       [](auto& invoices) { invoices.GetOrderReconcile("http://h/", "S", "U", "A"); }},
      {"AssocInvoiceAndOrderReconcile", "10061", 0x8004274D, "10071",
       [](auto& invoices) {
         invoices.AssocInvoiceAndOrderReconcile("http://h/", "S", "I", "G", "A");
       }},
      {"AutoReconcileSingle", "10071", 0x80042757, "10061",
       [](auto& invoices) { invoices.AutoReconcileSingle("http://h/", "S", "U", "A"); }},
      {"AutoReconcileMultiple", "10071", 0x80042757, "10012",
       [](auto& invoices) { invoices.AutoReconcileMultiple("http://h/", "S", "U", "A"); }},
  };
  return cases;
}

Error error_of_call(const Body& call) {
  BVInvoiceConnector invoices;
  return error_of([&] { call(invoices); });
}

TEST(InvoiceFaults, EachOperationMapsItsOwnCodesAndNoOther) {
  for (const MappingCase& each : mapping_operations()) {
    SCOPED_TRACE(std::string(each.name) + " " + each.code);
    RecordingPlatform world;
    world.reply(fault_text(each.code, "server's words"));
    const Error mapped = error_of_call(each.call);
    EXPECT_EQ(mapped.number, from_bits(each.raised));
    EXPECT_EQ(mapped.source, "BVInvoiceConnector");
    EXPECT_EQ(mapped.description, "");
    world.reply(fault_text(each.unmapped, "server's words"));
    const Error passed_on = error_of_call(each.call);
    EXPECT_EQ(passed_on.number, kSoapFault);
    EXPECT_EQ(passed_on.description, "server's words");
  }
}

TEST(InvoiceFaults, AFaultWithoutFaultcodeIsTheMissingNodeAfterTheFaultWasLogged) {
  for (const MappingCase& each : mapping_operations()) {
    SCOPED_TRACE(each.name);
    RecordingPlatform world;
    world.reply(
        "<e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\"><e:Body><e:Fault>"
        "<faultstring>server's words</faultstring></e:Fault></e:Body></e:Envelope>");
    EXPECT_EQ(error_of_call(each.call).number, error_numbers::kNoSuchNode);
    EXPECT_EQ(world.record.log.back(), std::string("LogError BVInvoiceConnector.") + each.name +
                                           " 0x80044201 \"SoapEnvelope\" \"server's words\" 0");
  }
}

TEST(InvoiceSearch, CriteriaAreNamedAndEachStandsInItsPlace) {
  RecordingPlatform world;
  world.reply(envelope_text("searchForInvoicesResponse", "<return>R</return>"));
  BVInvoiceConnector().InvoiceSearch(
      "http://h/", "S",
      {.strStatus = "open", .strCustomerSoldToName = "Sold & Co", .strAgent = "12"});
  std::string expected = "<m:searchForInvoices xmlns:m=\"urn:InvoiceService\">";
  const std::string empty = "<param xsi:type=\"xsd:string\"/>";
  const std::string missing = "<param xsi:nil=\"true\"/>";
  for (int i = 0; i < 5; ++i) expected += empty;
  expected += "<param xsi:type=\"xsd:string\">open</param>" + missing;
  expected += "<param xsi:type=\"xsd:string\">Sold &amp; Co</param>" + missing + missing;
  expected += "<param xsi:type=\"xsd:string\">012</param>";
  for (int i = 0; i < 5; ++i) expected += empty;
  expected += "</m:searchForInvoices>";
  ASSERT_EQ(world.sent.size(), 1U);
  EXPECT_NE(world.sent[0].text.find(expected), std::string::npos) << world.sent[0].text;
}

TEST(InvoiceSearch, WithoutCriteriaSixteenParametersGoOut) {
  RecordingPlatform world;
  world.reply(envelope_text("searchForInvoicesResponse", "<return>R</return>"));
  BVInvoiceConnector().InvoiceSearch("http://h/", "S");
  ASSERT_EQ(world.sent.size(), 1U);
  const SoapEnvelope request = SoapEnvelope::make();
  request.Parse(world.sent[0].text, "");
  ASSERT_EQ(request.Parameters().Count(), 16U);
  for (std::size_t i = 0; i < 16; ++i) {
    EXPECT_EQ(request.Parameters().Item(i).nil(), i >= 6 && i <= 9) << i;
  }
}

TEST(SaveOrderReconcile, LeavesTheCallersNodeAsItWas) {
  RecordingPlatform world;
  world.reply(envelope_text("saveOrderReconcileResponse", "<return>R</return>"));
  const SoapNode document = SoapNode::make("Reconcile");
  document.Nodes().Create("UID", "U-2");
  BVInvoiceConnector().SaveOrderReconcile("http://h/", "S", document);
  EXPECT_EQ(document.Name(), "Reconcile");
  EXPECT_EQ(document.Nodes().Count(), 1U);
}

}  // namespace
}  // namespace bvconn
