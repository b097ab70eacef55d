#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "bvconn/component/class_factory.h"
#include "bvconn/component/class_table.h"
#include "bvconn/component/outside_objects.h"
#include "bvconn/component/soap_objects.h"
#include "component/host.h"
#include "support/idle_transport.h"
#include "tools/typelib/members.h"

namespace bvconn::typelib {
namespace {

using test::Held;
namespace component = bvconn::component;

class SilentTransport final : public test::IdleTransport {
 public:
  std::string Receive(std::string_view) override { return {}; }
};

component::IDispatchAbi* make(const std::string& name) {
  if (name == "SoapNodes") return component::make_nodes_object(SoapNode::make("a").Nodes());
  if (name == "SoapEnvelope") return component::make_envelope_object(SoapEnvelope::make());
  if (name == "HTTPTransport") {
    return component::make_transport_object(std::make_shared<SilentTransport>());
  }
  return component::maker_of(component::find_component_class("BVConn." + name)->id)();
}

std::uint16_t flag_of(Access access) {
  switch (access) {
    case Access::kGet:
      return component::call_flag::kPropertyGet;
    case Access::kPut:
      return component::call_flag::kPropertyPut;
    case Access::kPutReference:
      return component::call_flag::kPropertyPutReference;
    case Access::kMethod:
      break;
  }
  return component::call_flag::kMethod;
}

// A call that no member takes, so that nothing happens: only whether there is such a member, and
// whether it is called in this way, comes out.
component::Hresult call_with_too_many(component::IDispatchAbi& object, std::int32_t id,
                                      Access access) {
  const std::vector<component::VariantRecord> many(20);
  if (access == Access::kMethod || access == Access::kGet) {
    return test::call_id(object, id, flag_of(access), many).result;
  }
  return test::call_id(object, id, flag_of(access), many, {{component::kPropertyPutValue}, {{}}})
      .result;
}

bool is_taken(component::IDispatchAbi& object, const TypedMember& member) {
  if (member.access == Access::kGet && member.arguments.empty()) {
    return test::call_id(object, member.id, flag_of(Access::kGet)).result == component::kOk;
  }
  return call_with_too_many(object, member.id, member.access) == component::kBadParameterCount;
}

// The object's own numbers of the member's name and of the names of its arguments.
std::vector<component::DispatchId> numbers_of(component::IDispatchAbi& object,
                                              const TypedMember& member) {
  std::vector<std::u16string> names{{member.name.begin(), member.name.end()}};
  for (const TypedArgument& argument : member.arguments) {
    if (&argument == &member.arguments.back() && member.access != Access::kMethod &&
        member.access != Access::kGet) {
      break;  // the value has no name
    }
    names.emplace_back(argument.name.begin(), argument.name.end());
  }
  std::vector<char16_t*> pointers;
  for (std::u16string& name : names) pointers.push_back(name.data());
  std::vector<component::DispatchId> ids(names.size(), component::kUnknownId);
  object.GetIDsOfNames(&component::kNullGuid, pointers.data(),
                       static_cast<std::uint32_t>(pointers.size()), 0, ids.data());
  return ids;
}

TEST(OutsideInterfaces, AreThoseOfAllObjectsThatAreNoPublicClass) {
  std::vector<std::string> names;
  for (const TypedInterface& each : outside_interfaces()) {
    names.push_back(each.name);
    EXPECT_EQ(each.id, component::interface_id_of(each.name)) << each.name;
  }
  EXPECT_EQ(names, (std::vector<std::string>{"SoapNode", "XMLDocument", "Support", "SoapNodes",
                                             "SoapEnvelope", "HTTPTransport"}));
}

TEST(OutsideInterfaces, HaveTheNumbersOfTheLivingObjects) {
  for (const TypedInterface& each : outside_interfaces()) {
    const Held<component::IDispatchAbi> object(make(each.name));
    for (const TypedMember& member : each.members) {
      const auto numbers = numbers_of(*object, member);
      std::vector<component::DispatchId> expected{member.id};
      for (std::size_t i = 1; i < numbers.size(); ++i) {
        expected.push_back(static_cast<component::DispatchId>(i - 1));
      }
      EXPECT_EQ(numbers, expected) << each.name << "." << member.name;
    }
  }
}

TEST(OutsideInterfaces, AreCalledAsTheLivingObjectsAre) {
  for (const TypedInterface& each : outside_interfaces()) {
    const Held<component::IDispatchAbi> object(make(each.name));
    for (const TypedMember& member : each.members) {
      EXPECT_TRUE(is_taken(*object, member)) << each.name << "." << member.name;
    }
  }
}

// What an object can be asked for is all in its interface: numbers run from 1 without a gap.
TEST(OutsideInterfaces, LeaveOutNothingThatTheLivingObjectsHave) {
  for (const TypedInterface& each : outside_interfaces()) {
    const Held<component::IDispatchAbi> object(make(each.name));
    for (const Access access :
         {Access::kMethod, Access::kGet, Access::kPut, Access::kPutReference}) {
      for (std::int32_t id = -10; id < 30; ++id) {
        const bool is_known = std::ranges::any_of(each.members, [&](const TypedMember& member) {
          const bool reads = access == Access::kMethod || access == Access::kGet;
          const bool is_read = member.access == Access::kMethod || member.access == Access::kGet;
          return member.id == id && (member.access == access || (reads && is_read));
        });
        if (is_known) continue;
        EXPECT_EQ(call_with_too_many(*object, id, access), component::kMemberNotFound)
            << each.name << " " << id;
      }
    }
  }
}

}  // namespace
}  // namespace bvconn::typelib
