#include "bvconn/platform/exchange/exchange_json.h"

#include <nlohmann/json.hpp>
#include <string_view>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/error.h"

namespace bvconn {
namespace {

using Json = nlohmann::ordered_json;

void add_text(Json& object, const std::string& name, const BoundedText& text) {
  object[name] = text.text;
  object[name + "Size"] = text.size;
}

Json numbers_of(std::int32_t number) {
  return {{"number", number}, {"hex", hex_number(number)}};
}

void add_request(Json& json, const Exchange& exchange) {
  if (exchange.soap_action) {
    json["soapAction"] = *exchange.soap_action;
  } else {
    json["soapAction"] = nullptr;
  }
  add_text(json, "request", exchange.request);
}

void add_dal_call(Json& json, const Exchange& exchange) {
  json["object"] = exchange.object;
  json["objectOperation"] = exchange.object_operation;
  Json arguments = Json::array();
  for (const ExchangeArgument& argument : exchange.arguments) {
    Json entry{{"type", argument.type}};
    add_text(entry, "text", argument.text);
    arguments.push_back(std::move(entry));
  }
  json["arguments"] = std::move(arguments);
  add_text(json, "result", exchange.result);
}

void add_reply(Json& json, const Exchange& exchange) {
  json["httpStatus"] = exchange.http_status;
  add_text(json, "replyHeaders", exchange.reply_headers);
  add_text(json, "reply", exchange.reply);
  const ExchangeTimes& times = exchange.times;
  json["microseconds"] = {{"name", times.name_us},  {"connect", times.connect_us},
                          {"tls", times.tls_us},    {"send", times.send_us},
                          {"wait", times.wait_us},  {"receive", times.receive_us},
                          {"total", times.total_us}};
  json["bytesSent"] = exchange.bytes_sent;
  json["bytesReceived"] = exchange.bytes_received;
}

void add_outcome(Json& json, const Exchange& exchange) {
  json["outcome"] = std::string(outcome_text(exchange.outcome));
  json["error"] = nullptr;
  if (exchange.error) {
    json["error"] = numbers_of(exchange.error->number);
    json["error"]["source"] = exchange.error->source;
    json["error"]["description"] = exchange.error->description;
  }
  json["raised"] = nullptr;
  if (exchange.raised) json["raised"] = numbers_of(*exchange.raised);
}

}  // namespace

std::string exchange_json(const Exchange& exchange) {
  Json json{{"number", exchange.number},
            {"at", conversions::iso_date_text(exchange.at)},
            {"class", exchange.cls},
            {"operation", exchange.operation},
            {"route", std::string(route_text(exchange.route))},
            {"url", exchange.url}};
  if (exchange.route == ExchangeRoute::kSoap) {
    add_request(json, exchange);
  } else {
    add_dal_call(json, exchange);
  }
  add_reply(json, exchange);
  add_outcome(json, exchange);
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace bvconn
