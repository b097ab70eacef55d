#include "description.h"

#include <string_view>

#include "bvconn/platform/error.h"
#include "interface_text.h"
#include "json_text.h"

namespace bvconn::tool {
namespace {

using automation::ObservedCondition;
using automation::ObservedDalCall;
using automation::ObservedFailures;
using automation::ObservedParameter;
using automation::ObservedRequest;
using automation::Origin;
using automation::Sightings;

/// Adds where a content comes from: the arguments, or the text of a constant.
Json with_origin(Json json, const Origin& origin) {
  if (origin.arguments.empty()) {
    json["constant"] = origin.constant;
  } else {
    json["arguments"] = origin.arguments;
  }
  return json;
}

Json parameter(const ObservedParameter& seen) {
  Json json{{"name", seen.name.empty() ? Json() : Json(seen.name)}};
  if (!seen.name_space.empty()) json["namespace"] = seen.name_space;
  json["types"] = seen.types;
  json["nil"] = seen.may_be_nil;
  json["anyContent"] = seen.any_content;
  return with_origin(std::move(json), seen.origin);
}

Json request(const ObservedRequest& seen) {
  Json headers = Json::array();
  for (std::size_t i = 0; i < seen.headers.size(); ++i) {
    headers.push_back(with_origin({{"name", seen.headers[i]}}, seen.header_origins[i]));
  }
  Json body = Json::array();
  for (const ObservedParameter& each : seen.parameters) body.push_back(parameter(each));
  // The caller's names are none of the library's.
  const bool named = !seen.method.empty();
  return {{"cases", seen.cases},
          {"url", seen.url.arguments},
          {"service", named ? Json(seen.service) : Json()},
          {"method", named ? Json(seen.method) : Json()},
          {"soapAction", named && seen.soap_action ? Json(*seen.soap_action) : Json()},
          {"timeout", seen.timeout_ms ? Json(*seen.timeout_ms) : Json()},
          {"headers", std::move(headers)},
          {"body", std::move(body)},
          {"openEnded", seen.open_ended}};
}

Json dal_call(const ObservedDalCall& seen) {
  Json arguments = Json::array();
  for (const auto& each : seen.arguments) {
    arguments.push_back(with_origin(
        {{"types", each.types}, {"anyType", each.any_type}, {"requestText", each.request_text}},
        each.request_text ? Origin{.arguments = each.origin.arguments, .constant = ""}
                          : each.origin));
  }
  return {{"cases", seen.cases},
          {"object", seen.object},
          {"operation", seen.operation},
          {"byName", seen.by_name},
          {"arguments", std::move(arguments)}};
}

Json condition(const ObservedCondition& seen) {
  return {{"usingTorvexDAL", seen.needs_route},
          {"useDALSave", seen.needs_save},
          {"disabledBy", seen.disabled_by}};
}

Json log_lines(const std::vector<Sightings::LogLine>& lines) {
  Json json = Json::array();
  for (const auto& line : lines) {
    json.push_back({{"do", line.action}, {"class", line.cls}, {"method", line.method}});
    // As in a trace: these have a level, the others a text.
    if (line.action.ends_with("Method") || line.action == "LogAtLevel") {
      json.back()["level"] = line.level;
    }
    if (line.action == "LogInfo" || line.action == "LogWarning" || line.action == "LogAtLevel") {
      json.back()["text"] = line.text;
    }
  }
  return json;
}

Json number(std::int32_t value) {
  return {{"number", value}, {"hex", hex_number(value)}};
}

Json failures(const std::optional<ObservedFailures>& seen) {
  if (!seen) return {};
  Json keeps = Json();
  if (seen->broken) {
    keeps = Json::array();
    if (seen->broken->number) keeps.push_back("number");
    if (seen->broken->source) keeps.push_back("source");
    if (seen->broken->description) keeps.push_back("description");
    if (seen->broken->help) keeps.insert(keeps.end(), {"helpFile", "helpContext"});
  }
  Json fault;
  if (seen->fault) {
    fault = number(seen->fault->number);
    fault["serverText"] = seen->fault->server_text;
  }
  Json codes = Json::array();
  for (const auto& [code, becomes] : seen->codes) {
    codes.push_back(number(becomes));
    codes.back()["code"] = code;
  }
  return {{"keeps", std::move(keeps)},
          {"fault", std::move(fault)},
          {"codes", std::move(codes)},
          {"log", log_lines(seen->log)}};
}

}  // namespace

Description describe(const Target& target) {
  return {.target = target,
          .observed = automation::observe(*target.info, *target.member),
          .conduct = automation::observe_conduct(*target.info, *target.member)};
}

std::string description_json(const Description& description) {
  const automation::Member& member = *description.target.member;
  const auto& conduct = description.conduct;
  Json json{{"class", description.target.info->name},
            {"operation", member.name},
            {"result", automation::type_name(member.result)},
            {"arguments", Json::parse(json_list(member.arguments, argument_json))},
            {"soap", Json::array()},
            {"dal", Json::array()}};
  for (const auto& each : description.observed.requests) json["soap"].push_back(request(each));
  for (const auto& each : description.observed.dal_calls) json["dal"].push_back(dal_call(each));
  json["condition"] = conduct.condition ? condition(*conduct.condition) : Json();
  json["failures"] = {{"soap", failures(conduct.soap)}, {"dal", failures(conduct.dal)}};
  json["log"] = log_lines(conduct.log);
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace bvconn::tool
