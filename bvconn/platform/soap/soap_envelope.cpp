#include "bvconn/platform/soap/soap_envelope.h"

#include <utility>

#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/envelope_access.h"
#include "bvconn/platform/soap/node_data.h"
#include "bvconn/platform/soap/node_writer.h"
#include "bvconn/platform/soap/reply_reader.h"
#include "bvconn/platform/soap/soap_uris.h"

namespace bvconn {

struct SoapEnvelope::State {
  SoapNodes headers = SoapAccess::nodes(detail::make_node("Header"));
  SoapNodes parameters = SoapAccess::nodes(detail::make_node("Body"));
  std::string method;
  std::string name_space;
  std::string encoding_style;
};

namespace {

constexpr std::string_view kSource = "SoapEnvelope";
/// Envelope, Body and the method element.
constexpr std::size_t kElementsAround = 3;
constexpr std::string_view kMethodPrefix = "m:";

detail::Children nodes_in(const SoapNodes& nodes) {
  return detail::children_of(*SoapAccess::owner(nodes));
}

/// Of the method element: `m`, but for a fault, which is read as one under its own prefix only.
std::string_view method_prefix(std::string_view uri) {
  if (uri.empty()) return "";
  return uri == detail::kEnvelopeUri ? "SOAP-ENV:" : kMethodPrefix;
}

void write_header(std::string& out, detail::NodeWriter& writer, const SoapNodes& headers) {
  if (nodes_in(headers).empty()) return;
  out += "<SOAP-ENV:Header>";
  for (const auto* node : nodes_in(headers)) writer.write(*node);
  out += "</SOAP-ENV:Header>";
}

}  // namespace

SoapEnvelope SoapEnvelope::make() {
  return SoapEnvelope(std::make_shared<State>());
}

SoapEnvelope::State& SoapEnvelope::state() const {
  if (state_ == nullptr) {
    throw Error(error_numbers::kObjectNotSet, "BVConn",
                "Object not set: an empty envelope reference");
  }
  return *state_;
}

SoapNodes& SoapEnvelope::Headers() const {
  return state().headers;
}
SoapNodes& SoapEnvelope::Parameters() const {
  return state().parameters;
}

void SoapEnvelope::SetMethod(std::string_view name, std::string_view name_space) const {
  State& envelope = state();
  envelope.method = std::string(name);
  envelope.name_space = std::string(name_space);
}
std::string SoapEnvelope::MethodName() const {
  return state().method;
}
std::string SoapEnvelope::EncodingStyle() const {
  return state().encoding_style;
}
void SoapEnvelope::EncodingStyle(std::string_view style) const {
  state().encoding_style = std::string(style);
}

std::string SoapEnvelope::Serialize() const {
  const State& envelope = state();
  const auto parameters = nodes_in(envelope.parameters);
  constexpr std::size_t kUsualSize = 1024;
  std::string out;
  out.reserve(kUsualSize);
  out += R"(<?xml version="1.0" encoding="UTF-8"?><SOAP-ENV:Envelope)";
  out += detail::envelope_declarations();
  out += '>';
  detail::NodeWriter writer(out, kSource, kElementsAround);
  write_header(out, writer, envelope.headers);
  if (envelope.method.empty() && parameters.empty()) {  // what an empty Body was read as
    out += "<SOAP-ENV:Body/></SOAP-ENV:Envelope>";
    return out;
  }
  writer.begin_element(envelope.method);
  writer.check_namespace(envelope.name_space);
  const std::string_view prefix = method_prefix(envelope.name_space);
  const bool is_bound = prefix == kMethodPrefix;
  out.append("<SOAP-ENV:Body><").append(prefix).append(envelope.method);
  if (is_bound) writer.attribute("xmlns:m", envelope.name_space);
  if (!envelope.encoding_style.empty()) {
    writer.attribute("SOAP-ENV:encodingStyle", envelope.encoding_style);
  }
  if (parameters.empty()) {
    out += "/>";
  } else {
    out += '>';
    if (is_bound) writer.bind_method(envelope.name_space);
    for (const auto* node : parameters) writer.write(*node);
    out.append("</").append(prefix).append(envelope.method).append(">");
  }
  out += "</SOAP-ENV:Body></SOAP-ENV:Envelope>";
  return out;
}

// As `Parse`, but a fault is no failure; whether it is one.
bool SoapEnvelope::read(detail::TextBuffer data, std::string_view encoding) const {
  State& envelope = state();
  detail::Reply reply = detail::read_reply(std::move(data), encoding);
  envelope.headers = std::move(reply.headers);
  envelope.parameters = std::move(reply.parameters);
  envelope.method = std::move(reply.method);
  envelope.name_space = std::move(reply.name_space);
  envelope.encoding_style = std::move(reply.encoding_style);
  return reply.is_fault;
}

void SoapEnvelope::Parse(std::string data, std::string_view encoding) const {
  if (read(std::move(data), encoding)) throw EnvelopeAccess::fault();
}

bool EnvelopeAccess::read(const SoapEnvelope& envelope, detail::TextBuffer data,
                          std::string_view encoding) {
  return envelope.read(std::move(data), encoding);
}

Error EnvelopeAccess::fault() {
  return {error_numbers::kSoapFault, kSource, "The reply is a SOAP fault"};
}

}  // namespace bvconn
