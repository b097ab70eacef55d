// The record's names for all operations of the interface, on both routes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/core/session_state.h"
#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/observation/marks.h"
#include "bvconn/observation/world.h"

namespace bvconn::test {
namespace {

using automation::ClassInfo;
using automation::Member;
using automation::Sightings;
using automation::detail::MarkForm;

using automation::detail::FixedText;

/// Two operations ask for a kind of document by its name.
std::optional<FixedText> fixed_text(std::string_view operation) {
  if (operation == "SetLineComments") return FixedText{"aSalseInstrType", "ORDER"};
  if (operation == "getPreviousSalesInstrumentColumnPrices") {
    return FixedText{"astrSIType", "ORDER"};
  }
  return std::nullopt;
}

/// What the outside saw of one run, and what the record says of it.
struct Run {
  Sightings seen;
  std::vector<Exchange> recorded;
};

Run run(automation::detail::World& world, const ClassInfo& info, const Member& operation, bool dal,
        MarkForm form) {
  BVConnectorObject control;
  control.InitTorvexDAL("http://dal.example");
  control.UsingTorvexDAL(dal);
  control.UseDALSave(dal);
  world.forget();
  session().KeepExchanges(0);
  session().KeepExchanges(8);
  session().exchanges().soap_action.reset();
  try {
    const auto object = info.make();
    const auto call = automation::detail::marked_call(operation, form, fixed_text(operation.name));
    static_cast<void>(operation.invoke(object.get(), call.values));
  } catch (const Error&) {
    // It does not take these arguments, or cannot make its result from the answer.
  }
  return {world.sightings(), session().Exchanges(Secrets::kShown)};
}

void expect_named(const Run& run, const ClassInfo& info, const Member& operation, bool dal) {
  const std::string where = info.name + "." + operation.name + (dal ? " by DAL" : " by SOAP");
  for (const Exchange& exchange : run.recorded) {
    EXPECT_EQ(exchange.cls, info.name) << where;
    EXPECT_EQ(exchange.operation, operation.name) << where;
  }
}

void expect_same(const Run& run, const std::string& where) {
  ASSERT_EQ(run.recorded.size(), run.seen.posts.size() + run.seen.dal_calls.size()) << where;
  for (const Exchange& exchange : run.recorded) {
    if (exchange.route == ExchangeRoute::kSoap) {
      ASSERT_EQ(run.seen.posts.size(), 1U) << where;
      EXPECT_EQ(exchange.request.text, run.seen.posts[0].text) << where;
      EXPECT_EQ(exchange.soap_action, run.seen.posts[0].soap_action) << where;
      EXPECT_EQ(exchange.object, "") << where;
    } else {
      ASSERT_EQ(run.seen.dal_calls.size(), 1U) << where;
      EXPECT_EQ(exchange.object, run.seen.dal_calls[0].object) << where;
      EXPECT_EQ(exchange.object_operation, run.seen.dal_calls[0].operation) << where;
      EXPECT_EQ(exchange.arguments.size(), run.seen.dal_calls[0].arguments.size()) << where;
      EXPECT_EQ(exchange.url, "http://dal.example") << where;
    }
    EXPECT_EQ(exchange.outcome, Outcome::kAnswered) << where;
  }
}

/// How many operations were seen to exchange something on this route.
int named_operations(bool dal, std::vector<std::string>* unseen) {
  automation::detail::World world;
  const platform::ScopedPlatform scope(world.platform());
  session() = SessionState();
  int count = 0;
  for (const ClassInfo* info : automation::classes()) {
    if (info->predeclared) continue;
    for (const Member& member : info->members) {
      if (member.kind != automation::MemberKind::kOperation) continue;
      const int before = count;
      for (const MarkForm form : {MarkForm::kText, MarkForm::kNumber, MarkForm::kArray}) {
        const Run each = run(world, *info, member, dal, form);
        expect_named(each, *info, member, dal);
        if (each.seen.empty()) continue;
        expect_same(each, info->name + "." + member.name);
        ++count;
        break;
      }
      if (count == before) unseen->push_back(info->name + "." + member.name);
    }
  }
  session() = SessionState();
  return count;
}

// These send nothing at all, and the other 202 of the 205 do.
auto are_the_silent_ones() {
  return testing::ElementsAre("BVProjectConnector.setStatusToNegotiating",
                              "BVProjectConnector.setStatusToLostOpportunity",
                              "BVHeartBeatConnector.UpdateHeartBeatTime");
}

TEST(AllOperations, AreRecordedUnderTheirOwnNamesBySoap) {
  std::vector<std::string> unseen;
  EXPECT_EQ(named_operations(false, &unseen), 202);
  EXPECT_THAT(unseen, are_the_silent_ones());
}

TEST(AllOperations, AreRecordedUnderTheirOwnNamesByDal) {
  std::vector<std::string> unseen;
  EXPECT_EQ(named_operations(true, &unseen), 202);
  EXPECT_THAT(unseen, are_the_silent_ones());
}

}  // namespace
}  // namespace bvconn::test
