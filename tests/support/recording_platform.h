#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bvconn/core/session_state.h"
#include "bvconn/testing/record.h"
#include "bvconn/testing/test_world.h"

namespace bvconn::test {

/// The world of the library's own tests: that of an application's tests, opened, with its problems
/// as failures of the running test. Only for the thread that made it.
class RecordingPlatform : private TestWorld {
 public:
  RecordingPlatform();
  ~RecordingPlatform();

  Record& record;

  // The server: replies are handed out in order, one for each `Send`.
  void reply(std::string body);
  /// The next `Send` (or the next `Receive`) fails with this error.
  void fail_send(const Error& error);
  void fail_receive(const Error& error);
  /// What was sent, in order: url and text.
  struct Sent {
    std::string url;
    std::string text;
  };
  std::vector<Sent> sent;
  /// How many transports were made: a thread has one.
  int& transports_made;

  // The data access layer: the answer of each operation, by "Object.Operation".
  std::map<std::string, std::string> dal_answers;
  std::map<std::string, Error> dal_errors;
  /// Interfaces that an object offers besides its own: "HeartBeatService" -> {"SearchService"}.
  std::map<std::string, std::vector<std::string>>& dal_interfaces;
  /// The objects that cannot be made, with the error that making them fails with.
  std::map<std::string, Error>& dal_unmakeable;

  // The settings, by full path in small letters ("hklm\software\…\traceport").
  std::map<std::string, SettingValue>& settings;
  std::optional<Error>& settings_error;

  // The logger's answers, and what it fails with.
  std::int32_t& log_mask;
  std::string& log_file;
  std::string& tracing_file;
  /// The line (as recorded) whose writing fails.
  std::optional<std::pair<std::string, Error>> log_failure;

  /// Called with each line of any of the objects once it is recorded; may throw what it likes.
  std::function<void(const std::string& line)> on_line;

  // The clock. Each reading of the timer takes the next scripted value, the last one stays.
  Date& now;
  std::deque<double>& timer;

  using TestWorld::use_dal;

  /// For objects of a test's own that record with the others.
  void note(std::vector<std::string> Record::*list, const std::string& line);

 private:
  std::optional<ScriptedAnswer> answer(const SeenCall& call);
};

}  // namespace bvconn::test
