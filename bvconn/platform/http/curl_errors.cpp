#include "bvconn/platform/http/curl_errors.h"

#include <string>

#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"

namespace bvconn::detail {
namespace {

bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

}  // namespace

void fail_without_memory() {
  throw Error(error_numbers::kOutOfMemory, "BVConn", "out of memory: libcurl has none");
}

void fail_to_set_up(CURLcode code, std::string_view source, std::string_view what) {
  if (code == CURLE_OUT_OF_MEMORY) fail_without_memory();
  throw Error(
      error_numbers::kCannotConnect, source,
      std::string("libcurl cannot be ").append(what).append(": ") + curl_easy_strerror(code));
}

void start_libcurl(std::string_view source) {
  // A beginning that throws is made again by the next call.
  [[maybe_unused]] static const bool started = [source] {
    const CURLcode code = curl_global_init(CURL_GLOBAL_DEFAULT);
    if (code != CURLE_OK) fail_to_set_up(code, source, "started");
    return true;
  }();
}

std::int32_t number_for(CURLcode code, std::string_view detail) {
  switch (code) {
    case CURLE_OPERATION_TIMEDOUT:
      return error_numbers::kTimeout;
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_CONNECT:
    case CURLE_INTERFACE_FAILED:
      return error_numbers::kCannotConnect;
    case CURLE_COULDNT_RESOLVE_PROXY:
    case CURLE_PROXY:
      return error_numbers::kProxy;
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_ENGINE_NOTFOUND:
    case CURLE_SSL_ENGINE_SETFAILED:
    case CURLE_SSL_CERTPROBLEM:
    case CURLE_SSL_CIPHER:
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_USE_SSL_FAILED:
    case CURLE_SSL_ENGINE_INITFAILED:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_CRL_BADFILE:
    case CURLE_SSL_ISSUER_ERROR:
    case CURLE_SSL_INVALIDCERTSTATUS:
    case CURLE_SSL_CLIENTCERT:
      return error_numbers::kTls;
    case CURLE_URL_MALFORMAT:
      return error_numbers::kBadUrlOrHeader;
    case CURLE_UNSUPPORTED_PROTOCOL:  // Not HTTP at all: the scheme of the URL was checked before.
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_BAD_CONTENT_ENCODING:
    case CURLE_OUT_OF_MEMORY:  // So libcurl reports a single header line beyond its limit.
#if LIBCURL_VERSION_NUM >= 0x080600
    case CURLE_TOO_LARGE:
#endif
      return error_numbers::kBadReply;
    case CURLE_RECV_ERROR:
      // A server may refuse the client's certificate, or its absence, after the handshake.
      if (contains(detail, "alert")) {
        return error_numbers::kTls;
      }
      return contains(detail, "chunk") || contains(detail, "Chunk")
                 ? error_numbers::kBadReply
                 : error_numbers::kConnectionLost;
    default:
      return error_numbers::kConnectionLost;
  }
}

std::string_view trouble_text(std::int32_t number) {
  switch (number) {
    case error_numbers::kTimeout:
      return "Time-out in the exchange with ";
    case error_numbers::kCannotConnect:
      return "Cannot reach ";
    case error_numbers::kProxy:
      return "The proxy does not lead to ";
    case error_numbers::kTls:
      return "No secure connection to ";
    case error_numbers::kBadUrlOrHeader:
      return "The URL cannot be used: ";
    case error_numbers::kBadReply:
      return "This is not a reply of HTTP, from ";
    default:
      return "The connection was lost during the exchange with ";
  }
}

}  // namespace bvconn::detail
