#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// A program that has failing_calls.cpp among its sources and is linked with the options of
// failing_calls.cmake calls the system's files and libcurl through it: its own code and that of the
// rooms, not the libraries behind them.
namespace bvconn::test {

enum class Calls : std::uint8_t { kFiles, kLibcurl };

/// While it lives, the call with this number (from 1) that its thread makes fails, in the way with
/// this number (from 0): each call has a list of those. One at a time on each thread.
class FailingCall {
 public:
  FailingCall(Calls calls, std::size_t number, std::size_t way) noexcept;
  ~FailingCall();
  FailingCall(const FailingCall&) = delete;
  FailingCall& operator=(const FailingCall&) = delete;

  /// Whether there were so many calls, and as many ways for that one to fail.
  static bool has_struck() noexcept;
};

/// The call that was struck last on this thread, "rename", and how: its error number or result. ""
/// and 0 before the first.
std::string_view struck_call() noexcept;
int struck_code() noexcept;
/// Both, for the trace of a test.
std::string struck();

/// The ways of `read` and `write` that are no error number: they do half of what they were asked.
inline constexpr int kHalf = -1;

/// Runs `attempt` with each call failing in turn, in each of its ways, until there are no more
/// calls. `attempt` makes the FailingCall itself, from a number and a way, and gives has_struck().
template <typename Attempt>
std::size_t for_each_failing_call(const Attempt& attempt) {
  std::size_t strikes = 0;
  for (std::size_t number = 1;; ++number) {
    std::size_t way = 0;
    while (attempt(number, way)) ++way;
    if (way == 0) return strikes;
    strikes += way;
  }
}

}  // namespace bvconn::test
