#include "bvconn/platform/exchange/exchange_log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace bvconn::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

void exchange_with(ExchangeLog& log, const std::string& request) {
  ExchangeLog::Call call{.cls = "C", .operation = "Op", .url = "http://h/"};
  log.enter(call);
  if (Exchange* exchange = log.begin()) exchange->request.assign(request);
  log.leave(call);
}

std::vector<std::string> requests_of(const ExchangeLog& log) {
  std::vector<std::string> texts;
  for (const Exchange& exchange : log.all(Secrets::kShown)) texts.push_back(exchange.request.text);
  return texts;
}

std::vector<std::uint64_t> numbers_of(const ExchangeLog& log) {
  std::vector<std::uint64_t> numbers;
  for (const Exchange& exchange : log.all(Secrets::kShown)) numbers.push_back(exchange.number);
  return numbers;
}

TEST(ExchangeLog, HoldsNothingAtFirst) {
  const ExchangeLog log;
  EXPECT_FALSE(log.last(Secrets::kMasked).has_value());
  EXPECT_THAT(log.all(Secrets::kMasked), IsEmpty());
}

TEST(ExchangeLog, KeepsTheLastEightUnlessToldOtherwise) {
  ExchangeLog log;
  for (int i = 1; i <= 11; ++i) exchange_with(log, "r" + std::to_string(i));
  EXPECT_THAT(numbers_of(log), ElementsAre(4, 5, 6, 7, 8, 9, 10, 11));
  EXPECT_THAT(requests_of(log), ElementsAre("r4", "r5", "r6", "r7", "r8", "r9", "r10", "r11"));
  EXPECT_EQ(log.last(Secrets::kShown)->request.text, "r11");
}

TEST(ExchangeLog, KeepsTheLatestWhenItsSizeChanges) {
  ExchangeLog log;
  for (int i = 1; i <= 11; ++i) exchange_with(log, "r" + std::to_string(i));
  log.keep(3);
  EXPECT_THAT(requests_of(log), ElementsAre("r9", "r10", "r11"));
  log.keep(5);
  exchange_with(log, "r12");
  exchange_with(log, "r13");
  exchange_with(log, "r14");
  EXPECT_THAT(requests_of(log), ElementsAre("r10", "r11", "r12", "r13", "r14"));
}

TEST(ExchangeLog, KeepsNothingWhereNoneAreWantedAndGoesOnCounting) {
  ExchangeLog log;
  exchange_with(log, "r1");
  log.keep(0);
  exchange_with(log, "r2");
  EXPECT_THAT(log.all(Secrets::kShown), IsEmpty());
  EXPECT_FALSE(log.last(Secrets::kShown).has_value());
  log.keep(2);
  exchange_with(log, "r3");
  EXPECT_THAT(numbers_of(log), ElementsAre(3));
}

TEST(ExchangeLog, KeepsTheFirst64KibOfATextAndCountsTheRest) {
  ExchangeLog log;
  const std::string text(65536, 'a');
  exchange_with(log, text);
  EXPECT_EQ(log.last(Secrets::kShown)->request.text, text);
  EXPECT_FALSE(log.last(Secrets::kShown)->request.cut());
  exchange_with(log, text + "b");
  EXPECT_EQ(log.last(Secrets::kShown)->request.text, text);
  EXPECT_EQ(log.last(Secrets::kShown)->request.size, 65537U);
  EXPECT_TRUE(log.last(Secrets::kShown)->request.cut());
}

TEST(BoundedText, AppendsUpToItsBoundAndCountsOn) {
  BoundedText text;
  text.append(std::string(65535, 'a'));
  text.append("bcd");
  text.append("e");
  EXPECT_EQ(text.text, std::string(65535, 'a') + "b");
  EXPECT_EQ(text.size, 65539U);
  text.clear();
  EXPECT_EQ(text.size, 0U);
  EXPECT_FALSE(text.cut());
}

TEST(ExchangeLog, LeavesNothingOfAPlacesLastUser) {
  ExchangeLog log;
  log.keep(1);
  ExchangeLog::Call call{.cls = "C", .operation = "Op", .session_id = "SESSION"};
  log.enter(call);
  Exchange* exchange = log.begin();
  ASSERT_NE(exchange, nullptr);
  exchange->object = "O";
  exchange->reply.assign("reply");
  exchange->reply_headers.assign("headers");
  exchange->result.assign("result");
  exchange->http_status = 500;
  exchange->times.total_us = 7;
  exchange->bytes_sent = 1;
  exchange->error = ExchangeError{.number = 5, .source = "", .description = ""};
  exchange->raised = 5;
  exchange->outcome = Outcome::kUnknown;
  log.add_argument(*exchange).text.assign("one");
  log.add_argument(*exchange).text.assign("two");
  log.leave(call);
  EXPECT_EQ(log.last(Secrets::kShown)->arguments.size(), 2U);
  exchange_with(log, "SESSION");
  const auto last = log.last(Secrets::kMasked);
  EXPECT_EQ(last->request.text, "SESSION");
  EXPECT_EQ(last->object, "");
  EXPECT_EQ(last->reply.text + last->reply_headers.text + last->result.text, "");
  EXPECT_EQ(last->http_status, 0);
  EXPECT_EQ(last->times, ExchangeTimes());
  EXPECT_EQ(last->bytes_sent, 0U);
  EXPECT_FALSE(last->error.has_value());
  EXPECT_FALSE(last->raised.has_value());
  EXPECT_EQ(last->outcome, Outcome::kNotSent);
  EXPECT_THAT(last->arguments, IsEmpty());
}

TEST(ExchangeLog, MasksWithTheSessionOfThatCall) {
  ExchangeLog log;
  ExchangeLog::Call call{.cls = "C", .operation = "Op", .session_id = "SESSION-1"};
  log.enter(call);
  log.begin()->reply.assign("of SESSION-1 and SESSION-2");
  log.leave(call);
  EXPECT_EQ(log.last(Secrets::kMasked)->reply.text, "of *** and SESSION-2");
  EXPECT_EQ(log.last(Secrets::kShown)->reply.text, "of SESSION-1 and SESSION-2");
}

TEST(ExchangeLog, FindsTheExchangeOfACallAroundAnother) {
  ExchangeLog log;
  ExchangeLog::Call outer{.cls = "C", .operation = "Outer"};
  log.enter(outer);
  log.begin();
  exchange_with(log, "inner");
  ASSERT_NE(log.find(outer), nullptr);
  EXPECT_EQ(log.find(outer)->operation, "Outer");
  EXPECT_EQ(&log.running(), &outer);
  log.keep(1);
  EXPECT_EQ(log.find(outer), nullptr);  // Its place was taken by the other.
  log.leave(outer);
}

TEST(ExchangeLog, ShowsEachExchangeToAListenerAtTheEndOfItsCall) {
  ExchangeLog log;
  log.keep(0);
  std::vector<std::string> heard;
  log.listen([&](const Exchange& exchange) {
    heard.push_back(exchange.operation + ":" + exchange.reply.text);
  });
  ExchangeLog::Call call{.cls = "C", .operation = "Op", .session_id = "SESSION"};
  log.enter(call);
  log.begin()->reply.assign("a SESSION");
  EXPECT_THAT(heard, IsEmpty());
  log.begin()->reply.assign("b");
  EXPECT_THAT(heard, ElementsAre("Op:a ***"));
  log.leave(call);
  EXPECT_THAT(heard, ElementsAre("Op:a ***", "Op:b"));
  EXPECT_THAT(log.all(Secrets::kShown), IsEmpty());
}

TEST(ExchangeLog, DropsWhatAListenerThrows) {
  ExchangeLog log;
  log.listen([](const Exchange& exchange) {
    if (exchange.number == 1) throw std::runtime_error("no room");
    throw 13;
  });
  exchange_with(log, "r");
  EXPECT_EQ(log.last(Secrets::kShown)->request.text, "r");
  exchange_with(log, "s");
  EXPECT_EQ(log.last(Secrets::kShown)->request.text, "s");
}

TEST(OutcomeText, SaysWhatACallerAsks) {
  EXPECT_EQ(outcome_text(Outcome::kNone), "");
  EXPECT_EQ(outcome_text(Outcome::kNotSent), "not sent");
  EXPECT_EQ(outcome_text(Outcome::kUnknown), "sent, outcome unknown");
  EXPECT_EQ(outcome_text(Outcome::kAnswered), "answered");
}

}  // namespace
}  // namespace bvconn::test
