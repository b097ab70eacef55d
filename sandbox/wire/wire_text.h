#pragma once

#include <string>

#include "sandbox/wire/wire_file.h"

namespace bvconn::wire {

/// The text of the request that a step describes: that of an envelope of the library's own, or any.
std::string request_text(const WireStep& step);

/// Describes a request in a step, so that `request_text` gives this text again: in its parts where
/// it is an envelope of the library's own.
void describe_request(const std::string& text, WireStep& step);

/// The text of the reply: an envelope, a fault, or whatever came.
std::string reply_text(const WireStep& step);

}  // namespace bvconn::wire
