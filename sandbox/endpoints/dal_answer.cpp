#include "sandbox/endpoints/dal_answer.h"

#include <algorithm>
#include <utility>

#include "bvconn/platform/soap/soap_envelope.h"
#include "sandbox/contract/words.h"
#include "sandbox/endpoints/soap_request.h"
#include "sandbox/endpoints/soap_text.h"

namespace bvconn::sandbox {
namespace {

std::string methods_text(const DalRoute& route) {
  return listed(route.methods, " or ",
                [](const auto& name) { return name.second + " in " + in_quotes(name.first); });
}

/// Of the operations that send the envelope on the SOAP route, those that make this call.
void keep_forms_of(const DalRoute& route, Verdict& verdict) {
  std::erase_if(verdict.forms, [&](const OperationForm* form) {
    return std::none_of(route.forms.begin(), route.forms.end(),
                        [&](const OperationForm& each) { return each.name == form->name; });
  });
}

void read_request_text(const Sandbox& sandbox, Asked& asked) {
  const DalRoute& route = *asked.dal_route;
  asked.soap = read_request(asked.arguments[0].string(), "");
  const RequestFacts& facts = asked.soap->facts;
  Exchange& exchange = asked.exchange;
  exchange.values.clear();
  Verdict verdict = sandbox.contract.judge_envelope(facts);
  keep_forms_of(route, verdict);
  const Operations::Name name{facts.service, facts.method};
  if (std::find(route.methods.begin(), route.methods.end(), name) == route.methods.end()) {
    const Difference other{"The request", "is " + facts.method + " in " + in_quotes(facts.service),
                           methods_text(route)};
    verdict.subject.clear();
    verdict.differences.assign(1, other);
  }
  note_envelope(*asked.soap, std::move(verdict), sandbox.loose, exchange);
}

std::string answer_arguments(Sandbox& sandbox, const Operations& operations, const Asked& asked) {
  const DalRoute& route = *asked.dal_route;
  const std::string& user = asked.exchange.session;
  const auto envelope = SoapEnvelope::make();
  SoapNodes parameters = envelope.Parameters();
  for (const RoutedParameter& each : route.parameters) {
    if (each.argument) {
      parameters.Create(each.name, asked.arguments[*each.argument]);
    } else {
      parameters.Create(each.name, each.constant.empty() ? Variant() : Variant(each.constant));
    }
  }
  const Operations::Name own{route.object, route.operation};
  const auto alone = operations.dal_alone.find(own);
  if (alone != operations.dal_alone.end()) {
    return reply_text({"urn:" + route.object, route.operation}, alone->second, sandbox, user,
                      parameters);
  }
  const Operations::Name& name = route.methods.front();
  return reply_text(name, operations.soap.at(name), sandbox, user, parameters);
}

}  // namespace

bool is_served(const Operations& operations, const DalRoute& route) {
  const Operations::Name own{route.object, route.operation};
  if (operations.session.contains(own) || operations.dal_alone.contains(own)) return true;
  return !route.methods.empty() &&
         std::all_of(route.methods.begin(), route.methods.end(),
                     [&](const auto& name) { return operations.soap.contains(name); });
}

std::optional<Reply> refusal_of_request_text(const Sandbox& sandbox, Asked& asked) {
  const std::string object = asked.exchange.service;
  const std::string operation = asked.exchange.method;
  Reply reply = with_faults(200, Outcome::kRefused, asked.exchange, [&] {
    read_request_text(sandbox, asked);
    return Reply();
  });
  // The call is what was asked for; the envelope is its argument.
  asked.exchange.service = object;
  asked.exchange.method = operation;
  if (asked.exchange.outcome != Outcome::kRefused && asked.exchange.outcome != Outcome::kFailed) {
    return std::nullopt;
  }
  return reply;
}

std::string dal_answer(Sandbox& sandbox, const Operations& operations, const Asked& asked) {
  if (!asked.soap) return answer_arguments(sandbox, operations, asked);
  const RequestFacts& facts = asked.soap->facts;
  const Operations::Name name{facts.service, facts.method};
  return reply_text(name, operations.soap.at(name), sandbox, asked.soap->user_id,
                    asked.soap->envelope.Parameters());
}

}  // namespace bvconn::sandbox
