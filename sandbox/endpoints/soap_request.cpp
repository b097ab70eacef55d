#include "sandbox/endpoints/soap_request.h"

#include <algorithm>
#include <utility>

#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/soap/xml_document.h"
#include "sandbox/operations/operations.h"

namespace bvconn::sandbox {
namespace {

constexpr std::string_view kEnvelopeNamespace = "http://schemas.xmlsoap.org/soap/envelope/";

/// The first element in the Body of a document that is known to be an envelope.
SoapNode body_element(const SoapNode& root) {
  return root.Nodes().ItemByName("Body", kEnvelopeNamespace).Nodes().Item(0);
}

/// What a client's envelope says of a reply is here true of a request.
std::string in_words_of_a_server(std::string_view description) {
  constexpr std::string_view kReply = "The reply ";
  if (!description.starts_with(kReply)) return std::string(description);
  return "it " + std::string(description.substr(kReply.size()));
}

[[noreturn]] void refuse_document(const Error& error, const XMLDocument& document) {
  if (error.number == error_numbers::kSoapFault) {
    refuse("The request is itself a SOAP fault");
  }
  if (error.number == error_numbers::kNotASoapEnvelope && !document.empty()) {
    const SoapNode root = document.documentElement();
    if (root.Name() == "Envelope" && root.Namespace() != kEnvelopeNamespace) {
      throw Fault{.code = fault_codes::kVersionMismatch,
                  .text = "The Envelope is in the namespace '" + root.Namespace() +
                          "', expected '" + std::string(kEnvelopeNamespace) + "'"};
    }
  }
  refuse("The request cannot be read: " + in_words_of_a_server(error.description));
}

void note_headers(SoapRequest& request) {
  for (const SoapNode& header : request.envelope.Headers()) {
    request.facts.headers.push_back(header.Name());
    if (header.Name() == "userID" && header.Nodes().Count() == 0) {
      request.user_id = to_text(header.Value());
    }
  }
}

}  // namespace

SoapRequest read_request(const std::string& text, std::string_view encoding) {
  if (static_cast<std::size_t>(std::count(text.begin(), text.end(), '<')) > kMostRequestTags) {
    refuse("The request has more than " + std::to_string(kMostRequestTags) + " tags");
  }
  SoapRequest request{.envelope = SoapEnvelope::make(), .facts = {}, .user_id = {}};
  // An envelope does not tell the namespace of its method; the document does.
  XMLDocument document;
  document.load(text);
  try {
    request.envelope.Parse(text, encoding);
  } catch (const Error& error) {
    refuse_document(error, document);
  }
  if (request.envelope.MethodName().empty()) {
    refuse("The Body is empty, expected a method");
  }
  if (document.empty()) refuse("The request is not in the encoding that it declares itself");
  request.facts.service = body_element(document.documentElement()).Namespace();
  request.facts.method = request.envelope.MethodName();
  note_headers(request);
  for (const SoapNode& node : request.envelope.Parameters()) {
    request.facts.parameters.push_back({.name = node.Name(),
                                        .name_space = node.Namespace(),
                                        .type = node.Type(),
                                        .nil = node.nil()});
  }
  return request;
}

void note_envelope(const SoapRequest& request, Verdict verdict, bool loose, Exchange& exchange) {
  exchange.service = request.facts.service;
  exchange.method = request.facts.method;
  exchange.session = request.user_id;
  exchange.forms = std::move(verdict.forms);
  for (const SoapNode& node : request.envelope.Parameters()) exchange.values.emplace_back(node);
  narrow_by_constants(exchange);
  const auto complaint = verdict.complaint();
  if (!complaint) return;
  exchange.differences = std::move(verdict.differences);
  const bool has_method = !verdict.subject.empty();
  if (!loose || !has_method) refuse(*complaint);
  exchange.outcome = Outcome::kWarned;
}

}  // namespace bvconn::sandbox
