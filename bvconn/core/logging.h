#pragma once

#include <cstdint>
#include <string_view>
#include <utility>

#include "bvconn/platform/live_error.h"

namespace bvconn {

namespace detail {
class OwnLogger;
}

/// How a function marks that it was entered and left.
enum class LogForm : std::uint8_t {
  kLevels,     ///< `EnterMethod` and `ExitMethod` at the block's level
  kTextLines,  ///< `LogInfo` with "Entering Method..." and "Exiting Method..."
  kNone,       ///< no line; deliberate [no-lines]: nobody sees from the log that these ran
};

/// The names in a function's log lines.
///
/// deliberate [log-names]: they are constants of the line, not names of the code; where they differ
/// from the function's, in letters or in brackets, they stay as they stand.
struct LogBlock {
  std::string_view cls;
  std::string_view method;
  LogForm form = LogForm::kLevels;
  std::int32_t level = 1;
  /// Enter and exit lines bear the method's name with "()". Text lines always do.
  bool brackets = false;
  /// One operation leaves without its exit line.
  bool exits = true;
  // Names of their own for single lines, written as they stand; empty for the method's.
  std::string_view enter = {};
  std::string_view exit = {};
  std::string_view error = {};
};

// The one place that writes a function's lines. The line number of an error is 0: the build keeps
// none.
void log_enter(const LogBlock& log);
void log_exit(const LogBlock& log);
void log_error(const LogBlock& log, const Error& error);
void log_error(std::string_view cls, std::string_view method, const Error& error);

/// While it lives, the error lines of the thread wait, to be written together and in their order:
/// those of a failure that one function hands to another are one write. A logger of the
/// application's is given each line as it comes.
class HeldErrorLines {
 public:
  HeldErrorLines() = default;
  static HeldErrorLines begin();
  HeldErrorLines(HeldErrorLines&& other) noexcept
      : logger_(std::exchange(other.logger_, nullptr)) {}
  HeldErrorLines& operator=(HeldErrorLines&& other) noexcept {
    std::swap(logger_, other.logger_);
    return *this;
  }
  ~HeldErrorLines() { write(); }

  void write() noexcept;

 private:
  detail::OwnLogger* logger_ = nullptr;
};

/// Logs the error as it is alive now. What is to be raised for it: number, source and description
/// alone.
Error plain_tail(const LogBlock& log, const Error& error);

/// Runs a function that ends in the plain tail when it fails.
template <class Body>
auto with_plain_tail(const LogBlock& log, Body&& body) -> decltype(body()) {
  try {
    return body();
  } catch (const Error& error) {
    throw plain_tail(log, error);
  } catch (...) {
    throw plain_tail(log, live_error());
  }
}

/// The same for a function that logs by `log` that it was entered and left.
template <class Body>
auto run_logged(const LogBlock& log, Body&& body) -> decltype(body()) {
  return with_plain_tail(log, [&] {
    log_enter(log);
    auto result = body();
    log_exit(log);
    return result;
  });
}

namespace Global {

/// The library's own line in the log file, for requests that go to the data access layer: the name,
/// " - ", the message, CR LF; deliberate [bare-log-line]: without time and thread. The file is
/// opened and closed for each line. Always True; a file that cannot be written is error 0x80041003.
bool DALMessageToLog(std::string_view evalMethod, std::string_view evalMessage);

}  // namespace Global
}  // namespace bvconn
