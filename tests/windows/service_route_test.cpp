#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <thread>

#include "component_windows/client.h"
#include "windows/scripted_component.h"
#include "windows/torvexlib/component_library.h"

// BVConn.dll as a host uses it, where the data access layer is a library of components.
namespace bvconn::test {
namespace {

constexpr CLSID kConnectorObject{
    0x9688093D, 0xFAE0, 0x475A, {0x81, 0xF6, 0x28, 0x8D, 0x66, 0x28, 0xAF, 0x5C}};
constexpr CLSID kSearch{
    0x7E4B3858, 0x2C52, 0x4FFF, {0x90, 0xE5, 0x9B, 0x61, 0x48, 0x98, 0x1F, 0x89}};
constexpr const wchar_t* kBrands =
    L"<s:Envelope xmlns:s=\"http://schemas.xmlsoap.org/soap/envelope/\"><s:Body><r><brands>"
    L"<Brand>Gr\u00FC\u00DFe</Brand></brands></r></s:Body></s:Envelope>";

enum : DISPID { kSetServerUrl = 1, kLogin, kGetDisabledServices, kSearchForBrands, kBeat };

// What all 15 do.
Script& script() {
  static Script all;
  return all;
}

HRESULT make(std::size_t /*place*/, IDispatch** made) {
  *made = new ScriptedComponent(script());
  return S_OK;
}

HRESULT answer(const Called& called) {
  const UINT count = called.parameters->cArgs;
  switch (called.id) {
    case kSetServerUrl:
      EXPECT_EQ(count, 1U);
      EXPECT_STREQ(called.parameters->rgvarg[0].bstrVal, L"http://dal/");
      return S_OK;
    case kLogin:
      EXPECT_EQ(count, 4U);
      EXPECT_STREQ(called.parameters->rgvarg[0].bstrVal, L"US");
      called.gives(L"in");
      return S_OK;
    case kGetDisabledServices:
      called.gives(L"urn:SearchService.searchForVendors|");
      return S_OK;
    case kSearchForBrands:
      EXPECT_EQ(count, 0U);
      called.gives(kBrands);
      return S_OK;
    default:
      called.exception->scode = static_cast<SCODE>(0x80042739);
      called.exception->bstrDescription = ::SysAllocString(L"no beat");
      return DISP_E_EXCEPTION;
  }
}

// The thread's session goes by the data access layer.
void turn_on(IDispatch* object) {
  Answer made;
  call(made, object, L"InitTorvexDAL", {Var(L"http://dal/")});
  EXPECT_EQ(made.result, S_OK);
  Answer disabled;
  call(disabled, object, L"GetDisabledDALServices");
  EXPECT_EQ(disabled.value.text(), L"urn:SearchService.searchForVendors|");
  Answer on;
  call(on, object, L"UseTorvexDAL");
  EXPECT_EQ(on.result, S_OK);
}

std::wstring first_brand(IDispatch* search) {
  Answer brands;
  call(brands, search, L"SearchForBrands", {Var(L"ANNA"), Var(L"http://127.0.0.1:9/")});
  if (brands.value.object() == nullptr) return L"no node";
  Answer nodes;
  call(nodes, brands.value.object(), L"Nodes", {Var(LONG{0})});
  if (nodes.value.object() == nullptr) return L"no brand";
  Answer value;
  call(value, nodes.value.object(), L"Value");
  return value.value.text();
}

class AServiceRoute : public ::testing::Test {
 protected:
  void SetUp() override {
    script().names = {L"SetServerUrl", L"Login", L"GetDisabledServices", L"SearchForBrands",
                      L"sendHeartBeat"};
    script().invoke = &answer;
  }
};

TEST_F(AServiceRoute, LeadsAHostsThreadsThroughTheComponentsAndLetsThemGoAtTheirEnd) {
  const Library library;
  ASSERT_TRUE(library.loaded());
  for (int round = 0; round < 200; ++round) {
    DWORD thread = 0;
    std::thread([&] {
      thread = ::GetCurrentThreadId();
      ::CoInitialize(nullptr);
      {
        const RegisteredComponents registered(&make);
        IDispatch* const object = library.make(kConnectorObject);
        IDispatch* const search = library.make(kSearch);
        turn_on(object);
        EXPECT_EQ(script().alive, 15);
        EXPECT_EQ(first_brand(search), L"Gr\u00FC\u00DFe");
        search->Release();
        object->Release();
      }
      ::CoUninitialize();
    }).join();
    ASSERT_EQ(script().alive, 0) << "round " << round;
    ASSERT_EQ(script().released_by, thread);
  }
}

TEST_F(AServiceRoute, ShowsAHostTheOperationsOfTheComponent) {
  ::CoInitialize(nullptr);
  const Library library;
  const RegisteredComponents registered(&make);
  std::thread([&] {
    const RegisteredComponents here(&make);
    IDispatch* const object = library.make(kConnectorObject);
    turn_on(object);
    Answer beat;
    call(beat, object, L"HeartBeatService");
    ASSERT_NE(beat.value.object(), nullptr);
    Answer failed;
    call(failed, beat.value.object(), L"sendHeartBeat");
    EXPECT_EQ(failed.result, DISP_E_EXCEPTION);
    EXPECT_EQ(failed.exception.scode, static_cast<SCODE>(0x80042739));
    EXPECT_STREQ(failed.exception.bstrSource, L"HeartBeatService");
    EXPECT_STREQ(failed.exception.bstrDescription, L"no beat");
    // Its components know no more than two operations of the search.
    Answer search;
    call(search, object, L"SearchService");
    EXPECT_EQ(search.result, DISP_E_EXCEPTION);
    EXPECT_EQ(search.exception.scode, static_cast<SCODE>(0x800A000D));
    object->Release();
  }).join();
  EXPECT_EQ(script().alive, 0);
  ::CoUninitialize();
}

TEST_F(AServiceRoute, BearsAnExceptionThatComesOutOfAnotherFile) {
  if (sizeof(void*) == 4) {
    GTEST_SKIP() << "on 32 bits a library finds no frames of another file's to unwind";
  }
  const Library library;
  std::thread([&] {
    const RegisteredComponents registered(&make);
    IDispatch* const object = library.make(kConnectorObject);
    IDispatch* const search = library.make(kSearch);
    turn_on(object);
    script().invoke = [](const Called&) -> HRESULT { throw std::runtime_error("thrown"); };
    Answer failed;
    call(failed, search, L"SearchForBrands", {Var(L"ANNA"), Var(L"http://127.0.0.1:9/")});
    EXPECT_EQ(failed.result, DISP_E_EXCEPTION);
    EXPECT_EQ(failed.exception.scode, E_FAIL);
    EXPECT_STREQ(failed.exception.bstrDescription,
                 L"The component TorvexLib.SearchService.SearchForBrands threw an exception");
    script().invoke = &answer;
    EXPECT_EQ(first_brand(search), L"Gr\u00FC\u00DFe");
    search->Release();
    object->Release();
  }).join();
  EXPECT_EQ(script().alive, 0);
}

TEST_F(AServiceRoute, RenewsItsComponentsWhileOneOfThemIsCalled) {
  const Library library;
  std::thread([&] {
    const RegisteredComponents registered(&make);
    IDispatch* const object = library.make(kConnectorObject);
    IDispatch* const search = library.make(kSearch);
    turn_on(object);
    script().invoke = [&](const Called& called) {
      if (called.id == kSearchForBrands) {
        Answer renewed;
        call(renewed, object, L"InitTorvexDAL", {Var(L"http://dal/")});
        EXPECT_EQ(renewed.result, S_OK);
        EXPECT_EQ(script().alive, 16) << "the one that is called";
      }
      return answer(called);
    };
    EXPECT_EQ(first_brand(search), L"Gr\u00FC\u00DFe");
    EXPECT_EQ(script().alive, 15);
    search->Release();
    object->Release();
  }).join();
  EXPECT_EQ(script().alive, 0);
}

}  // namespace
}  // namespace bvconn::test
