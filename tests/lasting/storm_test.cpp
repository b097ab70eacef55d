// Eight threads with two sessions each call every operation on both routes, as fast as they can,
// with a mishap at every twentieth call. Each call has to end, and to be logged, as it does where
// no other runs beside it.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <map>
#include <random>
#include <set>
#include <thread>

#include "bvconn/core/session_state.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/platform.h"
#include "bvconn/platform/thread_record.h"
#include "hostile/process_watch.h"
#include "lasting/echo_server.h"
#include "lasting/every_call.h"
#include "lasting/log_watch.h"
#include "live/own_files.h"

namespace bvconn::test {
namespace {

using std::chrono::steady_clock;

constexpr int kThreads = 8;
constexpr unsigned kCallsToAMishap = 20;

/// How long the storm lasts at least: it goes once through everything in any case.
std::chrono::seconds duration() {
  const char* const given = std::getenv("BVCONN_STORM_SECONDS");
  return std::chrono::seconds(given != nullptr ? std::atoi(given) : BVCONN_STORM_SECONDS);
}

/// How a call ends and is logged where it has the library for itself.
struct Alone {
  Ending ending;
  LogLines log;
};
using AloneByMishap = std::array<Alone, kMishaps>;

/// One call of a thread, as the log has to show it; one without a mark is the beginning of a
/// session.
struct Made {
  const Alone* alone = nullptr;
  Mark mark;
};

/// Everything that the storm needs, before it begins.
struct Surroundings {
  Addresses addresses;
  std::vector<EveryCall> calls;
  std::vector<AloneByMishap> alone;
};

/// One thread of the storm.
class Worker {
 public:
  Worker(const Surroundings& surroundings, int number, unsigned seed)
      : surroundings_(surroundings), number_(number), random_(seed) {}

  void run(steady_clock::time_point end) {
    system_number_ = system_thread_number();
    end_ = end;
    std::vector<std::size_t> order(surroundings_.calls.size());
    for (std::size_t index = 0; index < order.size(); ++index) order[index] = index;
    std::shuffle(order.begin(), order.end(), random_);
    const auto middle = order.begin() + static_cast<std::ptrdiff_t>(order.size() / 2);
    Caller first(surroundings_.addresses, number_, 1);
    begin();
    call_each(first, {order.begin(), middle});
    const Date last_contact = session().LastHeartBeat;
    {
      const detail::ThreadScope scope;
      Caller second(surroundings_.addresses, number_, 2);
      begin();
      call_each(second, order);
    }
    if (session().LastHeartBeat != last_contact) complain("a session moved another's contact");
    call_each(first, {middle, order.end()});
  }

  const std::vector<Made>& made() const { return made_; }
  const std::vector<std::string>& complaints() const { return complaints_; }
  const std::map<std::int32_t, int>& outcomes() const { return outcomes_; }
  long system_number() const { return system_number_; }

 private:
  void begin() {
    made_.emplace_back();
    mark_log("session");
  }

  void call_each(Caller& caller, const std::vector<std::size_t>& order) {
    for (const std::size_t index : order) {
      if (steady_clock::now() >= end_) return;
      const EveryCall& each = surroundings_.calls[index];
      Mishap mishap = Mishap::kNone;
      if (random_() % kCallsToAMishap == 0) {
        mishap = mishap_for(each, static_cast<Mishap>(1 + random_() % (kMishaps - 1)));
      }
      const Ending ending = caller.call(each, mishap);
      mark_log(caller.mark().text());
      const Alone& alone = surroundings_.alone[index][static_cast<std::size_t>(mishap)];
      made_.push_back({.alone = &alone, .mark = caller.mark()});
      ++outcomes_[ending.raised];
      const std::string name = each.name() + " (" + std::string(mishap_name(mishap)) + "): ";
      for (const std::string& complaint : caller.complaints()) complain(name + complaint);
      if (ending == alone.ending) continue;
      complain(name + ending.words() + "; alone it " + alone.ending.words());
    }
  }

  void complain(std::string text) {
    if (complaints_.size() < 5) complaints_.push_back(std::move(text));
  }

  const Surroundings& surroundings_;
  int number_;
  std::minstd_rand random_;
  long system_number_ = 0;
  steady_clock::time_point end_;
  std::vector<Made> made_;
  std::vector<std::string> complaints_;
  std::map<std::int32_t, int> outcomes_;
};

/// Whether the log shows the worker's calls, each with its own lines.
std::string complaint_about_log(const Worker& worker, const std::vector<LoggedCall>& logged) {
  const std::vector<Made>& made = worker.made();
  if (logged.size() != made.size()) {
    return std::to_string(logged.size()) + " calls in the log of a thread that made " +
           std::to_string(made.size());
  }
  for (std::size_t index = 0; index < made.size(); ++index) {
    if (made[index].alone == nullptr) continue;
    const LoggedCall& call = logged[index];
    const Mark& mark = made[index].mark;
    if (call.mark != mark.text()) return "call " + mark.text() + " is not logged in its turn";
    for (const Mark& other : call.marks) {
      if (other != mark) return "the lines of call " + mark.text() + " show " + other.text();
    }
    if (call.lines != made[index].alone->log) {
      return "call " + mark.text() + " is logged with\n" + text_of(call.lines) +
             "and alone with\n" + text_of(made[index].alone->log);
    }
  }
  return "";
}

class Storm : public testing::Test {
 protected:
  Storm() : platform_(platform_with_own_times()), serving_([this] { server_.serve(); }) {
    files_.write("user.toml",
                 "['Software\\Brimvale\\Torvex\\appData']\nTraceSoapTraffic = \"False\"\n");
    session() = SessionState();
    all_.addresses = {.soap = server_.url("/soap/"), .dal = server_.url("/dal")};
  }

  ~Storm() override {
    session() = SessionState();
    server_.stop();
    serving_.join();
  }

  void call_alone() {
    LogWatch log(files_.path("bvconn.log"));
    Caller caller(all_.addresses, 9, 0);
    all_.calls = every_call(caller);
    for (const EveryCall& each : all_.calls) {
      AloneByMishap& alone = all_.alone.emplace_back();
      for (int mishap = 0; mishap < kMishaps; ++mishap) {
        static_cast<void>(log.new_lines());
        Alone& one = alone[static_cast<std::size_t>(mishap)];
        one.ending = caller.call(each, static_cast<Mishap>(mishap));
        one.log = log.new_lines();
        for (const auto& complaint : caller.complaints()) ADD_FAILURE() << each.name() << complaint;
      }
    }
  }

  /// The server notices the end of a connection in its own time.
  bool all_connections_end() const {
    const auto end = steady_clock::now() + std::chrono::seconds(10);
    while (server_.open() > 0 && steady_clock::now() < end) {
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return server_.open() == 0;
  }

  void check_round(const std::vector<Worker>& workers) {
    const LogByThread log = read_log(files_.path("bvconn.log"));
    EXPECT_EQ(log.broken, std::vector<std::string>());
    for (const Worker& worker : workers) {
      for (const std::string& complaint : worker.complaints()) ADD_FAILURE() << complaint;
      const auto lines = log.threads.find(worker.system_number());
      ASSERT_NE(lines, log.threads.end());
      EXPECT_EQ(complaint_about_log(worker, lines->second), "");
      for (const auto& [number, count] : worker.outcomes()) outcomes_[number] += count;
    }
    EXPECT_EQ(server_.mixed(), 0);
  }

  void run_round(steady_clock::time_point end, unsigned round) {
    std::filesystem::resize_file(files_.path("bvconn.log"), 0);
    std::vector<Worker> workers;
    for (int number = 1; number <= kThreads; ++number) {
      workers.emplace_back(all_, number, round * kThreads + static_cast<unsigned>(number));
    }
    std::vector<std::thread> threads;
    for (Worker& worker : workers) threads.emplace_back([&worker, end] { worker.run(end); });
    for (std::thread& thread : threads) thread.join();
    check_round(workers);
  }

  OwnFiles files_;
  platform::ScopedPlatform platform_;
  EchoServer server_;
  std::thread serving_;
  Surroundings all_;
  std::map<std::int32_t, int> outcomes_;
};

TEST_F(Storm, LeavesEachCallAsItIsAlone) {
  ::setenv("BVCONN_LOG_MASK", "0x3F", 1);
  ::setenv("BVCONN_LOG_MAX_BYTES", "0", 1);
  std::thread([this] { call_alone(); }).join();
  ASSERT_EQ(all_.calls.size(), 2 * 205U);
  std::set<std::string> silent;
  for (const EveryCall& each : all_.calls) {
    if (!each.sends) silent.insert(each.name());
  }
  EXPECT_EQ(silent, (std::set<std::string>{
                        "BVHeartBeatConnector.UpdateHeartBeatTime by DAL",
                        "BVHeartBeatConnector.UpdateHeartBeatTime by SOAP",
                        "BVProjectConnector.setStatusToLostOpportunity by DAL",
                        "BVProjectConnector.setStatusToLostOpportunity by SOAP",
                        "BVProjectConnector.setStatusToNegotiating by DAL",
                        "BVProjectConnector.setStatusToNegotiating by SOAP",
                    }));
  ASSERT_TRUE(all_connections_end());
  const Held before = held_now();
  const auto end = steady_clock::now() + duration();
  unsigned rounds = 0;
  do {
    run_round(rounds == 0 ? steady_clock::time_point::max() : end, rounds);
    ++rounds;
    const Held after = held_again(before);
    EXPECT_EQ(after.descriptors, before.descriptors);
    EXPECT_EQ(after.threads, before.threads);
  } while (!HasFailure() && steady_clock::now() < end);
  std::cout << rounds << " rounds\n";
  for (const auto& [number, count] : outcomes_) {
    std::cout << (number == 0 ? "returned" : hex_number(number)) << ": " << count << "\n";
  }
}

}  // namespace
}  // namespace bvconn::test
