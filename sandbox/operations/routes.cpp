#include "sandbox/operations/routes.h"

#include <exception>
#include <map>
#include <string_view>
#include <utility>

#include "bvconn/platform/soap/soap_envelope.h"
#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/soap/xml_document.h"
#include "sandbox/endpoints/soap_text.h"
#include "sandbox/operations/documents.h"

namespace bvconn::sandbox {
namespace {

constexpr const char* kServerFault = "SOAP-ENV:Server";

[[noreturn]] void refuse_arguments(const Route& route, const std::string& expected) {
  throw DalError{400, dal_numbers::kBadRequest, route.object,
                 route.operation + " takes " + expected};
}

struct Request {
  SoapEnvelope envelope;
  std::string service;
  std::string user_id;
};

Request request_of_keys(const Route& route, const DalCall& call) {
  Request request{.envelope = SoapEnvelope::make(),
                  .service = route.service,
                  .user_id = std::string(call.user)};
  const std::string expected = std::to_string(route.keys) + " arguments, texts or booleans" +
                               (route.takes_numbers ? ", whole numbers or null" : "");
  if (call.arguments.size() != static_cast<std::size_t>(route.keys))
    refuse_arguments(route, expected);
  for (const auto& argument : call.arguments) {
    if (argument.is_boolean()) {
      request.envelope.Parameters().Create("param", argument.get<bool>());
    } else if (route.takes_numbers && argument.is_number_integer()) {
      request.envelope.Parameters().Create("param", argument.get<std::int32_t>());
    } else if (route.takes_numbers && argument.is_null()) {
      request.envelope.Parameters().Create("param", "");
    } else if (argument.is_string()) {
      request.envelope.Parameters().Create("param", argument.get<std::string>());
    } else {
      refuse_arguments(route, expected);
    }
  }
  return request;
}

/// The namespace of the method element; only the document tells it.
std::string service_in(const std::string& text) {
  XMLDocument document;
  document.load(text);
  return document.documentElement().Nodes().ItemByName("Body").Nodes().Item(0).Namespace();
}

/// The text has to be what the SOAP route would send, the SOAPAction apart, which it has not.
void check(const Sandbox& sandbox, const Request& request) {
  RequestFacts facts{.service = request.service,
                     .method = request.envelope.MethodName(),
                     .soap_action = request.service,
                     .headers = {},
                     .parameters = {}};
  for (const SoapNode& each : request.envelope.Headers()) facts.headers.push_back(each.Name());
  for (const SoapNode& each : request.envelope.Parameters()) {
    facts.parameters.push_back({.name = each.Name(),
                                .name_space = each.Namespace(),
                                .type = each.Type(),
                                .nil = each.nil()});
  }
  if (const auto complaint = sandbox.contract.complaint(facts)) refuse_document(*complaint);
}

Request request_of_text(const Route& route, const DalCall& call) {
  if (call.arguments.size() != 1 || !call.arguments[0].is_string()) {
    refuse_arguments(route, "one argument, the text of a request");
  }
  const auto text = call.arguments[0].get<std::string>();
  Request request{.envelope = SoapEnvelope::make(), .service = {}, .user_id = {}};
  request.envelope.Parse(text, "");
  request.service = service_in(text);
  const std::string method = request.envelope.MethodName();
  const bool service_fits = route.service.empty() || request.service == route.service;
  if (method != route.method || !service_fits) {
    refuse_document("The request is " + method + " in '" + request.service + "', expected " +
                    route.method + " in '" + route.service + "'");
  }
  for (const SoapNode& header : request.envelope.Headers()) {
    if (header.Name() == "userID" && header.Nodes().Count() == 0) {
      request.user_id = to_text(header.Value());
    }
  }
  return request;
}

/// The methods that a route can lead to, by their service.
using Methods = std::map<std::string, Method>;

Methods methods_of(const Operations& operations, const Route& route) {
  Methods methods;
  for (const auto& [name, method] : operations.soap) {
    const bool wanted = route.service.empty() || name.first == route.service;
    if (wanted && name.second == route.method) methods[name.first] = method;
  }
  return methods;
}

std::string answer_by_dal(DalCall& call, const Route& route, const Methods& methods) {
  const bool is_text = route.keys == kRequestText;
  const Request request = is_text ? request_of_text(route, call) : request_of_keys(route, call);
  if (is_text) check(call.sandbox, request);
  const auto method = methods.find(request.service);
  if (method == methods.end()) {
    refuse_document("There is no " + route.method + " in '" + request.service + "'");
  }
  return reply_text(request.service, route.method, [&](SoapNodes results) {
    SoapCall soap_call{.sandbox = call.sandbox,
                       .user_id = request.user_id,
                       .parameters = request.envelope.Parameters(),
                       .results = std::move(results)};
    method->second(soap_call);
  });
}

/// A fault is a text as well here, which the client reads as it would a reply.
DalAnswer run_route(DalCall& call, const Route& route, const Methods& methods) {
  try {
    return {.text = answer_by_dal(call, route, methods)};
  } catch (const Fault& fault) {
    return {.text = fault_text(fault)};
  } catch (const std::exception& error) {
    return {.text = fault_text({.code = kServerFault, .text = error.what()})};
  }
}

}  // namespace

void add_method(Operations& operations, const std::string& service, const std::string& name,
                Method method) {
  operations.soap[{service, name}] = [method = std::move(method)](SoapCall& call) {
    Transaction transaction = call.sandbox.store.transaction();
    method(call);
    transaction.commit();
  };
}

void add_route(Operations& operations, const Route& route) {
  operations.dal[{route.object, route.operation}] = {
      .run = [route, methods = methods_of(operations, route)](DalCall& call) {
        return run_route(call, route, methods);
      }};
}

}  // namespace bvconn::sandbox
