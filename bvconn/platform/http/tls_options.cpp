#include "bvconn/platform/http/tls_options.h"

#include "bvconn/platform/http/curl_errors.h"

namespace bvconn::detail {

void use_tls_files(CURL* handle, const HttpRequest& request) {
  const auto option = [&](CURLoption key, auto value) {
    set_option(handle, request.source, key, value);
  };
  if (!request.tls.ca_file.empty()) {
    // Who names an authority trusts that one, not the system's store besides.
    option(CURLOPT_CAINFO, request.tls.ca_file.c_str());
    option(CURLOPT_CAPATH, static_cast<char*>(nullptr));
  }
  if (!request.tls.client_cert.empty()) {
    option(CURLOPT_SSLCERT, request.tls.client_cert.c_str());
  }
  if (!request.tls.client_key.empty()) {
    option(CURLOPT_SSLKEY, request.tls.client_key.c_str());
  }
}

}  // namespace bvconn::detail
