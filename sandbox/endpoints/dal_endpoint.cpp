#include <mutex>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "sandbox/contract/words.h"
#include "sandbox/endpoints/dal_answer.h"
#include "sandbox/endpoints/dal_arguments.h"
#include "sandbox/endpoints/endpoints.h"

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
  const std::lock_guard lock(sandbox.mutex);
  return sandbox.logins.user_of(std::string_view(*authorization).substr(kScheme.size()));
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

DalAnswer run(Sandbox& sandbox, const Operations& operations, const Request& request,
              const DalTarget& target) {
  const DalRoute& route = route_to(sandbox, operations, target);
  const auto session = operations.session.find({target.object, target.operation});
  const bool is_session = session != operations.session.end();
  const auto user = user_of(sandbox, request);
  const bool needs_login = !is_session || session->second.needs_login;
  if (needs_login && !user) refuse_without_login(target);
  const std::vector<Variant> arguments = read_arguments(request.body, route);
  if (!is_session) return {.text = dal_answer(sandbox, operations, route, arguments, *user)};
  const std::lock_guard lock(sandbox.mutex);
  SessionCall call{.sandbox = sandbox, .arguments = arguments};
  return session->second.run(call);
}

Reply error_reply(const DalError& error) {
  const json body{{"number", error.number},
                  {"source", error.source},
                  {"description", shortened(error.description)}};
  // A target's bytes need not be UTF-8, and the description may quote them.
  return json_reply(error.status, body.dump(-1, ' ', false, json::error_handler_t::replace));
}

Reply answer_target(Sandbox& sandbox, const Operations& operations, const Request& request,
                    const DalTarget& target) {
  const DalAnswer answer = run(sandbox, operations, request, target);
  Reply reply = text_reply(200, answer.text);
  if (!answer.token.empty()) {
    reply.headers.push_back({.name = "Session-Token", .value = answer.token});
  }
  return reply;
}

}  // namespace

Reply answer_dal(Sandbox& sandbox, const Operations& operations, const Request& request) {
  if (request.method != "POST") return method_not_allowed(request, "POST");
  const auto target = target_of(request.path());
  try {
    if (!target) {
      throw DalError{
          404, dal_numbers::kNoSuchOperation, "bvsandbox",
          "The path is '" + std::string(request.path()) + "', expected /dal/{Object}/{Operation}"};
    }
    const std::string type = media_type(request.header("Content-Type").value_or(""));
    if (type != "application/json") {
      throw DalError{
          415, dal_numbers::kBadRequest, target->object,
          target->operation + ": Content-Type is '" + type + "', expected 'application/json'"};
    }
    return answer_target(sandbox, operations, request, *target);
  } catch (const DalError& error) {
    return error_reply(error);
  } catch (const std::exception& error) {
    return error_reply({500, dal_numbers::kInternal, "bvsandbox", error.what()});
  }
}

}  // namespace bvconn::sandbox
