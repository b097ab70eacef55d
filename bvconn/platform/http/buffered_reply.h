#pragma once

#include "bvconn/platform/http/http_transport.h"
#include "bvconn/platform/text_buffer.h"

namespace bvconn::detail {

/// As `HTTPTransport::Receive` in UTF-8. The library's own transport hands over the body as it was
/// taken in, which saves a copy of it as a string.
TextBuffer receive_buffer(HTTPTransport& transport);

}  // namespace bvconn::detail
