#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "sandbox/contract/words.h"
#include "sandbox/endpoints/asked.h"
#include "sandbox/endpoints/dal_answer.h"
#include "sandbox/endpoints/dal_arguments.h"
#include "sandbox/endpoints/endpoints.h"
#include "sandbox/endpoints/soap_text.h"

namespace bvconn::sandbox {
namespace {

using nlohmann::json;

struct DalTarget {
  std::string object;
  std::string operation;
};

std::optional<DalTarget> target_of(std::string_view path) {
  constexpr std::string_view kPrefix = "/dal/";
  if (!path.starts_with(kPrefix)) return std::nullopt;
  path.remove_prefix(kPrefix.size());
  const auto slash = path.find('/');
  if (slash == std::string_view::npos) return std::nullopt;
  return DalTarget{.object = std::string(path.substr(0, slash)),
                   .operation = std::string(path.substr(slash + 1))};
}

/// Nothing without a login.
std::optional<std::string> user_of(Sandbox& sandbox, const Request& request) {
  constexpr std::string_view kScheme = "Bearer ";
  const auto authorization = request.header("Authorization");
  if (!authorization || !authorization->starts_with(kScheme)) return std::nullopt;
  const HeldStore store = sandbox.stores.hold(Turn::kNone);
  return store->logins().user_of(std::string_view(*authorization).substr(kScheme.size()));
}

[[noreturn]] void refuse_without_login(const DalTarget& target) {
  throw DalError{401, dal_numbers::kNotLoggedIn, target.object,
                 target.operation +
                     " needs a login: call AuthenticationService/Login and send "
                     "its Session-Token as 'Authorization: Bearer ...'"};
}

const DalRoute& route_to(const Sandbox& sandbox, const Operations& operations,
                         const DalTarget& target) {
  const auto found = sandbox.dal_routes.find({target.object, target.operation});
  if (found != sandbox.dal_routes.end() && is_served(operations, found->second)) {
    return found->second;
  }
  throw DalError{404, dal_numbers::kNoSuchOperation, target.object,
                 "The sandbox has no operation '" + target.operation + "' of the object '" +
                     target.object + "'"};
}

Reply error_reply(const DalError& error) {
  const json body{{"number", error.number},
                  {"source", error.source},
                  {"description", shortened(error.description)}};
  // A target's bytes need not be UTF-8, and the description may quote them.
  Reply reply = json_reply(error.status, body.dump(-1, ' ', false, json::error_handler_t::replace));
  reply.remark = shortened(error.description);
  return reply;
}

/// Runs something that answers by an error in JSON where it throws one.
template <class Body>
Reply with_errors(Outcome of_error, Exchange& exchange, const Body& body) {
  try {
    return body();
  } catch (const DalError& error) {
    exchange.outcome = of_error;
    return error_reply(error);
  } catch (const std::exception& error) {
    exchange.outcome = Outcome::kFailed;
    return error_reply({500, dal_numbers::kInternal, "bvsandbox", error.what()});
  }
}

bool needs_login(const Operations& operations, const DalTarget& target) {
  const auto session = operations.session.find({target.object, target.operation});
  return session == operations.session.end() || session->second.needs_login;
}

/// Notes in what a call differs; throws where that is not to be overlooked.
void note_differences(std::vector<Difference> differences, int status, bool loose,
                      const DalTarget& target, Exchange& exchange) {
  if (differences.empty()) return;
  const std::string complaint = complaint_text(target.operation, differences);
  std::move(differences.begin(), differences.end(), std::back_inserter(exchange.differences));
  if (!loose) throw DalError{status, dal_numbers::kBadRequest, target.object, complaint};
  exchange.outcome = Outcome::kWarned;
}

std::vector<Difference> media_type_differences(const Request& request) {
  const std::string type = media_type(request.header("Content-Type").value_or(""));
  if (type == "application/json") return {};
  return {{"Content-Type", "is '" + type + "'", "'application/json'"}};
}

void read_call(Sandbox& sandbox, const Operations& operations, const Request& request,
               Asked& asked) {
  const auto target = target_of(request.path());
  if (!target) {
    throw DalError{
        404, dal_numbers::kNoSuchOperation, "bvsandbox",
        "The path is '" + std::string(request.path()) + "', expected /dal/{Object}/{Operation}"};
  }
  Exchange& exchange = asked.exchange;
  exchange.service = target->object;
  exchange.method = target->operation;
  note_differences(media_type_differences(request), 415, sandbox.loose, *target, exchange);
  const DalRoute& route = route_to(sandbox, operations, *target);
  asked.dal_route = &route;
  for (const OperationForm& form : route.forms) exchange.forms.push_back(&form);
  const auto user = user_of(sandbox, request);
  exchange.session = user.value_or("");
  if (!user && needs_login(operations, *target)) refuse_without_login(*target);
  DalArguments arguments = read_arguments(request.body, route);
  for (const Variant& each : arguments.values) exchange.values.emplace_back(each);
  narrow_by_constants(exchange);
  note_differences(std::move(arguments.differences), 400, sandbox.loose, *target, exchange);
  // What is answered all the same finds as many as it looks for.
  asked.arguments = std::move(arguments.values);
  asked.arguments.resize(route.arguments.size());
}

}  // namespace

Asked read_dal(Sandbox& sandbox, const Operations& operations, const Request& request) {
  Asked asked;
  asked.exchange.route = Route::kDal;
  if (request.method != "POST") {
    asked.exchange.outcome = Outcome::kRefused;
    asked.refusal = method_not_allowed(request, "POST");
    return asked;
  }
  Reply reply = with_errors(Outcome::kRefused, asked.exchange, [&] {
    read_call(sandbox, operations, request, asked);
    return Reply();
  });
  if (reply.status != 200) {
    asked.refusal = std::move(reply);
  } else if (asked.dal_route->takes_request_text) {
    asked.refusal = refusal_of_request_text(sandbox, asked);
  }
  return asked;
}

Reply answer_dal(Sandbox& sandbox, const Operations& operations, Asked& asked) {
  const DalRoute& route = *asked.dal_route;
  const auto session = operations.session.find({route.object, route.operation});
  if (session == operations.session.end()) {
    // A fault comes as the text of an envelope, which clients read as they would a reply.
    return with_faults(200, Outcome::kFault, asked.exchange,
                       [&] { return text_reply(200, dal_answer(sandbox, operations, asked)); });
  }
  return with_errors(Outcome::kFault, asked.exchange, [&] {
    const HeldStore store = sandbox.stores.hold(session->second.turn);
    SessionCall call{.store = *store, .arguments = asked.arguments};
    const DalAnswer answer = session->second.run(call);
    Reply reply = text_reply(200, answer.text);
    if (!answer.token.empty()) {
      reply.headers.push_back({.name = "Session-Token", .value = answer.token});
    }
    return reply;
  });
}

Reply answer_error(const Operations& operations, Asked& asked, const std::exception& error) {
  asked.exchange.outcome = Outcome::kFailed;
  const DalRoute* const route = asked.dal_route;
  if (route && operations.session.contains({route->object, route->operation})) {
    return error_reply({500, dal_numbers::kInternal, "bvsandbox", error.what()});
  }
  return fault_reply(route ? 200 : 500, {.code = fault_codes::kServer, .text = error.what()});
}

}  // namespace bvconn::sandbox
