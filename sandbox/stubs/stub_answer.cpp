#include "sandbox/stubs/stub_answer.h"

#include <charconv>

#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/soap_envelope.h"
#include "bvconn/platform/soap/xml_document.h"
#include "sandbox/endpoints/soap_text.h"
#include "sandbox/stubs/stub_forms.h"

namespace bvconn::sandbox {
namespace {

constexpr std::string_view kOpen = "{{";
constexpr std::string_view kClose = "}}";
constexpr std::size_t kMostHoles = 1'000;

constexpr std::string_view kTypes =
    " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
    " xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\"";

std::string trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

std::vector<AnswerPiece> pieces_of(std::string_view answer) {
  std::vector<AnswerPiece> pieces;
  std::size_t holes = 0;
  while (!answer.empty()) {
    const auto begin = answer.find(kOpen);
    pieces.push_back({.text = std::string(answer.substr(0, begin))});
    if (begin == std::string_view::npos) break;
    answer.remove_prefix(begin + kOpen.size());
    const auto end = answer.find(kClose);
    if (end == std::string_view::npos) throw BadStub("The answer has a '{{' without its '}}'");
    if (++holes > kMostHoles) {
      throw BadStub("The answer has more than " + std::to_string(kMostHoles) + " holes");
    }
    pieces.push_back({.text = trimmed(answer.substr(0, end)), .is_hole = true});
    answer.remove_prefix(end + kClose.size());
  }
  return pieces;
}

std::string filled_with(const StubRule& rule, std::string_view value) {
  std::string xml;
  for (const AnswerPiece& piece : rule.pieces) xml.append(piece.is_hole ? value : piece.text);
  return xml;
}

bool is_envelope(const std::string& xml) {
  XMLDocument document;
  return document.load(xml) && document.documentElement().Name() == "Envelope";
}

/// Whether the text is the envelope of a fault. Throws BadStub where clients could not read it.
bool is_fault(const std::string& envelope) {
  try {
    SoapEnvelope::make().Parse(envelope, "");
    return false;
  } catch (const Error& error) {
    if (error.number == error_numbers::kSoapFault) return true;
    throw BadStub("The answer is an Envelope that cannot be read: " + error.description);
  }
}

/// An element name of its own, so that an answer cannot end it. The answer begins on line 2.
std::string wrapped(std::string_view children) {
  std::string xml = "<answer-of-a-stub";
  xml.append(kTypes).append(">\n").append(children).append("</answer-of-a-stub>");
  return xml;
}

/// What is wrong with a wrapped answer, with the line that its author sees.
std::string complaint_of(std::string text) {
  constexpr std::string_view kLine = ": line ";
  const auto at = text.find(kLine);
  if (at == std::string::npos) return text;
  const auto digits = at + kLine.size();
  std::size_t line = 0;
  const auto read = std::from_chars(text.data() + digits, text.data() + text.size(), line);
  const auto end = static_cast<std::size_t>(read.ptr - text.data());
  if (read.ec == std::errc() && line > 1) {
    text.replace(digits, end - digits, std::to_string(line - 1));
  }
  return text;
}

void expect_well_formed(const std::string& children) {
  try {
    node_from_xml(wrapped(children));
  } catch (const Error& error) {
    throw BadStub("The answer is no well-formed XML: " + complaint_of(error.description));
  }
}

}  // namespace

void read_answer(StubRule& rule) {
  rule.pieces = pieces_of(rule.answer);
  // A hole may stand wherever a text may, and nowhere else.
  for (const std::string_view value : {"x", "1 &lt;&quot;"}) {
    const std::string xml = filled_with(rule, value);
    rule.is_envelope = is_envelope(xml);
    if (rule.is_envelope) {
      rule.is_fault = is_fault(xml);
    } else {
      expect_well_formed(xml);
    }
  }
}

std::string response_text(std::string_view service, std::string_view method,
                          std::string_view children) {
  std::string xml =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<SOAP-ENV:Envelope xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\"";
  xml.append(kTypes).append("><SOAP-ENV:Body><m:").append(method).append("Response xmlns:m=\"");
  xml.append(escaped(service)).append("\">").append(children).append("</m:").append(method);
  return xml.append("Response></SOAP-ENV:Body></SOAP-ENV:Envelope>");
}

}  // namespace bvconn::sandbox
