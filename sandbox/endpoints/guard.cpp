#include "sandbox/endpoints/guard.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "bvconn/platform/conversions/conversions.h"
#include "sandbox/contract/words.h"
#include "sandbox/endpoints/endpoints.h"

namespace bvconn::sandbox {
namespace {

using conversions::equal_ignoring_case;

constexpr std::array<std::string_view, 3> kLoopbackNames{"127.0.0.1", "localhost", "[::1]"};

/// "[::1]" of "[::1]:8080", "localhost" of "localhost:8080".
std::string_view without_port(std::string_view authority) {
  const auto colon = authority.rfind(':');
  if (colon == std::string_view::npos || authority.ends_with(']')) return authority;
  return authority.substr(0, colon);
}

bool is_own_name(const ServedSandbox& sandbox, std::string_view authority) {
  const std::string_view name = without_port(authority);
  const auto is_name = [&](std::string_view each) { return equal_ignoring_case(each, name); };
  return std::any_of(kLoopbackNames.begin(), kLoopbackNames.end(), is_name) ||
         std::any_of(sandbox.allowed_hosts.begin(), sandbox.allowed_hosts.end(), is_name);
}

/// Whether an origin is that of whoever is asked by this host and port. "null" is nobody's.
bool is_origin_of(std::string_view origin, std::string_view host) {
  constexpr std::string_view kSchemeEnd = "://";
  const auto scheme = origin.find(kSchemeEnd);
  return scheme != std::string_view::npos &&
         equal_ignoring_case(origin.substr(scheme + kSchemeEnd.size()), host);
}

/// Somebody follows a link to the page, or opens it by hand: the page itself tells nothing.
bool opens_page(const Request& request) {
  return request.method == "GET" && request.path() == "/" &&
         request.header("Sec-Fetch-Mode").value_or("") == "navigate" &&
         request.header("Sec-Fetch-Dest").value_or("") == "document";
}

/// Why the browser that asks says that another origin's page made it; "" where it does not.
std::string strange_origin(const Request& request) {
  const std::string host = request.header("Host").value_or("");
  if (const auto origin = request.header("Origin"); origin && !is_origin_of(*origin, host)) {
    return "the origin " + in_quotes(shortened(*origin));
  }
  const std::string site = request.header("Sec-Fetch-Site").value_or("none");
  if (site == "same-origin" || site == "none" || opens_page(request)) return {};
  return "another origin (Sec-Fetch-Site is " + in_quotes(shortened(site)) + ")";
}

/// A second header of one of these names would be looked at by somebody else.
bool has_twice(const Request& request, std::string_view name) {
  return std::count_if(request.headers.begin(), request.headers.end(), [&](const Header& each) {
           return equal_ignoring_case(each.name, name);
         }) > 1;
}

/// Whether a path would lead to something else on another server, to which it is passed on.
bool goes_up(std::string_view path) {
  std::string plain = conversions::upper_case(path);
  for (auto at = plain.find("%2E"); at != std::string::npos; at = plain.find("%2E")) {
    plain.replace(at, 3, ".");
  }
  return (plain + "/").find("/../") != std::string::npos || plain.find('\\') != std::string::npos;
}

bool is_browser(const Request& request) {
  return request.header("Origin") || request.header("Sec-Fetch-Site");
}

}  // namespace

std::optional<Reply> refuse_stranger(const ServedSandbox& sandbox, const Request& request) {
  const std::string_view path = request.path();
  const bool is_clients = path == "/soap" || path == "/dal" || path.starts_with("/dal/");
  if (is_clients && !is_browser(request)) return std::nullopt;
  if (has_twice(request, "Host") || has_twice(request, "Origin")) {
    return error_text_reply(400, "The request has Host or Origin twice");
  }
  // Programs may leave it out, browsers never do. A page that came by another name has no token.
  const auto host = request.header("Host");
  const bool may_have_any = !is_clients && !sandbox.admin_token.empty();
  if (host && !may_have_any && !is_own_name(sandbox, *host)) {
    return error_text_reply(403, "The sandbox is not asked by the name " +
                                     in_quotes(shortened(*host)) +
                                     "; --allowed-host NAME allows one");
  }
  if (const std::string stranger = strange_origin(request); !stranger.empty()) {
    return error_text_reply(403, "Pages of " + stranger + " may ask nothing of the sandbox");
  }
  return std::nullopt;
}

std::optional<Reply> refuse_but_clients(const Request& request) {
  const std::string_view path = request.path();
  if (is_browser(request)) return error_text_reply(403, "Pages in browsers may ask nothing here");
  if ((path != "/soap" && !path.starts_with("/dal/")) || goes_up(path)) {
    return text_reply(404, "There is nothing here. POST to /soap or /dal/{Object}/{Operation}.\n");
  }
  if (request.method != "POST") return method_not_allowed(request, "POST");
  return std::nullopt;
}

}  // namespace bvconn::sandbox
