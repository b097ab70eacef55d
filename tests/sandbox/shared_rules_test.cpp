#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "sandbox/becomes.h"
#include "sandbox/faults/fault_forms.h"
#include "sandbox/faults/shared_fault_book.h"
#include "sandbox/shared_place.h"
#include "sandbox/stubs/shared_stub_book.h"
#include "sandbox/stubs/stub_forms.h"

namespace bvconn::sandbox {
namespace {

using test::becomes;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const OperationForm& get_invoice() {
  static const OperationForm form{.name = "BVInvoiceConnector.GetInvoice",
                                  .places = {{.argument = "strInvoiceUID"}}};
  return form;
}

/// One database for all these tests, each of which begins without rules. Two books on it are those
/// of two processes.
class SharedBooks : public ::testing::Test {
 protected:
  SharedBooks() {
    exchange_.route = Route::kSoap;
    exchange_.forms = {&get_invoice()};
  }
  void SetUp() override {
    if (!test::shared_place_missing().empty()) GTEST_SKIP() << test::shared_place_missing();
    SharedFaultBook(place()).clear();
    SharedStubBook(place(), {}).clear();
  }

  static const std::string& place() {
    static const std::string place = test::new_place_of_store();
    return place;
  }
  static std::unique_ptr<SharedStubBook> stub_book() {
    return std::make_unique<SharedStubBook>(place(),
                                            std::vector<const OperationForm*>{&get_invoice()});
  }
  bool is_hit(FaultBook& book) const { return book.next(exchange_, request_) != nullptr; }

  Exchange exchange_;
  Request request_;
};

std::vector<FaultRule> faults(const std::string& json) {
  return faults_from_text(json, {});
}

std::vector<StubRule> stubs(const std::string& json) {
  return stubs_from_text(json, {&get_invoice()});
}

TEST_F(SharedBooks, AFaultOfOneHitsAtOnceThereAndSoonAtTheOther) {
  SharedFaultBook first(place());
  SharedFaultBook second(place());
  EXPECT_FALSE(is_hit(first));
  first.add(faults(R"({"kind":"reset","name":"gone"})"));
  EXPECT_TRUE(is_hit(first));
  EXPECT_TRUE(becomes([&] { return is_hit(second); }));
  // What is removed by one hits nobody from then on.
  EXPECT_TRUE(second.remove("gone"));
  EXPECT_FALSE(is_hit(first));
  EXPECT_FALSE(first.remove("gone"));
}

TEST_F(SharedBooks, AnAnswerThatOneKeepsIsGivenByTheOther) {
  SharedFaultBook first(place());
  SharedFaultBook second(place());
  EXPECT_EQ(first.keep_answer(Route::kSoap, "unasked"), "");
  first.add(faults(R"({"kind":"other-answer","name":"other"})"));
  const std::string bytes("<a>\0\xFF</a>", 9);
  EXPECT_EQ(first.keep_answer(Route::kSoap, bytes), "");
  EXPECT_TRUE(becomes([&] { return is_hit(second); }));
  EXPECT_EQ(second.keep_answer(Route::kDal, "dal"), "");
  EXPECT_EQ(second.keep_answer(Route::kSoap, "later"), bytes);
  EXPECT_EQ(first.keep_answer(Route::kSoap, "last"), "later");
  // They go with the faults.
  second.clear();
  first.add(faults(R"({"kind":"other-answer","name":"other"})"));
  EXPECT_EQ(first.keep_answer(Route::kSoap, "new"), "");
  EXPECT_EQ(first.keep_answer(Route::kDal, "new"), "");
}

TEST_F(SharedBooks, CountsOfAFaultAreThoseOfAllTogether) {
  SharedFaultBook first(place());
  first.add(faults(R"({"kind":"reset","skip":4,"count":3})"));
  SharedFaultBook second(place());
  std::atomic<int> hits = 0;
  {
    std::vector<std::jthread> clients;
    for (int i = 0; i < 8; ++i) {
      clients.emplace_back([&, &book = i % 2 == 0 ? first : second] {
        for (int k = 0; k < 10; ++k) hits += is_hit(book) ? 1 : 0;
      });
    }
  }
  EXPECT_EQ(hits, 3);
  const auto all = second.list();
  ASSERT_EQ(all.size(), 1U);
  EXPECT_EQ(all[0].seen, 80);
  EXPECT_EQ(all[0].hit, 3);
}

TEST_F(SharedBooks, ASeededChanceHitsTheSameOfAllCallsAsInOneProcess) {
  const std::string rule = R"({"kind":"reset","probability":0.5,"seed":7})";
  MemoryFaultBook alone;
  alone.add(faults(rule));
  std::vector<bool> expected;
  for (int i = 0; i < 20; ++i) expected.push_back(is_hit(alone));
  SharedFaultBook first(place());
  first.add(faults(rule));
  SharedFaultBook second(place());
  std::vector<bool> found;
  for (int i = 0; i < 20; ++i) found.push_back(is_hit(i % 3 == 0 ? first : second));
  EXPECT_EQ(found, expected);
}

TEST_F(SharedBooks, FaultsOfAllHaveNamesOfTheirOwn) {
  SharedFaultBook first(place());
  SharedFaultBook second(place());
  const auto one = first.add(faults(R"([{"kind":"reset"},{"kind":"close","name":"mine"}])"));
  const auto other = second.add(faults(R"({"kind":"close"})"));
  EXPECT_NE(one[0], other[0]);
  EXPECT_THROW(second.add(faults(R"([{"kind":"gzip"},{"kind":"reset","name":"mine"}])")), BadFault);
  std::vector<std::string> names;
  for (const FaultInForce& each : first.list()) names.push_back(*each.rule->name);
  EXPECT_THAT(names, ElementsAre(one[0], "mine", other[0]));
  EXPECT_EQ(first.clear(), 3U);
  EXPECT_THAT(second.list(), IsEmpty());
}

TEST_F(SharedBooks, ProcessesThatBeginWithTheSameFaultsHaveThemOnce) {
  const std::string rules = R"([{"kind":"reset","count":1},{"kind":"close","name":"mine"}])";
  SharedFaultBook first(place());
  first.begin_with(faults(rules));
  EXPECT_TRUE(is_hit(first));
  SharedFaultBook second(place());
  second.begin_with(faults(rules));
  auto all = second.list();
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[0].hit, 1);
  // A file that says something else now replaces what it said before.
  SharedFaultBook third(place());
  third.begin_with(faults(R"([{"kind":"reset","count":2},{"kind":"close","name":"mine"}])"));
  all = second.list();
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[1].rule->count, 2);
  EXPECT_EQ(all[1].hit, 0);
}

TEST_F(SharedBooks, AStubOfOneAnswersAtTheOtherAsOftenAsItMayInAll) {
  const auto first = stub_book();
  const auto second = stub_book();
  const auto set = first->add(
      stubs(R"({"operation":"BVInvoiceConnector.GetInvoice","times":3,"answer":"<a/>"})"));
  ASSERT_EQ(set.size(), 1U);
  EXPECT_EQ(first->take(exchange_)->id, set[0]->id);
  EXPECT_TRUE(becomes([&] { return second->take(exchange_) != nullptr; }));
  EXPECT_NE(second->take(exchange_), nullptr);
  EXPECT_EQ(first->take(exchange_), nullptr);
  EXPECT_EQ(second->take(exchange_), nullptr);
  EXPECT_EQ(second->all()[0]->answered, 3);
  EXPECT_EQ(second->all()[0]->rule.answer, "<a/>");
}

TEST_F(SharedBooks, StubsOfAllHaveNumbersOfTheirOwnAndTheLatestWins) {
  const auto first = stub_book();
  const auto second = stub_book();
  const std::string rule = R"({"operation":"BVInvoiceConnector.GetInvoice","answer":"<a/>"})";
  const auto one = first->add(stubs(rule));
  const auto other = second->add(stubs(rule));
  EXPECT_NE(one[0]->id, other[0]->id);
  EXPECT_EQ(second->take(exchange_)->id, other[0]->id);
  EXPECT_TRUE(first->remove(other[0]->id));
  EXPECT_FALSE(second->remove(other[0]->id));
  EXPECT_EQ(second->take(exchange_)->id, one[0]->id);
  second->clear();
  EXPECT_EQ(first->take(exchange_), nullptr);
  EXPECT_EQ(first->all().size(), 0U);
}

TEST_F(SharedBooks, HoldNoMoreStubsThanOneProcessDoes) {
  const auto book = stub_book();
  std::vector<StubRule> many(
      1'001, stubs(R"({"operation":"BVInvoiceConnector.GetInvoice","answer":"<a/>"})")[0]);
  EXPECT_THROW(book->add(many), std::length_error);
  EXPECT_EQ(book->all().size(), 0U);
}

}  // namespace
}  // namespace bvconn::sandbox
