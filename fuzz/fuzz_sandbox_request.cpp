// Asks the sandbox's server for what the input says, without a connection in between: a path, what
// stands in its chief header, and a body. It answers everything, with a status that belongs to the
// path, in a form that clients read, and is never at a loss. What was administered so hits one good
// request, is taken back, and the next one is answered as ever.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/soap_envelope.h"
#include "fuzzing.h"
#include "sandbox/contract/observed.h"
#include "sandbox/endpoints/endpoints.h"

namespace {

using namespace bvconn;  // NOLINT(google-build-using-namespace): the interface under test
using fuzz::Choices;
using fuzz::require;
using nlohmann::json;
using sandbox::Reply;
using sandbox::Request;

Request request_to(std::string_view method, std::string_view path, std::string_view type,
                   std::string_view body) {
  return {.method = std::string(method),
          .target = std::string(path),
          .headers = {{.name = "Content-Type", .value = std::string(type)}},
          .body = std::string(body)};
}

/// A server with its data, made anew from time to time: what is saved takes memory.
class Server {
 public:
  /// To be called ahead of each input.
  void begin() {
    if (inputs_++ % kInputsMax == 0) make();
  }

  Reply ask(const Request& request) { return answer(*sandbox_, operations_, request); }

  /// Undoes what a request to administer can have done but for the data, which may be that of
  /// another time from then on: nobody is logged in there.
  void take_back(const Request& request) {
    for (const char* clean : {"/admin/faults", "/admin/stubs"}) {
      require(ask(request_to("DELETE", clean, "", "")).status == 200, "cannot be cleared", clean);
    }
    require(ask(request_to("POST", "/admin/disabled", "text/plain", "")).status == 200,
            "cannot be enabled", request.target);
    const std::string_view path = request.path();
    if (path.starts_with("/admin/snapshots/") && copies_++ == kCopiesMax) make();
    if (path.starts_with("/admin/reset") || path.starts_with("/admin/restore/")) log_in();
  }

  const std::string& token() const { return token_; }

 private:
  static constexpr std::size_t kInputsMax = 10'000;
  // Copies of the data take memory until the server is made anew.
  static constexpr std::size_t kCopiesMax = 100;

  void make() {
    static const auto observations = automation::observe_all();
    static const auto contract = sandbox::contract_of(observations);
    static const auto routes = sandbox::dal_routes_of(observations);
    sandbox_.reset();
    sandbox_ = std::unique_ptr<sandbox::ServedSandbox>(
        new sandbox::ServedSandbox{{.stores = sandbox::Stores(":memory:", {}),
                                    .contract = sandbox::Contract(contract),
                                    .dal_routes = routes}});
    copies_ = 0;
    log_in();
  }

  void log_in() {
    token_.clear();
    const Reply reply =
        answer(*sandbox_, operations_,
               request_to("POST", "/dal/AuthenticationService/Login", "application/json",
                          R"({"arguments":["1000","joe","secret","1.0"]})"));
    for (const auto& header : reply.headers) {
      if (header.name == "Session-Token") token_ = header.value;
    }
    require(!token_.empty(), "nobody can log in", reply.body);
  }

  const sandbox::Operations operations_ = sandbox::all_operations();
  std::unique_ptr<sandbox::ServedSandbox> sandbox_;
  std::string token_;
  std::size_t inputs_ = 0;
  std::size_t copies_ = 0;
};

/// The number that a client's envelope gives for the text: 0 where it reads.
std::int32_t number_of_reading(const std::string& text) {
  try {
    SoapEnvelope::make().Parse(text, "");
    return 0;
  } catch (const Error& error) {
    return error.number;
  }
}

void require_status(const Reply& reply, std::initializer_list<int> statuses) {
  require(std::find(statuses.begin(), statuses.end(), reply.status) != statuses.end(),
          "a status that the path does not have", std::to_string(reply.status) + reply.body);
}

void check_soap(const Reply& reply) {
  require_status(reply, {200, 405, 415, 500});
  if (reply.status == 200) {
    require(number_of_reading(reply.body) == 0, "an answer that does not read", reply.body);
  } else if (reply.status == 500) {
    require(number_of_reading(reply.body) == error_numbers::kSoapFault,
            "a fault that does not read", reply.body);
  }
}

void check_dal(const Reply& reply) {
  require_status(reply, {200, 400, 401, 404, 405, 415});
  if (reply.status == 200 || reply.status == 405) return;
  const json error = json::parse(reply.body, nullptr, false);
  require(error.is_object() && error["number"].is_number_integer() && error["source"].is_string() &&
              error["description"].is_string(),
          "an error of another form", reply.body);
}

bool is_admin(const Request& request) {
  return request.path().starts_with("/admin/");
}

void check(const Request& request, const Reply& reply) {
  if (request.path() == "/soap") {
    check_soap(reply);
  } else if (request.path() == "/dal" || request.path().starts_with("/dal/")) {
    check_dal(reply);
  } else if (is_admin(request)) {
    require_status(reply, {200, 201, 400, 404, 405, 409});
    require(reply.status == 200 || !reply.body.empty(), "a refusal without a word",
            std::to_string(reply.status));
  } else if (request.path() == "/" || request.path().starts_with("/page/")) {
    require_status(reply, {200, 404, 405});
  } else {
    require_status(reply, {404});
  }
}

Request good_request(const Server& server) {
  Request request = request_to("POST", "/dal/HeartBeatService/sendHeartBeat", "application/json",
                               R"({"arguments":[]})");
  request.headers.push_back({.name = "Authorization", .value = "Bearer " + server.token()});
  return request;
}

void check_good_request(Server& server) {
  const Reply reply = server.ask(good_request(server));
  require(reply.status == 200 && number_of_reading(reply.body) == 0,
          "the good request fails afterwards", reply.body);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Server server;
  server.begin();
  Choices choices(data, size);
  const std::string_view first = choices.line();
  const std::size_t blank = first.find(' ');
  const std::string_view method = blank == std::string_view::npos ? "POST" : first.substr(0, blank);
  const std::string_view path = blank == std::string_view::npos ? first : first.substr(blank + 1);
  const bool is_soap = path == "/soap";
  const std::string_view header = is_soap ? choices.line() : std::string_view();
  Request request =
      request_to(method, path, is_soap ? "text/xml" : "application/json", choices.rest());
  request.headers.push_back({.name = "SOAPAction", .value = std::string(header)});
  request.headers.push_back({.name = "Authorization", .value = "Bearer " + server.token()});
  check(request, server.ask(request));
  if (is_admin(request)) {
    server.ask(good_request(server));
    server.take_back(request);
  }
  check_good_request(server);
  return 0;
}
