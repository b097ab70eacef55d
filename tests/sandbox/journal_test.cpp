#include "sandbox/journal/journal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "sandbox/journal/entry_json.h"
#include "sandbox/journal/journal_filter.h"
#include "sandbox/journal/mask_entry.h"
#include "sandbox/journal/verify.h"
#include "sandbox/sandbox_process.h"

namespace bvconn::test {
namespace {

using sandbox::EntryPointer;
using sandbox::Journal;
using sandbox::JournalEntry;
using sandbox::JournalFilter;
using sandbox::MemoryJournal;
using sandbox::Outcome;
using sandbox::Route;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

JournalEntry get_invoice(const std::string& uid) {
  JournalEntry entry;
  entry.route = Route::kSoap;
  entry.service = "urn:InvoiceService";
  entry.method = "getInvoice";
  entry.session = "S1";
  entry.has_envelope = true;
  entry.operations = {"BVInvoiceConnector.GetInvoice"};
  entry.values = {uid};
  entry.arguments = {{"strInvoiceUID", 0}, {"aSessionID", JournalEntry::kSession}};
  entry.request.assign(
      envelope_text("urn:InvoiceService", "getInvoice", "<param>" + uid + "</param>"));
  entry.status = 200;
  return entry;
}

std::vector<std::uint64_t> ids(const Journal& journal, std::uint64_t after = 0) {
  std::vector<std::uint64_t> all;
  for (const EntryPointer& each : journal.after(after)) all.push_back(each->id);
  return all;
}

TEST(Journal, KeepsTheLatestOfMoreThanItHolds) {
  MemoryJournal journal({.count = 3, .bytes = 1'000'000});
  for (int i = 0; i < 5; ++i) journal.add(get_invoice("INV-1001"));
  EXPECT_THAT(ids(journal), ElementsAre(3, 4, 5));
  EXPECT_EQ(journal.dropped(), 2U);
}

TEST(Journal, KeepsNoMoreThanItsBytes) {
  MemoryJournal journal({.count = 1'000, .bytes = 100'000});
  JournalEntry large = get_invoice("INV-1001");
  large.reply.assign(std::string(30'000, 'x'));
  for (int i = 0; i < 10; ++i) journal.add(large);
  EXPECT_THAT(ids(journal), ElementsAre(8, 9, 10));
}

TEST(Journal, DoesNotKeepOneThatAloneIsTooLarge) {
  MemoryJournal journal({.count = 10, .bytes = 1'000});
  JournalEntry large = get_invoice("INV-1001");
  large.reply.assign(std::string(2'000, 'x'));
  journal.add(large);
  EXPECT_THAT(ids(journal), IsEmpty());
  EXPECT_EQ(journal.dropped(), 1U);
}

TEST(Journal, NumbersGrowAfterItWasCleared) {
  MemoryJournal journal({});
  journal.add(get_invoice("INV-1001"));
  journal.add(get_invoice("INV-1002"));
  journal.clear();
  EXPECT_THAT(ids(journal), IsEmpty());
  journal.add(get_invoice("INV-1003"));
  EXPECT_THAT(ids(journal), ElementsAre(3));
  EXPECT_EQ(journal.dropped(), 0U);
}

TEST(Journal, GivesWhatCameAfterANumber) {
  MemoryJournal journal({});
  for (int i = 0; i < 4; ++i) journal.add(get_invoice("INV-1001"));
  EXPECT_THAT(ids(journal, 2), ElementsAre(3, 4));
  EXPECT_THAT(ids(journal, 4), IsEmpty());
}

TEST(Journal, GivesTheOldestOfMoreThanWereAskedFor) {
  MemoryJournal journal({});
  EXPECT_EQ(journal.last_id(), 0U);
  for (int i = 0; i < 4; ++i) journal.add(get_invoice("INV-1001"));
  const auto found = journal.after(1, 2);
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0]->id, 2U);
  EXPECT_EQ(found[1]->id, 3U);
  EXPECT_EQ(journal.last_id(), 4U);
}

TEST(Journal, TakesFromSeveralThreadsAndIsReadMeanwhile) {
  MemoryJournal journal({.count = 50, .bytes = 1'000'000});
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int k = 0; k < 100; ++k) {
        journal.add(get_invoice("INV-1001"));
        if (k % 20 != 0) continue;
        EXPECT_LE(journal.entries().size(), 50U);
      }
    });
  }
  for (std::thread& each : threads) each.join();
  EXPECT_EQ(ids(journal).back(), 400U);
  EXPECT_EQ(journal.dropped(), 350U);
}

TEST(JournalMask, HidesTheSessionOfAnEnvelopeWhereverItStands) {
  JournalEntry entry = get_invoice("INV-1001");
  entry.session = "SESSION-17";
  entry.request.assign("<E><Header><userID>SESSION-17</userID></Header><Body/></E>");
  entry.reply.assign("<E>for SESSION-17</E>");
  entry.differences.push_back({"SOAPAction", "is 'SESSION-17'", "'urn:InvoiceService'"});
  const JournalEntry shown = sandbox::masked(entry);
  EXPECT_EQ(shown.session, "***");
  EXPECT_EQ(*shown.argument("aSessionID"), "***");
  EXPECT_EQ(shown.request.text, "<E><Header><userID>***</userID></Header><Body/></E>");
  EXPECT_EQ(shown.reply.text, "<E>for ***</E>");
  EXPECT_EQ(shown.differences[0].found, "is '***'");
}

TEST(JournalMask, HidesAPasswordHoweverShortInEnvelopeAndArguments) {
  JournalEntry entry;
  entry.route = Route::kSoap;
  entry.has_envelope = true;
  entry.values = {"old", "new"};
  entry.arguments = {{"strOld", 0}, {"strNew", 1}};
  entry.request.assign(
      envelope_text("urn:MaintenanceService", "updatePassword", "<old>old</old><new>new</new>"));
  const JournalEntry shown = sandbox::masked(entry);
  EXPECT_THAT(shown.request.text, HasSubstr("<old>***</old><new>***</new>"));
  EXPECT_EQ(*shown.argument("strOld"), "***");
  EXPECT_EQ(*shown.argument("strNew"), "***");
}

JournalEntry login(const std::string& body) {
  JournalEntry entry;
  entry.route = Route::kDal;
  entry.service = "AuthenticationService";
  entry.method = "Login";
  entry.target = "/dal/AuthenticationService/Login";
  entry.request.assign(body);
  entry.request_headers = "Content-Type: application/json\n";
  entry.reply_headers = "Session-Token: 0123456789abcdef\n";
  return entry;
}

TEST(JournalMask, HidesThePasswordAndTheTokenOfALogin) {
  JournalEntry entry = login(R"({"arguments":["anna","pw","1.0","US"]})");
  entry.values = {"anna", "pw", "1.0", "US"};
  entry.arguments = {{"aUserID", 0}, {"aPassword", 1}};
  const JournalEntry shown = sandbox::masked(entry);
  EXPECT_EQ(shown.request.text, R"({"arguments":["anna","***","1.0","US"]})");
  EXPECT_EQ(*shown.argument("aPassword"), "***");
  EXPECT_EQ(*shown.argument("aUserID"), "anna");
  EXPECT_EQ(shown.request_headers, "Content-Type: application/json\n");
  EXPECT_EQ(shown.reply_headers, "Session-Token: ***\n");
}

TEST(JournalMask, HidesALoginThatCannotBeRead) {
  const JournalEntry shown = sandbox::masked(login(R"({"arguments":["anna","pw)"));
  EXPECT_EQ(shown.request.text, "***");
}

TEST(JournalMask, HidesWhatItCannotReadTagsIn) {
  JournalEntry entry = get_invoice("INV-1001");
  entry.request.assign(std::string("<\0u\0", 4));
  const JournalEntry shown = sandbox::masked(entry);
  EXPECT_EQ(shown.request.text, "***");
  EXPECT_EQ(*shown.argument("strInvoiceUID"), "***");
}

TEST(JournalMask, HidesTheSessionOfARequestThatIsAnArgument) {
  JournalEntry entry;
  entry.route = Route::kDal;
  entry.method = "SaveProject";
  entry.has_envelope = true;
  entry.session = "S1";
  entry.values = {"PRJ-3001"};
  entry.arguments = {{"aProject", 0}};
  entry.request.assign(
      R"({"arguments":["<E><Header><userID>S1</userID></Header><Body><m/></Body></E>"]})");
  const JournalEntry shown = sandbox::masked(entry);
  EXPECT_EQ(shown.request.text,
            R"({"arguments":["<E><Header><userID>***</userID></Header><Body><m/></Body></E>"]})");
}

TEST(JournalMoment, IsReadAsItIsWritten) {
  const auto moment = sandbox::moment_of("2026-02-28T23:59:58.5Z");
  ASSERT_TRUE(moment);
  EXPECT_EQ(sandbox::moment_text(*moment), "2026-02-28T23:59:58.500000Z");
  EXPECT_EQ(sandbox::moment_text(*sandbox::moment_of("1970-01-01T00:00:00Z")),
            "1970-01-01T00:00:00.000000Z");
  for (const char* text : {"", "2026", "2026-02-28T23:59:58", "2026-02-28 23:59:58Z",
                           "2026-02-28T23:59:58.Z", "2026-02-28T23:59:58.xZ", "now"}) {
    EXPECT_FALSE(sandbox::moment_of(text)) << text;
  }
}

std::string refusal_of(const sandbox::FilterFields& fields) {
  try {
    sandbox::read_filter(fields);
  } catch (const std::invalid_argument& error) {
    return error.what();
  }
  return "";
}

TEST(JournalFilter, RefusesWhatCannotBeWithTheNearestName) {
  EXPECT_EQ(refusal_of({{"operation", "BVInvoiceConnector.GetInvoise"}}),
            "There is no operation of BVInvoiceConnector 'GetInvoise'; did you mean GetInvoice?");
  EXPECT_EQ(refusal_of({{"operation", "BVInvoiceConector.GetInvoice"}}),
            "There is no class 'BVInvoiceConector'; did you mean BVInvoiceConnector?");
  EXPECT_EQ(refusal_of({{"operation", "GetInvoice"}}),
            "An operation is named as BVInvoiceConnector.GetInvoice, not 'GetInvoice'");
  EXPECT_EQ(
      refusal_of({{"operation", "BVInvoiceConnector.GetInvoice"}, {"where", "strInvoiceUid=1"}}),
      "There is no argument of BVInvoiceConnector.GetInvoice 'strInvoiceUid'; did you mean "
      "strInvoiceUID?");
  EXPECT_EQ(refusal_of({{"where", "INV-1001"}}),
            "A condition is written as strInvoiceUID=INV-1001, not 'INV-1001'");
  EXPECT_EQ(refusal_of({{"route", "SOAP"}}), "There is no route 'SOAP', but soap, dal");
  EXPECT_EQ(refusal_of({{"outcome", "good"}}),
            "There is no outcome 'good', but answered, warned, fault, refused, failed, injected");
  EXPECT_EQ(refusal_of({{"since", "yesterday"}}),
            "since is 'yesterday', expected a moment as 2026-01-31T12:00:00Z");
}

/// Three exchanges: INV-1001 twice, once of them refused, and INV-1002.
class VerifyTest : public ::testing::Test {
 protected:
  VerifyTest() {
    journal_.add(get_invoice("INV-1001"));
    JournalEntry refused = get_invoice("INV-1001");
    refused.outcome = Outcome::kRefused;
    refused.differences.push_back({"parameter 1 ('param')", "has type 'int'", "type 'string'"});
    journal_.add(refused);
    journal_.add(get_invoice("INV-1002"));
  }

  sandbox::Verification ask(const sandbox::FilterFields& fields, std::size_t least,
                            std::optional<std::size_t> most) const {
    return verify({.filter = sandbox::read_filter(fields), .at_least = least, .at_most = most},
                  journal_);
  }

  MemoryJournal journal_{{}};
};

TEST_F(VerifyTest, CountsWhatWasNotRefused) {
  const auto all = ask({{"operation", "BVInvoiceConnector.*"}}, 2, 2);
  EXPECT_TRUE(all.holds);
  EXPECT_THAT(all.matched, ElementsAre(1, 3));
  EXPECT_THAT(all.nearest, IsEmpty());
  EXPECT_THAT(ask({{"outcome", "refused"}}, 1, 1).matched, ElementsAre(2));
}

TEST_F(VerifyTest, TooFewShowsTheNearestFirst) {
  const auto found = ask(
      {{"operation", "BVInvoiceConnector.GetInvoice"}, {"where", "strInvoiceUID=INV-1001"}}, 2, 2);
  EXPECT_FALSE(found.holds);
  EXPECT_THAT(found.matched, ElementsAre(1));
  ASSERT_EQ(found.nearest.size(), 2U);
  EXPECT_EQ(found.nearest[0].entry.id, 3U);
  EXPECT_EQ(found.nearest[0].differences[0].text(),
            "strInvoiceUID is 'INV-1002', expected 'INV-1001'");
  EXPECT_EQ(found.nearest[1].entry.id, 2U);
  EXPECT_EQ(found.nearest[1].differences.back().text(),
            "parameter 1 ('param') has type 'int', expected type 'string'");
}

TEST_F(VerifyTest, TooManyNamesThemAndNoMisses) {
  const auto found = ask({{"operation", "BVInvoiceConnector.GetInvoice"}}, 0, 1);
  EXPECT_FALSE(found.holds);
  EXPECT_THAT(found.matched, ElementsAre(1, 3));
  EXPECT_THAT(found.nearest, IsEmpty());
}

TEST_F(VerifyTest, AnotherOperationIsAMissOnlyWithTheArgumentAskedFor) {
  EXPECT_THAT(ask({{"operation", "BVOrderConnector.getSAPOrderView"}}, 1, {}).nearest, IsEmpty());
}

TEST_F(VerifyTest, DoesNotTellASecretThatDiffers) {
  const auto found = ask({{"session", "another"}}, 1, {});
  ASSERT_FALSE(found.nearest.empty());
  EXPECT_EQ(found.nearest[0].differences[0].text(),
            "the session is another one, expected the one asked for");
}

}  // namespace
}  // namespace bvconn::test
