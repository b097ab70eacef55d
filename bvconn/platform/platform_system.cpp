#include <chrono>
#include <cstdio>
#include <ctime>
#include <string>

#include "bvconn/platform/clock.h"
#include "bvconn/platform/message_box.h"

namespace bvconn {

Clock::~Clock() = default;
MessageBox::~MessageBox() = default;

namespace {

class SystemClock final : public Clock {
 public:
  Date now() override { return from_civil(local_time()); }

  double timer() override {
    const CivilDate time = local_time();
    return time.hour * 3600.0 + time.minute * 60.0 + time.second + time.millisecond / 1000.0;
  }

 private:
  static CivilDate local_time() {
    const auto now = std::chrono::system_clock::now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    const auto since_epoch =
        std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count();
    std::tm fields{};
    localtime_r(&seconds, &fields);
    return CivilDate{.year = fields.tm_year + 1900,
                     .month = fields.tm_mon + 1,
                     .day = fields.tm_mday,
                     .hour = fields.tm_hour,
                     .minute = fields.tm_min,
                     // A leap second reads as the last ordinary one.
                     .second = fields.tm_sec > 59 ? 59 : fields.tm_sec,
                     .millisecond = static_cast<std::int32_t>(since_epoch % 1000)};
  }
};

class StderrMessageBox final : public MessageBox {
 public:
  void show(std::string_view title, std::string_view text) override {
    std::string line;
    line.append("[STOP] ").append(title).append(": ").append(text).append("\n");
    std::fputs(line.c_str(), stderr);
  }
};

}  // namespace

std::shared_ptr<Clock> make_system_clock() {
  return std::make_shared<SystemClock>();
}

std::shared_ptr<MessageBox> make_stderr_message_box() {
  return std::make_shared<StderrMessageBox>();
}

}  // namespace bvconn
