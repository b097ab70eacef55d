#pragma once

#include <string>
#include <string_view>

#include "bvconn/platform/soap/soap_envelope.h"
#include "bvconn/platform/soap/variant.h"

namespace bvconn::Global {

/// A new envelope with the header "userID" and the method in its namespace.
SoapEnvelope getEnvelope(std::string_view method, std::string_view urn, std::string_view sessionID);

/// The two halves of a request in text form, between which an operation pastes XML of its own as
/// the content of the element "param_encoding". Nothing is escaped.
std::string getEnvelopeStart(std::string_view userID, std::string_view method,
                             std::string_view urn);
/// A variant that holds a string.
Variant getEnvelopeEnd(std::string_view method);

/// Creates the header "userID".
void create_user_id(const SoapEnvelope& envelope, std::string_view sessionID);

}  // namespace bvconn::Global
