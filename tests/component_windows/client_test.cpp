#include "component_windows/client.h"

#include <gtest/gtest.h>

#include <thread>

namespace bvconn::test {
namespace {

constexpr CLSID kMethods{
    0x9B66DCAF, 0xAD44, 0x4B27, {0x91, 0x80, 0xA4, 0x98, 0x82, 0x76, 0xE7, 0xDD}};
constexpr CLSID kInvoices{
    0xB1D1DDEA, 0xA3A5, 0x4FD6, {0xAE, 0x06, 0x63, 0x0F, 0x3C, 0xBF, 0x7E, 0x97}};
constexpr CLSID kNode{0x3F0C61F3, 0xD917, 0x4DF8, {0x9A, 0xFE, 0x39, 0x05, 0xDC, 0xF9, 0x38, 0x78}};
constexpr CLSID kSession{
    0x9688093D, 0xFAE0, 0x475A, {0x81, 0xF6, 0x28, 0x8D, 0x66, 0x28, 0xAF, 0x5C}};
// Nobody listens there.
constexpr const wchar_t* kNoServer = L"http://127.0.0.1:9/soap";

using Unload = HRESULT(STDAPICALLTYPE*)();

TEST(Client, ReadsARowOfTheCatalogue) {
  const Library library;
  ASSERT_TRUE(library.loaded());
  IDispatch* const methods = library.make(kMethods);
  ASSERT_NE(methods, nullptr);
  Answer row;
  call(row, methods, L"getinvoice");
  EXPECT_EQ(row.result, S_OK);
  EXPECT_EQ(row.value.text(), L"getInvoice");
  methods->Release();
}

TEST(Client, AnErrorComesWithNumberAndTextsOfTheSystemsOwn) {
  const Library library;
  IDispatch* const invoices = library.make(kInvoices);
  ASSERT_NE(invoices, nullptr);
  Answer answer;
  call(answer, invoices, L"GetInvoice", {Var(kNoServer), Var(L"ANNA"), Var(L"INV-1")});
  EXPECT_EQ(answer.result, DISP_E_EXCEPTION);
  EXPECT_LT(answer.exception.scode, 0);
  ASSERT_NE(answer.exception.bstrSource, nullptr);
  ASSERT_NE(answer.exception.bstrDescription, nullptr);
  EXPECT_NE(std::wstring(answer.exception.bstrDescription), L"");
  invoices->Release();
}

TEST(Client, NamesArgumentsInAnyOrderAndPassesThemByReference) {
  const Library library;
  IDispatch* const node = library.make(kNode);
  ASSERT_NE(node, nullptr);
  Answer nodes;
  call(nodes, node, L"Nodes");
  ASSERT_NE(nodes.value.object(), nullptr);
  std::wstring names[] = {L"Create", L"value", L"name"};
  LPOLESTR pointers[] = {names[0].data(), names[1].data(), names[2].data()};
  DISPID ids[3] = {};
  ASSERT_EQ(nodes.value.object()->GetIDsOfNames(IID_NULL, pointers, 3, LOCALE_USER_DEFAULT, ids),
            S_OK);
  Var name(L"Quantity");
  Var value(LONG{12});
  Var arguments[2];
  arguments[0].vt = arguments[1].vt = VT_BYREF | VT_VARIANT;
  arguments[0].pvarVal = &value;
  arguments[1].pvarVal = &name;
  DISPPARAMS parameters{arguments, ids + 1, 2, 2};
  Answer made;
  made.result = nodes.value.object()->Invoke(ids[0], IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD,
                                             &parameters, &made.value, &made.exception, nullptr);
  ASSERT_EQ(made.result, S_OK);
  Answer back;
  call(back, made.value.object(), L"Value");
  EXPECT_EQ(back.value.vt, VT_I4);
  EXPECT_EQ(back.value.lVal, 12);
  node->Release();
}

// As the system makes them; what it is given back it frees.
TEST(Client, PassesAnArrayOfTheSystemsAndIsGivenOneBack) {
  const Library library;
  IDispatch* const node = library.make(kNode);
  Var array;
  array.vt = VT_ARRAY | VT_VARIANT;
  array.parray = ::SafeArrayCreateVector(VT_VARIANT, 1, 2);
  for (LONG index = 1; index <= 2; ++index) {
    Var item(index == 1 ? L"one" : L"two");
    ::SafeArrayPutElement(array.parray, &index, &item);
  }
  Var name(L"Tags");
  Answer nodes;
  call(nodes, node, L"Nodes");
  Answer made;
  call(made, nodes.value.object(), L"Create", {name, array});
  ASSERT_EQ(made.result, S_OK);
  Answer back;
  call(back, made.value.object(), L"Value");
  ASSERT_EQ(back.value.vt, VT_ARRAY | VT_VARIANT);
  LONG upper = -1;
  EXPECT_EQ(::SafeArrayGetUBound(back.value.parray, 1, &upper), S_OK);
  EXPECT_EQ(upper, 1);
  Var second;
  LONG index = 1;
  EXPECT_EQ(::SafeArrayGetElement(back.value.parray, &index, &second), S_OK);
  EXPECT_EQ(second.text(), L"two");
  node->Release();
}

/// The older unit for floating point, as a host has set it, until the end of this object.
class OlderUnit {
 public:
  explicit OlderUnit(unsigned short word) {
    asm volatile("fnstcw %0" : "=m"(before_));
    asm volatile("fldcw %0" : : "m"(word));
  }
  ~OlderUnit() {
    asm volatile("fnclex");
    asm volatile("fldcw %0" : : "m"(before_));
  }
  OlderUnit(const OlderUnit&) = delete;
  OlderUnit& operator=(const OlderUnit&) = delete;

 private:
  unsigned short before_ = 0;
};

// Hosts of 32 bits let it round to fewer digits, and trap what is too large or divided by 0.
TEST(Client, ComputesAlikeHoweverTheHostRounds) {
  constexpr unsigned short kSinglePrecisionWithTraps = 0x0032;
  const Library library;
  IDispatch* const node = library.make(kNode);
  ASSERT_NE(node, nullptr);
  Var price;
  price.vt = VT_CY;
  price.cyVal.int64 = 1'234'567'891'234;
  Answer nodes;
  Answer made;
  Answer back;
  {
    const OlderUnit unit(kSinglePrecisionWithTraps);
    call(nodes, node, L"Nodes");
    call(made, nodes.value.object(), L"Create", {Var(L"Price"), price});
    call(back, made.value.object(), L"Value");
  }
  ASSERT_EQ(back.value.vt, VT_R8);
  EXPECT_EQ(back.value.dblVal, 123456789.1234);
  node->Release();
}

TEST(Client, NothingLivesOnceAllIsReleased) {
  const Library library;
  const auto can_unload = library.find<Unload>("DllCanUnloadNow");
  IDispatch* const methods = library.make(kMethods);
  EXPECT_EQ(can_unload(), S_FALSE);
  methods->Release();
  EXPECT_EQ(can_unload(), S_OK);
}

TEST(Client, IsDescribedStillAfterItWasAskedWhetherItMayGo) {
  const Library library;
  for (int round = 0; round < 2; ++round) {
    IDispatch* const methods = library.make(kMethods);
    ITypeInfo* info = nullptr;
    EXPECT_EQ(methods->GetTypeInfo(0, LOCALE_INVARIANT, &info), S_OK);
    if (info != nullptr) info->Release();
    methods->Release();
    EXPECT_EQ(library.find<Unload>("DllCanUnloadNow")(), S_OK);
  }
}

// A thread that ends releases its transport, its logger and its catalogues.
TEST(Client, TwoHundredThreadsMakeCallReleaseAndEnd) {
  const Library library;
  int failures = 0;
  for (int round = 0; round < 200; ++round) {
    std::thread([&] {
      ::CoInitialize(nullptr);
      IDispatch* const methods = library.make(kMethods);
      IDispatch* const invoices = library.make(kInvoices);
      Answer row;
      call(row, methods, L"GetInvoice");
      if (row.value.text() != L"getInvoice") ++failures;
      Answer invoice;
      call(invoice, invoices, L"GetInvoice", {Var(kNoServer), Var(L"ANNA"), Var(L"INV-1")});
      if (invoice.result != DISP_E_EXCEPTION) ++failures;
      methods->Release();
      invoices->Release();
      ::CoUninitialize();
    }).join();
  }
  EXPECT_EQ(failures, 0);
  EXPECT_EQ(library.find<Unload>("DllCanUnloadNow")(), S_OK);
}

// Also while a thread that has called it lives on: its end must not call what is gone.
TEST(Client, IsReallyUnloaded) {
  HANDLE may_end = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
  HANDLE has_called = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
  std::thread other;
  {
    const Library library;
    other = std::thread([&] {
      IDispatch* const methods = library.make(kMethods);
      Answer row;
      call(row, methods, L"GetInvoice");
      methods->Release();
      ::SetEvent(has_called);
      ::WaitForSingleObject(may_end, INFINITE);
    });
    ::WaitForSingleObject(has_called, INFINITE);
    EXPECT_NE(::GetModuleHandleW(L"BVConn.dll"), nullptr);
  }
  EXPECT_EQ(::GetModuleHandleW(L"BVConn.dll"), nullptr);
  ::SetEvent(may_end);
  other.join();
  ::CloseHandle(may_end);
  ::CloseHandle(has_called);
}

IDispatch* created(const CLSID& id) {
  IDispatch* object = nullptr;
  ::CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IDispatch),
                     reinterpret_cast<void**>(&object));
  return object;
}

// A thread that shares an apartment with others; what it does there is done when this returns.
template <class Action>
void in_the_multithreaded_apartment(Action action) {
  std::thread([&] {
    ::CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    action();
    ::CoUninitialize();
  }).join();
}

// The objects live on one thread of the system's, to which each call is carried, and back what it
// answers: values, objects, and errors with all their texts.
TEST(Apartments, CallsFromAMultithreadedOneAreCarriedToWhereTheObjectsLive) {
  const Library library;
  ASSERT_EQ(library.find<Unload>("DllRegisterServer")(), S_OK);
  in_the_multithreaded_apartment([&] {
    IDispatch* const methods = created(kMethods);
    IDispatch* const invoices = created(kInvoices);
    IDispatch* const node = created(kNode);
    ASSERT_TRUE(methods != nullptr && invoices != nullptr && node != nullptr);
    {
      Answer row;
      call(row, methods, L"GetInvoice");
      EXPECT_EQ(row.value.text(), L"getInvoice");
      Answer nodes;
      call(nodes, node, L"Nodes");
      Answer made;
      call(made, nodes.value.object(), L"Create", {Var(L"Quantity"), Var(LONG{12})});
      Answer back;
      call(back, made.value.object(), L"Value");
      EXPECT_EQ(back.value.vt, VT_I4);
      EXPECT_EQ(back.value.lVal, 12);
      Answer failed;
      call(failed, invoices, L"GetInvoice", {Var(kNoServer), Var(L"ANNA"), Var(L"INV-1")});
      EXPECT_EQ(failed.result, DISP_E_EXCEPTION);
      EXPECT_EQ(static_cast<ULONG>(failed.exception.scode), 0x80044301u);
      ASSERT_NE(failed.exception.bstrSource, nullptr);
      EXPECT_NE(std::wstring(failed.exception.bstrSource), L"");
      ASSERT_NE(failed.exception.bstrDescription, nullptr);
      EXPECT_NE(std::wstring(failed.exception.bstrDescription), L"");
    }
    methods->Release();
    invoices->Release();
    node->Release();
  });
  EXPECT_EQ(library.find<Unload>("DllUnregisterServer")(), S_OK);
}

// A session belongs to a thread, which here is the system's.
TEST(Apartments, AllThreadsOfAMultithreadedOneShareOneSession) {
  const Library library;
  ASSERT_EQ(library.find<Unload>("DllRegisterServer")(), S_OK);
  // Without one that stays, the apartment and its thread would end in between.
  in_the_multithreaded_apartment([] {
    const auto allowed = [](const wchar_t* step) {
      IDispatch* const session = created(kSession);
      Answer answer;
      call(answer, session, L"AllowDisabledDALMethods");
      EXPECT_EQ(answer.result, S_OK) << step;
      if (session != nullptr) session->Release();
      return answer.value.vt == VT_BOOL && answer.value.boolVal == VARIANT_TRUE;
    };
    EXPECT_FALSE(allowed(L"before"));
    in_the_multithreaded_apartment([] {
      IDispatch* const session = created(kSession);
      ASSERT_NE(session, nullptr);
      Var value;
      value.vt = VT_BOOL;
      value.boolVal = VARIANT_TRUE;
      DISPID put = DISPID_PROPERTYPUT;
      DISPPARAMS parameters{&value, &put, 1, 1};
      EXPECT_EQ(
          session->Invoke(id_of(session, L"AllowDisabledDALMethods"), IID_NULL, LOCALE_USER_DEFAULT,
                          DISPATCH_PROPERTYPUT, &parameters, nullptr, nullptr, nullptr),
          S_OK);
      session->Release();
    });
    EXPECT_TRUE(allowed(L"after"));
  });
  EXPECT_EQ(library.find<Unload>("DllUnregisterServer")(), S_OK);
}

}  // namespace
}  // namespace bvconn::test
