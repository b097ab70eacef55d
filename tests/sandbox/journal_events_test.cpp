// What a reader of the events costs the sandbox. In this process, where the journal sees each look.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "sandbox/becomes.h"
#include "sandbox/endpoints/endpoints.h"
#include "sandbox/events_reader.h"
#include "sandbox/http/server.h"
#include "sandbox/journal/journal.h"

namespace bvconn::sandbox {
namespace {

using namespace std::chrono_literals;
using test::becomes;
using test::EventsReader;
using ::testing::HasSubstr;
using ::testing::Not;

/// Counts what it gives to whoever looks.
class CountingJournal : public MemoryJournal {
 public:
  CountingJournal() : MemoryJournal({.count = 100'000, .bytes = std::size_t{1} << 30}) {}

  std::vector<EntryPointer> after(std::uint64_t id, std::size_t most) const override {
    auto found = MemoryJournal::after(id, most);
    given += found.size();
    largest = std::max(largest.load(), found.size());
    ++looks_behind;
    return found;
  }
  LatestEntries latest(std::size_t most) const override {
    auto found = MemoryJournal::latest(most);
    given += found.entries.size();
    ++looks_at_end;
    return found;
  }

  mutable std::atomic<std::size_t> given = 0;
  mutable std::atomic<std::size_t> largest = 0;  ///< so many at once
  mutable std::atomic<int> looks_behind = 0;
  mutable std::atomic<int> looks_at_end = 0;
};

/// Serves events alone.
class JournalEvents : public ::testing::Test {
 protected:
  JournalEvents() : journal_(std::make_shared<CountingJournal>()) { sandbox_->journal = journal_; }
  ~JournalEvents() override {
    if (!server_) return;
    server_->stop();
    thread_.join();
  }

  std::uint16_t serve(Limits limits = {}) {
    server_.emplace(Listening{}, limits,
                    [this](const Request& request) { return answer(*sandbox_, {}, request); });
    thread_ = std::thread([this] { server_->run(); });
    return server_->port();
  }

  void add(int count, const std::string& session, const std::string& operation = "a") {
    for (int i = 0; i < count; ++i) {
      JournalEntry entry;
      entry.session = session;
      entry.operations = {operation};
      journal_->add(std::move(entry));
    }
  }
  /// More at once than the buffers of a connection hold.
  void add_much() { add(100, "much", std::string(160'000, 'x')); }

  /// How many readers have a hold of the journal.
  long readers() const { return journal_.use_count() - 2; }

  std::shared_ptr<CountingJournal> journal_;
  // On the heap: GCC 12 warns of members that are made up in place.
  const std::unique_ptr<ServedSandbox> sandbox_{
      new ServedSandbox{{.stores = Stores(":memory:", std::nullopt),
                         .contract = Contract(std::vector<MethodContract>()),
                         .dal_routes = {}}}};
  std::optional<Server> server_;
  std::thread thread_;
};

TEST_F(JournalEvents, FirstLookCostsWhatItTellsAndNotTheWholeJournal) {
  add(20'000, "a");
  EventsReader reader(serve());
  const std::string seen = reader.until("id: 20000\n");
  EXPECT_THAT(seen, HasSubstr("event: leftOut\ndata: {\"count\":19900}\n\nid: 19901\n"));
  EXPECT_EQ(journal_->given, 100U);
  add(1, "b");
  EXPECT_THAT(reader.until("id: 20001\n"), HasSubstr("id: 20001\n"));
  EXPECT_EQ(journal_->given, 101U);
}

TEST_F(JournalEvents, FirstLookBehindAFilterHoldsOnlyAPieceOfTheJournalAtATime) {
  add(3, "wanted");
  add(15'000, "other");
  EventsReader reader(serve(), "?session=wanted");
  const std::string seen = reader.until("id: 3\n");
  EXPECT_THAT(seen, HasSubstr("id: 1\n"));
  EXPECT_THAT(seen, Not(HasSubstr("leftOut")));
  add(1, "wanted");
  EXPECT_THAT(reader.until("id: 15004\n"), HasSubstr("id: 15004\n"));
  // Each is looked at once.
  EXPECT_EQ(journal_->given, 15'004U);
  EXPECT_LE(journal_->largest, 200U);
}

TEST_F(JournalEvents, AnEmptyJournalIsTheBeginningOfWhatComes) {
  EventsReader reader(serve());
  EXPECT_THAT(reader.until("begin"), HasSubstr("begin"));
  add(1, "a");
  EXPECT_THAT(reader.until("id: 1\n"), HasSubstr("id: 1\n"));
}

TEST_F(JournalEvents, AReaderThatTakesNothingInIsLetGoAndAskedForNothingMeanwhile) {
  add_much();
  const EventsReader slow(serve({.reply = 1s}));
  ASSERT_TRUE(becomes([&] { return journal_->looks_at_end == 1; }));
  // What comes now stays in the journal: nothing is gathered for a reader that takes nothing.
  add(5'000, "later");
  ASSERT_TRUE(becomes([&] { return readers() == 0; }));
  EXPECT_EQ(journal_->looks_behind, 0);
  EXPECT_EQ(journal_->given, 100U);
}

TEST_F(JournalEvents, OthersAreToldWhileAReaderTakesNothingIn) {
  add_much();
  const std::uint16_t port = serve({.reply = 6s});
  const EventsReader slow(port);
  EventsReader quick(port, "?session=quick");
  quick.until("begin");
  ASSERT_TRUE(becomes([&] { return journal_->looks_at_end == 1; }));
  add(1, "quick");
  EXPECT_THAT(quick.until("id: 101\n"), HasSubstr("id: 101\n"));
  EXPECT_EQ(readers(), 2);
  ASSERT_TRUE(becomes([&] { return readers() == 1; }));
  add(1, "quick");
  EXPECT_THAT(quick.until("id: 102\n"), HasSubstr("id: 102\n"));
}

}  // namespace
}  // namespace bvconn::sandbox
