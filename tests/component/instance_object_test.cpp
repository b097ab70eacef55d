#include "bvconn/component/instance_object.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "bvconn/automation/class_builder.h"
#include "bvconn/component/class_factory.h"
#include "bvconn/component/lifetime.h"
#include "component/host.h"
#include "component/throwing_object.h"

namespace bvconn::component {
namespace {

namespace vt = variant_type;
using automation::ClassBuilder;
using automation::ClassInfo;
using test::CountingSink;
using test::Held;
using test::HostString;
using test::Outcome;

/// Stands for a class of the interface.
class Counter {
 public:
  ~Counter() {
    if (Overflow) Overflow();
  }
  std::string Add(std::string_view label, std::int32_t amount, bool quiet) {
    total_ += amount;
    if (total_ > 100 && Overflow) Overflow();
    return std::string(label) + (quiet ? " quiet" : " loud");
  }
  std::int32_t Total() const { return total_; }
  void Total(std::int32_t value) { total_ = value; }
  bool IsDisabled(std::string_view method) { return method == "Add"; }
  void Secret(std::string_view value) { secret_ = value; }

  std::function<void()> Overflow;

 private:
  std::int32_t total_ = 0;
  std::string secret_;
};

const ClassInfo& counter_class() {
  static const ClassInfo kInfo =
      ClassBuilder<Counter>("Counter")
          .operation<&Counter::Add>("Add", {"label", "amount", "quiet?"})
          .event<&Counter::Overflow>("Overflow")
          .property<std::int32_t, &Counter::Total, &Counter::Total>("Total")
          .property_with<&Counter::IsDisabled>("IsDisabled", {"method"})
          .write_only<&Counter::Secret>("Secret")
          .take();
  return kInfo;
}

constexpr Guid kCounterEvents{0x11111111, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};

class Instance : public testing::Test {
 protected:
  Outcome add(std::int32_t amount) {
    return test::call(*object, u"Add", {test::of_string(label), test::of_int32(amount)});
  }

  Held<IDispatchAbi> object{make_instance_object(counter_class(), kCounterEvents)};
  HostString label{u"hot"};
};

TEST_F(Instance, NumbersOfMembersAreTheirSlotsFromOneOn) {
  EXPECT_EQ(test::find_id(*object, u"Add"), 1);
  EXPECT_EQ(test::find_id(*object, u"Overflow"), std::nullopt);
  EXPECT_EQ(test::find_id(*object, u"Total"), 3);
  EXPECT_EQ(test::find_id(*object, u"IsDisabled"), 4);
  EXPECT_EQ(test::find_id(*object, u"Secret"), 5);
}

TEST_F(Instance, OperationsAndPropertiesReachTheInstance) {
  EXPECT_EQ(add(5).text(), u"hot loud");
  EXPECT_EQ(
      test::call(*object, u"Add", {test::of_string(label), test::of_int32(2), test::of_boolean(-1)})
          .text(),
      u"hot quiet");
  EXPECT_EQ(test::get(*object, u"Total").value.value.int32, 7);
  EXPECT_EQ(test::put(*object, u"Total", test::of_int32(40)).result, kOk);
  EXPECT_EQ(test::get(*object, u"Total").value.value.int32, 40);
}

TEST_F(Instance, APropertyWithAnArgumentIsReadOrCalled) {
  HostString method(u"Add");
  for (const std::uint16_t flag : {call_flag::kMethod, call_flag::kPropertyGet}) {
    const Outcome outcome = test::call_id(*object, 4, flag, {test::of_string(method)});
    EXPECT_EQ(outcome.value.type, vt::kBoolean);
    EXPECT_EQ(outcome.value.value.boolean, kVariantTrue);
  }
}

TEST_F(Instance, AWriteOnlyPropertyIsNotRead) {
  HostString value(u"s");
  EXPECT_EQ(test::put(*object, u"Secret", test::of_string(value)).result, kOk);
  EXPECT_EQ(test::get(*object, u"Secret").result, kMemberNotFound);
}

TEST_F(Instance, IdentityIsTheSameThroughEveryInterface) {
  const auto unknown = test::ask<IUnknownAbi>(*object);
  const auto container = test::ask<IConnectionPointContainerAbi>(*object);
  ASSERT_NE(container, nullptr);
  EXPECT_EQ(test::ask<IUnknownAbi>(*container).get(), unknown.get());
  EXPECT_EQ(test::ask<IDispatchAbi>(*container).get(), object.get());
  EXPECT_EQ(test::ask<IConnectionPointContainerAbi>(*unknown).get(), container.get());
}

TEST_F(Instance, AnInterfaceThatItHasNotIsRefusedAndTheOutcomeEmpty) {
  void* found = this;
  EXPECT_EQ(object->QueryInterface(&IClassFactoryAbi::kId, &found), kNoInterface);
  EXPECT_EQ(found, nullptr);
  EXPECT_EQ(object->QueryInterface(&IUnknownAbi::kId, nullptr), kNullPointer);
  EXPECT_EQ(object->QueryInterface(nullptr, &found), kNullPointer);
}

TEST_F(Instance, ReferencesAreCountedThroughEveryInterface) {
  EXPECT_EQ(object->AddRef(), 2u);
  const auto container = test::ask<IConnectionPointContainerAbi>(*object);
  EXPECT_EQ(container->AddRef(), 4u);
  EXPECT_EQ(container->Release(), 3u);
  EXPECT_EQ(object->Release(), 2u);
}

class Events : public Instance {
 protected:
  Events() {
    const auto container = test::ask<IConnectionPointContainerAbi>(*object);
    IConnectionPointAbi* found = nullptr;
    EXPECT_EQ(container->FindConnectionPoint(&kCounterEvents, &found), kOk);
    point.reset(found);
  }

  CountingSink sink{kCounterEvents};
  Held<IConnectionPointAbi> point;
};

TEST_F(Events, AConnectedSinkIsCalledUntilItIsLetGo) {
  std::uint32_t cookie = 0;
  ASSERT_EQ(point->Advise(&sink, &cookie), kOk);
  EXPECT_NE(cookie, 0u);
  EXPECT_EQ(sink.references, 2u);
  add(50);
  EXPECT_TRUE(sink.raised.empty());
  add(51);
  EXPECT_EQ(sink.raised, (std::vector<DispatchId>{1}));
  EXPECT_EQ(sink.last_flags, call_flag::kMethod);
  EXPECT_EQ(sink.last_argument_count, 0u);
  ASSERT_EQ(point->Unadvise(cookie), kOk);
  EXPECT_EQ(sink.references, 1u);
  add(1);
  EXPECT_EQ(sink.raised.size(), 1u);
  EXPECT_EQ(point->Unadvise(cookie), kNoConnection);
}

TEST_F(Events, EverySinkIsCalledWhateverAnotherAnswers) {
  CountingSink second{kCounterEvents};
  sink.answer = kFailed;
  std::uint32_t first_cookie = 0;
  std::uint32_t second_cookie = 0;
  ASSERT_EQ(point->Advise(&sink, &first_cookie), kOk);
  ASSERT_EQ(point->Advise(&second, &second_cookie), kOk);
  EXPECT_NE(first_cookie, second_cookie);
  EXPECT_EQ(add(101).result, kOk);
  EXPECT_EQ(sink.raised.size(), 1u);
  EXPECT_EQ(second.raised.size(), 1u);
  point->Unadvise(first_cookie);
  point->Unadvise(second_cookie);
}

// So listen hosts that know no more of an event than its number.
TEST_F(Events, ASinkThatAnswersForDispatchAloneIsCalledToo) {
  CountingSink plain{kNullGuid};
  std::uint32_t cookie = 0;
  ASSERT_EQ(point->Advise(&plain, &cookie), kOk);
  EXPECT_EQ(plain.references, 2u);
  add(101);
  EXPECT_EQ(plain.raised, (std::vector<DispatchId>{1}));
  ASSERT_EQ(point->Unadvise(cookie), kOk);
  EXPECT_EQ(plain.references, 1u);
}

TEST_F(Events, ASinkThatThrowsKeepsTheEventFromNoOther) {
  test::ThrowingObject throwing(true);
  std::uint32_t cookies[2] = {};
  ASSERT_EQ(point->Advise(throwing.get(), &cookies[0]), kOk);
  ASSERT_EQ(point->Advise(&sink, &cookies[1]), kOk);
  EXPECT_EQ(add(101).result, kOk);
  EXPECT_EQ(throwing.calls, 1);
  EXPECT_EQ(sink.raised.size(), 1u);
  for (const std::uint32_t cookie : cookies) point->Unadvise(cookie);
}

TEST_F(Events, ASinkThatIsNotCalledByNumberIsRefused) {
  // A connection point is an object that is not.
  const std::uint32_t references = point->AddRef();
  std::uint32_t cookie = 99;
  EXPECT_EQ(point->Advise(point.get(), &cookie), kCannotConnect);
  EXPECT_EQ(cookie, 0u);
  EXPECT_EQ(point->Release(), references - 1);
  EXPECT_EQ(point->Advise(nullptr, &cookie), kNullPointer);
  EXPECT_EQ(point->Advise(&sink, nullptr), kNullPointer);
}

TEST_F(Events, AConnectionPointTellsItsInterfaceAndItsOwner) {
  Guid id{};
  EXPECT_EQ(point->GetConnectionInterface(&id), kOk);
  EXPECT_TRUE(id == kCounterEvents);
  IConnectionPointContainerAbi* owner = nullptr;
  ASSERT_EQ(point->GetConnectionPointContainer(&owner), kOk);
  const Held<IConnectionPointContainerAbi> held(owner);
  EXPECT_EQ(test::ask<IDispatchAbi>(*held).get(), object.get());
  EXPECT_EQ(point->GetConnectionInterface(nullptr), kNullPointer);
  EXPECT_EQ(point->GetConnectionPointContainer(nullptr), kNullPointer);
}

TEST_F(Events, AConnectionPointIsAnObjectOfItsOwn) {
  const auto unknown = test::ask<IUnknownAbi>(*point);
  EXPECT_EQ(test::ask<IConnectionPointAbi>(*unknown).get(), point.get());
  EXPECT_EQ(test::ask<IDispatchAbi>(*point), nullptr);
  EXPECT_NE(unknown.get(), test::ask<IUnknownAbi>(*object).get());
}

TEST_F(Events, AConnectionPointKeepsItsOwnerAlive) {
  object.reset();
  Guid id{};
  EXPECT_EQ(point->GetConnectionInterface(&id), kOk);
  EXPECT_EQ(point->AddRef(), 2u);
  EXPECT_EQ(point->Release(), 1u);
}

TEST_F(Events, ConnectionsAndPointsAreEnumerated) {
  std::uint32_t cookie = 0;
  ASSERT_EQ(point->Advise(&sink, &cookie), kOk);
  IEnumConnectionsAbi* connections = nullptr;
  ASSERT_EQ(point->EnumConnections(&connections), kOk);
  const Held<IEnumConnectionsAbi> held_connections(connections);
  ConnectionRecord connection{};
  EXPECT_EQ(connections->Next(1, &connection, nullptr), kOk);
  EXPECT_EQ(connection.cookie, cookie);
  EXPECT_EQ(connection.sink, &sink);
  connection.sink->Release();
  EXPECT_EQ(connections->Next(1, &connection, nullptr), kFalse);
  point->Unadvise(cookie);

  const auto container = test::ask<IConnectionPointContainerAbi>(*object);
  IEnumConnectionPointsAbi* points = nullptr;
  ASSERT_EQ(container->EnumConnectionPoints(&points), kOk);
  const Held<IEnumConnectionPointsAbi> held_points(points);
  IConnectionPointAbi* only = nullptr;
  EXPECT_EQ(points->Next(1, &only, nullptr), kOk);
  EXPECT_EQ(only, point.get());
  only->Release();
  EXPECT_EQ(points->Next(1, &only, nullptr), kFalse);
}

TEST_F(Events, OtherConnectionPointsAreNotFound) {
  const auto container = test::ask<IConnectionPointContainerAbi>(*object);
  IConnectionPointAbi* found = point.get();
  EXPECT_EQ(container->FindConnectionPoint(&kHeartBeatEvents, &found), kNoConnection);
  EXPECT_EQ(found, nullptr);
  EXPECT_EQ(container->FindConnectionPoint(nullptr, &found), kNullPointer);
  EXPECT_EQ(container->FindConnectionPoint(&kCounterEvents, nullptr), kNullPointer);
  EXPECT_EQ(container->EnumConnectionPoints(nullptr), kNullPointer);
}

TEST_F(Events, WhatTheInstanceRaisesOnItsWayOutStillArrives) {
  std::uint32_t cookie = 0;
  ASSERT_EQ(point->Advise(&sink, &cookie), kOk);
  point.reset();
  object.reset();
  EXPECT_EQ(sink.raised.size(), 1u);
  EXPECT_EQ(sink.references, 1u);
}

/// Lets go of the host's last reference while the event is being raised.
class DroppingSink final : public IDispatchAbi {
 public:
  explicit DroppingSink(Held<IDispatchAbi>& dropped) : dropped_(dropped) {}
  virtual ~DroppingSink() = default;
  Hresult BVCONN_CALL QueryInterface(const Guid*, void** object) noexcept override {
    *object = static_cast<IDispatchAbi*>(this);
    return kOk;
  }
  std::uint32_t BVCONN_CALL AddRef() noexcept override { return 2; }
  std::uint32_t BVCONN_CALL Release() noexcept override { return 1; }
  Hresult BVCONN_CALL GetTypeInfoCount(std::uint32_t*) noexcept override { return kNotImplemented; }
  Hresult BVCONN_CALL GetTypeInfo(std::uint32_t, std::uint32_t, void**) noexcept override {
    return kNotImplemented;
  }
  Hresult BVCONN_CALL GetIDsOfNames(const Guid*, char16_t**, std::uint32_t, std::uint32_t,
                                    DispatchId*) noexcept override {
    return kNotImplemented;
  }
  Hresult BVCONN_CALL Invoke(DispatchId, const Guid*, std::uint32_t, std::uint16_t, DispatchParams*,
                             VariantRecord*, ExceptionRecord*, std::uint32_t*) noexcept override {
    dropped_.reset();
    return kOk;
  }

 private:
  Held<IDispatchAbi>& dropped_;
};

TEST_F(Events, ASinkMayLetGoOfTheObjectThatCallsIt) {
  DroppingSink dropping(object);
  std::uint32_t cookie = 0;
  ASSERT_EQ(point->Advise(&dropping, &cookie), kOk);
  point.reset();
  IDispatchAbi& called = *object;
  EXPECT_EQ(test::call(called, u"Add", {test::of_string(label), test::of_int32(101)}).text(),
            u"hot loud");
  EXPECT_EQ(object, nullptr);
}

}  // namespace
}  // namespace bvconn::component
