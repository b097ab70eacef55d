#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "bvconn/platform/error.h"
#include "bvconn/platform/export.h"

namespace bvconn {

/// Where the library's log lines go. Class and method names are the constants that each operation
/// writes; they are not always the names of the code.
class BVCONN_EXPORT SessionLogger {
 public:
  virtual ~SessionLogger();

  /// Path of the log file.
  virtual std::string LogFilePath() = 0;
  virtual void LogError(std::string_view cls, std::string_view method, const Error& error,
                        std::int32_t line) = 0;
  virtual void LogWarning(std::string_view cls, std::string_view method, std::string_view text,
                          std::int32_t code) = 0;
  virtual void LogInfo(std::string_view cls, std::string_view method, std::string_view text,
                       std::int32_t code) = 0;
  virtual void LogAtLevel(std::int32_t level, std::string_view cls, std::string_view method,
                          std::string_view text, std::int32_t code) = 0;
  virtual void EnterMethod(std::string_view cls, std::string_view method, std::int32_t level) = 0;
  virtual void ExitMethod(std::string_view cls, std::string_view method, std::int32_t level) = 0;
  /// Mask of the levels in force; bit 0x40 asks for traffic tracing.
  virtual std::int32_t LogMask() = 0;
  /// The file that the transport's raw traffic goes to when it is traced.
  virtual std::string TracingFilePath() = 0;
  /// What the log file may grow to before it is put aside, in bytes, for those who write to it by
  /// themselves; 0 for any size. A logger of one's own need not say.
  virtual std::uint64_t LogMaxBytes() const;
};

/// The logger over files: paths and mask from the environment (`BVCONN_LOG_FILE`,
/// `BVCONN_TRACE_FILE`, `BVCONN_LOG_MASK`, `BVCONN_LOG_MAX_BYTES`), see docs/logging.md. It never
/// fails a call.
BVCONN_EXPORT std::shared_ptr<SessionLogger> make_file_logger();

}  // namespace bvconn
