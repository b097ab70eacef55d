#include <optional>
#include <string>

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

std::string run(Sandbox& sandbox, const Operations& operations, const Request& request) {
  SoapRequest read =
      read_request(request.body, charset(request.header("Content-Type").value_or("")));
  RequestFacts& facts = read.facts;
  facts.soap_action = soap_action(request);
  if (const auto complaint = sandbox.contract.complaint(facts)) refuse(*complaint);
  const auto method = operations.soap.find({facts.service, facts.method});
  if (method == operations.soap.end()) {
    throw Fault{.code = fault_codes::kServer,
                .text = facts.method + " in " + facts.service +
                        ": the request fits, but the sandbox does not answer this method"};
  }
  return reply_text(method->first, method->second, sandbox, read.user_id,
                    read.envelope.Parameters());
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
    return xml_reply(500, fault_text({.code = fault_codes::kServer, .text = error.what()}));
  }
}

}  // namespace bvconn::sandbox
