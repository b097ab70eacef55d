#pragma once

#include <curl/curl.h>

#include "bvconn/platform/http/http_request.h"

namespace bvconn::detail {

/// Makes a handle trust the authorities of a request's files, and show its certificate.
void use_tls_files(CURL* handle, const HttpRequest& request);

}  // namespace bvconn::detail
