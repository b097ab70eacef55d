#include <gtest/gtest.h>

#include <barrier>
#include <ctime>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "bvconn/connectors/invoice/bv_invoice_connector.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/soap/moment_text.h"
#include "live/own_files.h"
#include "locks/lock_watch.h"
#include "support/misbehaving_server.h"

// Sessions are worlds of their own: two threads that make calls over real sockets take no lock that
// both of them know, and ask the C library nothing that it answers under a lock of its own.
namespace bvconn::test {
namespace {

constexpr int kThreads = 2;

/// Runs `prepare` and then, watched, `work` on each of two threads, all of it at the same time.
void run_watched(LockWatch& watch, const std::function<void(int)>& prepare,
                 const std::function<void(int)>& work) {
  std::barrier<> ready(kThreads);
  std::barrier<> done(kThreads);
  std::vector<std::thread> threads;
  for (int index = 0; index < kThreads; ++index) {
    threads.emplace_back([&, index] {
      prepare(index);
      ready.arrive_and_wait();
      {
        const LockWatch::Thread watched(watch);
        work(index);
      }
      done.arrive_and_wait();
    });
  }
  for (std::thread& thread : threads) thread.join();
}

TEST(LockWatch, SeesALockThatTwoThreadsTake) {
  std::mutex one;
  std::mutex own[kThreads];
  LockWatch watch;
  run_watched(
      watch, [](int) {},
      [&](int index) {
        const std::lock_guard hold(one);
        const std::lock_guard hold_own(own[index]);
      });
  EXPECT_EQ(watch.taken(), 4U);
  EXPECT_EQ(watch.shared_locks(), 1U);
}

TEST(LockWatch, SeesWhoAsksForLocalTime) {
  LockWatch watch;
  run_watched(
      watch, [](int) {},
      [](int index) {
        const std::time_t now = 0;
        std::tm result{};
        if (index == 1) ::localtime_r(&now, &result);
      });
  EXPECT_EQ(watch.locking_calls(), std::vector<std::string>{"localtime_r"});
}

constexpr const char* kInvoice =
    "<e:Envelope xmlns:e='http://schemas.xmlsoap.org/soap/envelope/'><e:Body><response><return>"
    "<number>4711</number></return></response></e:Body></e:Envelope>";

/// Two sessions make calls at the same time, after a few that make what is kept. Each has a server
/// of its own.
void make_calls(LockWatch& watch, const Answer& answer) {
  constexpr int kCalls = 50;
  const OwnFiles files;
  MisbehavingServer servers[kThreads];
  for (MisbehavingServer& server : servers) server.otherwise(answer);
  const auto call = [&](int index) {
    try {
      BVInvoiceConnector().GetInvoice(servers[index].url("/soap"), "S-1", "U-2");
    } catch (const Error&) {
      // A fault is an answer like any other here.
    }
  };
  run_watched(
      watch, [&](int index) { call(index), call(index); },
      [&](int index) {
        for (int made = 0; made < kCalls; ++made) call(index);
      });
}

/// To look a span of time up takes the C library's lock over the zone so many times; calls that run
/// into another quarter of an hour look one up.
constexpr std::size_t kQuestionsOfASpan = 3;

TEST(SharedLocks, AreNotTakenByCallsThatGoWell) {
  LockWatch watch;
  make_calls(watch, answers::reply(kInvoice));
  EXPECT_EQ(watch.shared_locks(), 0U) << "of " << watch.taken() << " taken";
  EXPECT_LE(watch.locking_calls().size(), kThreads * kQuestionsOfASpan);
}

TEST(SharedLocks, AreNotTakenByCallsThatAFaultAnswers) {
  LockWatch watch;
  make_calls(watch, answers::fault("the ledger is closed"));
  EXPECT_EQ(watch.shared_locks(), 0U) << "of " << watch.taken() << " taken";
  EXPECT_LE(watch.locking_calls().size(), kThreads * kQuestionsOfASpan);
}

TEST(SharedLocks, AreNotTakenByMomentsWithAZone) {
  constexpr int kDaysOfRows = 5;
  constexpr int kRowsOfADay = 200;
  LockWatch watch;
  run_watched(
      watch, [](int) {},
      [](int) {
        for (int row = 0; row < kDaysOfRows * kRowsOfADay; ++row) {
          const std::string day = std::to_string(10 + row % kDaysOfRows);
          ASSERT_TRUE(detail::date_time_of("2026-11-" + day + "T08:15:00Z")) << day;
        }
      });
  EXPECT_EQ(watch.shared_locks(), 0U) << "of " << watch.taken() << " taken";
  EXPECT_LE(watch.locking_calls().size(), kThreads * (kDaysOfRows + 1) * kQuestionsOfASpan);
}

}  // namespace
}  // namespace bvconn::test
