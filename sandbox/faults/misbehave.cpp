#include "sandbox/faults/misbehave.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/soap/xml_document.h"
#include "sandbox/endpoints/soap_text.h"
#include "sandbox/faults/compress.h"
#include "sandbox/faults/multi_ref.h"
#include "sandbox/operations/operations.h"

namespace bvconn::sandbox {
namespace {

constexpr int kServerError = 500;
constexpr const char* kWords = "The sandbox was asked to fail";
constexpr std::int64_t kDefaultBigBytes = std::int64_t{64} << 20;

/// What answers a heart beat, for whoever asked something else.
constexpr std::string_view kAnswerOfAHeartBeat =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
    "<SOAP-ENV:Envelope xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\">"
    "<SOAP-ENV:Body><m:beatResponse xmlns:m=\"urn:HeartBeatService\"><return>OK</return>"
    "</m:beatResponse></SOAP-ENV:Body></SOAP-ENV:Envelope>";

int status_of(const FaultRule& rule, int otherwise) {
  return rule.status ? static_cast<int>(*rule.status) : otherwise;
}

/// A detail that is no XML is a text in it.
std::string detail_of(const FaultRule& rule) {
  const std::string text = rule.detail.value_or("");
  const bool is_xml =
      text.find('<') != std::string::npos && XMLDocument().load("<detail>" + text + "</detail>");
  return is_xml ? text : escaped(text);
}

Reply soap_fault(const FaultRule& rule, Route route) {
  std::string text = fault_text(rule.code.value_or(fault_codes::kServer),
                                rule.text.value_or(kWords), detail_of(rule));
  // What the data access layer answers is a text, whatever stands in it.
  if (route == Route::kDal) return text_reply(status_of(rule, 200), text);
  return xml_reply(status_of(rule, kServerError), std::move(text));
}

Reply dal_error(const FaultRule& rule, const Exchange& exchange) {
  const auto number =
      rule.number ? static_cast<std::int32_t>(*rule.number) : dal_numbers::kInternal;
  const nlohmann::json body{{"number", number},
                            {"source", rule.source.value_or(exchange.service)},
                            {"description", rule.text.value_or(kWords)}};
  return json_reply(status_of(rule, kServerError),
                    body.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
}

Reply page(const FaultRule& rule) {
  Reply reply{.status = status_of(rule, 503), .headers = {}, .body = {}};
  if (rule.page == "empty") return reply;
  reply.headers.push_back({.name = "Content-Type", .value = "text/html; charset=utf-8"});
  reply.body = "<!DOCTYPE html><html><head><title>" + std::to_string(reply.status) +
               "</title></head><body><h1>" + rule.text.value_or("The server cannot answer now.") +
               "</h1></body></html>\n";
  return reply;
}

std::size_t kept(const FaultRule& rule, const std::string& body) {
  const std::int64_t half = static_cast<std::int64_t>(body.size()) / 2;
  return std::min(body.size(), static_cast<std::size_t>(rule.after_bytes.value_or(half)));
}

void compress_body(Reply& reply) {
  reply.body = gzip_of(reply.body);
  reply.headers.push_back({.name = "Content-Encoding", .value = "gzip"});
}

/// A letter as no UTF-8 has it, where the text first has a place for one.
void spoil_utf8(std::string& body) {
  body.insert(place_for_more_text(body), "\xE9");
}

/// HTTP and the XML declaration name the encoding; the bytes remain as they are.
void name_charset(const FaultRule& rule, Reply& reply) {
  const std::string charset = rule.charset.value_or("utf-16");
  for (Header& each : reply.headers) {
    if (each.name == "Content-Type") each.value = media_type(each.value) + "; charset=" + charset;
  }
  constexpr std::string_view kDeclared = "encoding=\"UTF-8\"";
  const auto at = reply.body.find(kDeclared);
  if (at != std::string::npos) {
    reply.body.replace(at, kDeclared.size(), "encoding=\"" + charset + "\"");
  }
  if (conversions::equal_ignoring_case(charset, "utf-8")) spoil_utf8(reply.body);
}

/// The end tag of the first element that has a text loses its name's last letter.
void break_tag(std::string& body) {
  const auto end = body.find('>', place_for_more_text(body));
  if (end != std::string::npos && end > 0) body.erase(end - 1, 1);
}

void answer_another(Reply& reply, const std::string& kept_answer) {
  reply.body = kept_answer.empty() ? std::string(kAnswerOfAHeartBeat) : kept_answer;
}

/// What goes wrong on the way.
Delivery delivery_of(const FaultRule& rule, const Reply& reply) {
  Delivery delivery{.delay = std::chrono::milliseconds(rule.delay_ms.value_or(0))};
  switch (rule.kind) {
    case Misconduct::kDrip:
      delivery.piece_bytes = static_cast<std::size_t>(rule.bytes.value_or(1));
      delivery.pause = std::chrono::milliseconds(rule.every_ms.value_or(10));
      break;
    case Misconduct::kClose:
      delivery.cut_after = -1;
      break;
    case Misconduct::kCloseInBody:
      delivery.cut_after = static_cast<std::int64_t>(kept(rule, reply.body));
      break;
    case Misconduct::kReset:
      delivery.cut_after = rule.after_bytes.value_or(-1);
      delivery.resets = true;
      break;
    case Misconduct::kWrongLength:
      delivery.length_error = rule.by.value_or(100);
      break;
    case Misconduct::kBadChunk:
      delivery.bad_chunk = true;
      break;
    case Misconduct::kBigBody:
      delivery.filler_bytes = static_cast<std::uint64_t>(rule.bytes.value_or(kDefaultBigBytes));
      delivery.filler_at = place_for_more_text(reply.body);
      break;
    default:
      break;
  }
  return delivery;
}

/// What goes wrong in the answer itself.
void damage(const FaultRule& rule, Reply& reply, const std::string& kept_answer) {
  switch (rule.kind) {
    case Misconduct::kGzip:
      return compress_body(reply);
    case Misconduct::kCutGzip:
      compress_body(reply);
      return reply.body.resize(kept(rule, reply.body));
    case Misconduct::kWrongCharset:
      return name_charset(rule, reply);
    case Misconduct::kCutXml:
      return reply.body.resize(kept(rule, reply.body));
    case Misconduct::kMalformedXml:
      return break_tag(reply.body);
    case Misconduct::kEmptyBody:
      return reply.body.clear();
    case Misconduct::kMultiRef:
      reply.body = in_multi_ref_form(reply.body);
      return;
    case Misconduct::kOtherAnswer:
      return answer_another(reply, kept_answer);
    default:
      return;
  }
}

/// The reply of a kind that does not begin with the right one; an empty one of the others.
Reply made_up(const FaultRule& rule, const Exchange& exchange) {
  switch (rule.kind) {
    case Misconduct::kSoapFault:
      return soap_fault(rule, exchange.route);
    case Misconduct::kDalError:
      return dal_error(rule, exchange);
    case Misconduct::kStatus:
      return page(rule);
    default:
      return exchange.route == Route::kDal ? text_reply(200, "") : xml_reply(200, "");
  }
}

}  // namespace

Reply misbehave(const FaultRule& rule, const Exchange& exchange, FaultBook& book,
                const std::function<Reply()>& right_answer) {
  const FaultKind& kind = kind_of(rule.kind);
  std::optional<Reply> right;
  if (rule.run.value_or(kind.runs)) right = right_answer();
  std::string kept_answer;
  if (right && right->status == 200) kept_answer = book.keep_answer(exchange.route, right->body);
  Reply reply = kind.runs && right ? std::move(*right) : made_up(rule, exchange);
  damage(rule, reply, kept_answer);
  reply.delivery = delivery_of(rule, reply);
  return reply;
}

}  // namespace bvconn::sandbox
