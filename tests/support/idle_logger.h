#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "bvconn/platform/logging/session_logger.h"

namespace bvconn::test {

/// A logger that writes nothing, and takes no memory for it.
class IdleLogger : public SessionLogger {
 public:
  std::string LogFilePath() override { return ""; }
  std::int32_t LogMask() override { return 0; }
  std::string TracingFilePath() override { return ""; }
  void LogError(std::string_view, std::string_view, const Error&, std::int32_t) override {}
  void LogWarning(std::string_view, std::string_view, std::string_view, std::int32_t) override {}
  void LogInfo(std::string_view, std::string_view, std::string_view, std::int32_t) override {}
  void LogAtLevel(std::int32_t, std::string_view, std::string_view, std::string_view,
                  std::int32_t) override {}
  void EnterMethod(std::string_view, std::string_view, std::int32_t) override {}
  void ExitMethod(std::string_view, std::string_view, std::int32_t) override {}
};

}  // namespace bvconn::test
