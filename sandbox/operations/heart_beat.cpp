#include "bvconn/platform/soap/variant.h"
#include "sandbox/endpoints/soap_text.h"
#include "sandbox/operations/operations.h"

namespace bvconn::sandbox {
namespace {

constexpr const char* kService = "urn:HeartBeatService";

void add_beat(SoapNodes results) {
  results.Create("return", "OK");
}

}  // namespace

void add_heart_beat(Operations& operations) {
  operations.soap[{kService, "beat"}] = [](SoapCall& call) { add_beat(call.results); };
  operations.dal[{"HeartBeatService", "sendHeartBeat"}] = {
      .run = [](DalCall&) { return DalAnswer{.text = reply_text(kService, "beat", add_beat)}; }};
}

}  // namespace bvconn::sandbox
