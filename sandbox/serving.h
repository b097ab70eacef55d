#pragma once

#include <string>

#include "sandbox/http/message.h"
#include "sandbox/http/server.h"

namespace bvconn::sandbox {

/// Serves until a signal ends it, or the end of standard input where `until_eof` says so, and tells
/// on standard output when it is ready, with the file of the authority that clients have to trust
/// where there is one. The process takes as many descriptors as it may have.
void serve(Server& server, bool until_eof, const std::string& authority_file = "");

/// A line for an exchange on standard error: method, path, SOAPAction or "-", status, and
/// what is wrong.
void tell_exchange(const Request& request, const Reply& reply);

}  // namespace bvconn::sandbox
