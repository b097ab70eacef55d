#include "sandbox/calls/quiet_platform.h"

#include <cstdint>
#include <memory>

#include "bvconn/platform/settings/no_settings.h"

namespace bvconn::sandbox {
namespace {

/// 16 MiB.
constexpr const char* kMostReplyBytes = "16777216";

class NoLog final : public SessionLogger {
 public:
  // Some operations write there themselves.
  std::string LogFilePath() override { return "/dev/null"; }
  void LogError(std::string_view, std::string_view, const Error&, std::int32_t) override {}
  void LogWarning(std::string_view, std::string_view, std::string_view, std::int32_t) override {}
  void LogInfo(std::string_view, std::string_view, std::string_view, std::int32_t) override {}
  void LogAtLevel(std::int32_t, std::string_view, std::string_view, std::string_view,
                  std::int32_t) override {}
  void EnterMethod(std::string_view, std::string_view, std::int32_t) override {}
  void ExitMethod(std::string_view, std::string_view, std::int32_t) override {}
  std::int32_t LogMask() override { return 0; }
  std::string TracingFilePath() override { return "/dev/null"; }
};

class NoMessage final : public ModalMessage {
 public:
  void show(std::string_view, std::string_view) override {}
};

}  // namespace

platform::Platform quiet_platform() {
  platform::Platform quiet = platform::system_platform();
  quiet.transport = [] {
    auto transport = make_http_transport();
    transport->Option("http.max_reply_bytes", kMostReplyBytes);
    return transport;
  };
  quiet.logger = [] { return std::make_shared<NoLog>(); };
  quiet.settings = [] { return std::make_unique<NoSettings>(); };
  quiet.message_box = [] { return std::make_shared<NoMessage>(); };
  quiet.exchange_listener = nullptr;
  return quiet;
}

}  // namespace bvconn::sandbox
