#include "component_windows/client.h"
// As a program has it, after the system's headers.
#include <BVConn.h>
#include <gtest/gtest.h>

#include <type_traits>

namespace bvconn::test {
namespace {

// Nobody listens there.
constexpr const wchar_t* kNobody = L"http://127.0.0.1:9/soap";

// By the classes that are made from the interface, of the registered component.
class Typed : public testing::Test {
 protected:
  Typed() {
    ::CoInitialize(nullptr);
    EXPECT_EQ(entry("DllRegisterServer"), S_OK);
  }
  ~Typed() override {
    EXPECT_EQ(entry("DllUnregisterServer"), S_OK);
    ::CoUninitialize();
  }

  Library library_;

 private:
  HRESULT entry(const char* name) const {
    return library_.find<HRESULT(STDAPICALLTYPE*)()>(name)();
  }
};

TEST_F(Typed, ReadsARowOfACatalogue) {
  EXPECT_EQ(com::BVMethods::create().GetInvoice(), L"getInvoice");
  EXPECT_EQ(com::BVServices::create().Invoice(), L"urn:InvoiceService");
}

TEST_F(Typed, BuildsNodesWithWhatIsLeftOutInTheMiddleAndAtTheEnd) {
  const com::SoapNode order = com::SoapNode::create();
  order.Name(L"Order");
  EXPECT_EQ(order.Name(), L"Order");
  const com::SoapNodes nodes = order.Nodes();
  EXPECT_EQ(nodes.Create(L"Quantity", std::int32_t{12}).Value().vt, VT_I4);
  EXPECT_EQ(nodes.Create(L"Price", 2.5).Value().real(), 2.5);
  EXPECT_TRUE(nodes.Create(L"Urgent", true).Value().boolean());
  EXPECT_EQ(nodes.Create(L"Named", com::Variant::missing(), L"urn:x").Namespace(), L"urn:x");
  EXPECT_TRUE(nodes.Create(L"Nothing").nil());
  EXPECT_EQ(nodes.Create(L"Tags", std::vector<std::wstring>{L"a", L"b"}).Nodes().Count(), 2);
  EXPECT_EQ(nodes.Count(), 6);
  EXPECT_EQ(nodes.Item(1).Name(), L"Price");
  const com::SoapNode value = com::SoapNode::create();
  value.Name(L"Inner");
  nodes.Append(value);
  EXPECT_EQ(nodes.ItemByName(L"Inner").Name(), L"Inner");
}

// What is no value of the interface's is refused by the compiler, and never becomes a truth value.
template <class Type>
constexpr bool kTaken = std::is_convertible_v<Type, com::Variant>;
static_assert(kTaken<bool> && kTaken<double> && kTaken<float> && kTaken<const wchar_t*> &&
              kTaken<std::wstring> && kTaken<com::SoapNode>);
static_assert(kTaken<short> && kTaken<int> && kTaken<LONG> && kTaken<long long> &&
              kTaken<unsigned> && kTaken<ULONG> && kTaken<unsigned long long>);
static_assert(!kTaken<const char*> && !kTaken<char> && !kTaken<wchar_t> && !kTaken<IDispatch*> &&
              !kTaken<void*> && !kTaken<std::nullptr_t> && !kTaken<const int*>);
static_assert(!std::is_constructible_v<com::Variant, const char*>);
static_assert(std::is_constructible_v<com::Variant, IDispatch*>);

TEST_F(Typed, TakesEachNumberAsWhatItIs) {
  const com::SoapNodes nodes = com::SoapNode::create().Nodes();
  const auto kept = [&](const com::Variant& value) {
    return nodes.Create(L"Value", value).Value();
  };
  EXPECT_EQ(kept(LONG{-7}).number(), -7);
  EXPECT_EQ(kept(7u).number(), 7);
  EXPECT_EQ(kept(ULONG{4'000'000'000}).real(), 4e9);
  EXPECT_EQ(kept(-5'000'000'000LL).real(), -5e9);
  EXPECT_EQ(kept(5'000'000'000ULL).real(), 5e9);
  EXPECT_EQ(kept(0.5f).real(), 0.5);
  EXPECT_EQ(kept(com::Variant::of_date(45000.25)).vt, VT_DATE);
  EXPECT_EQ(kept(com::Variant::of_date(45000.25)).days(), 45000.25);
}

TEST_F(Typed, TakesAnObjectOfAnyLibrary) {
  const com::SoapNode node = com::SoapNode::create();
  const com::Variant same(node.get());
  EXPECT_EQ(same.vt, VT_DISPATCH);
  EXPECT_EQ(same.pdispVal, node.get());
  EXPECT_EQ(com::Variant(static_cast<const VARIANT&>(same)).pdispVal, node.get());
  EXPECT_FALSE(com::Variant(static_cast<IDispatch*>(nullptr)).is_object());
}

TEST_F(Typed, ShowsValuesInNoUsersLanguage) {
  EXPECT_EQ(com::Variant(true).text(), L"True");
  EXPECT_EQ(com::Variant(false).text(), L"False");
  EXPECT_EQ(com::Variant(2.5).text(), L"2.5");
  EXPECT_EQ(com::Variant(L"2.5").real(), 2.5);
  EXPECT_TRUE(com::Variant(L"True").boolean());
}

TEST_F(Typed, ReadsAndWritesTheSession) {
  const com::BVConnectorObject session = com::BVConnectorObject::create();
  EXPECT_FALSE(session.UsingTorvexDAL());
  session.AllowDisabledDALMethods(true);
  EXPECT_TRUE(session.AllowDisabledDALMethods());
  session.AllowDisabledDALMethods(false);
  EXPECT_TRUE(static_cast<bool>(session.HTTPTransportObject()));
}

TEST_F(Typed, GivesAnErrorWithItsTexts) {
  try {
    com::BVInvoiceConnector::create().GetInvoice(kNobody, L"ANNA", L"INV-1");
    FAIL() << "no error";
  } catch (const com::Error& error) {
    EXPECT_EQ(static_cast<ULONG>(error.number), 0x80044301u);
    EXPECT_NE(error.source, L"");
    EXPECT_NE(error.description, L"");
  }
  try {
    com::SoapNode::create().Nodes().Item(9);
    FAIL() << "no error";
  } catch (const com::Error& error) {
    EXPECT_EQ(static_cast<ULONG>(error.number), 0x80044204u);
  }
  EXPECT_THROW(com::SoapNode().Name(), com::Error);
}

TEST_F(Typed, IsToldOfTheEventAsLongAsItListens) {
  const com::BVHeartBeatConnector heart = com::BVHeartBeatConnector::create();
  std::vector<DISPID> raised;
  {
    const com::Listener listener(heart, com::BVHeartBeatConnector::kEvents,
                                 [&](DISPID event) { raised.push_back(event); });
    heart.sendHeartBeat(kNobody, L"ANNA");
  }
  heart.sendHeartBeat(kNobody, L"ANNA");
  EXPECT_EQ(raised, std::vector<DISPID>{1});
  EXPECT_THROW(
      com::Listener(com::SoapNode::create(), com::BVHeartBeatConnector::kEvents, [](DISPID) {}),
      com::Error);
}

}  // namespace
}  // namespace bvconn::test
