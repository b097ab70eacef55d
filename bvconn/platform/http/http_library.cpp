#include "bvconn/platform/http/http_library.h"

#include <curl/curl.h>

namespace bvconn {

std::string http_library_versions() {
  return curl_version();
}

}  // namespace bvconn
