#include "doctor_calls.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "bvconn/core/session_state.h"
#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/explain.h"
#include "bvconn/platform/timeout_scope.h"
#include "call_status.h"
#include "dal_login.h"
#include "mask_urls.h"
#include "status.h"
#include "target.h"

namespace bvconn::tool {
namespace {

/// For each of the three calls of a login.
constexpr std::chrono::seconds kLoginPatience{10};

std::string milliseconds_of(std::int64_t microseconds) {
  constexpr std::int64_t kThousand = 1000;
  return " (" + std::to_string(microseconds / kThousand) + " ms)";
}

std::string failure_text(const Error& error) {
  std::string text = hex_number(error.number);
  if (!error.source.empty()) text.append(" from ").append(error.source);
  return text.append(": ").append(error.description);
}

bool is_https(const std::string& url) {
  return conversions::equal_ignoring_case(url.substr(0, url.find(':')), "https");
}

/// What the words of the TLS library most likely mean.
std::string tls_advice(const Error& error) {
  struct Cause {
    std::string_view words;
    std::string_view advice;
  };
  constexpr std::array kCauses{
      Cause{"cannot be read",
            "Name files that are there and that this user may read, with --ca-file, --client-cert "
            "and --client-key or their variables."},
      Cause{"expired",
            "The server's certificate has expired, or this machine's clock is wrong: have it "
            "renewed, or set the clock."},
      Cause{"not yet valid", "This machine's clock is wrong: set it."},
      Cause{"self-signed certificate",
            "The certificate's authority is not trusted here: name its file with --ca-file or "
            "BVCONN_CA_FILE, or add it to the system's store."},
      Cause{"self signed certificate",
            "The certificate's authority is not trusted here: name its file with --ca-file or "
            "BVCONN_CA_FILE, or add it to the system's store."},
      Cause{"issuer certificate",
            "The certificate's authority is not trusted here: name its file with --ca-file or "
            "BVCONN_CA_FILE, or add it to the system's store."},
      Cause{"does not match",
            "The certificate belongs to another name: write the address with a name that is in "
            "it."},
      Cause{"no alternative certificate",
            "The certificate belongs to another name: write the address with a name that is in "
            "it."},
      Cause{"Time-out",
            "What listens there does not answer TLS: write http: in the address, or the port of "
            "https."},
      Cause{"wrong version number",
            "What listens there speaks no TLS: write http: in the address, or the port of https."},
      Cause{"alert",
            "The server refuses this client's certificate, or its absence: name it with "
            "--client-cert and --client-key."},
  };
  const auto* const cause = std::ranges::find_if(kCauses, [&](const Cause& each) {
    return error.description.find(each.words) != std::string::npos;
  });
  return cause == kCauses.end() ? explain(error) : std::string(cause->advice);
}

/// The connection was there before: a time-out that comes so early is one of the handshake.
bool is_tls_failure(const std::string& url, const Exchange& exchange) {
  if (!exchange.error || !is_https(url)) return false;
  const std::int32_t number = exchange.error->number;
  return number == error_numbers::kTls ||
         (number == error_numbers::kTimeout && exchange.outcome == Outcome::kNotSent);
}

Check tls_check(const std::string& url, const Exchange& exchange) {
  Check check{.name = "TLS", .state = CheckState::kSkipped, .text{}, .advice{}};
  if (!is_https(url)) {
    check.text = "the address begins with http:, nothing is encrypted";
  } else if (is_tls_failure(url, exchange)) {
    const Error error = recorded_error(exchange);
    check.state = CheckState::kFailed;
    check.text = failure_text(error);
    check.advice = tls_advice(error);
  } else if (exchange.outcome == Outcome::kNotSent) {
    check.text = "it did not come so far";
  } else {
    check.state = CheckState::kOk;
    check.text = "the server's certificate is good" + milliseconds_of(exchange.times.tls_us);
  }
  return check;
}

Check beat_check(const Connection& connection, const Exchange& exchange) {
  Check check{.name = "heart beat", .state = CheckState::kOk, .text{}, .advice{}};
  if (!exchange.error) {
    check.text = "the server answers OK" + milliseconds_of(exchange.times.total_us);
    return check;
  }
  const Error error = recorded_error(exchange);
  if (is_tls_failure(connection.server.text, exchange)) {
    check.state = CheckState::kSkipped;
    check.text = "there is no secure connection";
    return check;
  }
  check.state = CheckState::kFailed;
  check.text = failure_text(error);
  check.advice = explain(error);
  const bool refused =
      error.number == error_numbers::kSoapFault || error.number == error_numbers::kHeartBeatNotOk;
  if (connection.session.empty() && refused) {
    check.advice.append(
        " No session identifier was given, which the server may ask for: --session or "
        "BVCONN_SESSION.");
  }
  return check;
}

}  // namespace

void check_heart_beat(const Connection& connection, std::vector<Check>& checks) {
  const automation::ClassInfo& info = find_class("BVHeartBeatConnector");
  info.find("sendHeartBeat")
      ->invoke(info.make().get(),
               std::vector<automation::Value>{
                   Variant(connection.server.text), Variant(connection.session.text), {}});
  const std::optional<Exchange> exchange = session().LastExchange();
  if (!exchange) return;
  checks.push_back(tls_check(connection.server.text, *exchange));
  checks.push_back(beat_check(connection, *exchange));
}

void check_dal(const Connection& connection, std::vector<Check>& checks) {
  Check check{.name = "DAL login", .state = CheckState::kSkipped, .text{}, .advice{}};
  if (connection.dal.empty()) {
    check.text = "no data access layer is named: --dal, BVCONN_DAL_URL or a profile";
    checks.push_back(std::move(check));
    return;
  }
  try {
    const TimeoutScope patience(connection.time_limit().value_or(kLoginPatience));
    if (const auto failure = log_in_to_dal(connection)) {
      const Error error = recorded_error(*failure);
      check.state = CheckState::kFailed;
      check.text = failure_text(error);
      check.advice =
          error.number == error_numbers::kTls ? tls_advice(error) : login_advice(*failure);
    } else {
      check.state = CheckState::kOk;
      check.text = "signed in at " + mask_url(connection.dal.text);
    }
  } catch (const UsageError& error) {
    check.state = CheckState::kFailed;
    check.text = error.what();
    check.advice =
        "Name a time as in 30s with --timeout, and with --password-file a file that this user may "
        "read.";
  }
  checks.push_back(std::move(check));
}

}  // namespace bvconn::tool
