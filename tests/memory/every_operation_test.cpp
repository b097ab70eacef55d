#include <gtest/gtest.h>

#include <string>

#include "bvconn/automation/interface.h"
#include "bvconn/dal/bv_connector_object.h"
#include "memory/quiet_world.h"
#include "support/prepared_call.h"
#include "support/watched_memory.h"

// Every operation of the interface, with each of its allocations failing in turn: whatever it makes
// of that, nothing but an Error leaves it.
namespace bvconn {
namespace {

using automation::Member;
using test::FailingMemory;
using test::PreparedCall;
using test::QuietWorld;
using test::Shortage;

constexpr std::string_view kText = "a-text-of-more-than-fifteen-letters";

struct Ending {
  bool struck = false;
  bool foreign = false;
};

Ending ending_of(PreparedCall& operation, std::size_t failing, Shortage shortage) {
  Ending ending;
  const FailingMemory memory(failing, shortage);
  try {
    operation.run();
  } catch (const Error&) {
  } catch (...) {
    ending.foreign = true;
  }
  ending.struck = FailingMemory::has_struck();
  return ending;
}

const char* const kReply =
    "<e:Envelope xmlns:e='http://schemas.xmlsoap.org/soap/envelope/'><e:Body><response>"
    "<return>an http: answer of more than fifteen letters</return></response></e:Body>"
    "</e:Envelope>";

const char* const kFault =
    "<e:Envelope xmlns:e='http://schemas.xmlsoap.org/soap/envelope/'><e:Body><e:Fault>"
    "<faultcode>10041</faultcode><faultstring>the server's words, of some length</faultstring>"
    "</e:Fault></e:Body></e:Envelope>";

void expect_errors_alone(const automation::ClassInfo& info, const Member& member, const char* reply,
                         bool dal, Shortage shortage) {
  const std::string name = info.name + "." + member.name;
  for (std::size_t failing = 1;; ++failing) {
    ASSERT_LT(failing, 2000U) << name << " takes more memory than a call can";
    const QuietWorld world(reply);
    if (dal) {
      BVConnectorObject().InitTorvexDAL(kText);
      BVConnectorObject().UseTorvexDAL();
    }
    PreparedCall operation(info, member);
    const Ending ending = ending_of(operation, failing, shortage);
    EXPECT_FALSE(ending.foreign) << name << " lets it out at allocation " << failing;
    if (!ending.struck) return;
  }
}

void expect_errors_alone(const char* reply, bool dal, Shortage shortage) {
  std::size_t operations = 0;
  for (const automation::ClassInfo* info : automation::classes()) {
    if (info->name == "BVConnectorObject") continue;
    for (const Member& member : info->members) {
      if (member.kind != automation::MemberKind::kOperation) continue;
      expect_errors_alone(*info, member, reply, dal, shortage);
      ++operations;
    }
  }
  EXPECT_EQ(operations, 205U);
}

TEST(EveryOperation, LetsErrorsAloneOutOnTheSoapRoute) {
  expect_errors_alone(kReply, false, Shortage::kOnce);
}

TEST(EveryOperation, LetsErrorsAloneOutOnTheSoapRouteWhenAllMemoryIsGone) {
  expect_errors_alone(kReply, false, Shortage::kOnward);
}

TEST(EveryOperation, LetsErrorsAloneOutForAFault) {
  expect_errors_alone(kFault, false, Shortage::kOnce);
}

TEST(EveryOperation, LetsErrorsAloneOutOnTheDataAccessLayerRoute) {
  expect_errors_alone(kReply, true, Shortage::kOnce);
}

}  // namespace
}  // namespace bvconn
