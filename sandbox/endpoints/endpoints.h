#pragma once

#include "sandbox/endpoints/served_sandbox.h"
#include "sandbox/http/message.h"
#include "sandbox/operations/operations.h"

namespace bvconn::sandbox {

/// What a person or a script asks of the sandbox itself: the table of sandbox/admin/router.cpp.
/// What is wrong with a request is told in one line of text.
Reply answer_admin(ServedSandbox& sandbox, const Request& request);

/// Answers a request by its path; never throws. SOAP 1.1 over HTTP is POST /soap: whatever is wrong
/// with an envelope is answered by a fault with status 500, as SOAP 1.1 asks for; what is wrong
/// with the HTTP around it, by its own status. The data access layer over HTTP is POST
/// /dal/{Object}/{Operation}.
Reply answer(ServedSandbox& sandbox, const Operations& operations, const Request& request);

/// A refusal in one line of plain text.
Reply error_text_reply(int status, const std::string& text);

/// The answer to a request whose method the path does not take.
Reply method_not_allowed(const Request& request, std::string_view allowed);

}  // namespace bvconn::sandbox
