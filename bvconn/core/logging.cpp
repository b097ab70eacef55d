#include "bvconn/core/logging.h"

#include <string>

#include "bvconn/core/session_state.h"
#include "bvconn/platform/logging/append_file.h"

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
  const std::string name = line_name(log, log.enter);
  if (log.form == LogForm::kTextLines) {
    session().Logger().LogInfo(log.cls, name, "Entering Method...", 0);
  } else {
    session().Logger().EnterMethod(log.cls, name, log.level);
  }
}

void log_exit(const LogBlock& log) {
  if (log.form == LogForm::kNone || !log.exits) return;
  const std::string name = line_name(log, log.exit);
  if (log.form == LogForm::kTextLines) {
    session().Logger().LogInfo(log.cls, name, "Exiting Method...", 0);
  } else {
    session().Logger().ExitMethod(log.cls, name, log.level);
  }
}

void log_error(const LogBlock& log, const Error& error) {
  log_error(log.cls, log.error.empty() ? log.method : log.error, error);
}

void log_error(std::string_view cls, std::string_view method, const Error& error) {
  session().Logger().LogError(cls, method, error, 0);
}

void plain_tail(const LogBlock& log, const Error& error) {
  throw only_errors([&] {
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
