#include "call_status.h"

#include "bvconn/platform/error_numbers.h"
#include "status.h"

namespace bvconn::tool {
namespace {

using namespace error_numbers;  // NOLINT(google-build-using-namespace): most are named

bool is_of_transport(std::int32_t number) {
  return number >= kCannotConnect && number <= kUnknownOption;
}

/// A service object's own refusal may have any number, those of the library included.
bool is_refusal(const Error& error, const std::optional<Exchange>& exchange) {
  constexpr std::int32_t kOk = 200;
  return exchange && exchange->route == ExchangeRoute::kDal &&
         exchange->outcome == Outcome::kAnswered && exchange->http_status != 0 &&
         exchange->http_status != kOk && !is_of_transport(error.number);
}

/// What the outcome tells where the number says nothing more.
int status_by_outcome(Outcome outcome) {
  switch (outcome) {
    case Outcome::kUnknown:
      return kLost;
    case Outcome::kAnswered:
      return kBadAnswer;
    default:
      return kFailed;
  }
}

}  // namespace

int call_status(const Error& error, const std::optional<Exchange>& exchange) {
  if (is_refusal(error, exchange)) return kRefused;
  switch (error.number) {
    case kSettingsNotToml:
    case kSettingsUnusable:
    case kSettingsLock:
      return kSettings;
    case kSoapFault:
    case kRfqFault:
    case kInvoiceFault:
    case kSaveReconcileFault:
    case kGetReconcileFault:
    case kAssociateFault:
    case kAutoReconcileFault:
      return kRefused;
    case kTimeout:
      return kTimedOut;
    case kCannotConnect:
    case kTls:
    case kProxy:
      return error.outcome == Outcome::kUnknown ? kLost : kNotReached;
    case kOutOfMemory:
    case kFailed:
      return tool::kFailed;
    default:
      return status_by_outcome(error.outcome);
  }
}

int call_status(const Exchange& failure) {
  const int status = call_status(recorded_error(failure), failure);
  // A beat tells whether the server is reached and well: whatever it has against one is an answer
  // that is not OK, and what keeps one from being sent keeps it from the server.
  if (failure.operation != "sendHeartBeat" || status == kSettings) return status;
  if (status == kRefused) return kBadAnswer;
  return status == tool::kFailed ? kNotReached : status;
}

Error recorded_error(const Exchange& failure) {
  const ExchangeError words = failure.error.value_or(ExchangeError{});
  Error error(words.number, words.source, words.description);
  error.outcome = failure.outcome;
  return error;
}

}  // namespace bvconn::tool
