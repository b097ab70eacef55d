#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "bvconn/core/logging.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/soap/soap_envelope.h"

namespace bvconn {

/// What becomes of an error that is raised inside an operation.
/// deliberate [tail-error]: in every tail a further error while it runs leaves the operation at
/// once, with that new error and with no more of the tail done.
enum class Tail : std::uint8_t {
  kPlain,        ///< log; raise number, source, description
  kFaultCode,    ///< log; raise the error that the fault's code is mapped to, else as kPlain
  kBare,         ///< no log; raise all five values
  kFaultString,  ///< no log; a fault's description becomes the server's text; raise three values
  kRfq,          ///< no log; a fault gets the server's text and a number of its own; raise all five
  kOverview,     ///< log the error with its description emptied; raise without a description
  kThreeValues,  ///< no log; raise number, source and description alone
  kSwallow,      ///< log; the operation returns an empty result
  kNone,         ///< the error goes to the caller as it is
};

/// One server fault code that an operation turns into an error of its own.
struct FaultRow {
  std::int32_t code;    ///< the fault code, without the object-error base
  std::int32_t number;  ///< the error that is raised for it
};

/// An operation's envelope, made at its first use: by the body, or by a tail that looks into it.
const SoapEnvelope& made(SoapEnvelope& envelope);

/// What a tail can look at.
struct TailContext {
  const LogBlock& log;
  SoapEnvelope& envelope;  ///< as the operation left it
  std::span<const FaultRow> faults;
};

/// Runs a tail on an error, which it may use up. What it raises; nothing for `kSwallow`. This is
/// the one place that applies tails.
std::optional<Error> apply_tail(Tail tail, const TailContext& context, Error& error);

}  // namespace bvconn
