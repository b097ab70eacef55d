#include "sandbox/endpoints/soap_text.h"

#include <algorithm>
#include <cstddef>

#include "bvconn/platform/soap/soap_envelope.h"
#include "bvconn/platform/xml/xml_characters.h"
#include "sandbox/contract/words.h"

namespace bvconn::sandbox {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD

/// The words of a fault may quote headers and arguments, whose bytes need be no text that XML can
/// carry.
void append_escaped(std::string& xml, std::string_view text) {
  while (!text.empty()) {
    const auto [character, length] = detail::xml::decode(text);
    if (length == 0 || !detail::xml::is_character(character)) {
      xml.append(kReplacement);
    } else if (character == '&') {
      xml.append("&amp;");
    } else if (character == '<') {
      xml.append("&lt;");
    } else if (character == '>') {
      xml.append("&gt;");
    } else if (character == '\r') {
      xml.append("&#13;");
    } else {
      xml.append(text.substr(0, length));
    }
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
}

void append_element(std::string& xml, std::string_view name, std::string_view text) {
  xml.append("<").append(name).append(">");
  append_escaped(xml, text);
  xml.append("</").append(name).append(">");
}

/// The store is free again when this is done, so nobody waits while a reply is written.
void run(const ServedMethod& method, Stores& stores, std::string_view user_id,
         const SoapNodes& parameters, const SoapNodes& results) {
  const HeldStore store = stores.hold(method.turn.value_or(Turn::kNone));
  SoapCall call{.store = *store, .user_id = user_id, .parameters = parameters, .results = results};
  if (!method.turn) return method.run(call);
  Transaction transaction = store->transaction(*method.turn);
  method.run(call);
  transaction.commit();
}

}  // namespace

std::string reply_text(const Operations::Name& name, const ServedMethod& method, Sandbox& sandbox,
                       std::string_view user_id, const SoapNodes& parameters) {
  const auto envelope = SoapEnvelope::make();
  envelope.SetMethod(name.second + "Response", name.first);
  run(method, sandbox.stores, user_id, parameters, envelope.Parameters());
  return envelope.Serialize();
}

std::string escaped(std::string_view text) {
  std::string xml;
  append_escaped(xml, text);
  return xml;
}

std::string fault_text(const Fault& fault) {
  std::string detail;
  for (const auto& [name, text] : fault.detail) append_element(detail, name, shortened(text));
  return fault_text(fault.code, shortened(fault.text), detail);
}

// Written by hand: an envelope object makes requests and their answers, and a fault is neither.
std::string fault_text(std::string_view code, std::string_view text, std::string_view detail_xml) {
  std::string xml =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<SOAP-ENV:Envelope xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\">"
      "<SOAP-ENV:Body><SOAP-ENV:Fault>";
  append_element(xml, "faultcode", code);
  append_element(xml, "faultstring", text);
  if (!detail_xml.empty()) xml.append("<detail>").append(detail_xml).append("</detail>");
  return xml.append("</SOAP-ENV:Fault></SOAP-ENV:Body></SOAP-ENV:Envelope>");
}

Reply fault_reply(int status, const Fault& fault) {
  Reply reply = xml_reply(status, fault_text(fault));
  reply.remark = shortened(fault.text);
  return reply;
}

}  // namespace bvconn::sandbox
