#include "component/c_calls.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "bvconn/component/abi.h"

// The interfaces stand twice, as classes and as tables for C; the records stand once.
namespace bvconn::component {
namespace {

using testing::ElementsAre;

std::vector<std::string> noted;

Hresult note(const char* function) {
  noted.emplace_back(function);
  return kOk;
}

// What all objects have, over the interface that they are tested for.
template <typename Interface>
class Noting : public Interface {
 public:
  Hresult BVCONN_CALL QueryInterface(const Guid*, void**) noexcept override {
    return note("QueryInterface");
  }
  std::uint32_t BVCONN_CALL AddRef() noexcept override {
    return static_cast<std::uint32_t>(note("AddRef"));
  }
  std::uint32_t BVCONN_CALL Release() noexcept override {
    return static_cast<std::uint32_t>(note("Release"));
  }
};

template <typename Interface, typename Item>
class NotingEnumerator final : public Noting<Interface> {
 public:
  Hresult BVCONN_CALL Next(std::uint32_t, Item*, std::uint32_t*) noexcept override {
    return note("Next");
  }
  Hresult BVCONN_CALL Skip(std::uint32_t) noexcept override { return note("Skip"); }
  Hresult BVCONN_CALL Reset() noexcept override { return note("Reset"); }
  Hresult BVCONN_CALL Clone(Interface**) noexcept override { return note("Clone"); }
};

class NotingUnknown final : public Noting<IUnknownAbi> {};

class NotingFactory final : public Noting<IClassFactoryAbi> {
 public:
  Hresult BVCONN_CALL CreateInstance(IUnknownAbi*, const Guid*, void**) noexcept override {
    return note("CreateInstance");
  }
  Hresult BVCONN_CALL LockServer(std::int32_t) noexcept override { return note("LockServer"); }
};

class NotingDispatch final : public Noting<IDispatchAbi> {
 public:
  Hresult BVCONN_CALL GetTypeInfoCount(std::uint32_t*) noexcept override {
    return note("GetTypeInfoCount");
  }
  Hresult BVCONN_CALL GetTypeInfo(std::uint32_t, std::uint32_t, void**) noexcept override {
    return note("GetTypeInfo");
  }
  Hresult BVCONN_CALL GetIDsOfNames(const Guid*, char16_t**, std::uint32_t, std::uint32_t,
                                    DispatchId*) noexcept override {
    return note("GetIDsOfNames");
  }
  Hresult BVCONN_CALL Invoke(DispatchId, const Guid*, std::uint32_t, std::uint16_t, DispatchParams*,
                             VariantRecord*, ExceptionRecord*, std::uint32_t*) noexcept override {
    return note("Invoke");
  }
};

class NotingPoint final : public Noting<IConnectionPointAbi> {
 public:
  Hresult BVCONN_CALL GetConnectionInterface(Guid*) noexcept override {
    return note("GetConnectionInterface");
  }
  Hresult BVCONN_CALL
  GetConnectionPointContainer(IConnectionPointContainerAbi**) noexcept override {
    return note("GetConnectionPointContainer");
  }
  Hresult BVCONN_CALL Advise(IUnknownAbi*, std::uint32_t*) noexcept override {
    return note("Advise");
  }
  Hresult BVCONN_CALL Unadvise(std::uint32_t) noexcept override { return note("Unadvise"); }
  Hresult BVCONN_CALL EnumConnections(IEnumConnectionsAbi**) noexcept override {
    return note("EnumConnections");
  }
};

class NotingContainer final : public Noting<IConnectionPointContainerAbi> {
 public:
  Hresult BVCONN_CALL EnumConnectionPoints(IEnumConnectionPointsAbi**) noexcept override {
    return note("EnumConnectionPoints");
  }
  Hresult BVCONN_CALL FindConnectionPoint(const Guid*, IConnectionPointAbi**) noexcept override {
    return note("FindConnectionPoint");
  }
};

template <typename Object>
std::vector<std::string> called(void (*in_c)(void*)) {
  Object object;
  noted.clear();
  in_c(&object);
  return noted;
}

TEST(TablesForC, CallTheFunctionsOfTheSameName) {
  EXPECT_THAT(called<NotingUnknown>(call_unknown),
              ElementsAre("QueryInterface", "AddRef", "Release"));
  EXPECT_THAT(called<NotingFactory>(call_class_factory),
              ElementsAre("QueryInterface", "AddRef", "Release", "CreateInstance", "LockServer"));
  EXPECT_THAT(called<NotingDispatch>(call_dispatch),
              ElementsAre("QueryInterface", "AddRef", "Release", "GetTypeInfoCount", "GetTypeInfo",
                          "GetIDsOfNames", "Invoke"));
  EXPECT_THAT(called<NotingPoint>(call_connection_point),
              ElementsAre("QueryInterface", "AddRef", "Release", "GetConnectionInterface",
                          "GetConnectionPointContainer", "Advise", "Unadvise", "EnumConnections"));
  EXPECT_THAT(called<NotingContainer>(call_connection_point_container),
              ElementsAre("QueryInterface", "AddRef", "Release", "EnumConnectionPoints",
                          "FindConnectionPoint"));
}

TEST(TablesForC, CallTheFunctionsOfEnumerators) {
  const auto all =
      ElementsAre("QueryInterface", "AddRef", "Release", "Next", "Skip", "Reset", "Clone");
  EXPECT_THAT((called<NotingEnumerator<IEnumVariantAbi, VariantRecord>>(call_enum_variant)), all);
  EXPECT_THAT(
      (called<NotingEnumerator<IEnumConnectionsAbi, ConnectionRecord>>(call_enum_connections)),
      all);
  EXPECT_THAT((called<NotingEnumerator<IEnumConnectionPointsAbi, IConnectionPointAbi*>>(
                  call_enum_connection_points)),
              all);
}

TEST(RecordsInC, HaveTheSizesThatTheyHaveOnWindows) {
  const unsigned long in_64_bits[] = {16, 8, 32, 24, 24, 64, 16};
  const unsigned long in_32_bits[] = {16, 8, 24, 16, 16, 32, 8};
  const auto& sizes = kPointer == 8 ? in_64_bits : in_32_bits;
  for (int i = 0; i < 7; ++i) EXPECT_EQ(sizes_in_c(i), sizes[i]) << i;
}

}  // namespace
}  // namespace bvconn::component
