// Whether the library can run for ever: calls on one thread, over real sockets, a mishap at every
// twentieth, and what the process holds after each tenth of them. Each call also has to end as the
// first of its kind did.
//
//   soak [CALLS]
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "bvconn/core/session_state.h"
#include "bvconn/platform/platform.h"
#include "hostile/process_watch.h"
#include "lasting/echo_server.h"
#include "lasting/every_call.h"
#include "live/own_files.h"

namespace bvconn::test {
namespace {

constexpr unsigned kCallsToAMishap = 20;
constexpr std::size_t kReadings = 10;

/// The server in a process of its own, so that this one holds what the library does and no more.
class OtherProcess {
 public:
  explicit OtherProcess(EchoServer& server) : number_(::fork()) {
    if (number_ != 0) return;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    server.serve();
    std::_Exit(0);
  }
  ~OtherProcess() {
    ::kill(number_, SIGKILL);
    ::waitpid(number_, nullptr, 0);
  }
  OtherProcess(const OtherProcess&) = delete;
  OtherProcess& operator=(const OtherProcess&) = delete;

 private:
  pid_t number_;
};

struct Reading {
  long calls = 0;
  std::size_t resident = 0;
  Held held;
  double seconds = 0;
};

/// The run of one session.
class Soak {
 public:
  explicit Soak(const Addresses& addresses)
      : caller_(addresses, 1, 1), calls_(every_call(caller_)), first_(calls_.size()) {
    // Every kind of call once, so that what is kept of them is there before anything is measured.
    for (std::size_t index = 0; index < calls_.size(); ++index) {
      for (int mishap = 0; mishap < kMishaps; ++mishap) {
        call(index, static_cast<Mishap>(mishap));
      }
    }
  }

  void run(long calls) {
    for (long done = 0; done < calls; ++done) {
      const bool well = random_() % kCallsToAMishap != 0;
      const auto mishap = static_cast<Mishap>(well ? 0 : 1 + random_() % (kMishaps - 1));
      call(next_, mishap);
      next_ = (next_ + 1) % calls_.size();
    }
    // The last calls go well on both routes, so that the connections are open that are kept.
    for (std::size_t index = 0; index < calls_.size(); ++index) call(index, Mishap::kNone);
  }

  long made() const { return made_; }
  std::size_t kinds() const { return calls_.size(); }
  long failed() const { return failed_; }
  long strange() const { return strange_; }

 private:
  void call(std::size_t index, Mishap mishap) {
    const EveryCall& each = calls_[index];
    mishap = mishap_for(each, mishap);
    const Ending ending = caller_.call(each, mishap);
    ++made_;
    if (ending.raised != 0) ++failed_;
    auto& first = first_[index][static_cast<std::size_t>(mishap)];
    if (!first) first = ending;
    const bool is_strange = ending != *first || !caller_.complaints().empty();
    if (!is_strange) return;
    ++strange_;
    std::fprintf(stderr, "%s (%s): %s; the first time it %s\n", each.name().c_str(),
                 mishap_name(mishap).data(), ending.words().c_str(), first->words().c_str());
    for (const auto& complaint : caller_.complaints())
      std::fprintf(stderr, "  %s\n", complaint.c_str());
  }

  Caller caller_;
  std::vector<EveryCall> calls_;
  std::vector<std::array<std::optional<Ending>, kMishaps>> first_;
  std::minstd_rand random_;
  std::size_t next_ = 0;
  long made_ = 0;
  long failed_ = 0;
  long strange_ = 0;
};

void print(const Reading& reading) {
  std::printf("%10ld %12zu %12zu %8zu %9.0f\n", reading.calls, reading.resident >> 10U,
              reading.held.descriptors, reading.held.threads, reading.seconds);
  std::fflush(stdout);
}

/// Whether the last reading is as the first: memory within a hundredth, the rest the same.
bool is_lasting(const std::vector<Reading>& readings) {
  const Reading& first = readings.front();
  const Reading& last = readings.back();
  const double growth = (static_cast<double>(last.resident) - static_cast<double>(first.resident)) /
                        static_cast<double>(first.resident) * 100;
  std::printf("resident memory: %+.2f %%\n", growth);
  bool same = growth < 1 && growth > -1;
  for (const Reading& each : readings) same = same && each.held == first.held;
  return same;
}

int run(long calls) {
  ::setenv("BVCONN_LOG_MASK", "0", 1);
  const OwnFiles files;
  EchoServer server;
  const OtherProcess other(server);
  const platform::ScopedPlatform platform(platform_with_own_times());
  Soak soak({.soap = server.url("/soap/"), .dal = server.url("/dal")});
  std::printf("%zu kinds of calls, one mishap in %u\n", soak.kinds(), kCallsToAMishap);
  std::printf("     calls resident KiB  descriptors  threads   seconds\n");
  const auto begin = std::chrono::steady_clock::now();
  std::vector<Reading> readings;
  while (readings.size() < kReadings) {
    soak.run(calls / long{kReadings});
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - begin;
    readings.push_back({.calls = soak.made(),
                        .resident = resident_memory(),
                        .held = held_now(),
                        .seconds = passed.count()});
    print(readings.back());
  }
  const bool lasting = is_lasting(readings);
  std::printf("calls that raised an error: %ld, that ended unlike the first of their kind: %ld\n",
              soak.failed(), soak.strange());
  return lasting && soak.strange() == 0 ? 0 : 1;
}

}  // namespace
}  // namespace bvconn::test

int main(int argc, char** argv) {
  long calls = 1'000'000;
  if (argc > 1) {
    const char* const end = argv[1] + std::strlen(argv[1]);
    const auto [rest, problem] = std::from_chars(argv[1], end, calls);
    if (problem != std::errc() || rest != end || calls < 10) {
      std::fputs("usage: soak [CALLS], ten at least\n", stderr);
      return 2;
    }
  }
  return bvconn::test::run(calls);
}
