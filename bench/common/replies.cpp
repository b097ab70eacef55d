#include "common/replies.h"

#include <algorithm>

namespace bench {
namespace {

constexpr std::string_view kBegin =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
    "<soapenv:Envelope xmlns:soapenv=\"http://schemas.xmlsoap.org/soap/envelope/\" "
    "xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" "
    "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"><soapenv:Body>";
constexpr std::string_view kEnd = "</soapenv:Body></soapenv:Envelope>";
constexpr std::size_t kFirstNumber = 4'711'000;

constexpr std::string_view kFaultWords = "The ledger is closed until tomorrow";

std::string invoice() {
  return "<ns1:getInvoiceResponse xmlns:ns1=\"urn:InvoiceService\"><getInvoiceReturn>"
         "<number xsi:type=\"xsd:string\">4711</number>"
         "<total xsi:type=\"xsd:double\">128.25</total>"
         "<paid xsi:type=\"xsd:boolean\">true</paid>"
         "</getInvoiceReturn></ns1:getInvoiceResponse>";
}

std::string fault() {
  return "<soapenv:Fault><faultcode>soapenv:Server</faultcode><faultstring>" +
         std::string(kFaultWords) +
         "</faultstring><detail><place>ledger 7, page 12</place></detail></soapenv:Fault>";
}

class Rows {
 public:
  explicit Rows(bool typed) : typed_(typed) {}

  void add(std::size_t index) {
    text_.append("<order>");
    field("number", "string", std::to_string(kFirstNumber + index));
    field("customer", "string", "Harrow &amp; Finch Supply");
    field("city", "string", "K\xC3\xB6ln");
    field("status", "int", std::to_string(index % 7));
    field("total", "double", std::to_string(index * 17) + ".25");
    field("entered", "dateTime", "2006-11-30T08:15:00");
    field("open", "boolean", index % 2 == 0 ? "true" : "false");
    field("remark", "string", "in two parts, the second one later; call a day ahead");
    text_.append("</order>");
  }
  const std::string& text() const { return text_; }

 private:
  void field(std::string_view name, std::string_view type, std::string_view value) {
    text_.append("<").append(name);
    if (typed_) text_.append(" xsi:type=\"xsd:").append(type).append("\"");
    text_.append(">").append(value).append("</").append(name).append(">");
  }

  bool typed_;
  std::string text_;
};

}  // namespace

const Case* find_case(std::string_view name) {
  const auto* const found = std::find_if(kCases.begin(), kCases.end(),
                                         [&](const Case& each) { return each.name == name; });
  return found == kCases.end() ? nullptr : found;
}

std::string url_of(const std::string& server, const Case& which) {
  return server + "/" + std::string(which.name);
}

std::string request() {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
         "<SOAP-ENV:Envelope xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\" "
         "xmlns:SOAP-ENC=\"http://schemas.xmlsoap.org/soap/encoding/\" "
         "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
         "xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\"><SOAP-ENV:Header>"
         "<userID xsi:type=\"xsd:string\">S-1</userID></SOAP-ENV:Header><SOAP-ENV:Body>"
         "<m:getInvoice xmlns:m=\"urn:InvoiceService\">"
         "<param xsi:type=\"xsd:string\">U-2</param>"
         "</m:getInvoice></SOAP-ENV:Body></SOAP-ENV:Envelope>";
}

std::string rows_envelope(std::size_t rows, bool typed) {
  Rows made(typed);
  for (std::size_t index = 0; index < rows; ++index) made.add(index);
  return std::string(kBegin) +
         "<ns1:searchForInvoicesResponse xmlns:ns1=\"urn:InvoiceService\">"
         "<searchForInvoicesReturn>" +
         made.text() + "</searchForInvoicesReturn></ns1:searchForInvoicesResponse>" +
         std::string(kEnd);
}

std::string envelope(const Case& which) {
  if (which.rows != 0) return rows_envelope(which.rows);
  return std::string(kBegin) + (which.is_fault ? fault() : invoice()) + std::string(kEnd);
}

std::string facts(const Case& which) {
  if (which.is_fault) return std::string(kFaultWords);
  if (which.rows == 0) return "4711";
  return facts_of_rows(which.rows, std::to_string(kFirstNumber + which.rows - 1));
}

std::string facts_of_rows(std::size_t rows, std::string_view last_number) {
  return std::to_string(rows) + " rows, the last one " + std::string(last_number);
}

}  // namespace bench
