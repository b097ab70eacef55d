#include <optional>
#include <string>
#include <utility>

#include "sandbox/contract/words.h"
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

void check_media_type(const Request& request, bool loose, Exchange& exchange) {
  const std::string type = media_type(request.header("Content-Type").value_or(""));
  if (type == "text/xml") return;
  exchange.differences.push_back({"Content-Type", "is " + in_quotes(type), in_quotes("text/xml")});
  exchange.outcome = loose ? Outcome::kWarned : Outcome::kRefused;
}

void read_envelope(const Sandbox& sandbox, const Request& request, Asked& asked) {
  asked.soap = read_request(request.body, charset(request.header("Content-Type").value_or("")));
  asked.soap->facts.soap_action = soap_action(request);
  note_envelope(*asked.soap, sandbox.contract.judge(asked.soap->facts), sandbox.loose,
                asked.exchange);
}

}  // namespace

Asked read_soap(const Sandbox& sandbox, const Request& request) {
  Asked asked;
  Exchange& exchange = asked.exchange;
  exchange.route = Route::kSoap;
  if (request.method != "POST") {
    exchange.outcome = Outcome::kRefused;
    asked.refusal = method_not_allowed(request, "POST");
    return asked;
  }
  check_media_type(request, sandbox.loose, exchange);
  if (exchange.outcome == Outcome::kRefused) {
    asked.refusal = error_text_reply(415, exchange.differences.front().text());
    return asked;
  }
  Reply reply = with_faults(500, Outcome::kRefused, exchange, [&] {
    read_envelope(sandbox, request, asked);
    return Reply();
  });
  if (reply.status != 200) asked.refusal = std::move(reply);
  return asked;
}

Reply answer_soap(Sandbox& sandbox, const Operations& operations, Asked& asked) {
  return with_faults(500, Outcome::kFault, asked.exchange, [&] {
    const RequestFacts& facts = asked.soap->facts;
    const auto method = operations.soap.find({facts.service, facts.method});
    if (method == operations.soap.end()) {
      throw Fault{.code = fault_codes::kServer,
                  .text = facts.method + " in " + facts.service +
                          ": the request fits, but the sandbox does not answer this method"};
    }
    return xml_reply(200, reply_text(method->first, method->second, sandbox, asked.soap->user_id,
                                     asked.soap->envelope.Parameters()));
  });
}

}  // namespace bvconn::sandbox
