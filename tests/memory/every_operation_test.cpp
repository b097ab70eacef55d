#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "bvconn/automation/interface.h"
#include "bvconn/dal/bv_connector_object.h"
#include "memory/quiet_world.h"
#include "support/watched_memory.h"

// Every operation of the interface, with each of its allocations failing in turn: whatever it makes
// of that, nothing but an Error leaves it.
namespace bvconn {
namespace {

using automation::Member;
using automation::Value;
using automation::ValueType;
using test::FailingMemory;
using test::QuietWorld;
using test::Shortage;

constexpr std::string_view kText = "a-text-of-more-than-fifteen-letters";

/// An argument that takes memory where its type can.
Value sample(ValueType type, XMLDocument& document) {
  switch (type) {
    case ValueType::kBoolean:
      return Variant(false);
    case ValueType::kInt16:
      return Variant(std::int16_t{0});
    case ValueType::kInt32:
      return Variant(std::int32_t{0});
    case ValueType::kStringArray:
      return StringArray{std::string(kText), std::string(kText)};
    case ValueType::kSoapNode: {
      const SoapNode node = SoapNode::make("Project");
      node.Nodes().Create("Name", kText);
      return Variant(node);
    }
    case ValueType::kXMLDocument:
      return &document;
    default:
      return Variant(std::string(kText));
  }
}

/// An operation ready to run, so that all memory that is taken from then on is the operation's own.
class Prepared {
 public:
  Prepared(const automation::ClassInfo& info, const Member& member)
      : member_(member), object_(info.make()) {
    for (const auto& argument : member.arguments)
      values_.push_back(sample(argument.type, document_));
    const auto& spread = member.thunks.aggregate;
    if (spread) aggregate_ = spread->make();
    for (std::size_t index = 0; index < values_.size(); ++index) {
      const bool is_field =
          spread && index >= spread->first && index - spread->first < spread->assign.size();
      if (is_field) spread->assign[index - spread->first](aggregate_.get(), values_[index]);
      if (!is_field) slots_.push_back(&values_[index]);
      if (is_field && index == spread->first) slots_.push_back(aggregate_.get());
    }
  }

  void run() { member_.thunks.invoke(object_.get(), slots_.data()); }

 private:
  const Member& member_;
  std::shared_ptr<void> object_;
  XMLDocument document_;
  std::vector<Value> values_;
  std::shared_ptr<void> aggregate_;
  std::vector<const void*> slots_;
};

struct Ending {
  bool struck = false;
  bool foreign = false;
};

Ending ending_of(Prepared& operation, std::size_t failing, Shortage shortage) {
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
    Prepared operation(info, member);
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
