#include "sandbox/page/page.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "sandbox/endpoints/endpoints.h"
#include "sandbox/page/page_files.h"

namespace bvconn::sandbox {
namespace {

constexpr std::string_view kFolder = "/page/";
constexpr std::string_view kStart = "index.html";

/// Only what is served here, from here; and no text becomes markup, whatever a script would do.
constexpr const char* kPolicy =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; connect-src 'self'; "
    "base-uri 'none'; form-action 'none'; frame-ancestors 'none'; require-trusted-types-for "
    "'script'; trusted-types 'none'";

struct MediaType {
  std::string_view ending;
  const char* name;
};

constexpr std::array kMediaTypes{
    MediaType{".html", "text/html; charset=utf-8"},
    MediaType{".css", "text/css; charset=utf-8"},
    MediaType{".js", "text/javascript; charset=utf-8"},
    MediaType{".svg", "image/svg+xml"},
};

const char* media_type_of(std::string_view name) {
  return std::find_if(kMediaTypes.begin(), kMediaTypes.end(),
                      [&](const MediaType& each) { return name.ends_with(each.ending); })
      ->name;
}

}  // namespace

Reply answer_page(const Request& request) {
  const std::string_view path = request.path();
  const std::string_view name =
      path == "/" ? kStart : path.substr(std::min(path.size(), kFolder.size()));
  const auto files = page_files();
  const auto file = std::find_if(files.begin(), files.end(),
                                 [&](const PageFile& each) { return each.name == name; });
  if (file == files.end()) return text_reply(404, "The page has no such part.\n");
  if (request.method != "GET" && request.method != "HEAD") {
    return method_not_allowed(request, "GET, HEAD");
  }
  return {.status = 200,
          .headers = {{"Content-Type", media_type_of(file->name)},
                      {"Content-Security-Policy", kPolicy},
                      {"X-Content-Type-Options", "nosniff"},
                      {"Referrer-Policy", "no-referrer"},
                      {"Cross-Origin-Opener-Policy", "same-origin"},
                      {"Cross-Origin-Resource-Policy", "same-origin"},
                      {"Cache-Control", "no-store"}},
          .body = std::string(file->text)};
}

}  // namespace bvconn::sandbox
