#include <cstdint>
#include <cstdio>
#include <string>

#include "bvconn/platform/clock.h"
#include "bvconn/platform/local_time.h"
#include "bvconn/platform/message_box.h"

namespace bvconn {

Clock::~Clock() = default;
MessageBox::~MessageBox() = default;

namespace {

class SystemClock final : public Clock {
 public:
  Date now() override { return Date{kDateOf1970.milliseconds + detail::local_now().wall_ms()}; }

  double timer() override {
    constexpr std::int64_t kDay_ms = 24LL * 60 * 60 * 1000;
    const std::int64_t since_midnight = detail::local_now().wall_ms() % kDay_ms;
    return static_cast<double>(since_midnight < 0 ? since_midnight + kDay_ms : since_midnight) /
           1000.0;
  }

 private:
  /// From 1899-12-30 to 1970-01-01.
  static constexpr Date kDateOf1970{25'569LL * 24 * 60 * 60 * 1000};
};

class StderrMessageBox final : public ModalMessage {
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

std::shared_ptr<ModalMessage> make_stderr_message_box() {
  return std::make_shared<StderrMessageBox>();
}

}  // namespace bvconn
