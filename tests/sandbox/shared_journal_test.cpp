#include "sandbox/journal/shared_journal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "sandbox/becomes.h"
#include "sandbox/journal/stored_entry.h"
#include "sandbox/shared_place.h"

namespace bvconn::sandbox {
namespace {

using test::becomes;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// One database for all these tests, each of which begins with an empty journal. Two journals on it
/// are those of two processes.
class SharedJournals : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!test::shared_place_missing().empty()) GTEST_SKIP() << test::shared_place_missing();
    JournalTable(place()).clear();
  }

  static const std::string& place() {
    static const std::string place = test::new_place_of_store();
    return place;
  }
};

JournalEntry entry_of(const std::string& method) {
  JournalEntry entry;
  entry.method = method;
  return entry;
}

std::vector<std::string> methods(const std::vector<EntryPointer>& entries) {
  std::vector<std::string> all;
  for (const EntryPointer& each : entries) all.push_back(each->method);
  return all;
}

TEST_F(SharedJournals, OneReadsAtOnceWhatItHasKeptAndSoonWhatTheOtherHas) {
  SharedJournal first(place(), {});
  SharedJournal second(place(), {});
  first.add(entry_of("a"));
  first.add(entry_of("b"));
  EXPECT_THAT(methods(first.entries()), ElementsAre("a", "b"));
  second.add(entry_of("c"));
  EXPECT_THAT(methods(second.entries()), ElementsAre("a", "b", "c"));
  first.add(entry_of("d"));
  EXPECT_TRUE(becomes([&] { return second.entries().size() == 4; }));
}

TEST_F(SharedJournals, NumbersOfAllRiseAndAreGivenOnce) {
  SharedJournal first(place(), {});
  SharedJournal second(place(), {});
  std::vector<std::uint64_t> seen;
  std::uint64_t last = first.last_id();
  const auto read_on = [&] {
    for (const EntryPointer& each : first.after(last, 7)) {
      EXPECT_GT(each->id, last);
      last = each->id;
      seen.push_back(last);
    }
  };
  {
    std::vector<std::jthread> writers;
    for (SharedJournal* journal : {&first, &second, &first, &second}) {
      writers.emplace_back([journal] {
        for (int i = 0; i < 100; ++i) journal->add(entry_of("a"));
      });
    }
    // Whoever reads on from the last that he has seen misses none of those that are written.
    for (int i = 0; i < 20; ++i) read_on();
  }
  EXPECT_TRUE(becomes([&] { return read_on(), seen.size() >= 400; }));
  EXPECT_EQ(seen.size(), 400U);
  EXPECT_EQ(first.last_id(), last);
}

TEST_F(SharedJournals, KeepAnyBytes) {
  SharedJournal journal(place(), {});
  JournalEntry entry = entry_of("K\xC3\xB6ln");
  entry.at = std::chrono::system_clock::time_point(std::chrono::microseconds(1'234'567'890));
  entry.micros = 17;
  entry.route = Route::kDal;
  entry.service = std::string("\xFF\0\x80\"\\\n", 6);
  entry.session = "anna";
  entry.has_envelope = true;
  entry.operations = {"BVInvoiceConnector.GetInvoice"};
  entry.values = {"", std::string("\0", 1), "\xE4"};
  entry.arguments = {{"strInvoiceUID", 2}, {"aSessionID", JournalEntry::kSession}};
  entry.differences = {{"", "is 'x'", "'y'", true}, {"parameter 1", "a", "b", false}};
  entry.outcome = Outcome::kInjected;
  entry.answered_by = "fault slow";
  entry.remark = "gone";
  entry.http_method = "POST";
  entry.target = "/soap?\x01";
  entry.request_headers = "A: b\n";
  entry.request.assign(std::string(70'000, '\xC4'));
  entry.status = 503;
  entry.reply_headers = "C: d\n";
  entry.reply.assign("\xEF\xBB\xBF<a/>");
  journal.add(entry);
  const auto kept = journal.entries();
  ASSERT_EQ(kept.size(), 1U);
  const JournalEntry& read = *kept.front();
  EXPECT_EQ(read.at, entry.at);
  EXPECT_EQ(read.micros, 17);
  EXPECT_EQ(read.route, Route::kDal);
  EXPECT_EQ(read.service, entry.service);
  EXPECT_EQ(read.method, "K\xC3\xB6ln");
  EXPECT_EQ(read.session, "anna");
  EXPECT_TRUE(read.has_envelope);
  EXPECT_EQ(read.operations, entry.operations);
  EXPECT_EQ(read.values, entry.values);
  EXPECT_EQ(*read.argument("strInvoiceUID"), "\xE4");
  EXPECT_EQ(*read.argument("aSessionID"), "anna");
  ASSERT_EQ(read.differences.size(), 2U);
  EXPECT_TRUE(read.differences[0].is_detail);
  EXPECT_EQ(read.differences[1].text(), "parameter 1 a, expected b");
  EXPECT_EQ(read.outcome, Outcome::kInjected);
  EXPECT_EQ(read.answered_by, "fault slow");
  EXPECT_EQ(read.remark, "gone");
  EXPECT_EQ(read.http_method, "POST");
  EXPECT_EQ(read.target, "/soap?\x01");
  EXPECT_EQ(read.request_headers, "A: b\n");
  EXPECT_EQ(read.request.text, std::string(65'536, '\xC4'));
  EXPECT_EQ(read.request.size, 70'000U);
  EXPECT_EQ(read.status, 503);
  EXPECT_EQ(read.reply_headers, "C: d\n");
  EXPECT_EQ(read.reply.text, "\xEF\xBB\xBF<a/>");
}

TEST(StoredEntry, IsReadAsFarAsItGoesWhereAnotherProgramHasChangedIt) {
  for (const char* text : {"", "no JSON", "[]", "null", R"({"values":3,"request":[1],"at":"x"})",
                           R"({"arguments":[[1]],"differences":[5,[1,2,3]],"reply":{}})"}) {
    EXPECT_EQ(stored_entry(7, text).id, 7U) << text;
  }
  const JournalEntry entry = stored_entry(7, R"({"method":"beat","status":[],"values":["a",1]})");
  EXPECT_EQ(entry.method, "beat");
  EXPECT_EQ(entry.status, 0);
  EXPECT_THAT(entry.values, ElementsAre("a", ""));
}

TEST_F(SharedJournals, TheLimitsOfTheLatestHoldForAll) {
  SharedJournal first(place(), {.count = 100, .bytes = 10'000'000});
  for (const char* each : {"a", "b", "c", "d"}) first.add(entry_of(each));
  ASSERT_EQ(first.entries().size(), 4U);
  SharedJournal second(place(), {.count = 3, .bytes = 10'000'000});
  EXPECT_THAT(methods(first.entries()), ElementsAre("b", "c", "d"));
  first.add(entry_of("e"));
  EXPECT_THAT(methods(first.entries()), ElementsAre("c", "d", "e"));
  EXPECT_EQ(second.dropped(), 2U);
  EXPECT_EQ(second.lost(), 0U);
}

TEST_F(SharedJournals, HoldNoMoreThanTheirBytes) {
  SharedJournal journal(place(), {.count = 1'000, .bytes = 100'000});
  JournalEntry large = entry_of("large");
  large.reply.assign(std::string(30'000, 'x'));
  for (int i = 0; i < 10; ++i) journal.add(large);
  EXPECT_EQ(journal.entries().size(), 3U);
  EXPECT_EQ(journal.dropped(), 7U);
  // One that alone is too large is not kept.
  large.values.assign(2, std::string(60'000, 'x'));
  large.reply.assign("");
  journal.add(large);
  EXPECT_EQ(journal.entries().size(), 3U);
  EXPECT_EQ(journal.entries().back()->reply.size, 30'000U);
  EXPECT_EQ(journal.dropped(), 8U);
}

TEST_F(SharedJournals, AreClearedForAllAndTheNumbersGoOn) {
  SharedJournal first(place(), {});
  SharedJournal second(place(), {});
  first.add(entry_of("a"));
  const std::uint64_t last = first.last_id();
  second.clear();
  EXPECT_THAT(methods(first.entries()), IsEmpty());
  first.add(entry_of("b"));
  const auto kept = first.entries();
  ASSERT_EQ(kept.size(), 1U);
  EXPECT_EQ(kept.front()->id, last + 1);
  EXPECT_EQ(first.dropped(), 0U);
}

TEST_F(SharedJournals, GiveSoManyAsAreAskedForOldestFirst) {
  SharedJournal journal(place(), {});
  const std::uint64_t before = journal.last_id();
  for (int i = 0; i < 450; ++i) journal.add(entry_of(std::to_string(i)));
  const auto found = journal.after(before + 10, 300);
  ASSERT_EQ(found.size(), 300U);
  EXPECT_EQ(found.front()->method, "10");
  EXPECT_EQ(found.back()->method, "309");
  EXPECT_EQ(journal.entries().size(), 450U);
}

TEST_F(SharedJournals, OneThatEndsHasWrittenAll) {
  {
    SharedJournal journal(place(), {});
    for (int i = 0; i < 10; ++i) journal.add(entry_of("a"));
  }
  EXPECT_EQ(JournalTable(place()).after(0, Journal::kAll).size(), 10U);
}

TEST_F(SharedJournals, NoBatchIsWrittenTwice) {
  JournalTable table(place());
  const std::int64_t process = table.enter({});
  JournalBatch batch;
  batch.entries = {std::make_shared<const JournalEntry>(entry_of("a")),
                   std::make_shared<const JournalEntry>(entry_of("b"))};
  batch.last = 2;
  table.write(process, batch);
  // As after a connection that was lost before it said whether it was written.
  table.write(process, batch);
  EXPECT_THAT(methods(table.after(0, Journal::kAll)), ElementsAre("a", "b"));
  batch.last = 4;
  table.write(process, batch);
  EXPECT_THAT(methods(table.after(0, Journal::kAll)), ElementsAre("a", "b", "a", "b"));
}

TEST_F(SharedJournals, TablesOfTheVersionBeforeAreBroughtUp) {
  const std::string place = test::new_shared_place();
  Store(place, std::nullopt);
  {
    Database database(place);
    for (const char* table : {"journal_entries", "journal_state", "journal_writers", "shared_rules",
                              "shared_rule_kinds", "kept_answers"}) {
      database.run(("DROP TABLE " + std::string(table)).c_str());
    }
    database.connection().set_version(7);
  }
  Store store(place, std::nullopt);
  EXPECT_TRUE(store.invoice("INV-1001"));
  SharedJournal journal(place, {});
  journal.add(entry_of("a"));
  EXPECT_THAT(methods(journal.entries()), ElementsAre("a"));
}

}  // namespace
}  // namespace bvconn::sandbox
