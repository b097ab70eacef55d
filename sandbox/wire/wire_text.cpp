#include "sandbox/wire/wire_text.h"

#include <string_view>

namespace bvconn::wire {
namespace {

constexpr std::string_view kEnvelopeStart =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
    "<SOAP-ENV:Envelope xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\""
    " xmlns:SOAP-ENC=\"http://schemas.xmlsoap.org/soap/encoding/\""
    " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
    " xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\">";
constexpr std::string_view kEncodingStyle =
    " SOAP-ENV:encodingStyle=\"http://schemas.xmlsoap.org/soap/encoding/\"";

void replace_all(std::string& text, std::string_view what, std::string_view with) {
  for (std::size_t at = text.find(what); at != std::string::npos;
       at = text.find(what, at + with.size())) {
    text.replace(at, what.size(), with);
  }
}

// The name of the reply's element, from the log's `@sendXML NAME`.
std::string reply_name(const WireStep& step) {
  constexpr std::string_view kSendXml = "@sendXML ";
  for (const std::string& line : step.log) {
    if (!line.starts_with(kSendXml)) continue;
    const std::string name = line.substr(kSendXml.size());
    return name.substr(0, name.find(' ')) + "Response";
  }
  return "answerResponse";
}

// In the words of a foreign server, whose prefixes are its own.
std::string answer_text(const std::string& name, std::string_view parameters) {
  std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
      "<e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\""
      " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
      " xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\"><e:Body>";
  text.append("<m:" + name + " xmlns:m=\"urn:test\">").append(parameters);
  return text.append("</m:" + name + "></e:Body></e:Envelope>");
}

std::string fault_text(std::string_view fault) {
  const std::size_t blank = fault.find(' ');
  std::string text =
      "<e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\"><e:Body><e:Fault>";
  text.append("<faultcode>").append(fault.substr(0, blank)).append("</faultcode><faultstring>");
  text.append(blank == std::string_view::npos ? fault : fault.substr(blank + 1));
  return text.append("</faultstring></e:Fault></e:Body></e:Envelope>");
}

// What stands behind the first `begin` and before the next `end`; "" without them.
std::string between(std::string_view text, std::string_view begin, std::string_view end) {
  const std::size_t from = text.find(begin);
  if (from == std::string_view::npos) return {};
  text.remove_prefix(from + begin.size());
  return std::string(text.substr(0, text.find(end)));
}

}  // namespace

std::string request_text(const WireStep& step) {
  if (step.text) return *step.text;
  std::string text(kEnvelopeStart);
  const std::string user = step.user_id.value_or("none");
  if (user.empty()) {
    text.append("<SOAP-ENV:Header><userID xsi:type=\"xsd:string\"/></SOAP-ENV:Header>");
  } else if (user != "none") {
    text.append("<SOAP-ENV:Header><userID xsi:type=\"xsd:string\">").append(user);
    text.append("</userID></SOAP-ENV:Header>");
  }
  text.append("<SOAP-ENV:Body>").append(step.request.value_or(""));
  replace_all(text, "{soap}", kEncodingStyle);
  return text.append("</SOAP-ENV:Body></SOAP-ENV:Envelope>");
}

void describe_request(const std::string& text, WireStep& step) {
  step.text.reset();
  step.user_id = "none";
  step.request = between(text, "<SOAP-ENV:Body>", "</SOAP-ENV:Body></SOAP-ENV:Envelope>");
  replace_all(*step.request, kEncodingStyle, "{soap}");
  const std::string header = between(text, "<SOAP-ENV:Header>", "</SOAP-ENV:Header>");
  if (!header.empty()) {
    step.user_id = between(header, "<userID xsi:type=\"xsd:string\">", "</userID>");
  }
  if (request_text(step) == text) return;
  step.user_id.reset();
  step.request.reset();
  step.text = text;
}

std::string reply_text(const WireStep& step) {
  if (step.raw) return *step.raw;
  if (step.fault) return fault_text(*step.fault);
  return answer_text(reply_name(step), step.reply.value_or(""));
}

}  // namespace bvconn::wire
