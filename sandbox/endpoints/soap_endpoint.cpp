#include <exception>
#include <optional>
#include <string>
#include <utility>

#include "sandbox/endpoints/asked.h"
#include "sandbox/endpoints/endpoints.h"
#include "sandbox/endpoints/soap_request.h"
#include "sandbox/endpoints/soap_text.h"

namespace bvconn::sandbox {
namespace {

std::optional<std::string> soap_action(const Request& request) {
  auto action = request.header("SOAPAction");
  if (action && action->size() >= 2 && action->front() == '"' && action->back() == '"') {
    return action->substr(1, action->size() - 2);
  }
  return action;
}

/// Runs something that answers by an envelope; what it throws becomes a fault.
template <class Body>
Reply reply_of(const Body& body) {
  try {
    return xml_reply(200, body());
  } catch (const Fault& fault) {
    return xml_reply(500, fault_text(fault));
  } catch (const std::exception& error) {
    return xml_reply(500, fault_text({.code = fault_codes::kServer, .text = error.what()}));
  }
}

void read_envelope(const Sandbox& sandbox, const Request& request, Asked& asked) {
  asked.soap = read_request(request.body, charset(request.header("Content-Type").value_or("")));
  asked.soap->facts.soap_action = soap_action(request);
  note_envelope(sandbox.contract, *asked.soap, asked.exchange);
  if (const auto complaint = sandbox.contract.complaint(asked.soap->facts)) refuse(*complaint);
}

}  // namespace

Asked read_soap(const Sandbox& sandbox, const Request& request) {
  Asked asked;
  asked.exchange.route = Route::kSoap;
  if (request.method != "POST") {
    asked.refusal = method_not_allowed(request, "POST");
    return asked;
  }
  const std::string type = media_type(request.header("Content-Type").value_or(""));
  if (type != "text/xml") {
    asked.refusal = text_reply(415, "Content-Type is '" + type + "', expected 'text/xml'.\n");
    return asked;
  }
  Reply reply = reply_of([&] {
    read_envelope(sandbox, request, asked);
    return std::string();
  });
  if (reply.status != 200) asked.refusal = std::move(reply);
  return asked;
}

Reply answer_soap(Sandbox& sandbox, const Operations& operations, const Asked& asked) {
  return reply_of([&] {
    const RequestFacts& facts = asked.soap->facts;
    const auto method = operations.soap.find({facts.service, facts.method});
    if (method == operations.soap.end()) {
      throw Fault{.code = fault_codes::kServer,
                  .text = facts.method + " in " + facts.service +
                          ": the request fits, but the sandbox does not answer this method"};
    }
    return reply_text(method->first, method->second, sandbox, asked.soap->user_id,
                      asked.soap->envelope.Parameters());
  });
}

}  // namespace bvconn::sandbox
