#include <gtest/gtest.h>

#include <string>

#include "bvconn/platform/conversions/date.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/soap_envelope.h"
#include "bvconn/platform/soap/variant.h"
#include "sandbox/sandbox_process.h"

namespace bvconn::test {
namespace {

/// One server for all tests: none of them changes anything.
class SandboxSoap : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { sandbox_ = new SandboxProcess(); }
  static void TearDownTestSuite() {
    delete sandbox_;
    sandbox_ = nullptr;
  }

  static SandboxProcess& sandbox() { return *sandbox_; }

  /// The first parameter of a reply that has to be a success.
  static SoapNode result(const RawReply& reply) {
    EXPECT_EQ(reply.status, 200) << reply.body;
    EXPECT_EQ(reply.header("Content-Type"), "text/xml; charset=utf-8");
    const auto envelope = SoapEnvelope::make();
    envelope.Parse(reply.body, "");
    return envelope.Parameters().Item(0);
  }

  /// "faultcode: faultstring" of a reply that has to be a fault.
  static std::string fault(const RawReply& reply) {
    EXPECT_EQ(reply.status, 500) << reply.body;
    EXPECT_EQ(reply.header("Content-Type"), "text/xml; charset=utf-8");
    const auto envelope = SoapEnvelope::make();
    try {
      envelope.Parse(reply.body, "");
      return "no fault: " + reply.body;
    } catch (const Error& error) {
      if (error.number != error_numbers::kSoapFault) return error.description;
    }
    return to_text(envelope.Parameters().ItemByName("faultcode").Value()) + ": " +
           to_text(envelope.Parameters().ItemByName("faultstring").Value());
  }

 private:
  static inline SandboxProcess* sandbox_ = nullptr;
};

TEST_F(SandboxSoap, TheHeartBeatAnswersOk) {
  const SoapNode node = result(sandbox().soap("urn:HeartBeatService", "beat", ""));
  EXPECT_EQ(node.Value(), Variant("OK"));
}

TEST_F(SandboxSoap, AFaultRepeatsNoMoreThan1KiBOfWhatItWasSent) {
  std::string name;
  for (int i = 0; i < 100'000; ++i) name += "\xC3\xA9";
  const std::string text = fault(sandbox().soap("urn:HeartBeatService", name, ""));
  EXPECT_NE(text.find("\xC3\xA9\xC3\xA9\xC3\xA9"), std::string::npos) << text;
  EXPECT_TRUE(text.ends_with("…"));
  EXPECT_LE(text.size(), std::string("SOAP-ENV:Client: ").size() + 1024);
}

TEST_F(SandboxSoap, AFaultIsReadableWhateverBytesItQuotes) {
  const std::string request = envelope_text("urn:HeartBeatService", "beat", "");
  EXPECT_EQ(fault(sandbox().soap_text(request, "urn:\xA5<")),
            "Client: beat in urn:HeartBeatService: SOAPAction is 'urn:\xEF\xBF\xBD<', "
            "expected 'urn:HeartBeatService'");
}

TEST_F(SandboxSoap, AnInvoiceComesWithItsCustomerAndLines) {
  const SoapNode node = result(sandbox().soap("urn:InvoiceService", "getInvoice",
                                              "<param xsi:type=\"xsd:string\">INV-1002</param>"));
  EXPECT_EQ(node.Name(), "return");
  const SoapNodes fields = node.Nodes();
  EXPECT_EQ(fields.ItemByName("InvoiceUID").Value(), Variant("INV-1002"));
  EXPECT_EQ(fields.ItemByName("InvoiceNumber").Value(), Variant("700102"));
  EXPECT_TRUE(fields.ItemByName("InvoiceDate").Value().is(Variant::Type::kDate));
  EXPECT_EQ(fields.ItemByName("DueDate").Value().date().milliseconds -
                fields.ItemByName("InvoiceDate").Value().date().milliseconds,
            30LL * 24 * 60 * 60 * 1000);
  EXPECT_FALSE(to_text(fields.ItemByName("Customer").Nodes().ItemByName("Name").Value()).empty());
  double subtotal = 0;
  for (const SoapNode& line : fields.ItemByName("Lines").Nodes()) {
    EXPECT_EQ(line.Name(), "Line");
    EXPECT_TRUE(line.Nodes().ItemByName("Quantity").Value().is(Variant::Type::kInt32));
    subtotal += line.Nodes().ItemByName("Amount").Value().number();
  }
  EXPECT_GT(subtotal, 0);
  EXPECT_NEAR(fields.ItemByName("Subtotal").Value().number(), subtotal, 0.001);
  EXPECT_NEAR(fields.ItemByName("Total").Value().number(),
              subtotal + fields.ItemByName("Freight").Value().number() +
                  fields.ItemByName("Tax").Value().number(),
              0.001);
}

TEST_F(SandboxSoap, AnUnknownInvoiceIsFault10041WithItsUid) {
  EXPECT_EQ(fault(sandbox().soap("urn:InvoiceService", "getInvoice",
                                 "<param xsi:type=\"xsd:string\">R&amp;D &lt;1></param>")),
            "10041: There is no invoice with the UID 'R&D <1>'");
}

TEST_F(SandboxSoap, AWrongParameterNameIsToldWithTheExpectedOne) {
  EXPECT_EQ(fault(sandbox().soap("urn:InvoiceService", "getInvoice",
                                 "<UID xsi:type=\"xsd:string\">INV-1001</UID>")),
            "Client: getInvoice in urn:InvoiceService: parameter 1 is named 'UID', expected "
            "'param'");
}

TEST_F(SandboxSoap, AWrongTypeIsToldWithTheExpectedOne) {
  EXPECT_EQ(fault(sandbox().soap("urn:InvoiceService", "getInvoice",
                                 "<param xsi:type=\"xsd:int\">1001</param>")),
            "Client: getInvoice in urn:InvoiceService: parameter 1 ('param') has type 'int', "
            "expected type 'string'");
}

TEST_F(SandboxSoap, AWrongNumberOfParametersIsTold) {
  EXPECT_EQ(fault(sandbox().soap("urn:InvoiceService", "getInvoice", "")),
            "Client: getInvoice in urn:InvoiceService: has 0 parameters, expected 1 ('param')");
}

TEST_F(SandboxSoap, AWrongSoapActionIsTold) {
  EXPECT_EQ(fault(sandbox().soap_text(envelope_text("urn:HeartBeatService", "beat", ""),
                                      "urn:InvoiceService")),
            "Client: beat in urn:HeartBeatService: SOAPAction is 'urn:InvoiceService', expected "
            "'urn:HeartBeatService'");
}

TEST_F(SandboxSoap, AMissingSessionHeaderIsTold) {
  std::string text = envelope_text("urn:HeartBeatService", "beat", "");
  const std::string header = "<userID>S1</userID>";
  text.erase(text.find(header), header.size());
  EXPECT_EQ(fault(sandbox().soap_text(text, "urn:HeartBeatService")),
            "Client: beat in urn:HeartBeatService: the SOAP headers are none, expected 'userID'");
}

TEST_F(SandboxSoap, AnEmptySessionIsASession) {
  std::string text = envelope_text("urn:HeartBeatService", "beat", "");
  text.erase(text.find("S1"), 2);
  EXPECT_EQ(result(sandbox().soap_text(text, "urn:HeartBeatService")).Value(), Variant("OK"));
}

TEST_F(SandboxSoap, AnUnknownMethodIsToldWithThoseOfItsService) {
  const std::string text = fault(sandbox().soap("urn:InvoiceService", "fetchInvoice", ""));
  EXPECT_EQ(text.find("Client: urn:InvoiceService has no method 'fetchInvoice', expected one of "),
            0U)
      << text;
  EXPECT_NE(text.find("'getInvoice'"), std::string::npos) << text;
}

TEST_F(SandboxSoap, AnUnknownServiceIsTold) {
  const std::string text = fault(sandbox().soap("urn:Invoice", "getInvoice", ""));
  EXPECT_EQ(text.find("Client: there is no service 'urn:Invoice'"), 0U) << text;
}

TEST_F(SandboxSoap, AMethodOutsideOfAnyNamespaceIsNoService) {
  const std::string text = fault(sandbox().soap_text(
      "<E:Envelope xmlns:E='http://schemas.xmlsoap.org/soap/envelope/'><E:Body><getInvoice/>"
      "</E:Body></E:Envelope>",
      ""));
  EXPECT_EQ(text.find("Client: there is no service ''"), 0U) << text;
}

TEST_F(SandboxSoap, AnotherCatalogueOfNamespacePrefixesIsTheSameRequest) {
  EXPECT_EQ(
      result(sandbox().soap_text("<?xml version='1.0' encoding='UTF-8' standalone='no'?>"
                                 "<E:Envelope xmlns:E='http://schemas.xmlsoap.org/soap/envelope/'>"
                                 "<E:Header><userID>S1</userID></E:Header><E:Body>"
                                 "<beat xmlns='urn:HeartBeatService'/></E:Body></E:Envelope>",
                                 "urn:HeartBeatService"))
          .Value(),
      Variant("OK"));
}

TEST_F(SandboxSoap, MalformedXmlIsAClientFault) {
  EXPECT_EQ(fault(sandbox().soap_text("", "urn:HeartBeatService")),
            "Client: The request cannot be read: it is empty");
  for (const char* text : {"<", "<a></b>", "no xml at all", "<a>&unknown;</a>"}) {
    const std::string told = fault(sandbox().soap_text(text, "urn:HeartBeatService"));
    EXPECT_EQ(told.find("Client: The request cannot be read: it is not well-formed XML"), 0U)
        << text << ": " << told;
  }
}

TEST_F(SandboxSoap, ADocumentThatIsNoEnvelopeIsAClientFault) {
  const std::string told = fault(sandbox().soap_text("<order/>", "urn:HeartBeatService"));
  EXPECT_EQ(told.find("Client: The request cannot be read: "), 0U) << told;
}

TEST_F(SandboxSoap, AnEmptyBodyIsAClientFault) {
  EXPECT_EQ(fault(sandbox().soap_text(
                "<E:Envelope xmlns:E='http://schemas.xmlsoap.org/soap/envelope/'><E:Body/>"
                "</E:Envelope>",
                "urn:HeartBeatService")),
            "Client: The Body is empty, expected a method");
}

TEST_F(SandboxSoap, AnEnvelopeOfSoap12IsAVersionMismatch) {
  EXPECT_EQ(fault(sandbox().soap_text(
                "<E:Envelope xmlns:E='http://www.w3.org/2003/05/soap-envelope'><E:Body/>"
                "</E:Envelope>",
                "urn:HeartBeatService")),
            "VersionMismatch: The Envelope is in the namespace "
            "'http://www.w3.org/2003/05/soap-envelope', expected "
            "'http://schemas.xmlsoap.org/soap/envelope/'");
}

TEST_F(SandboxSoap, AnotherContentTypeIsRefused) {
  const std::string text = envelope_text("urn:HeartBeatService", "beat", "");
  for (const char* header : {"", "Content-Type: application/soap+xml\r\n"}) {
    EXPECT_EQ(exchange(sandbox().port(), http_request("POST", "/soap", header, text)).status, 415);
  }
}

}  // namespace
}  // namespace bvconn::test
