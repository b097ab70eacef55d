#include "bvconn/core/heart_beat_time.h"

#include "bvconn/core/session_state.h"
#include "bvconn/platform/conversions/conversions.h"

namespace bvconn::Global {

Date LastHeartBeat() {
  return session().LastHeartBeat;
}

void LastHeartBeat(Date time) {
  SessionState& state = session();
  if (state.writes_lines(4)) {
    state.Logger().LogAtLevel(4, "Global", "LastHeartBeat",
                              "Heart Beat Time Updated: " + conversions::date_text(time), 0);
  }
  state.LastHeartBeat = time;
}

}  // namespace bvconn::Global
