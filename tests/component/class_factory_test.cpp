#include "bvconn/component/class_factory.h"

#include <gtest/gtest.h>

#include <new>
#include <thread>
#include <vector>

#include "bvconn/component/class_table.h"
#include "bvconn/component/lifetime.h"
#include "bvconn/component/soap_objects.h"
#include "bvconn/platform/error.h"
#include "component/host.h"

namespace bvconn::component {
namespace {

using test::Held;

Held<IClassFactoryAbi> factory_of_nodes() {
  return Held<IClassFactoryAbi>(
      make_class_factory([] { return make_node_object(SoapNode::make("made")); }));
}

TEST(ClassFactory, MakesAnObjectForEachRequest) {
  const auto factory = factory_of_nodes();
  void* first = nullptr;
  void* second = nullptr;
  ASSERT_EQ(factory->CreateInstance(nullptr, &IDispatchAbi::kId, &first), kOk);
  ASSERT_EQ(factory->CreateInstance(nullptr, &IUnknownAbi::kId, &second), kOk);
  const Held<IDispatchAbi> object(static_cast<IDispatchAbi*>(first));
  const Held<IUnknownAbi> other(static_cast<IUnknownAbi*>(second));
  EXPECT_EQ(test::get(*object, u"Name").text(), u"made");
  EXPECT_NE(first, second);
  EXPECT_EQ(object->AddRef(), 2u);
  EXPECT_EQ(object->Release(), 1u);
}

TEST(ClassFactory, RefusesAggregationAndNullPointers) {
  const auto factory = factory_of_nodes();
  void* object = &object;
  EXPECT_EQ(factory->CreateInstance(factory.get(), &IUnknownAbi::kId, &object), kNoAggregation);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(factory->CreateInstance(nullptr, nullptr, &object), kNullPointer);
  EXPECT_EQ(factory->CreateInstance(nullptr, &IUnknownAbi::kId, nullptr), kNullPointer);
}

TEST(ClassFactory, AnInterfaceThatTheObjectHasNotLeavesNoObject) {
  const auto factory = factory_of_nodes();
  void* object = &object;
  EXPECT_EQ(factory->CreateInstance(nullptr, &IConnectionPointAbi::kId, &object), kNoInterface);
  EXPECT_EQ(object, nullptr);
}

TEST(ClassFactory, IsItselfAnObjectWithTwoInterfaces) {
  const auto factory = factory_of_nodes();
  const auto unknown = test::ask<IUnknownAbi>(*factory);
  EXPECT_EQ(test::ask<IClassFactoryAbi>(*unknown).get(), factory.get());
  EXPECT_EQ(test::ask<IDispatchAbi>(*factory), nullptr);
}

Hresult failure_of(ObjectMaker maker) {
  const Held<IClassFactoryAbi> factory(make_class_factory(std::move(maker)));
  void* object = nullptr;
  return factory->CreateInstance(nullptr, &IUnknownAbi::kId, &object);
}

TEST(ClassFactory, WhatTheMakerRaisesBecomesAResult) {
  EXPECT_EQ(failure_of([]() -> IDispatchAbi* {
              throw Error(result_from_bits(0x80041003), "SessionLogger", "No log file");
            }),
            result_from_bits(0x80041003));
  // A small number is no failure in the sign's sense.
  EXPECT_EQ(failure_of([]() -> IDispatchAbi* { throw Error(13, "BVConn", "Type mismatch"); }),
            kFailed);
  EXPECT_EQ(failure_of([]() -> IDispatchAbi* { throw std::bad_alloc(); }), kOutOfMemory);
  EXPECT_EQ(failure_of([]() -> IDispatchAbi* { throw 1; }), kFailed);
}

// Programs that were made with the type library ask for the interfaces that it describes.
TEST(ClassFactory, ObjectsGiveTheirMembersForTheIdentifierOfTheTypeLibrary) {
  for (const ComponentClass& row : component_classes()) {
    const Held<IDispatchAbi> object(maker_of(row.id)());
    void* members = nullptr;
    ASSERT_EQ(object->QueryInterface(&row.interface_id, &members), kOk) << row.name;
    EXPECT_EQ(members, object.get()) << row.name;
    object->Release();
    for (const ComponentClass& other : component_classes()) {
      if (other.name == row.name) continue;
      EXPECT_EQ(object->QueryInterface(&other.interface_id, &members), kNoInterface);
    }
    EXPECT_EQ(object->QueryInterface(&kNullGuid, &members), kNoInterface);
  }
}

TEST(ClassFactory, WhatComesOutOfCallsGivesItsMembersTheSameWay) {
  const Held<IDispatchAbi> node(make_node_object(SoapNode::make("n")));
  const auto nodes = test::get(*node, u"Nodes");
  const Guid interface_id = interface_id_of("SoapNodes");
  void* members = nullptr;
  ASSERT_EQ(nodes.object().QueryInterface(&interface_id, &members), kOk);
  EXPECT_EQ(members, &nodes.object());
  nodes.object().Release();
}

TEST(Lifetime, TheLibraryStaysWhileAnObjectLives) {
  ASSERT_EQ(can_unload(), kOk);
  {
    const Held<IDispatchAbi> node(make_node_object(SoapNode::make("n")));
    EXPECT_EQ(can_unload(), kFalse);
    const auto nodes = test::get(*node, u"Nodes");
    EXPECT_EQ(can_unload(), kFalse);
  }
  EXPECT_EQ(can_unload(), kOk);
  {
    const auto factory = factory_of_nodes();
    EXPECT_EQ(can_unload(), kFalse);
  }
  EXPECT_EQ(can_unload(), kOk);
}

TEST(Lifetime, TheLibraryStaysWhileItIsLocked) {
  auto factory = factory_of_nodes();
  EXPECT_EQ(factory->LockServer(1), kOk);
  EXPECT_EQ(factory->LockServer(1), kOk);
  factory.reset();
  EXPECT_EQ(can_unload(), kFalse);
  factory = factory_of_nodes();
  EXPECT_EQ(factory->LockServer(0), kOk);
  EXPECT_EQ(factory->LockServer(0), kOk);
  EXPECT_EQ(factory->LockServer(0), kUnexpected);
  factory.reset();
  EXPECT_EQ(can_unload(), kOk);
}

TEST(Lifetime, CountsHoldWithSeveralThreads) {
  const auto factory = factory_of_nodes();
  constexpr int kThreads = 4;
  constexpr int kRounds = 2000;
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&factory] {
      for (int round = 0; round < kRounds; ++round) {
        factory->AddRef();
        factory->LockServer(1);
        factory->LockServer(0);
        factory->Release();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(factory->AddRef(), 2u);
  EXPECT_EQ(factory->Release(), 1u);
  EXPECT_EQ(factory->LockServer(0), kUnexpected);
}

}  // namespace
}  // namespace bvconn::component
