#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/platform/conversions/date.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/platform.h"
#include "bvconn/testing/record.h"
#include "bvconn/testing/scripted_answer.h"
#include "bvconn/testing/seen_call.h"

namespace bvconn::test {

namespace detail {
struct Rule;
struct WorldState;
}  // namespace detail

/// What the requests that a test expects are answered with, in a sentence:
///
///     world.on("BVOrderConnector.SaveOrder").fails(error_numbers::kTimeout).replies("<return/>");
///
/// Each call of `replies`, `faults`, `fails`, `answers` and `computes` is one answer for one
/// request, in this order.
class Script {
 public:
  /// Only for requests that hold each of these texts as a parameter or an argument.
  Script& with(std::string_view text);

  Script& replies(std::string_view result);
  Script& faults(std::string_view code, std::string_view text);
  Script& fails(std::int32_t number, std::string_view description = "");
  Script& fails(const Error& error);
  Script& answers(std::string bytes);
  Script& computes(std::function<ScriptedAnswer(const SeenCall&)> answer);
  Script& gives(ScriptedAnswer answer);
  /// The last answer is given from then on as often as it is asked for, be it never.
  Script& repeatedly();

 private:
  friend class TestWorld;
  Script(std::shared_ptr<detail::WorldState> state, std::string_view name);

  std::shared_ptr<detail::WorldState> state_;
  detail::Rule* rule_ = nullptr;
};

/// A world made for a test of an application: a server and a data access layer that give the
/// answers that the test scripts, settings in memory, a logger that records, a clock that stands
/// still. While it lives it is the process's platform: nothing is sent, written or stored, and the
/// thread that made it has a fresh session. Worlds nest.
///
/// Nothing is answered unless it was scripted: such a request fails with 0x80004005, and is a
/// problem of the test, as is an answer that nobody asked for before the world's end. See
/// docs/testing-your-application.md.
///
/// Threads: those that first use the library in the world belong to it, script and record are
/// guarded, and each has its own session as ever. They have to end before it does. One that has
/// used the library before keeps what it made then.
class TestWorld {
 public:
  /// Is called for each problem; on the thread that has it, or by the world's destructor. To a test
  /// framework it is the failure of the test: `[](const auto& text) { ADD_FAILURE() << text; }`.
  using Reporter = std::function<void(const std::string& problem)>;

  /// Without a reporter, a world that ends with problems that nobody has asked for writes them to
  /// standard error and ends the program: no test passes over them.
  explicit TestWorld(Reporter reporter = nullptr);
  ~TestWorld();
  TestWorld(const TestWorld&) = delete;
  TestWorld& operator=(const TestWorld&) = delete;

  // What is going to happen.

  /// Answers for one operation, "BVInvoiceConnector.GetInvoice", whichever route it takes, or for
  /// one of a service object, "SearchService.SearchForCustomer". A name that the interface has not
  /// fails at once with `std::invalid_argument`, which says what may have been meant.
  Script on(std::string_view name);
  /// Answers for the next requests, whatever they are, where `on` has none for them.
  Script next();

  // What has happened.

  /// The requests, in order.
  std::vector<SeenCall> calls() const;
  /// Those of one operation or of one of a service object, named as for `on`.
  std::vector<SeenCall> calls(std::string_view name) const;
  /// The last one; fails with `std::out_of_range` where there is none.
  SeenCall last_call() const;
  /// All that was seen, as lines; `record().log` is what the application's log would hold.
  Record record() const;
  void forget_what_was_seen();

  /// The problems so far. Who has asked for them is taken to have looked.
  std::vector<std::string> problems();
  /// Fails with `std::logic_error`, which names all problems, if there are any: also the answers
  /// that nobody has asked for yet. It ends the script.
  void verify();

  // What is there.

  /// Turns the data access layer on for the calling thread, without a login. An application that
  /// logs in itself needs no script for that: each login works unless it is scripted.
  void use_dal();
  /// A setting by its full path, `HKLM\Software\…\tracePort`, without regard to case.
  void set_setting(std::string_view path, SettingValue value);
  std::optional<SettingValue> setting(std::string_view path) const;
  /// From now on every access to a setting fails like this.
  void fail_settings(const Error& error);
  /// The logger's mask; 0 in a new world. What is recorded does not depend on it.
  void set_log_mask(std::int32_t mask);
  /// Where `SendDALMessageToLog` writes: a file for real. In a new world there is none.
  void set_log_file(std::string_view path);
  /// The clock stands at 2007-01-05 13:04:09 until it is set or moved.
  void set_now(Date now);
  Date now() const;
  void advance(std::chrono::milliseconds time);

 protected:
  /// For a world that is built on this one.
  const std::shared_ptr<detail::WorldState>& state() const { return state_; }

 private:
  std::shared_ptr<detail::WorldState> state_;
  platform::ScopedPlatform scope_;
};

}  // namespace bvconn::test
