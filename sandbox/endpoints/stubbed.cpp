#include "sandbox/endpoints/stubbed.h"

#include <exception>

#include "sandbox/endpoints/soap_text.h"
#include "sandbox/stubs/stub_forms.h"

namespace bvconn::sandbox {
namespace {

// Their answers are no envelopes.
constexpr std::string_view kLoginObject = "AuthenticationService";

/// Which method's response the answer is.
Operations::Name answered_name(const Asked& asked) {
  if (asked.soap) return {asked.soap->facts.service, asked.soap->facts.method};
  const DalRoute& route = *asked.dal_route;
  if (!route.methods.empty()) return route.methods.front();
  return {"urn:" + route.object, route.operation};
}

Reply reply_on(Route route, const std::string& text, bool is_fault) {
  if (route == Route::kDal) return text_reply(200, text);
  return xml_reply(is_fault ? 500 : 200, text);
}

Reply reply_of(const StubRule& rule, const Asked& asked) {
  const Route route = asked.exchange.route;
  try {
    const std::string xml = rule.filled(asked.exchange);
    if (rule.is_envelope) return reply_on(route, xml, rule.is_fault);
    const auto [service, method] = answered_name(asked);
    return reply_on(route, response_text(service, method, xml), false);
  } catch (const std::exception& error) {
    return reply_on(route, fault_text({.code = fault_codes::kServer, .text = error.what()}), true);
  }
}

}  // namespace

std::vector<const OperationForm*> forms_for_stubs(const Sandbox& sandbox) {
  std::vector<const OperationForm*> forms = sandbox.contract.forms();
  for (const auto& [name, route] : sandbox.dal_routes) {
    if (name.first == kLoginObject) continue;
    for (const OperationForm& each : route.forms) forms.push_back(&each);
  }
  return forms;
}

std::optional<Reply> stubbed(Sandbox& sandbox, const Operations& operations, Asked& asked) {
  const DalRoute* route = asked.dal_route;
  if (route && operations.session.contains({route->object, route->operation})) return std::nullopt;
  const auto stub = sandbox.stubs->take(asked.exchange);
  if (!stub) return std::nullopt;
  asked.exchange.answered_by = "stub " + stub->id;
  if (stub->rule.is_fault) asked.exchange.outcome = Outcome::kFault;
  return reply_of(stub->rule, asked);
}

}  // namespace bvconn::sandbox
