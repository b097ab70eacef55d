#include <optional>
#include <string>
#include <utility>

#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/soap_envelope.h"
#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/soap/xml_document.h"
#include "sandbox/endpoints/endpoints.h"
#include "sandbox/endpoints/soap_text.h"

namespace bvconn::sandbox {
namespace {

constexpr const char* kClient = "SOAP-ENV:Client";
constexpr const char* kServer = "SOAP-ENV:Server";
constexpr const char* kVersionMismatch = "SOAP-ENV:VersionMismatch";
constexpr std::string_view kEnvelopeNamespace = "http://schemas.xmlsoap.org/soap/envelope/";

[[noreturn]] void refuse(const std::string& text) {
  throw Fault{.code = kClient, .text = text, .detail = {{"message", text}}};
}

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
  if (error.number == error_numbers::kSoapFault) refuse("The request is itself a SOAP fault");
  if (error.number == error_numbers::kNotASoapEnvelope && !document.empty()) {
    const SoapNode root = document.documentElement();
    if (root.Name() == "Envelope" && root.Namespace() != kEnvelopeNamespace) {
      throw Fault{.code = kVersionMismatch,
                  .text = "The Envelope is in the namespace '" + root.Namespace() +
                          "', expected '" + std::string(kEnvelopeNamespace) + "'"};
    }
  }
  refuse("The request cannot be read: " + in_words_of_a_server(error.description));
}

struct ParsedRequest {
  RequestFacts facts;
  SoapEnvelope envelope;
  std::string user_id;
};

std::optional<std::string> soap_action(const Request& request) {
  auto action = request.header("SOAPAction");
  if (action && action->size() >= 2 && action->front() == '"' && action->back() == '"') {
    return action->substr(1, action->size() - 2);
  }
  return action;
}

ParsedRequest parse(const Request& request) {
  ParsedRequest parsed{.facts = {}, .envelope = SoapEnvelope::make(), .user_id = {}};
  // An envelope does not tell the namespace of its method; the document does.
  XMLDocument document;
  document.load(request.body);
  try {
    parsed.envelope.Parse(request.body, charset(request.header("Content-Type").value_or("")));
  } catch (const Error& error) {
    refuse_document(error, document);
  }
  if (parsed.envelope.MethodName().empty()) refuse("The Body is empty, expected a method");
  if (document.empty()) refuse("The request is not in the encoding that it declares itself");
  parsed.facts.service = body_element(document.documentElement()).Namespace();
  parsed.facts.method = parsed.envelope.MethodName();
  parsed.facts.soap_action = soap_action(request);
  for (const SoapNode& header : parsed.envelope.Headers()) {
    parsed.facts.headers.push_back(header.Name());
    if (header.Name() == "userID" && header.Nodes().Count() == 0) {
      parsed.user_id = to_text(header.Value());
    }
  }
  for (const SoapNode& node : parsed.envelope.Parameters()) {
    parsed.facts.parameters.push_back({.name = node.Name(),
                                       .name_space = node.Namespace(),
                                       .type = node.Type(),
                                       .nil = node.nil()});
  }
  return parsed;
}

std::string run(Sandbox& sandbox, const Operations& operations, const Request& request) {
  const ParsedRequest parsed = parse(request);
  const RequestFacts& facts = parsed.facts;
  if (const auto complaint = sandbox.contract.complaint(facts)) refuse(*complaint);
  const auto operation = operations.soap.find({facts.service, facts.method});
  if (operation == operations.soap.end()) {
    throw Fault{.code = kServer,
                .text = facts.method + " in " + facts.service +
                        ": the request fits, but the sandbox does not answer this method"};
  }
  return reply_text(facts.service, facts.method, [&](SoapNodes results) {
    SoapCall call{.sandbox = sandbox,
                  .user_id = parsed.user_id,
                  .parameters = parsed.envelope.Parameters(),
                  .results = std::move(results)};
    operation->second(call);
  });
}

}  // namespace

Reply answer_soap(Sandbox& sandbox, const Operations& operations, const Request& request) {
  if (request.method != "POST") return method_not_allowed(request, "POST");
  const std::string type = media_type(request.header("Content-Type").value_or(""));
  if (type != "text/xml") {
    return text_reply(415, "Content-Type is '" + type + "', expected 'text/xml'.\n");
  }
  try {
    return xml_reply(200, run(sandbox, operations, request));
  } catch (const Fault& fault) {
    return xml_reply(500, fault_text(fault));
  } catch (const std::exception& error) {
    return xml_reply(500, fault_text({.code = kServer, .text = error.what()}));
  }
}

}  // namespace bvconn::sandbox
