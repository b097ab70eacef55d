#include "bvconn/platform/exchange/exchange_json.h"

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string_view>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/error.h"

namespace bvconn {
namespace {

std::string json_text(std::string_view text) {
  return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string json_number(std::int64_t number) {
  return conversions::integer_text(number);
}

/// An object, written member by member. The JSON library has one for scalars alone: its own objects
/// take memory when they are destroyed, and where there is none the process would end.
class JsonObject {
 public:
  /// `value` is JSON.
  JsonObject& add(std::string_view name, std::string_view value) {
    text_.append(text_.size() == 1 ? "" : ",").append(json_text(name)).append(":").append(value);
    return *this;
  }
  JsonObject& add_text(std::string_view name, std::string_view text) {
    return add(name, json_text(text));
  }
  JsonObject& add_number(std::string_view name, std::int64_t number) {
    return add(name, json_number(number));
  }
  JsonObject& add_text(const std::string& name, const BoundedText& text) {
    add_text(name, std::string_view(text.text));
    return add_number(name + "Size", static_cast<std::int64_t>(text.size));
  }

  std::string text() const { return text_ + "}"; }

 private:
  std::string text_ = "{";
};

JsonObject numbers_of(std::int32_t number) {
  return JsonObject()
      .add_number("number", number)
      .add_text("hex", std::string_view(hex_number(number)));
}

void add_request(JsonObject& json, const Exchange& exchange) {
  json.add("soapAction", exchange.soap_action ? json_text(*exchange.soap_action) : "null");
  json.add_text("request", exchange.request);
}

void add_dal_call(JsonObject& json, const Exchange& exchange) {
  json.add_text("object", std::string_view(exchange.object));
  json.add_text("objectOperation", std::string_view(exchange.object_operation));
  std::string arguments = "[";
  for (const ExchangeArgument& argument : exchange.arguments) {
    if (arguments.size() > 1) arguments.append(",");
    arguments.append(JsonObject()
                         .add_text("type", std::string_view(argument.type))
                         .add_text("text", argument.text)
                         .text());
  }
  json.add("arguments", arguments.append("]"));
  json.add_text("result", exchange.result);
}

void add_reply(JsonObject& json, const Exchange& exchange) {
  json.add_number("httpStatus", exchange.http_status);
  json.add_text("replyHeaders", exchange.reply_headers);
  json.add_text("reply", exchange.reply);
  const ExchangeTimes& times = exchange.times;
  json.add("microseconds", JsonObject()
                               .add_number("name", times.name_us)
                               .add_number("connect", times.connect_us)
                               .add_number("tls", times.tls_us)
                               .add_number("send", times.send_us)
                               .add_number("wait", times.wait_us)
                               .add_number("receive", times.receive_us)
                               .add_number("total", times.total_us)
                               .text());
  json.add_number("bytesSent", static_cast<std::int64_t>(exchange.bytes_sent));
  json.add_number("bytesReceived", static_cast<std::int64_t>(exchange.bytes_received));
}

void add_outcome(JsonObject& json, const Exchange& exchange) {
  json.add_text("outcome", outcome_text(exchange.outcome));
  if (exchange.error) {
    json.add("error", numbers_of(exchange.error->number)
                          .add_text("source", std::string_view(exchange.error->source))
                          .add_text("description", std::string_view(exchange.error->description))
                          .text());
  } else {
    json.add("error", "null");
  }
  json.add("raised", exchange.raised ? numbers_of(*exchange.raised).text() : "null");
}

}  // namespace

std::string exchange_json(const Exchange& exchange) {
  JsonObject json;
  json.add_number("number", static_cast<std::int64_t>(exchange.number))
      .add_text("at", std::string_view(conversions::iso_date_text(exchange.at)))
      .add_text("class", std::string_view(exchange.cls))
      .add_text("operation", std::string_view(exchange.operation))
      .add_text("route", route_text(exchange.route))
      .add_text("url", std::string_view(exchange.url));
  if (exchange.route == ExchangeRoute::kSoap) {
    add_request(json, exchange);
  } else {
    add_dal_call(json, exchange);
  }
  add_reply(json, exchange);
  add_outcome(json, exchange);
  return json.text();
}

}  // namespace bvconn
