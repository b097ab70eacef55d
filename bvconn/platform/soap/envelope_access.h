#pragma once

#include <string>
#include <string_view>

#include "bvconn/platform/error.h"
#include "bvconn/platform/soap/soap_envelope.h"
#include "bvconn/platform/text_buffer.h"

namespace bvconn {

/// For those who tell a fault from a reply without an exception in between.
struct EnvelopeAccess {
  /// As `Parse`, but a fault is no failure; whether it is one.
  static bool read(const SoapEnvelope& envelope, detail::TextBuffer data,
                   std::string_view encoding);
  /// What `Parse` raises over a fault.
  static Error fault();
};

}  // namespace bvconn
