#include "bvconn/connectors/session/bv_heart_beat_connector.h"

#include "bvconn/core/heart_beat_time.h"
#include "bvconn/core/session_state.h"
#include "bvconn/operation/method_frame.h"
#include "bvconn/platform/error_numbers.h"

namespace bvconn {
namespace {

constexpr std::int32_t kBeatTimeout_ms = 5000;
constexpr std::int64_t kSilenceLimit_min = 15;

constexpr Operation kSendHeartBeat{
    .log = {.cls = "BVHeartBeatConnector", .method = "sendHeartBeat", .form = LogForm::kTextLines},
    .method = &BVMethods::Beat,
    .service = &BVServices::Heartbeat,
};
constexpr Operation kUpdateHeartBeatTime{
    .log = {.cls = "BVHeartBeatConnector", .method = "UpdateHeartBeatTime", .level = 0},
};

void send_beat(std::string_view aServerURL, std::string_view aSessionID) {
  Call call(kSendHeartBeat, {aServerURL, aSessionID});
  if (call.takes_dal()) {
    call.parse(call.dal().HeartBeatService().sendHeartBeat());
  } else {
    call.getEnvelope().send(kBeatTimeout_ms);
  }
  if (call.value() != Variant("OK")) {
    throw Error(error_numbers::kHeartBeatNotOk, "Heart.Beat", "Server did not return OK");
  }
  Global::LastHeartBeat(session().clock().now());
  session().Logger().LogInfo("BVHeartBeatConnector", "sendHeartBeat", "Heartbeat Returned OK.", 0);
}

void log_failure(const Error& error) {
  if (error.number == error_numbers::kConnectionLost) {
    session().Logger().LogAtLevel(
        1, "BVHeartBeatConnector", "sendHeartBeat",
        "Automation Error received, exiting sub, will resend in 1 minute.", 0);
  } else {
    log_error(kSendHeartBeat.log, error);
  }
}

}  // namespace

void BVHeartBeatConnector::sendHeartBeat(std::string_view aServerURL, std::string_view aSessionID,
                                         bool isBrimvale) {
  try {
    log_enter(kSendHeartBeat.log);
    session().isBrimvale = isBrimvale;
    send_beat(aServerURL, aSessionID);
    log_exit(kSendHeartBeat.log);
  } catch (const Error& error) {
    log_failure(error);
    beat_failed();
  }
}

void BVHeartBeatConnector::beat_failed() {
  const Date now = session().clock().now();
  if (minutes_between(Global::LastHeartBeat(), now) > kSilenceLimit_min && HeartBeatError) {
    HeartBeatError();
  }
}

void BVHeartBeatConnector::UpdateHeartBeatTime() {
  ConnectorMethodFrame(kUpdateHeartBeatTime,
                       [](Call&) { Global::LastHeartBeat(session().clock().now()); });
}

}  // namespace bvconn
