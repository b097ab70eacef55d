#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "bvconn/platform/conversions/date.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/platform.h"
#include "bvconn/testing/record.h"
#include "bvconn/testing/scripted_answer.h"
#include "bvconn/testing/seen_call.h"

/// What a test's world and its transports, loggers and service objects share. They keep it alive,
/// so that a thread that outlives the world still finds its end told here.
namespace bvconn::test::detail {

/// Answers for the requests that it is about.
struct Rule {
  std::string name;                ///< of the calls; "" for any
  std::vector<std::string> texts;  ///< what their parameters have to hold, all of them
  std::deque<ScriptedAnswer> answers;
  bool stays = false;  ///< the last answer is given again and again

  bool fits(const SeenCall& call) const;
  /// "BVInvoiceConnector.GetInvoice with "U1" (2 answers left)".
  std::string shown() const;
};

struct WorldState {
  std::mutex mutex;  ///< guards all below while several threads are at work

  std::deque<Rule> rules;  ///< a deque, so that who scripts one can hold on to it
  std::vector<SeenCall> calls;
  Record record;
  std::vector<std::string> problems;
  std::size_t problems_seen = 0;
  bool is_over = false;
  int transports_made = 0;
  std::map<std::string, SettingValue> settings;  ///< by full path in small letters
  std::optional<Error> settings_error;
  std::int32_t log_mask = 0;
  std::string log_file = "/nowhere/bvconn.log";
  std::string tracing_file = "/nowhere/traffic.log";
  Date now = from_civil({.year = 2007, .month = 1, .day = 5, .hour = 13, .minute = 4, .second = 9});
  /// Each reading of the timer takes the next value, the last one stays; without any it is that of
  /// the clock.
  std::deque<double> timer;
  /// Interfaces that a service object offers besides its own.
  std::map<std::string, std::vector<std::string>> interfaces;
  /// The service objects that cannot be made, with the error of that.
  std::map<std::string, Error> unmakeable;

  // Set before other threads are at work; called without the lock.
  std::function<void(const std::string& problem)> report;
  /// Called with each line once it is recorded; may throw what it likes.
  std::function<void(const std::string& line)> on_line;
  /// Asked for an answer where no rule of a name has one.
  std::function<std::optional<ScriptedAnswer>(const SeenCall&)> answer_otherwise;

  void note(std::vector<std::string> Record::*list, const std::string& line);
  /// Records a line that stands in no list but that of all.
  void note(const std::string& line);
  /// Records the call and gives its answer. One that nobody scripted is a problem, and fails with
  /// 0x80004005, which says what was asked, what was scripted, and what of that is nearest.
  ScriptedAnswer answer(const SeenCall& call);
  void add_problem(const std::string& problem);
  /// What was scripted and never asked for becomes problems.
  void conclude();

 private:
  std::optional<ScriptedAnswer> take(const SeenCall& call, bool of_any_name);
  std::string unasked(const SeenCall& call) const;
};

/// A platform whose every part records in this state and asks it.
platform::Platform platform_over(const std::shared_ptr<WorldState>& state);
/// Gives the calling thread service objects and turns their route on.
void use_service_objects(const std::shared_ptr<WorldState>& state);

std::string in_quotes(std::string_view text);
std::string small_letters(std::string_view text);

}  // namespace bvconn::test::detail
