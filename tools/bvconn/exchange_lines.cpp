#include "exchange_lines.h"

#include <cstdint>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/exchange/mask_exchange.h"
#include "bvconn/platform/exchange/mask_request.h"
#include "json_value.h"
#include "status.h"

namespace bvconn::tool {
namespace {

const JsonValue& member(const JsonValue& json, const char* name) {
  static const JsonValue kNothing;
  const JsonValue* const found = json.find(name);
  return found == nullptr ? kNothing : *found;
}

std::string text_of(const JsonValue& json, const char* name) {
  const std::string* const text = member(json, name).text();
  return text != nullptr ? *text : "";
}

std::int64_t number_of(const JsonValue& json, const char* name) {
  const std::int64_t* const number = member(json, name).integer();
  return number != nullptr ? *number : 0;
}

void read_text(const JsonValue& json, const std::string& name, BoundedText& text) {
  text.assign(text_of(json, name.c_str()));
  const std::int64_t size = number_of(json, (name + "Size").c_str());
  if (size > 0) text.size = static_cast<std::uint64_t>(size);
}

void read_arguments(const JsonValue& json, Exchange& exchange) {
  const JsonValue::Array* const arguments = member(json, "arguments").array();
  if (arguments == nullptr) return;
  for (const JsonValue& each : *arguments) {
    if (each.object() == nullptr) continue;
    ExchangeArgument& argument = exchange.arguments.emplace_back();
    argument.type = text_of(each, "type");
    read_text(each, "text", argument.text);
  }
}

ExchangeTimes times_of(const JsonValue& json) {
  if (json.object() == nullptr) return {};
  return {.name_us = number_of(json, "name"),
          .connect_us = number_of(json, "connect"),
          .tls_us = number_of(json, "tls"),
          .send_us = number_of(json, "send"),
          .wait_us = number_of(json, "wait"),
          .receive_us = number_of(json, "receive"),
          .total_us = number_of(json, "total")};
}

Outcome outcome_of(std::string_view text) {
  for (const Outcome outcome : {Outcome::kNotSent, Outcome::kUnknown, Outcome::kAnswered}) {
    if (outcome_text(outcome) == text) return outcome;
  }
  return Outcome::kNone;
}

void read_outcome(const JsonValue& json, Exchange& exchange) {
  exchange.outcome = outcome_of(text_of(json, "outcome"));
  if (const JsonValue& error = member(json, "error"); error.object() != nullptr) {
    exchange.error = ExchangeError{static_cast<std::int32_t>(number_of(error, "number")),
                                   text_of(error, "source"), text_of(error, "description")};
  }
  if (const JsonValue& raised = member(json, "raised"); raised.object() != nullptr) {
    exchange.raised = static_cast<std::int32_t>(number_of(raised, "number"));
  }
}

/// What the arguments and the answer of a login hold whatever they look like.
void learn_login(const Exchange& exchange, TextMask& mask) {
  constexpr std::size_t kPassword = 1;
  if (exchange.object_operation != "Login") return;
  if (exchange.arguments.size() > kPassword) mask.add(exchange.arguments[kPassword].text.text);
  if (!exchange.error) mask.add(exchange.result.text);
}

}  // namespace

std::optional<Exchange> exchange_from_json(std::string_view line) {
  JsonValue json;
  try {
    json = parse_json(line);
  } catch (const UsageError&) {
    return std::nullopt;
  }
  if (json.object() == nullptr || member(json, "outcome").text() == nullptr) return std::nullopt;
  Exchange exchange;
  exchange.number = static_cast<std::uint64_t>(number_of(json, "number"));
  if (const auto at = conversions::date_of(text_of(json, "at"))) exchange.at = *at;
  exchange.cls = text_of(json, "class");
  exchange.operation = text_of(json, "operation");
  exchange.route = text_of(json, "route") == "dal" ? ExchangeRoute::kDal : ExchangeRoute::kSoap;
  exchange.url = text_of(json, "url");
  if (member(json, "soapAction").text() != nullptr)
    exchange.soap_action = text_of(json, "soapAction");
  read_text(json, "request", exchange.request);
  exchange.object = text_of(json, "object");
  exchange.object_operation = text_of(json, "objectOperation");
  read_arguments(json, exchange);
  read_text(json, "result", exchange.result);
  exchange.http_status = static_cast<std::int32_t>(number_of(json, "httpStatus"));
  read_text(json, "replyHeaders", exchange.reply_headers);
  read_text(json, "reply", exchange.reply);
  exchange.times = times_of(member(json, "microseconds"));
  exchange.bytes_sent = static_cast<std::uint64_t>(number_of(json, "bytesSent"));
  exchange.bytes_received = static_cast<std::uint64_t>(number_of(json, "bytesReceived"));
  read_outcome(json, exchange);
  return exchange;
}

void mask_again(Exchange& exchange, TextMask& mask) {
  learn_login(exchange, mask);
  // For what it finds: the record's own rules mask the exchange itself.
  for (const BoundedText* text :
       {&exchange.request, &exchange.reply, &exchange.result, &exchange.reply_headers}) {
    mask.mask_places(text->text);
  }
  for (const ExchangeArgument& argument : exchange.arguments) mask.mask_places(argument.text.text);
  mask_exchange(exchange, "");
}

}  // namespace bvconn::tool
