#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/core/session_state.h"
#include "bvconn/platform/platform.h"

namespace bvconn::test {

/// What a test's world saw, in order. A line is the object, what it did, and the arguments; see the
/// recording classes for the forms.
struct Record {
  std::vector<std::string> all;        ///< every line
  std::vector<std::string> log;        ///< the logger's lines alone, questions to it left out
  std::vector<std::string> transport;  ///< the transport's lines alone
  std::vector<std::string> dal;        ///< the calls on service objects alone
  std::vector<std::string> settings;   ///< the calls on the settings alone
  std::vector<std::string> messages;   ///< "title | text" of each message box

  void clear() { *this = Record(); }
};

/// A world made for a test: a scripted transport and settings, fake service objects, a recording
/// logger, a clock that stands still unless stated otherwise. While it lives it is the process's
/// platform, and the calling thread has a fresh session. Worlds nest.
///
/// Nothing happens unless it was scripted: a send without a scripted reply fails the test.
class RecordingPlatform {
 public:
  RecordingPlatform();
  ~RecordingPlatform();

  Record record;

  // The server: replies are handed out in order, one for each `Send`.
  void reply(std::string body);
  /// The next `Send` (or, with `in_receive`, the next `Receive`) fails with this error.
  void fail_send(const Error& error);
  void fail_receive(const Error& error);
  /// What was sent, in order: url and text.
  struct Sent {
    std::string url;
    std::string text;
  };
  std::vector<Sent> sent;
  /// How many transports were made: a thread has one.
  int transports_made = 0;

  // The data access layer: the answer of each operation, by "Object.Operation".
  std::map<std::string, std::string> dal_answers;
  std::map<std::string, Error> dal_errors;
  /// Interfaces that an object offers besides its own: "HeartBeatService" -> {"SearchService"}.
  std::map<std::string, std::vector<std::string>> dal_interfaces;
  /// The objects that cannot be made, with the error that making them fails with.
  std::map<std::string, Error> dal_unmakeable;

  // The settings, by full path in small letters ("hklm\software\…\traceport").
  std::map<std::string, SettingValue> settings;
  std::optional<Error> settings_error;

  // The logger's answers, and what it fails with.
  std::int32_t log_mask = 0;
  std::string log_file = "/nowhere/bvconn.log";
  std::string tracing_file = "/nowhere/traffic.log";
  /// The line (as recorded) whose writing fails.
  std::optional<std::pair<std::string, Error>> log_failure;

  /// Called with each line of any of the objects once it is recorded; may throw what it likes.
  std::function<void(const std::string& line)> on_line;

  // The clock. Each reading of the timer takes the next scripted value, the last one stays.
  Date now = from_civil({.year = 2007, .month = 1, .day = 5, .hour = 13, .minute = 4, .second = 9});
  std::deque<double> timer = {100.0};

  /// Puts service objects in the session and turns the route on, without a login.
  void use_dal();

  // Where the recording classes write.
  void note(std::vector<std::string> Record::*list, const std::string& line);

 private:
  platform::ScopedPlatform scope_;
  friend class RecordingTransport;
  struct Exchange {
    std::string body;
    std::optional<Error> send_error;
    std::optional<Error> receive_error;
  };
  std::deque<Exchange> exchanges_;
  std::optional<Exchange> under_way_;
};

/// The text of a reply whose Body's first element is `<m:method>` with these parameters (XML).
std::string envelope_text(std::string_view method, std::string_view parameters);
/// The text of a fault.
std::string fault_text(std::string_view code, std::string_view text);

/// An argument of a service object's operation as the record shows it: strings in quotes, booleans
/// and numbers plain, with the type in front where it is not obvious ("int16 7").
std::string shown(const Variant& value);

}  // namespace bvconn::test
