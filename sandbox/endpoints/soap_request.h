#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "bvconn/platform/soap/soap_envelope.h"
#include "sandbox/contract/contract.h"
#include "sandbox/exchange.h"

namespace bvconn::sandbox {

/// A request that could be read.
struct SoapRequest {
  SoapEnvelope envelope;
  /// What the envelope tells; SOAPAction does not stand in it.
  RequestFacts facts;
  std::string user_id;
};

/// So many tags may stand in a request, and so many values in JSON: what reading one costs, in time
/// and in memory, grows with these more than with its bytes.
inline constexpr std::size_t kMostRequestTags = 1'000'000;

/// Reads the envelope of a request. `encoding` is what HTTP says of it, "" where nothing does.
/// Throws a `Fault` for what is no request.
SoapRequest read_request(const std::string& text, std::string_view encoding);

/// Notes in the exchange what an envelope tells, method, session and arguments, and what the
/// contract says of it. Throws a `Fault` for what does not fit; with `loose` for what there is no
/// method for alone.
void note_envelope(const SoapRequest& request, Verdict verdict, bool loose, Exchange& exchange);

}  // namespace bvconn::sandbox
