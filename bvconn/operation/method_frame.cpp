#include "bvconn/operation/method_frame.h"

#include <exception>
#include <optional>

#include "bvconn/core/envelope.h"
#include "bvconn/core/session_state.h"
#include "bvconn/platform/error_numbers.h"

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
    for (const SoapNode node : fault.Parameters()) {
      if (node.Name() == "faultstring") return to_text(node.Value());
    }
  } catch (const std::exception&) {
    return std::nullopt;
  }
  return std::nullopt;
}

}  // namespace

Call::Call(const Operation& operation, CallContext context)
    : operation_(operation),
      url_(context.url),
      session_id_(context.session_id),
      envelope_(std::move(context.envelope)),
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

Call& Call::send(std::int32_t timeout) {
  if (operation_.soap_action == nullptr) {
    // The URN as it is, without a copy that a fault would have to stop for on its way out.
    Global::sendXML(envelope(), service(), url_, timeout);
  } else {
    Global::sendXML(envelope(), look_up(operation_.soap_action), url_, timeout);
  }
  return *this;
}

Call& Call::send_as(std::string_view soap_action) {
  Global::sendXML(envelope(), soap_action, url_, 0);
  return *this;
}

Call& Call::exchange() {
  const auto transport = Global::getHTTPTransport(soap_action());
  Global::getResponseEnvelope(envelope(), transport, url_);
  return *this;
}

Call& Call::exchange_text(HTTPTransport& transport, std::string_view text) {
  send_recorded(transport, url_, text);
  receive_envelope(transport, envelope());
  return *this;
}

Call& Call::parse(std::string text) {
  parse_reply(envelope(), std::move(text), &invoke_words);
  return *this;
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

void Call::tail(Error& error) {
  note_failure(error);
  LogBlock log = operation_.log;
  if (!error_name_.empty()) log.error = error_name_;
  bool raises = false;
  try {
    std::optional<Error> raised = only_errors([&] {
      const TailContext context{.log = log, .envelope = envelope_, .faults = operation_.faults};
      return apply_tail(operation_.tail, context, error);
    });
    raises = raised.has_value();
    if (raises) error = *std::move(raised);
  } catch (Error& further) {
    record_.raised(further);
    throw;
  }
  if (!raises) return;
  record_.raised(error);
  // Nothing is left here that the error would have to stop for on its way out.
  throw Error(std::move(error));
}

}  // namespace bvconn
