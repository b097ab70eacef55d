#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "bvconn/core/logging.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/http/http_transport.h"
#include "bvconn/platform/soap/soap_envelope.h"
#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/soap/xml_document.h"
#include "bvconn/platform/text_buffer.h"

namespace bvconn {

/// When an exchange is traced, and to which file.
enum class TracingRule : std::uint8_t {
  /// Mask bit 0x40 for `isBrimvale`, or the setting `TraceSoapTraffic`; the logger's tracing file.
  kTracingFile,
  /// deliberate [traffic-in-log]: the same test, but the traffic goes to the log file.
  kLogFile,
  /// deliberate [traffic-by-mask]: mask bit 0x40 for `isBrimvale` alone, to the log file; the
  /// setting is not asked.
  kLogFileByMaskAlone,
};

namespace Global {

/// The whole round trip. The reply replaces the envelope's contents; the result stays Empty.
/// A time-out of 0 is that of the `TimeoutScope` in force, else `DefaultTimeout`; any other goes to
/// the transport as it stands.
///
/// On an error the description becomes the value of the last parameter named "faultstring", if
/// there is one; so on a fault (0x80044201) the caller sees the server's words.
Variant sendXML(const SoapEnvelope& envelope, std::string_view soapAction, std::string_view url,
                std::int32_t timeout);

/// The thread's transport, made ready for one request; for `getResponseEnvelope`.
std::shared_ptr<HTTPTransport> getHTTPTransport(std::string_view soapAction);

/// Sends an envelope on a transport that is ready and reads the reply into it. Returns `envelope`.
SoapEnvelope getResponseEnvelope(const SoapEnvelope& envelope,
                                 const std::shared_ptr<HTTPTransport>& transport,
                                 std::string_view url);

/// Sends ready text and loads the reply into a document, without an envelope: a reply that is not
/// well-formed leaves the document empty, and for a document of nothing the reply is left unread. A
/// blank `soapAction` leaves the one of the request before. The result stays Empty.
Variant sendXMLAndLoadDoc(XMLDocument* document, std::string_view soapAction,
                          std::string_view xmlText, std::string_view url);

}  // namespace Global

/// An error that is handed back and not raised: a fault is an answer that comes every day, and to
/// unwind the stack costs more than to read it. Only what the application's own objects throw out
/// of turn, and an unreadable reply, still come as exceptions.
struct Failure {
  Error error;
  /// What was logged of it, written at the latest when the failure is gone.
  HeldErrorLines lines;
};

/// Raises it, once its lines are written.
[[noreturn]] void raise(Failure failure);

/// As `Global::sendXML` and `Global::getResponseEnvelope`.
std::optional<Failure> send_xml(const SoapEnvelope& envelope, std::string_view soap_action,
                                std::string_view url, std::int32_t timeout);
std::optional<Failure> get_response(const SoapEnvelope& envelope, HTTPTransport& transport,
                                    std::string_view url);

/// Reads the text of a reply into the envelope; a fault is handed back. What `Parse` says against
/// it otherwise is raised, followed by `words`: where it came from and its status, or "" where
/// nobody knows.
std::optional<Failure> parse_reply(const SoapEnvelope& envelope, detail::TextBuffer text,
                                   const std::function<std::string()>& words);

/// Reads the reply to the last `Send` into the envelope, with the transport's words.
std::optional<Failure> receive_envelope(HTTPTransport& transport, const SoapEnvelope& envelope);

/// The thread's transport with tracing, proxy and default time-out set, and its SOAPAction left as
/// the last request had it: for operations that run their exchange themselves.
std::shared_ptr<HTTPTransport> inline_transport(TracingRule rule);

}  // namespace bvconn
