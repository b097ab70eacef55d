#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"

namespace bvconn {

namespace detail {
class TextBuffer;
}

/// The encoding style of SOAP 1.1, as the operations that set one set it.
inline constexpr std::string_view kSoapEncoding = "http://schemas.xmlsoap.org/soap/encoding/";

/// A SOAP 1.1 envelope, first filled as a request, then holding the reply.
///
/// A handle: copies share one envelope. A default-made one is an empty reference, whose use fails
/// with `Error` 91. Errors have the source "SoapEnvelope" and the numbers 0x80044201 to 0x80044206.
class BVCONN_EXPORT SoapEnvelope {
 public:
  SoapEnvelope() = default;
  static SoapEnvelope make();

  explicit operator bool() const noexcept { return state_ != nullptr; }
  friend bool operator==(const SoapEnvelope&, const SoapEnvelope&) = default;

  /// Header children.
  SoapNodes& Headers() const;
  /// In a request the parameters of the method, in a reply the children of the Body's first
  /// element (so of the Fault, for a fault).
  SoapNodes& Parameters() const;
  /// Names the method element; with an empty namespace it is written without a prefix.
  void SetMethod(std::string_view name, std::string_view name_space) const;
  /// Local name of the method element, in a reply of the Body's first element.
  std::string MethodName() const;
  std::string EncodingStyle() const;
  /// Once set, the method element bears it as `SOAP-ENV:encodingStyle`.
  void EncodingStyle(std::string_view style) const;

  /// The envelope as XML text in UTF-8, the same bytes each time; without a Header when there are
  /// no header children. Fails with 0x80044205 for text that XML cannot carry and for what is no
  /// element name, with 0x80044206 for a tree that is deeper than 10,000 elements (or contains
  /// itself) and for a text beyond 1 GiB.
  std::string Serialize() const;
  /// Replaces the contents by those of a reply. `encoding` overrides the one that the data itself
  /// declares; "" leaves the choice to byte-order mark, XML declaration, UTF-8. A fault fails with
  /// 0x80044201 and leaves its elements in `Parameters`; any other failure (0x80044202 not
  /// well-formed, 0x80044203 no SOAP 1.1 envelope, 0x80044206 limits) leaves the envelope as it
  /// was.
  void Parse(std::string data, std::string_view encoding) const;

 private:
  struct State;
  explicit SoapEnvelope(std::shared_ptr<State> state) noexcept : state_(std::move(state)) {}
  State& state() const;
  bool read(detail::TextBuffer data, std::string_view encoding) const;
  friend struct EnvelopeAccess;

  std::shared_ptr<State> state_;
};

}  // namespace bvconn
