#pragma once

#include <string>
#include <string_view>

#include "bvconn/platform/soap/soap_envelope.h"
#include "sandbox/contract/contract.h"

namespace bvconn::sandbox {

/// A request that could be read.
struct SoapRequest {
  SoapEnvelope envelope;
  /// What the envelope tells; SOAPAction does not stand in it.
  RequestFacts facts;
  std::string user_id;
};

/// Reads the envelope of a request. `encoding` is what HTTP says of it, "" where nothing does.
/// Throws a `Fault` for what is no request.
SoapRequest read_request(const std::string& text, std::string_view encoding);

}  // namespace bvconn::sandbox
