#include "component_windows/client.h"
// As a program has it, after the system's headers.
#include <BVConn.h>
#include <gtest/gtest.h>

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
