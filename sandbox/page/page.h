#pragma once

#include "sandbox/http/message.h"

namespace bvconn::sandbox {

/// Answers what a browser asks for the page: the page itself at /, its parts at /page/NAME.
Reply answer_page(const Request& request);

}  // namespace bvconn::sandbox
