#include "bvconn/core/logging.h"

#include <string>
#include <utility>

#include "bvconn/core/session_state.h"
#include "bvconn/platform/logging/append_file.h"
#include "bvconn/platform/logging/own_logger.h"

namespace bvconn {
namespace {

// The method's name as an enter or exit line bears it.
std::string line_name(const LogBlock& log, std::string_view own_name) {
  if (!own_name.empty()) return std::string(own_name);
  std::string name(log.method);
  if (log.brackets || log.form == LogForm::kTextLines) name += "()";
  return name;
}

}  // namespace

void log_enter(const LogBlock& log) {
  if (log.form == LogForm::kNone) return;
  SessionState& state = session();
  if (log.form == LogForm::kTextLines) {
    if (!state.writes_info_lines()) return;
    state.Logger().LogInfo(log.cls, line_name(log, log.enter), "Entering Method...", 0);
  } else if (state.writes_lines(log.level)) {
    state.Logger().EnterMethod(log.cls, line_name(log, log.enter), log.level);
  }
}

void log_exit(const LogBlock& log) {
  if (log.form == LogForm::kNone || !log.exits) return;
  SessionState& state = session();
  if (log.form == LogForm::kTextLines) {
    if (!state.writes_info_lines()) return;
    state.Logger().LogInfo(log.cls, line_name(log, log.exit), "Exiting Method...", 0);
  } else if (state.writes_lines(log.level)) {
    state.Logger().ExitMethod(log.cls, line_name(log, log.exit), log.level);
  }
}

void log_error(const LogBlock& log, const Error& error) {
  log_error(log.cls, log.error.empty() ? log.method : log.error, error);
}

void log_error(std::string_view cls, std::string_view method, const Error& error) {
  session().Logger().LogError(cls, method, error, 0);
}

HeldErrorLines HeldErrorLines::begin() {
  HeldErrorLines held;
  held.logger_ = detail::own_logger_of(session().Logger());
  if (held.logger_ != nullptr) held.logger_->hold_errors();
  return held;
}

void HeldErrorLines::write() noexcept {
  if (logger_ != nullptr) std::exchange(logger_, nullptr)->release_errors();
}

Error plain_tail(const LogBlock& log, const Error& error) {
  return only_errors([&] {
    log_error(log, error);
    return error.described_as(error.description);
  });
}

namespace Global {

bool DALMessageToLog(std::string_view evalMethod, std::string_view evalMessage) {
  std::string line(evalMethod);
  line.append(" - ").append(evalMessage).append("\r\n");
  SessionLogger& logger = session().Logger();
  append_to_file(logger.LogFilePath(), line, logger.LogMaxBytes());
  return true;
}

}  // namespace Global
}  // namespace bvconn
