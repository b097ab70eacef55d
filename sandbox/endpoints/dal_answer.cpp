#include "sandbox/endpoints/dal_answer.h"

#include <algorithm>
#include <exception>

#include "bvconn/platform/soap/soap_envelope.h"
#include "sandbox/contract/words.h"
#include "sandbox/endpoints/soap_request.h"
#include "sandbox/endpoints/soap_text.h"

namespace bvconn::sandbox {
namespace {

std::string methods_text(const DalRoute& route) {
  return listed(route.methods, " or ",
                [](const auto& name) { return name.second + " in " + quoted(name.first); });
}

/// The text has to be what the SOAP route would send for the same operation.
SoapRequest request_in(const Sandbox& sandbox, const DalRoute& route, const std::string& text) {
  SoapRequest request = read_request(text, "");
  const RequestFacts& facts = request.facts;
  const Operations::Name name{facts.service, facts.method};
  if (std::find(route.methods.begin(), route.methods.end(), name) == route.methods.end()) {
    refuse("The request is " + facts.method + " in '" + facts.service + "', expected " +
           methods_text(route));
  }
  if (const auto wrong = sandbox.contract.envelope_complaint(facts)) refuse(*wrong);
  return request;
}

std::string answer_request_text(Sandbox& sandbox, const Operations& operations,
                                const DalRoute& route, const std::string& text) {
  const SoapRequest request = request_in(sandbox, route, text);
  const Operations::Name name{request.facts.service, request.facts.method};
  return reply_text(name, operations.soap.at(name), sandbox, request.user_id,
                    request.envelope.Parameters());
}

std::string answer_arguments(Sandbox& sandbox, const Operations& operations, const DalRoute& route,
                             const std::vector<Variant>& arguments, std::string_view user) {
  const auto envelope = SoapEnvelope::make();
  SoapNodes parameters = envelope.Parameters();
  for (const RoutedParameter& each : route.parameters) {
    if (each.argument) {
      parameters.Create(each.name, arguments[*each.argument]);
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

std::string dal_answer(Sandbox& sandbox, const Operations& operations, const DalRoute& route,
                       const std::vector<Variant>& arguments, std::string_view user) {
  try {
    if (route.takes_request_text) {
      return answer_request_text(sandbox, operations, route, arguments[0].string());
    }
    return answer_arguments(sandbox, operations, route, arguments, user);
  } catch (const Fault& fault) {
    return fault_text(fault);
  } catch (const std::exception& error) {
    return fault_text({.code = fault_codes::kServer, .text = error.what()});
  }
}

}  // namespace bvconn::sandbox
