#pragma once

#include <optional>
#include <string>

#include "bvconn/platform/exchange/exchange.h"
#include "connection_options.h"

namespace bvconn::tool {

/// Logs the calling thread in to the data access layer of the connection, and turns that route on.
/// A refused login is no error of the library's, so what failed comes from the record of exchanges,
/// masked; nothing where all went well. The route then stays as it was.
/// @throws UsageError  for a password file that cannot be read.
std::optional<Exchange> log_in_to_dal(const Connection& connection);
/// The same with a password that is known: a file may be a pipe, which is read but once.
std::optional<Exchange> log_in_to_dal(const Connection& connection, const std::string& password);

/// "the login at URL failed: error 0x80044301 (…) from AuthenticationService: …", with the words of
/// the service itself.
std::string login_failure_text(const Exchange& failure);

/// The likely cause, and what to do.
std::string login_advice(const Exchange& failure);

}  // namespace bvconn::tool
