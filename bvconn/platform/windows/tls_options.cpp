#include "bvconn/platform/http/tls_options.h"

#include "bvconn/platform/http/curl_errors.h"

namespace bvconn::detail {

// The system's TLS knows no folder of authorities, and takes a certificate together with its key:
// from one file of the form PKCS #12, or from its own store.
void use_tls_files(CURL* handle, const HttpRequest& request) {
  const auto option = [&](CURLoption key, auto value) {
    set_option(handle, request.source, key, value);
  };
  // A list of revoked certificates that cannot be reached is no reason to call nobody.
  option(CURLOPT_SSL_OPTIONS, static_cast<long>(CURLSSLOPT_REVOKE_BEST_EFFORT));
  if (!request.tls.ca_file.empty()) {
    option(CURLOPT_CAINFO, request.tls.ca_file.c_str());
  }
  if (!request.tls.client_cert.empty()) {
    option(CURLOPT_SSLCERT, request.tls.client_cert.c_str());
    option(CURLOPT_SSLCERTTYPE, "P12");
  }
}

}  // namespace bvconn::detail
