#include "bvconn/connectors/session/bv_heart_beat_connector.h"

#include "bvconn/core/heart_beat_time.h"
#include "bvconn/core/session_state.h"
#include "bvconn/operation/method_frame.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/live_error.h"

namespace bvconn {
namespace {

constexpr std::int32_t kBeatTimeout_ms = 5000;
constexpr std::int64_t kSilenceLimit_min = 15;

constexpr Operation kSendHeartBeat{
    .log = {.cls = "BVHeartBeatConnector", .method = "sendHeartBeat", .form = LogForm::kTextLines},
    .method = &BVMethods::Beat,
    .service = &BVServices::Heartbeat,
};
// deliberate [level-zero]: lines of level 0.
constexpr Operation kUpdateHeartBeatTime{
    .log = {.cls = "BVHeartBeatConnector", .method = "UpdateHeartBeatTime", .level = 0},
};

void send_beat(Call& call) {
  if (call.takes_dal()) {
    call.parse(call.dal().HeartBeatService().sendHeartBeat()).or_raise();
  } else {
    call.getEnvelope().send(kBeatTimeout_ms).or_raise();
  }
  // deliberate [beat-counted]: another answer is a failure, but by SOAP it has moved the time
  // already.
  if (call.value() != Variant("OK")) {
    throw Error(error_numbers::kHeartBeatNotOk, "Heart.Beat", "Server did not return OK");
  }
  Global::LastHeartBeat(session().clock().now());
  session().Logger().LogInfo("BVHeartBeatConnector", "sendHeartBeat", "Heartbeat Returned OK.", 0);
}

void log_failure(const Error& error) {
  // deliberate [beat-lost-line]: no error line for a lost connection, but a promise that nothing
  // here keeps.
  if (error.number == error_numbers::kConnectionLost) {
    session().Logger().LogAtLevel(
        1, "BVHeartBeatConnector", "sendHeartBeat",
        "Automation Error received, exiting sub, will resend in 1 minute.", 0);
  } else {
    log_error(kSendHeartBeat.log, error);
  }
}

// deliberate [beat-minutes]: boundaries of minutes are counted, not seconds, and exactly 15 are
// none too many.
bool is_long_silence() {
  const Date now = session().clock().now();
  return minutes_between(Global::LastHeartBeat(), now) > kSilenceLimit_min;
}

// A handler may put another one in its place, or delete the connector: what runs is a copy. What it
// throws is logged and goes no further, since the beat's caller did not ask for it.
void raise(const std::function<void()>& event) {
  try {
    if (const auto handler = event) handler();
  } catch (...) {
    log_error(kSendHeartBeat.log, live_error());
  }
}

}  // namespace

void BVHeartBeatConnector::sendHeartBeat(std::string_view aServerURL, std::string_view aSessionID,
                                         bool isBrimvale) {
  Call call(kSendHeartBeat, {aServerURL, aSessionID});
  try {
    log_enter(kSendHeartBeat.log);
    session().isBrimvale = isBrimvale;
    send_beat(call);
    log_exit(kSendHeartBeat.log);
  } catch (...) {
    // deliberate [beat-silent]: nothing is raised; a long silence is the event, at each failed
    // beat.
    only_errors([&, error = live_error()]() mutable {
      call.note_failure(error);
      log_failure(error);
      if (is_long_silence()) raise(HeartBeatError);
    });
  }
}

void BVHeartBeatConnector::UpdateHeartBeatTime() {
  ConnectorMethodFrame(kUpdateHeartBeatTime,
                       [](Call&) { Global::LastHeartBeat(session().clock().now()); });
}

}  // namespace bvconn
