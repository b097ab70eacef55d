#include "bvconn/operation/method_frame.h"

#include "bvconn/core/envelope.h"

namespace bvconn {

Call::Call(const Operation& operation, CallContext context)
    : operation_(operation),
      envelope_(std::move(context.envelope)),
      catalogues_(context.catalogues) {}

std::string Call::look_up(MethodRow row) const {
  return ((catalogues_ != nullptr ? catalogues_->Methods : session().Methods()).*row)();
}

std::string Call::look_up(ServiceRow row) const {
  return ((catalogues_ != nullptr ? catalogues_->Services : session().Services()).*row)();
}

const std::string& Call::method() {
  if (!method_known_) {
    method_ =
        operation_.method != nullptr ? look_up(operation_.method) : std::string(operation_.wire);
    method_known_ = true;
  }
  return method_;
}

const std::string& Call::service() {
  if (!service_known_) {
    if (operation_.service != nullptr) service_ = look_up(operation_.service);
    service_known_ = true;
  }
  return service_;
}

void Call::service(std::string urn) {
  service_ = std::move(urn);
  service_known_ = true;
}

bool Call::takes_dal(bool and_also) {
  // The list is asked first, whatever the switch says.
  const std::string row =
      operation_.route_method != nullptr ? look_up(operation_.route_method) : method();
  const bool disabled = Global::isDALMethodDisabled(row, service());
  return !disabled && session().UsingTorvexDAL && and_also;
}

SoapNodes& Call::getEnvelope(std::string_view aSessionID) {
  envelope_ = Global::getEnvelope(method(), service(), aSessionID);
  return envelope_.Parameters();
}

SoapNodes& Call::envelope(std::string_view aSessionID, std::string_view encoding_style) {
  Global::create_user_id(envelope(), aSessionID);
  if (!encoding_style.empty()) envelope_.EncodingStyle(encoding_style);
  return envelope_without_session();
}

SoapNodes& Call::envelope_without_session() {
  envelope().SetMethod(method(), service());
  return envelope_.Parameters();
}

const SoapEnvelope& Call::envelope() {
  if (!envelope_) envelope_ = SoapEnvelope::make();
  return envelope_;
}

std::string Call::soap_action() {
  return operation_.soap_action != nullptr ? look_up(operation_.soap_action) : service();
}

Call& Call::send(std::string_view aServerURL, std::int32_t timeout) {
  Global::sendXML(envelope(), soap_action(), aServerURL, timeout);
  return *this;
}

Call& Call::send_as(std::string_view soap_action, std::string_view aServerURL) {
  Global::sendXML(envelope(), soap_action, aServerURL, 0);
  return *this;
}

Call& Call::exchange(std::string_view aServerURL) {
  const auto transport = Global::getHTTPTransport(soap_action());
  Global::getResponseEnvelope(envelope(), transport, aServerURL);
  return *this;
}

std::string Call::literal_request(std::string_view aSessionID, std::string_view xml) {
  std::string text = Global::getEnvelopeStart(aSessionID, method(), service());
  text.append(xml);
  return text + to_text(Global::getEnvelopeEnd(method()));
}

Call& Call::exchange_text(HTTPTransport& transport, std::string_view aServerURL,
                          std::string_view text) {
  transport.Send(aServerURL, text);
  return parse(transport.Receive("UTF-8"));
}

Call& Call::parse(std::string text) {
  envelope().Parse(std::move(text), "");
  return *this;
}

SoapNode Call::first() {
  return envelope().Parameters().Item(0);
}

void Call::tail(Error& error) {
  LogBlock log = operation_.log;
  if (!error_name_.empty()) log.error = error_name_;
  apply_tail(operation_.tail, {.log = log, .envelope = envelope_, .faults = operation_.faults},
             error);
}

}  // namespace bvconn
