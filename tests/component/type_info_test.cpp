#include "bvconn/component/type_info.h"

#include <gtest/gtest.h>

#include <string>

#include "bvconn/component/class_factory.h"
#include "bvconn/component/class_table.h"
#include "bvconn/component/soap_objects.h"
#include "component/host.h"

namespace bvconn::component {
namespace {

using test::Held;

Held<IDispatchAbi> made(const ComponentClass& row) {
  return Held<IDispatchAbi>(maker_of(row.id)());
}

/// What the object gives for the identifier, counted once.
void* given(IUnknownAbi& object, const Guid& id) {
  void* found = nullptr;
  if (object.QueryInterface(&id, &found) != kOk) return nullptr;
  object.Release();
  return found;
}

// A client that was made with the type library asks for the interface that it knows from there.
TEST(TypeInfo, EveryObjectAnswersForTheIdentifierOfItsMembersAlone) {
  for (const ComponentClass& row : component_classes()) {
    const Held<IDispatchAbi> object = made(row);
    EXPECT_EQ(given(*object, row.interface_id), object.get()) << row.name;
    for (const ComponentClass& other : component_classes()) {
      EXPECT_EQ(given(*object, other.id), nullptr) << row.name << " " << other.name;
      if (other.name == row.name) continue;
      EXPECT_EQ(given(*object, other.interface_id), nullptr) << row.name << " " << other.name;
    }
    EXPECT_EQ(given(*object, kNullGuid), nullptr) << row.name;
  }
}

// It would tell browsers that any page may use the objects.
TEST(TypeInfo, NoObjectCallsItselfSafeForScriptsOfAnyOrigin) {
  constexpr Guid kObjectSafety{
      0xCB5BDC81, 0x93C1, 0x11CF, {0x8F, 0x20, 0x00, 0x80, 0x5F, 0x2C, 0xD0, 0x64}};
  for (const ComponentClass& row : component_classes()) {
    EXPECT_EQ(given(*made(row), kObjectSafety), nullptr) << row.name;
  }
}

TEST(TypeInfo, ResultsAnswerForTheIdentifierOfTheirMembers) {
  const Held<IDispatchAbi> nodes(make_nodes_object(SoapNode::make("a").Nodes()));
  EXPECT_EQ(given(*nodes, interface_id_of("SoapNodes")), nodes.get());
  EXPECT_EQ(given(*nodes, interface_id_of("SoapNode")), nullptr);
  const Held<IDispatchAbi> envelope(make_envelope_object(SoapEnvelope::make()));
  EXPECT_EQ(given(*envelope, interface_id_of("SoapEnvelope")), envelope.get());
}

TEST(TypeInfo, TheLongerAndTheShorterInterfaceOfAClassAreOne) {
  const Held<IDispatchAbi> object = made(component_classes().front());
  void* const longer = given(*object, IProvideClassInfo2Abi::kId);
  ASSERT_NE(longer, nullptr);
  EXPECT_EQ(given(*object, IProvideClassInfo2Abi::kShorterId), longer);
}

TEST(TypeInfo, TellsTheInterfaceOfTheEventsOfTheOneClassThatHasSome) {
  for (const ComponentClass& row : component_classes()) {
    const Held<IDispatchAbi> object = made(row);
    const auto info = test::ask<IProvideClassInfo2Abi>(*object);
    ASSERT_TRUE(info) << row.name;
    Guid id = row.id;
    const bool has_events = row.name == "BVHeartBeatConnector";
    EXPECT_EQ(info->GetGUID(IProvideClassInfo2Abi::kEvents, &id), has_events ? kOk : kUnexpected);
    EXPECT_EQ(id, has_events ? kHeartBeatEvents : kNullGuid) << row.name;
    EXPECT_EQ(info->GetGUID(2, &id), kInvalidArgument);
    EXPECT_EQ(info->GetGUID(IProvideClassInfo2Abi::kEvents, nullptr), kNullPointer);
  }
}

// The type library lies in the file that Windows loads; elsewhere, and in a program that the
// library is linked into, there is none.
TEST(TypeInfo, IsNotThereWithoutATypeLibrary) {
  const Held<IDispatchAbi> object = made(component_classes().front());
  std::uint32_t count = 7;
  EXPECT_EQ(object->GetTypeInfoCount(&count), kOk);
  EXPECT_EQ(count, 0u);
  void* info = &count;
  EXPECT_EQ(object->GetTypeInfo(0, 0, &info), kBadIndex);
  EXPECT_EQ(info, nullptr);
  info = &count;
  EXPECT_EQ(test::ask<IProvideClassInfo2Abi>(*object)->GetClassInfo(&info), kBadIndex);
  EXPECT_EQ(info, nullptr);
}

}  // namespace
}  // namespace bvconn::component
