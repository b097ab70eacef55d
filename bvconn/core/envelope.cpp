#include "bvconn/core/envelope.h"

#include "bvconn/core/logging.h"

namespace bvconn::Global {
namespace {

constexpr LogBlock kGetEnvelopeLog{.cls = "Global", .method = "getEnvelope"};
constexpr LogBlock kGetEnvelopeStartLog{.cls = "Global", .method = "getEnvelopeStart"};
constexpr LogBlock kGetEnvelopeEndLog{.cls = "Global", .method = "getEnvelopeEnd"};

}  // namespace

void create_user_id(const SoapEnvelope& envelope, std::string_view sessionID) {
  envelope.Headers().Create("userID", sessionID, "", "", "");
}

SoapEnvelope getEnvelope(std::string_view method, std::string_view urn,
                         std::string_view sessionID) {
  return run_logged(kGetEnvelopeLog, [&] {
    SoapEnvelope envelope = SoapEnvelope::make();
    create_user_id(envelope, sessionID);
    envelope.SetMethod(method, urn);
    return envelope;
  });
}

std::string getEnvelopeStart(std::string_view userID, std::string_view method,
                             std::string_view urn) {
  return run_logged(kGetEnvelopeStartLog, [&] {
    // deliberate [unescaped-text]: nothing is escaped, and whatever it holds, it says UTF-8.
    std::string text =
        "<?xml version='1.0' encoding='UTF-8' standalone='no'?><SOAP-ENV:Envelope "
        "xmlns:SOAP-ENV='http://schemas.xmlsoap.org/soap/envelope/'>"
        "<SOAP-ENV:Header><userID>";
    text.append(userID)
        .append("</userID></SOAP-ENV:Header><SOAP-ENV:Body><SOAPSDK1:")
        .append(method)
        .append(" xmlns:SOAPSDK1='")
        .append(urn)
        .append("' SOAP-ENV:encodingStyle='http://schemas.xmlsoap.org/soap/encoding/'>")
        .append("<param_encoding SOAP-ENV:encodingStyle='")
        .append("http://xml.apache.org/xml-soap/literalxml'>");
    return text;
  });
}

Variant getEnvelopeEnd(std::string_view method) {
  return run_logged(kGetEnvelopeEndLog, [&] {
    std::string text = "</param_encoding></SOAPSDK1:";
    text.append(method).append("></SOAP-ENV:Body></SOAP-ENV:Envelope>");
    return Variant(std::move(text));
  });
}

}  // namespace bvconn::Global
