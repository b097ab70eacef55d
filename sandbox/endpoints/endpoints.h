#pragma once

#include "sandbox/http/message.h"
#include "sandbox/operations/operations.h"
#include "sandbox/sandbox.h"

namespace bvconn::sandbox {

/// SOAP 1.1 over HTTP: POST /soap. Whatever is wrong with an envelope is answered by a fault with
/// status 500, as SOAP 1.1 asks for; what is wrong with the HTTP around it, by its own status.
Reply answer_soap(Sandbox& sandbox, const Operations& operations, const Request& request);

/// The data access layer over HTTP: POST /dal/{Object}/{Operation}.
Reply answer_dal(Sandbox& sandbox, const Operations& operations, const Request& request);

/// What a person or a script asks of the sandbox itself: the table of sandbox/admin/router.cpp.
/// What is wrong with a request is told in one line of text.
Reply answer_admin(Sandbox& sandbox, const Request& request);

/// Hands a request to its endpoint by its path; never throws.
Reply answer(Sandbox& sandbox, const Operations& operations, const Request& request);

/// The answer to a request whose method the path does not take.
Reply method_not_allowed(const Request& request, std::string_view allowed);

}  // namespace bvconn::sandbox
