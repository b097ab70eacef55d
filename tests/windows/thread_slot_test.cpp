#include "bvconn/platform/windows/thread_slot.h"

#include <gtest/gtest.h>

#include <future>
#include <new>
#include <string>
#include <thread>

#include "bvconn/platform/thread_slot.h"

// A program of its own: afterwards no thread of it keeps anything.
namespace bvconn::detail {
namespace {

/// What happened, in its order.
std::string& told() {
  static std::string text;
  return text;
}

struct Session {
  ~Session() { told() += "session " + name + ", "; }
  std::string name;
};

// Needs, as it goes, what its thread keeps besides.
struct Logger {
  ~Logger() { told() += "logger of " + per_thread<Session>().name + ", "; }
};

struct Late {
  ~Late() { told() += "late, "; }
};

TEST(ReleasingAllThreads, ReleasesOnceWhatThoseThatLiveOnKeep) {
  std::thread([] { per_thread<Session>().name = "ended"; }).join();
  EXPECT_EQ(told(), "session ended, ");
  told().clear();

  std::promise<void> kept;
  std::promise<void> unloaded;
  std::string found;
  std::thread other([&] {
    per_thread<Session>().name = "other";
    per_thread<Logger>();
    kept.set_value();
    unloaded.get_future().wait();
    // As what is destroyed with the library itself would.
    try {
      per_thread<Late>();
    } catch (const std::bad_alloc&) {
      found = "refused";
    }
  });
  kept.get_future().wait();
  // By a thread that keeps nothing itself.
  std::thread([] { release_all_threads(); }).join();
  EXPECT_EQ(told(), "logger of other, session other, ");
  unloaded.set_value();
  other.join();
  EXPECT_EQ(found, "refused");
  // Its end released nothing again.
  EXPECT_EQ(told(), "logger of other, session other, late, ");
}

}  // namespace
}  // namespace bvconn::detail
