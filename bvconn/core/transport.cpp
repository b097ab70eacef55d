#include "bvconn/core/transport.h"

#include <utility>

#include "bvconn/core/heart_beat_time.h"
#include "bvconn/core/logging.h"
#include "bvconn/core/recording.h"
#include "bvconn/core/session_state.h"
#include "bvconn/core/settings.h"
#include "bvconn/core/timing.h"
#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/live_error.h"
#include "bvconn/platform/soap/envelope_access.h"
#include "bvconn/platform/soap/node_view.h"
#include "bvconn/platform/timeout_scope.h"
#include "bvconn/platform/without_help.h"

namespace bvconn {
namespace {

constexpr std::int32_t kTrafficTracingBit = 0x40;

constexpr LogBlock kSendXmlLog{.cls = "Global", .method = "sendXML"};
constexpr LogBlock kGetHttpTransportLog{.cls = "Global", .method = "getHTTPTransport"};
constexpr LogBlock kGetResponseEnvelopeLog{.cls = "Global", .method = "getResponseEnvelope"};
constexpr LogBlock kSendXmlAndLoadDocLog{.cls = "Global", .method = "sendXMLAndLoadDoc"};

void set_up_tracing(HTTPTransport& transport, TracingRule rule) {
  auto& logger = session().Logger();
  bool traced = (logger.LogMask() & kTrafficTracingBit) != 0 && session().isBrimvale;
  if (rule != TracingRule::kLogFileByMaskAlone) {
    // The setting is asked on every send, whichever way the first test went.
    const bool set = Global::TraceSoapTraffic();
    traced = traced || set;
  }
  if (!traced) return;
  // deliberate [tracing-stays]: nothing takes the file from the transport again.
  transport.Option("tracing.file", rule == TracingRule::kTracingFile ? logger.TracingFilePath()
                                                                     : logger.LogFilePath());
}

void set_up_proxy(HTTPTransport& transport) {
  const std::string port = Global::TracePort();
  if (port.empty()) {
    transport.NoProxy();
  } else {
    transport.setProxy("localhost", port);
  }
}

// The setting is asked first, whoever stands in for it, so that the log's lines are the same.
std::int32_t default_timeout() {
  const std::int32_t setting = Global::DefaultTimeout();
  return TimeoutScope::in_force().value_or(setting);
}

std::shared_ptr<HTTPTransport> ready_transport(std::string_view soap_action, std::int32_t timeout) {
  auto transport = session().Transport();
  set_up_tracing(*transport, TracingRule::kTracingFile);
  set_up_proxy(*transport);
  set_soap_action(*transport, soap_action);
  transport->Timeout(timeout == 0 ? default_timeout() : timeout);
  return transport;
}

// A transport of the application's own may throw here; that must not hide what is wrong with the
// reply.
std::string reply_words(const std::function<std::string()>& words) {
  try {
    return words();
  } catch (...) {
    live_error();  // lets the end of a thread through
    return "";
  }
}

/// Whether it is a fault.
bool read_reply(const SoapEnvelope& envelope, detail::TextBuffer text,
                const std::function<std::string()>& words) {
  try {
    return EnvelopeAccess::read(envelope, std::move(text), "");
  } catch (Error& error) {
    const std::string reply = reply_words(words);
    if (!reply.empty()) error.description.append("; ").append(reply);
    throw;
  }
}

/// Whether the reply is a fault.
bool exchange(HTTPTransport& transport, const SoapEnvelope& envelope, std::string_view url) {
  send_recorded(transport, url, envelope.Serialize());
  return read_reply(envelope, receive_recorded(transport), [&] { return transport.LastReply(); });
}

void log_duration(const SoapEnvelope& envelope, float start) {
  if (!session().writes_lines(16)) return;
  const std::string method = envelope.MethodName();
  session().Logger().LogAtLevel(
      16, "Global", "sendXML",
      "Time to execute " + method + ": " + conversions::float_text(timer_seconds() - start), 0);
}

/// Logs the error as it came, and hands it back with the words that it is to have.
Failure logged(const LogBlock& log, Error error, std::optional<std::string> words) {
  HeldErrorLines lines = HeldErrorLines::begin();
  log_error(log, error);
  if (words) error.description = *std::move(words);
  return {.error = without_help(std::move(error)), .lines = std::move(lines)};
}

Failure failed_send(const SoapEnvelope& envelope, Error error) {
  return only_errors([&] {
    std::optional<std::string> words;
    // deliberate [faultstring-by-name]: by name alone, whatever the error; before a reply was
    // parsed these are the request's own parameters.
    const detail::NodeView all = detail::view_of(*detail::viewed_node(envelope.Parameters()));
    for (std::size_t i = 0; i < all.count; ++i) {
      if (detail::name_at(all, i) == "faultstring") words = detail::child_text(all, i);
    }
    return logged(kSendXmlLog, std::move(error), std::move(words));
  });
}

Failure failed_response(const SoapEnvelope& envelope, Error error) {
  return only_errors([&] {
    std::optional<std::string> words;
    // deliberate [faultstring-by-name]: here of a fault alone, and where there is none, that is
    // the error.
    if (error.number == error_numbers::kSoapFault) {
      words = to_text(envelope.Parameters().ItemByName("faultstring", "").Value());
    }
    return logged(kGetResponseEnvelopeLog, std::move(error), std::move(words));
  });
}

}  // namespace

void raise(Failure failure) {
  failure.lines.write();
  throw Error(std::move(failure.error));
}

std::optional<Failure> send_xml(const SoapEnvelope& envelope, std::string_view soap_action,
                                std::string_view url, std::int32_t timeout) {
  try {
    log_enter(kSendXmlLog);
    const auto transport = ready_transport(soap_action, timeout);
    // The clock is not asked for a line that is not written.
    const float start = session().writes_lines(16) ? timer_seconds() : 0;
    if (!exchange(*transport, envelope, url)) {
      Global::LastHeartBeat(session().clock().now());
      log_duration(envelope, start);
      log_exit(kSendXmlLog);
      return std::nullopt;
    }
  } catch (const Error& error) {
    return failed_send(envelope, error);
  } catch (...) {
    return failed_send(envelope, live_error());
  }
  return failed_send(envelope, EnvelopeAccess::fault());
}

std::optional<Failure> get_response(const SoapEnvelope& envelope, HTTPTransport& transport,
                                    std::string_view url) {
  try {
    log_enter(kGetResponseEnvelopeLog);
    if (!exchange(transport, envelope, url)) {
      Global::LastHeartBeat(session().clock().now());
      log_exit(kGetResponseEnvelopeLog);
      return std::nullopt;
    }
  } catch (const Error& error) {
    return failed_response(envelope, error);
  } catch (...) {
    return failed_response(envelope, live_error());
  }
  return failed_response(envelope, EnvelopeAccess::fault());
}

namespace Global {

Variant sendXML(const SoapEnvelope& envelope, std::string_view soapAction, std::string_view url,
                std::int32_t timeout) {
  if (auto failure = send_xml(envelope, soapAction, url, timeout)) raise(*std::move(failure));
  return {};
}

std::shared_ptr<HTTPTransport> getHTTPTransport(std::string_view soapAction) {
  return run_logged(kGetHttpTransportLog, [&] { return ready_transport(soapAction, 0); });
}

SoapEnvelope getResponseEnvelope(const SoapEnvelope& envelope,
                                 const std::shared_ptr<HTTPTransport>& transport,
                                 std::string_view url) {
  if (auto failure = get_response(envelope, *transport, url)) raise(*std::move(failure));
  return envelope;
}

Variant sendXMLAndLoadDoc(XMLDocument* document, std::string_view soapAction,
                          std::string_view xmlText, std::string_view url) {
  return run_logged(kSendXmlAndLoadDocLog, [&] {
    const auto transport = session().Transport();
    set_up_tracing(*transport, TracingRule::kTracingFile);
    // deliberate [soap-action-before]: a blank one leaves that of the request before.
    if (!conversions::trim_blanks(soapAction).empty()) set_soap_action(*transport, soapAction);
    set_up_proxy(*transport);
    transport->Timeout(default_timeout());
    send_recorded(*transport, url, xmlText);
    // deliberate [unread-reply]: without a document the reply is left unread and counts all the
    // same, and a reply that is no XML is no error.
    if (document != nullptr) document->load(receive_recorded(*transport).take_string());
    LastHeartBeat(session().clock().now());
    return Variant();
  });
}

}  // namespace Global

std::optional<Failure> parse_reply(const SoapEnvelope& envelope, detail::TextBuffer text,
                                   const std::function<std::string()>& words) {
  // A fault is what the caller asked for, with words of its own.
  if (read_reply(envelope, std::move(text), words)) {
    return Failure{.error = EnvelopeAccess::fault(), .lines = {}};
  }
  return std::nullopt;
}

std::optional<Failure> receive_envelope(HTTPTransport& transport, const SoapEnvelope& envelope) {
  return parse_reply(envelope, receive_recorded(transport), [&] { return transport.LastReply(); });
}

// deliberate [soap-action-before]: no SOAPAction is set.
std::shared_ptr<HTTPTransport> inline_transport(TracingRule rule) {
  auto transport = session().Transport();
  set_up_tracing(*transport, rule);
  set_up_proxy(*transport);
  transport->Timeout(default_timeout());
  return transport;
}

}  // namespace bvconn
