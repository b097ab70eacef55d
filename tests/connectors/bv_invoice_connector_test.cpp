#include "bvconn/connectors/invoice/bv_invoice_connector.h"

#include <gtest/gtest.h>

#include "bvconn/core/session_state.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/soap_envelope.h"
#include "bvconn/platform/soap/variant.h"
#include "support/recording_platform.h"

namespace bvconn {
namespace {

using error_numbers::from_bits;
using error_numbers::kSoapFault;
using Lines = std::vector<std::string>;
using test::envelope_text;
using test::fault_text;
using test::RecordingPlatform;

Error error_of_get_invoice() {
  try {
    BVInvoiceConnector().GetInvoice("http://h/", "S", "U");
  } catch (const Error& error) {
    return error;
  }
  ADD_FAILURE() << "no error was raised";
  return Error(0, "", "");
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
  world.fail_send(Error(51, "HTTPTransport", "why", "help.chm", 12));
  const Error error = error_of_get_invoice();
  EXPECT_EQ(error.number, 51);
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

}  // namespace
}  // namespace bvconn
