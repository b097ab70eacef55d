#include <nlohmann/json.hpp>
#include <optional>
#include <string>

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
std::optional<std::string> user_of(const Sandbox& sandbox, const Request& request) {
  constexpr std::string_view kScheme = "Bearer ";
  const auto authorization = request.header("Authorization");
  if (!authorization || !authorization->starts_with(kScheme)) return std::nullopt;
  return sandbox.logins.user_of(std::string_view(*authorization).substr(kScheme.size()));
}

json arguments_of(const Request& request, const DalTarget& target) {
  json body = json::parse(request.body, nullptr, /*allow_exceptions=*/false);
  if (body.is_object() && body.size() == 1 && body.contains("arguments") &&
      body["arguments"].is_array()) {
    return std::move(body["arguments"]);
  }
  throw DalError{400, dal_numbers::kBadRequest, target.object,
                 target.operation + ": the body is not JSON of the form {\"arguments\":[...]}"};
}

DalAnswer run(Sandbox& sandbox, const Operations& operations, const Request& request,
              const DalTarget& target) {
  const auto found = operations.dal.find({target.object, target.operation});
  if (found == operations.dal.end()) {
    throw DalError{404, dal_numbers::kNoSuchOperation, target.object,
                   "The sandbox has no operation '" + target.operation + "' of the object '" +
                       target.object + "'"};
  }
  const auto user = user_of(sandbox, request);
  if (found->second.needs_login && !user) {
    throw DalError{401, dal_numbers::kNotLoggedIn, target.object,
                   target.operation +
                       " needs a login: call AuthenticationService/Login and send "
                       "its Session-Token as 'Authorization: Bearer ...'"};
  }
  const json arguments = arguments_of(request, target);
  DalCall call{
      .sandbox = sandbox, .arguments = arguments, .user = user ? *user : std::string_view()};
  return found->second.run(call);
}

Reply error_reply(const DalError& error) {
  const json body{
      {"number", error.number}, {"source", error.source}, {"description", error.description}};
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
