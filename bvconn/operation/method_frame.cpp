#include "bvconn/operation/method_frame.h"

#include <exception>
#include <optional>
#include <utility>

#include "bvconn/core/envelope.h"
#include "bvconn/core/session_state.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/node_view.h"

namespace bvconn {
namespace {

std::string look_up(MethodRow row) {
  return (session().Methods().*row)();
}
std::string look_up(ServiceRow row) {
  return (session().Services().*row)();
}

// What a fault says, also where the operation's error leaves it out. It is for the record alone.
std::optional<std::string> fault_words(const SoapEnvelope& fault) noexcept {
  try {
    return detail::text_of_first(fault.Parameters(), "faultstring");
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

}  // namespace

Call::Call(const Operation& operation, const CallContext& context)
    : operation_(operation),
      url_(context.url),
      session_id_(context.session_id),
      envelope_(context.envelope != nullptr ? *context.envelope : SoapEnvelope()),
      record_(operation.cls.empty() ? operation.log.cls : operation.cls,
              operation.name.empty() ? operation.log.method : operation.name, url_, session_id_) {}

const std::string& Call::method() {
  if (method_.empty()) {
    method_ =
        operation_.method != nullptr ? look_up(operation_.method) : std::string(operation_.wire);
  }
  return method_;
}

const std::string& Call::service() {
  if (service_.empty() && operation_.service != nullptr) service_ = look_up(operation_.service);
  return service_;
}

bool Call::takes_dal(bool and_also) {
  // The list is asked first, whatever the switch says.
  const std::string row =
      operation_.route_method != nullptr ? look_up(operation_.route_method) : method();
  const bool disabled = Global::isDALMethodDisabled(row, service());
  const bool taken = !disabled && session().UsingTorvexDAL && and_also;
  if (taken) record_.takes_dal();
  return taken;
}

Call& Call::getEnvelope() {
  envelope_ = Global::getEnvelope(method(), service(), session_id_);
  return *this;
}

Call& Call::request(std::string_view encoding_style) {
  Global::create_user_id(envelope(), session_id_);
  if (!encoding_style.empty()) envelope_.EncodingStyle(encoding_style);
  return request_without_session();
}

Call& Call::request_without_session() {
  envelope().SetMethod(method(), service());
  return *this;
}

Call& Call::add(std::string_view name, const Variant& value, std::string_view type) {
  parameters().Create(name, value, "", type);
  return *this;
}

Call& Call::append(const SoapNode& node) {
  parameters().Append(node);
  return *this;
}

std::string Call::literal_request(std::string_view xml) {
  std::string text = Global::getEnvelopeStart(session_id_, method(), service());
  text.append(xml);
  return text + to_text(Global::getEnvelopeEnd(method()));
}

std::string Call::soap_action() {
  return operation_.soap_action != nullptr ? look_up(operation_.soap_action) : service();
}

Sent Call::sent(std::optional<Failure> failure) {
  failure_ = std::move(failure);
  return Sent(*this);
}

void Call::raise_failure() {
  if (failure_) raise(*std::exchange(failure_, std::nullopt));
}

void Call::fail(const Error& error) {
  try {
    failure_ = Failure{.error = error, .lines = {}};
  } catch (...) {
    failure_ = Failure{.error = live_error(), .lines = {}};
  }
}

Sent Call::send(std::int32_t timeout) {
  if (operation_.soap_action == nullptr) {
    return sent(send_xml(envelope(), service(), url_, timeout));
  }
  return sent(send_xml(envelope(), look_up(operation_.soap_action), url_, timeout));
}

Sent Call::send_as(std::string_view soap_action) {
  return sent(send_xml(envelope(), soap_action, url_, 0));
}

Sent Call::exchange() {
  const auto transport = Global::getHTTPTransport(soap_action());
  return sent(get_response(envelope(), *transport, url_));
}

Sent Call::exchange_text(HTTPTransport& transport, std::string_view text) {
  send_recorded(transport, url_, text);
  return sent(receive_envelope(transport, envelope()));
}

Sent Call::parse(std::string text) {
  return sent(parse_reply(envelope(), std::move(text), &invoke_words));
}

Call& Sent::or_raise() const {
  call_->raise_failure();
  return *call_;
}

Answer<SoapNode> Sent::first() const {
  return call_->has_failed() ? Answer<SoapNode>(*call_) : Answer<SoapNode>(*call_, call_->first());
}

Answer<Variant> Sent::value() const {
  return call_->has_failed() ? Answer<Variant>(*call_) : Answer<Variant>(*call_, call_->value());
}

Answer<std::string> Sent::text() const {
  return call_->has_failed() ? Answer<std::string>(*call_)
                             : Answer<std::string>(*call_, call_->text());
}

Answer<bool> Sent::boolean() const {
  return call_->has_failed() ? Answer<bool>(*call_) : Answer<bool>(*call_, call_->boolean());
}

SoapNode Call::first() {
  return envelope().Parameters().Item(0);
}

bool Call::boolean() {
  const Variant answer = value();
  if (answer.empty()) {
    throw Error(error_numbers::kTypeMismatch, "BVConn", "The server's answer is nil, no boolean");
  }
  return to_boolean(answer);
}

void Call::note_failure(Error& error) noexcept {
  const bool has_words =
      error.number == error_numbers::kSoapFault && envelope_ && !session().exchanges().is_off();
  record_.failed(error, has_words ? fault_words(envelope_) : std::nullopt);
}

// A further error while the tail runs leaves the operation in the place of the first.
std::optional<Error> Call::raised_by_tail(Error& error) {
  LogBlock log = operation_.log;
  if (!error_name_.empty()) log.error = error_name_;
  try {
    const TailContext context{.log = log, .envelope = envelope_, .faults = operation_.faults};
    return apply_tail(operation_.tail, context, error);
  } catch (const Error& further) {
    return further;
  } catch (...) {
    return live_error();
  }
}

void Call::tail(Raised& raised) {
  note_failure(failure_->error);
  std::optional<Error> error = raised_by_tail(failure_->error);
  failure_->lines.write();
  if (!error) return;
  record_.raised(*error);
  raised.set(*std::move(error));
}

}  // namespace bvconn
