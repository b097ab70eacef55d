#include <gtest/gtest.h>

#include <array>
#include <stdexcept>
#include <thread>

#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/soap_node.h"
#include "bvconn/platform/thread_record.h"
#include "bvconn/platform/torvexlib/system_service_object.h"
#include "bvconn/platform/windows/service_component.h"
#include "files/temp_folder.h"
#include "windows/scripted_component.h"

namespace bvconn::test {
namespace {

using detail::make_service_component;

constexpr CLSID kClass = {
    0x0E2B0F41, 0x52F6, 0x4B7E, {0x8A, 0x0B, 0x66, 0x3B, 0x0D, 0x0C, 0x51, 0x01}};
constexpr const wchar_t* kClassText = L"{0E2B0F41-52F6-4B7E-8A0B-663B0D0C5101}";
constexpr IID kInterface = {
    0x0E2B0F41, 0x52F6, 0x4B7E, {0x8A, 0x0B, 0x66, 0x3B, 0x0D, 0x0C, 0x51, 0x02}};

std::int32_t bits(std::uint32_t number) {
  return static_cast<std::int32_t>(number);
}

template <class Call>
Error error_of(Call call) {
  try {
    call();
  } catch (const Error& error) {
    return error;
  }
  ADD_FAILURE() << "no error";
  return {0, "", ""};
}

bool has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

// `TorvexLib.Probe` is registered, and its class is there on this thread.
class AServiceComponent : public ::testing::Test {
 protected:
  void SetUp() override {
    ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    ASSERT_HRESULT_SUCCEEDED(::CoRegisterClassObject(kClass, &class_, CLSCTX_INPROC_SERVER,
                                                     REGCLS_MULTIPLEUSE, &cookie_));
  }
  void TearDown() override {
    ::CoRevokeClassObject(cookie_);
    ::CoUninitialize();
    EXPECT_EQ(script_.alive, 0);
  }

  static std::shared_ptr<ServiceObject> make() { return make_service_component("Probe"); }

  static std::string ask(ServiceObject& object, std::vector<Variant> arguments = {},
                         bool by_name = false) {
    return object.invoke("Ask", arguments, by_name);
  }

  // It does well again.
  void expect_next_call_to_work(ServiceObject& object) {
    script_.invoke = [](const Called& called) {
      called.gives(L"well");
      return S_OK;
    };
    EXPECT_EQ(ask(object), "well");
  }

  // As `script_.type_info` describes it, it is given no place for its text, and returns it.
  void expect_text_as_result() {
    script_.invoke = [](const Called& called) {
      EXPECT_EQ(called.parameters->cArgs, 1U);
      called.gives(L"text");
      return S_OK;
    };
    EXPECT_EQ(ask(*make(), {"key"}), "text");
    EXPECT_EQ(script_.calls, 1);
    script_.type_info->Release();
  }

  Script script_;
  ScriptedClass class_{script_};
  ClassKey key_{L"TorvexLib.Probe\\CLSID", kClassText};
  DWORD cookie_ = 0;
};

TEST_F(AServiceComponent, GivesItsTextAsTheResult) {
  script_.invoke = [](const Called& called) {
    EXPECT_EQ(called.parameters->cArgs, 2U);
    EXPECT_STREQ(called.parameters->rgvarg[1].bstrVal, L"first");
    EXPECT_STREQ(called.parameters->rgvarg[0].bstrVal, L"\u0141");
    called.gives(L"Gr\u00FC\u00DFe");
    return S_OK;
  };
  const auto object = make();
  EXPECT_EQ(object->name(), "Probe");
  EXPECT_EQ(ask(*object, {"first", "\u0141"}), "Gr\u00FC\u00DFe");
}

TEST_F(AServiceComponent, GivesItsTextByReferenceWhereItTakesOneArgumentMore) {
  script_.invoke = [](const Called& called) -> HRESULT {
    if (called.parameters->cArgs != 2) return DISP_E_BADPARAMCOUNT;
    EXPECT_STREQ(called.parameters->rgvarg[1].bstrVal, L"key");
    EXPECT_EQ(called.parameters->rgvarg[0].vt, VT_BYREF | VT_BSTR);
    *called.parameters->rgvarg[0].pbstrVal = ::SysAllocString(L"text");
    return S_OK;
  };
  const auto object = make();
  EXPECT_EQ(ask(*object, {"key"}), "text");
  EXPECT_EQ(script_.calls, 2);
  EXPECT_EQ(ask(*object, {"key"}), "text");
  EXPECT_EQ(script_.calls, 3) << "what it takes is known";
}

TEST_F(AServiceComponent, GivesItsTextInAVariantWhereItTakesThatAlone) {
  script_.invoke = [](const Called& called) -> HRESULT {
    if (called.parameters->cArgs != 1) return DISP_E_PARAMNOTOPTIONAL;
    VARIANTARG& given = called.parameters->rgvarg[0];
    *called.refused = 0;
    if (given.vt != (VT_BYREF | VT_VARIANT)) return DISP_E_TYPEMISMATCH;
    ::VariantClear(given.pvarVal);
    given.pvarVal->vt = VT_BSTR;
    given.pvarVal->bstrVal = ::SysAllocString(L"text");
    return S_OK;
  };
  EXPECT_EQ(ask(*make()), "text");
}

TEST_F(AServiceComponent, IsGivenEveryArgumentAsAVariantByReferenceWhereItIsLookedUpByName) {
  script_.invoke = [](const Called& called) -> HRESULT {
    if (called.parameters->cArgs != 3) return DISP_E_BADPARAMCOUNT;
    for (UINT place = 0; place < 3; ++place) {
      EXPECT_EQ(called.parameters->rgvarg[place].vt, VT_BYREF | VT_VARIANT);
    }
    EXPECT_EQ(called.parameters->rgvarg[2].pvarVal->vt, VT_BSTR);
    EXPECT_EQ(called.parameters->rgvarg[1].pvarVal->vt, VT_ERROR);
    EXPECT_EQ(called.parameters->rgvarg[1].pvarVal->scode, DISP_E_PARAMNOTFOUND);
    VARIANT& text = *called.parameters->rgvarg[0].pvarVal;
    ::VariantClear(&text);
    text.vt = VT_BSTR;
    text.bstrVal = ::SysAllocString(L"found");
    // What it writes to the others stays its own affair.
    ::VariantClear(called.parameters->rgvarg[2].pvarVal);
    return S_OK;
  };
  EXPECT_EQ(ask(*make(), {"name", Variant::Missing()}, true), "found");
}

// Of an operation with a key and one more argument of this type.
ITypeInfo* described_with(VARTYPE type) {
  // It refers to these as long as it lives.
  static PARAMDATA arguments[2];
  static METHODDATA method;
  static INTERFACEDATA data;
  arguments[0] = {const_cast<wchar_t*>(L"aKey"), VT_BSTR};
  arguments[1] = {const_cast<wchar_t*>(L"aMore"), type};
  method = {const_cast<wchar_t*>(L"Ask"), arguments, 1, 0, CC_STDCALL, 2, DISPATCH_METHOD, VT_BSTR};
  data = {&method, 1};
  ITypeInfo* whole = nullptr;
  ITypeInfo* found = nullptr;
  HREFTYPE interface_of_it = 0;
  EXPECT_HRESULT_SUCCEEDED(::CreateDispTypeInfo(&data, LOCALE_USER_DEFAULT, &whole));
  EXPECT_HRESULT_SUCCEEDED(whole->GetRefTypeOfImplType(0, &interface_of_it));
  EXPECT_HRESULT_SUCCEEDED(whole->GetRefTypeInfo(interface_of_it, &found));
  whole->Release();
  return found;
}

TEST_F(AServiceComponent, IsAskedInTheFormThatItsTypeInformationHas) {
  script_.type_info = described_with(VT_BYREF | VT_BSTR);
  script_.invoke = [](const Called& called) {
    EXPECT_EQ(called.parameters->cArgs, 2U);
    VARIANTARG& given = called.parameters->rgvarg[0];
    EXPECT_EQ(given.vt, VT_BYREF | VT_BSTR);
    if (given.vt == (VT_BYREF | VT_BSTR)) *given.pbstrVal = ::SysAllocString(L"text");
    return S_OK;
  };
  EXPECT_EQ(ask(*make(), {"key"}), "text");
  EXPECT_EQ(script_.calls, 1);
  script_.type_info->Release();
}

TEST_F(AServiceComponent, IsNotGivenAPlaceForItsTextWhereItTakesAValue) {
  script_.type_info = described_with(VT_BSTR);
  expect_text_as_result();
}

// As a type library has it: with a result, and flags of that one more argument.
ITypeInfo* described_in_library(VARTYPE result, VARTYPE referred, USHORT flags) {
  TYPEDESC pointed{};
  pointed.vt = referred;
  ELEMDESC arguments[2] = {};
  arguments[0].tdesc.vt = VT_BSTR;
  arguments[0].paramdesc.wParamFlags = PARAMFLAG_FIN;
  arguments[1].tdesc.vt = VT_PTR;
  arguments[1].tdesc.lptdesc = &pointed;
  arguments[1].paramdesc.wParamFlags = flags;
  FUNCDESC function{};
  function.memid = 1;
  function.funckind = FUNC_DISPATCH;
  function.invkind = INVOKE_FUNC;
  function.callconv = CC_STDCALL;
  function.cParams = 2;
  function.lprgelemdescParam = arguments;
  function.elemdescFunc.tdesc.vt = result;
  ICreateTypeLib2* library = nullptr;
  ICreateTypeInfo* made = nullptr;
  ITypeInfo* info = nullptr;
  constexpr SYSKIND kKind = sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32;
  EXPECT_HRESULT_SUCCEEDED(::CreateTypeLib2(kKind, L"never written.tlb", &library));
  EXPECT_HRESULT_SUCCEEDED(
      library->CreateTypeInfo(const_cast<wchar_t*>(L"IProbe"), TKIND_DISPATCH, &made));
  EXPECT_HRESULT_SUCCEEDED(made->AddFuncDesc(0, &function));
  EXPECT_HRESULT_SUCCEEDED(made->LayOut());
  EXPECT_HRESULT_SUCCEEDED(
      made->QueryInterface(__uuidof(ITypeInfo), reinterpret_cast<void**>(&info)));
  made->Release();
  library->Release();
  return info;
}

TEST_F(AServiceComponent, GivesItsTextInAnArgumentThatMayBeLeftOutWhereItHasNoResult) {
  for (const VARTYPE type : {VARTYPE{VT_BSTR}, VARTYPE{VT_VARIANT}}) {
    script_.type_info = described_in_library(VT_VOID, type, PARAMFLAG_FIN | PARAMFLAG_FOPT);
    script_.invoke = [type](const Called& called) {
      // Left out, it would give no text, and nothing would tell.
      EXPECT_EQ(called.parameters->cArgs, 2U);
      if (called.parameters->cArgs != 2) return S_OK;
      VARIANTARG& given = called.parameters->rgvarg[0];
      EXPECT_EQ(given.vt, VT_BYREF | type);
      if (type == VT_BSTR) {
        *given.pbstrVal = ::SysAllocString(L"text");
      } else {
        given.pvarVal->vt = VT_BSTR;
        given.pvarVal->bstrVal = ::SysAllocString(L"text");
      }
      return S_OK;
    };
    const auto object = make();
    EXPECT_EQ(ask(*object, {"key"}), "text");
    EXPECT_EQ(ask(*object, {"key"}), "text");
    script_.type_info->Release();
  }
  EXPECT_EQ(script_.calls, 4);
}

// As a function has it whose arguments are all references unless told otherwise.
TEST_F(AServiceComponent, IsNotGivenAPlaceForItsTextWhereItHasAResult) {
  script_.type_info = described_in_library(VT_BSTR, VT_VARIANT, PARAMFLAG_FIN | PARAMFLAG_FOPT);
  expect_text_as_result();
}

TEST_F(AServiceComponent, TakesEachValueByItsOwnType) {
  script_.invoke = [](const Called& called) {
    const VARIANTARG* const given = called.parameters->rgvarg;
    constexpr VARTYPE kTypes[] = {
        VT_EMPTY, VT_BOOL, VT_I2, VT_I4, VT_I8, VT_R8, VT_DATE, VT_BSTR, VT_ARRAY | VT_VARIANT};
    constexpr UINT kCount = std::size(kTypes);
    EXPECT_EQ(called.parameters->cArgs, kCount);
    for (UINT place = 0; place < kCount; ++place) {
      EXPECT_EQ(given[kCount - 1 - place].vt, kTypes[place]) << place;
    }
    EXPECT_EQ(given[7].boolVal, VARIANT_TRUE);
    EXPECT_EQ(given[5].lVal, -70000);
    EXPECT_EQ(given[4].llVal, 5000000000);
    EXPECT_EQ(given[3].dblVal, 1.5);
    EXPECT_EQ(given[2].date, 39087.25);
    LONG last = -1;
    ::SafeArrayGetUBound(given[0].parray, 1, &last);
    EXPECT_EQ(last, 1);
    called.gives(L"");
    return S_OK;
  };
  const Date date = from_civil({.year = 2007, .month = 1, .day = 5, .hour = 6});
  EXPECT_EQ(ask(*make(),
                {Variant(), true, std::int16_t{7}, std::int32_t{-70000}, std::int64_t{5000000000},
                 1.5, date, "text", VariantArray(std::vector<Variant>{"a", Variant()})}),
            "");
}

TEST_F(AServiceComponent, IsNotCalledWithWhatIsNoTextAndNoValue) {
  script_.invoke = [](const Called&) -> HRESULT { return E_UNEXPECTED; };
  const auto object = make();
  Error error = error_of([&] { ask(*object, {"good", "\xFF"}); });
  EXPECT_EQ(error.number, error_numbers::kTypeMismatch);
  EXPECT_EQ(error.description,
            "Argument 2 of Probe.Ask cannot be passed: the text \"\\xFF\" is not UTF-8");
  error = error_of([&] { ask(*object, {SoapNode::make("a")}); });
  EXPECT_EQ(error.number, error_numbers::kTypeMismatch);
  EXPECT_EQ(script_.calls, 0);
  expect_next_call_to_work(*object);
}

TEST_F(AServiceComponent, GivesNothingAsAnEmptyText) {
  const auto object = make();
  script_.invoke = [](const Called&) { return S_OK; };
  EXPECT_EQ(ask(*object), "");
  script_.invoke = [](const Called& called) {
    called.result->vt = VT_BSTR;
    called.result->bstrVal = nullptr;
    return S_OK;
  };
  EXPECT_EQ(ask(*object), "");
}

TEST_F(AServiceComponent, LeavesTheReferenceAsItIsForAnEmptyText) {
  script_.invoke = [](const Called& called) -> HRESULT {
    return called.parameters->cArgs == 1 ? S_OK : DISP_E_BADPARAMCOUNT;
  };
  EXPECT_EQ(ask(*make()), "");
}

TEST_F(AServiceComponent, SaysWhatCameInThePlaceOfATextAndGoesOn) {
  struct Case {
    const char* words;
    std::function<void(VARIANT&)> put;
  };
  const std::array<Case, 6> cases{{
      {"gave Null where its text is due", [](VARIANT& to) { to.vt = VT_NULL; }},
      {"gave a number where its text is due", [](VARIANT& to) { to.vt = VT_I4; }},
      {"gave a boolean where its text is due", [](VARIANT& to) { to.vt = VT_BOOL; }},
      {"gave an array where its text is due",
       [](VARIANT& to) {
         to.vt = VT_ARRAY | VT_UI1;
         to.parray = ::SafeArrayCreateVector(VT_UI1, 0, 3);
       }},
      {"gave an object where its text is due",
       [this](VARIANT& to) {
         to.vt = VT_DISPATCH;
         to.pdispVal = new ScriptedComponent(script_);
       }},
      {"gave a text that is no UTF-16 where its text is due",
       [](VARIANT& to) {
         to.vt = VT_BSTR;
         to.bstrVal = ::SysAllocString(L"a\xD800");
       }},
  }};
  const auto object = make();
  for (const Case& each : cases) {
    script_.invoke = [&each](const Called& called) {
      each.put(*called.result);
      return S_OK;
    };
    const Error error = error_of([&] { ask(*object); });
    EXPECT_EQ(error.number, error_numbers::kTypeMismatch);
    EXPECT_EQ(error.source, "BVConn");
    EXPECT_EQ(error.description, std::string("The component's Probe.Ask ") + each.words);
    EXPECT_EQ(error.outcome, Outcome::kAnswered);
    EXPECT_EQ(script_.alive, 1) << "what came is freed";
    expect_next_call_to_work(*object);
  }
}

TEST_F(AServiceComponent, SaysWhatCameByReferenceInThePlaceOfAText) {
  script_.invoke = [](const Called& called) -> HRESULT {
    if (called.parameters->cArgs != 1) return DISP_E_BADPARAMCOUNT;
    VARIANTARG& given = called.parameters->rgvarg[0];
    *called.refused = 0;
    if (given.vt != (VT_BYREF | VT_VARIANT)) return DISP_E_TYPEMISMATCH;
    given.pvarVal->vt = VT_R8;
    given.pvarVal->dblVal = 1.5;
    return S_OK;
  };
  EXPECT_EQ(error_of([&] { ask(*make()); }).description,
            "The component's Probe.Ask gave a number where its text is due");
}

TEST_F(AServiceComponent, MayGiveItsTextBehindAReference) {
  static BSTR text = ::SysAllocString(L"behind");
  static VARIANT nothing_behind{};
  const auto object = make();
  script_.invoke = [](const Called& called) {
    called.result->vt = VT_BYREF | VT_BSTR;
    called.result->pbstrVal = &text;
    return S_OK;
  };
  EXPECT_EQ(ask(*object), "behind");
  script_.invoke = [](const Called& called) {
    nothing_behind.vt = VT_BYREF | VT_VARIANT;
    nothing_behind.pvarVal = nullptr;
    called.result->vt = VT_BYREF | VT_VARIANT;
    called.result->pvarVal = &nothing_behind;
    return S_OK;
  };
  EXPECT_EQ(error_of([&] { ask(*object); }).description,
            "The component's Probe.Ask gave a reference to nothing where its text is due");
  script_.invoke = [](const Called& called) {
    nothing_behind.pvarVal = &nothing_behind;  // it refers to itself
    called.result->vt = VT_BYREF | VT_VARIANT;
    called.result->pvarVal = &nothing_behind;
    return S_OK;
  };
  EXPECT_EQ(error_of([&] { ask(*object); }).number, error_numbers::kTypeMismatch);
  ::SysFreeString(text);
}

TEST_F(AServiceComponent, RaisesItsErrorWithAllOfItsWords) {
  script_.invoke = [](const Called& called) {
    called.exception->scode = bits(0x80042739);
    called.exception->bstrSource = ::SysAllocString(L"Torvex");
    called.exception->bstrDescription = ::SysAllocString(L"No such invoice");
    called.exception->bstrHelpFile = ::SysAllocString(L"help.chm");
    called.exception->dwHelpContext = 12;
    return DISP_E_EXCEPTION;
  };
  const auto object = make();
  const Error error = error_of([&] { ask(*object); });
  EXPECT_EQ(error.number, bits(0x80042739));
  EXPECT_EQ(error.source, "Torvex");
  EXPECT_EQ(error.description, "No such invoice");
  EXPECT_EQ(error.helpFile, "help.chm");
  EXPECT_EQ(error.helpContext, 12);
  expect_next_call_to_work(*object);
}

TEST_F(AServiceComponent, RaisesItsErrorWithoutWordsAsWhatWhereAndWhy) {
  script_.invoke = [](const Called& called) {
    called.exception->scode = E_ACCESSDENIED;
    return DISP_E_EXCEPTION;
  };
  const Error error = error_of([&] { ask(*make()); });
  EXPECT_EQ(error.number, E_ACCESSDENIED);
  EXPECT_EQ(error.source, "Probe");
  EXPECT_TRUE(error.description.starts_with(
      "The component TorvexLib.Probe.Ask failed and did not say why: "))
      << error.description;
  EXPECT_TRUE(has(error.description, "0x80070005")) << error.description;
}

HRESULT STDMETHODCALLTYPE fill_in(EXCEPINFO* exception) {
  exception->bstrDescription = ::SysAllocString(L"filled in");
  return S_OK;
}

TEST_F(AServiceComponent, FillsItsErrorInWhenItIsAsked) {
  script_.invoke = [](const Called& called) {
    called.exception->scode = bits(0x80040001);
    called.exception->pfnDeferredFillIn = &fill_in;
    return DISP_E_EXCEPTION;
  };
  EXPECT_EQ(error_of([&] { ask(*make()); }).description, "filled in");
}

TEST_F(AServiceComponent, RaisesTheSmallNumbersOfTheLanguageAsTheyAre) {
  const auto object = make();
  script_.invoke = [](const Called& called) {
    called.exception->scode = bits(0x800A005B);
    return DISP_E_EXCEPTION;
  };
  EXPECT_EQ(error_of([&] { ask(*object); }).number, 91);
  script_.invoke = [](const Called& called) {
    called.exception->wCode = 1004;
    return DISP_E_EXCEPTION;
  };
  EXPECT_EQ(error_of([&] { ask(*object); }).number, 1004);
  script_.invoke = [](const Called&) { return DISP_E_EXCEPTION; };
  EXPECT_EQ(error_of([&] { ask(*object); }).number, error_numbers::kFailed);
}

TEST_F(AServiceComponent, ThrowsNothingIntoTheLibrary) {
  script_.invoke = [](const Called&) -> HRESULT { throw std::runtime_error("thrown"); };
  const auto object = make();
  const Error error = error_of([&] { ask(*object); });
  EXPECT_EQ(error.number, error_numbers::kFailed);
  EXPECT_EQ(error.source, "Probe");
  EXPECT_EQ(error.description, "The component TorvexLib.Probe.Ask threw an exception");
  expect_next_call_to_work(*object);
}

TEST_F(AServiceComponent, SaysWhichOperationItHasNot) {
  const auto object = make();
  const Error error = error_of([&] { object->invoke("Nothing", {}, false); });
  EXPECT_EQ(error.number, DISP_E_UNKNOWNNAME);
  EXPECT_EQ(error.source, "Probe");
  EXPECT_TRUE(
      error.description.starts_with("The component TorvexLib.Probe has no operation "
                                    "Nothing: "))
      << error.description;
  EXPECT_EQ(error.outcome, Outcome::kNotSent);
  expect_next_call_to_work(*object);
}

TEST_F(AServiceComponent, SaysThatItTakesAnotherNumberOfArguments) {
  script_.invoke = [](const Called&) -> HRESULT { return DISP_E_BADPARAMCOUNT; };
  const auto object = make();
  const Error error = error_of([&] { ask(*object, {"a", "b"}); });
  EXPECT_EQ(error.number, DISP_E_BADPARAMCOUNT);
  EXPECT_TRUE(
      error.description.starts_with("The component TorvexLib.Probe takes for Ask neither "
                                    "its arguments alone (2) nor one more for the text: "))
      << error.description;
  EXPECT_EQ(error.outcome, Outcome::kNotSent);
  expect_next_call_to_work(*object);
}

TEST_F(AServiceComponent, SaysWhichArgumentItDoesNotTake) {
  script_.invoke = [](const Called& called) -> HRESULT {
    *called.refused = 1;  // of three, from the last
    return DISP_E_TYPEMISMATCH;
  };
  const auto object = make();
  const Error error = error_of([&] { ask(*object, {"a", "b", "c"}); });
  EXPECT_EQ(error.number, DISP_E_TYPEMISMATCH);
  EXPECT_TRUE(error.description.starts_with(
      "The component TorvexLib.Probe does not take argument 2 of Ask: "))
      << error.description;
  expect_next_call_to_work(*object);
}

TEST_F(AServiceComponent, FailsWithTheSystemsNumber) {
  script_.invoke = [](const Called&) -> HRESULT { return RPC_E_DISCONNECTED; };
  const auto object = make();
  const Error error = error_of([&] { ask(*object); });
  EXPECT_EQ(error.number, RPC_E_DISCONNECTED);
  EXPECT_TRUE(error.description.starts_with("The component TorvexLib.Probe failed in Ask: "))
      << error.description;
  expect_next_call_to_work(*object);
}

TEST_F(AServiceComponent, MayBeLetGoOfWhileItIsCalled) {
  std::shared_ptr<ServiceObject> session = make();
  script_.invoke = [&session](const Called& called) {
    session.reset();
    called.gives(L"late");
    return S_OK;
  };
  // As the callers of service objects do.
  const std::shared_ptr<ServiceObject> held = session;
  EXPECT_EQ(ask(*held), "late");
}

TEST_F(AServiceComponent, MayCallBack) {
  const auto object = make();
  int depth = 0;
  script_.invoke = [&](const Called& called) {
    ++depth;
    if (depth < 5) {
      EXPECT_EQ(ask(*object), "deep");
    }
    const auto other = make();
    EXPECT_NE(other, nullptr);
    called.gives(L"deep");
    return S_OK;
  };
  EXPECT_EQ(ask(*object), "deep");
  EXPECT_EQ(depth, 5);
}

TEST_F(AServiceComponent, MayWaitForItsMessages) {
  constexpr UINT kMessage = WM_APP + 7;
  script_.invoke = [](const Called& called) {
    const DWORD thread = ::GetCurrentThreadId();
    MSG message{};
    ::PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE);
    std::thread([thread] { ::PostThreadMessageW(thread, kMessage, 0, 0); }).detach();
    while (::GetMessageW(&message, nullptr, 0, 0) > 0 && message.message != kMessage) {
      ::DispatchMessageW(&message);
    }
    called.gives(message.message == kMessage ? L"posted" : L"ended");
    return S_OK;
  };
  EXPECT_EQ(ask(*make()), "posted");
}

TEST_F(AServiceComponent, IsCalledOnItsOwnThreadAlone) {
  const auto object = make();
  std::thread([&] {
    const Error error = error_of([&] { ask(*object); });
    EXPECT_EQ(error.number, RPC_E_WRONG_THREAD);
    EXPECT_EQ(error.outcome, Outcome::kNotSent);
    EXPECT_TRUE(has(error.description, "belongs to the thread that made it")) << error.description;
    EXPECT_EQ(error_of([&] { object->offers("SearchService"); }).number, RPC_E_WRONG_THREAD);
  }).join();
  EXPECT_EQ(script_.calls, 0);
  expect_next_call_to_work(*object);
}

TEST_F(AServiceComponent, IsReleasedOnItsOwnThreadAlone) {
  const auto kept = make();
  std::shared_ptr<ServiceObject> handed = make();
  EXPECT_EQ(script_.alive, 2);
  std::thread([&] { handed.reset(); }).join();
  EXPECT_EQ(script_.alive, 2);
  expect_next_call_to_work(*kept);
  EXPECT_EQ(script_.alive, 1);
  EXPECT_EQ(script_.released_by, ::GetCurrentThreadId());
}

TEST_F(AServiceComponent, OutlivesTheApartmentThatItsHostOpened) {
  std::thread([this] {
    DWORD cookie = 0;
    ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    ::CoRegisterClassObject(kClass, &class_, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie);
    std::shared_ptr<ServiceObject> object = make();
    ::CoRevokeClassObject(cookie);
    ::CoUninitialize();
    expect_next_call_to_work(*object);
    EXPECT_EQ(script_.alive, 1);
    object.reset();
    EXPECT_EQ(script_.alive, 0);
    EXPECT_EQ(script_.released_by, ::GetCurrentThreadId());
    // It is closed: components can no longer be made here.
    EXPECT_EQ(::CoCreateInstance(kClass, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IDispatch),
                                 reinterpret_cast<void**>(&cookie)),
              CO_E_NOTINITIALIZED);
  }).join();
}

TEST_F(AServiceComponent, IsNoneWhereNoneIsRegistered) {
  EXPECT_EQ(make_service_component("NobodyHasThis"), nullptr);
  const auto object = detail::make_service_object("NobodyHasThis");
  ASSERT_NE(object, nullptr);
  EXPECT_EQ(error_of([&] { object->invoke("Ask", {}, false); }).number,
            error_numbers::kBadUrlOrHeader)
      << "it is the form over HTTP, which has no address here";
}

TEST_F(AServiceComponent, IsNotTakenForNoneWhereTheSystemCannotTell) {
  EXPECT_TRUE(detail::is_registered("Probe", S_OK));
  EXPECT_FALSE(detail::is_registered("Probe", CO_E_CLASSSTRING));
  EXPECT_FALSE(detail::is_registered("Probe", REGDB_E_CLASSNOTREG));
  for (const HRESULT result : {E_ACCESSDENIED, E_OUTOFMEMORY, REGDB_E_READREGDB}) {
    const Error error = error_of([&] { detail::is_registered("Probe", result); });
    EXPECT_EQ(error.number, result);
    EXPECT_EQ(error.source, "Probe");
    EXPECT_EQ(error.outcome, Outcome::kNotSent);
    EXPECT_TRUE(has(error.description, "TorvexLib.Probe is registered: ")) << error.description;
  }
}

TEST_F(AServiceComponent, IsNoneWhereItIsThereForProgramsOfTheOtherKindAlone) {
  const ClassKey key(L"TorvexLib.Other\\CLSID", L"{0E2B0F41-52F6-4B7E-8A0B-663B0D0C51FF}");
  EXPECT_EQ(make_service_component("Other"), nullptr);
}

TEST_F(AServiceComponent, SaysWhyItCannotBeMade) {
  script_.making = E_ACCESSDENIED;
  Error error = error_of([] { make(); });
  EXPECT_EQ(error.number, E_ACCESSDENIED);
  EXPECT_EQ(error.source, "Probe");
  EXPECT_TRUE(error.description.starts_with(
      "Cannot make the component TorvexLib.Probe ({0E2B0F41-52F6-4B7E-8A0B-663B0D0C5101}): "))
      << error.description;
  script_.making = S_OK;
  script_.has_dispatch = false;
  error = error_of([] { make(); });
  EXPECT_EQ(error.number, E_NOINTERFACE);
  EXPECT_TRUE(has(error.description, "it cannot be called by names")) << error.description;
  script_.has_dispatch = true;
  expect_next_call_to_work(*make());
}

TEST_F(AServiceComponent, SaysThatItsLibraryDoesNotLoad) {
  const ClassKey program(L"TorvexLib.Gone\\CLSID", L"{0E2B0F41-52F6-4B7E-8A0B-663B0D0C51FE}");
  const ClassKey library(L"CLSID\\{0E2B0F41-52F6-4B7E-8A0B-663B0D0C51FE}\\InprocServer32",
                         L"C:\\nowhere\\torvex.dll");
  const Error error = error_of([] { make_service_component("Gone"); });
  EXPECT_LT(error.number, 0);
  EXPECT_EQ(error.source, "Gone");
  EXPECT_TRUE(error.description.starts_with("Cannot make the component TorvexLib.Gone ("))
      << error.description;
  expect_next_call_to_work(*make());
}

// The settings of the machine, in a file.
class Settings {
 public:
  explicit Settings(const std::string& text)
      : variable_("BVCONN_MACHINE_SETTINGS", folder_.file("settings.toml")) {
    files_test::put_bytes(folder_.file("settings.toml"), text);
  }

 private:
  files_test::TempFolder folder_;
  files_test::ScopedEnvironment variable_;
};

constexpr const char* kKey = "['Software\\Brimvale\\Torvex\\AppData']\n";

TEST_F(AServiceComponent, IsWhatTheLayerIsWhereItIsRegistered) {
  expect_next_call_to_work(*detail::make_service_object("Probe"));
  const Settings settings(std::string(kKey) + "ServiceObjects = \"Component\"\n");
  expect_next_call_to_work(*detail::make_service_object("Probe"));
  const Error error = error_of([] { detail::make_service_object("NobodyHasThis"); });
  EXPECT_EQ(error.source, "NobodyHasThis");
  EXPECT_TRUE(has(error.description, "No component TorvexLib.NobodyHasThis is registered"))
      << error.description;
  EXPECT_TRUE(has(error.description, "ServiceObjects")) << error.description;
}

TEST_F(AServiceComponent, IsPassedOverWhereTheSettingSaysSo) {
  const Settings settings(std::string(kKey) + "ServiceObjects = \"HTTP\"\n");
  const auto object = detail::make_service_object("Probe");
  EXPECT_EQ(script_.alive, 0);
  EXPECT_EQ(error_of([&] { ask(*object); }).number, error_numbers::kBadUrlOrHeader);
}

TEST_F(AServiceComponent, IsNotMadeBySettingsThatSayNeither) {
  const Settings settings(std::string(kKey) + "ServiceObjects = \"soap\"\n");
  const Error error = error_of([] { detail::make_service_object("Probe"); });
  EXPECT_EQ(error.number, error_numbers::kTypeMismatch);
  EXPECT_EQ(error.description,
            "The setting ServiceObjects is \"soap\", which is neither \"component\" nor \"http\"");
}

TEST_F(AServiceComponent, OffersTheInterfaceWhoseOperationsItKnows) {
  const auto object = make();
  EXPECT_TRUE(object->offers("Probe"));
  EXPECT_FALSE(object->offers("HeartBeatService"));
  script_.names.emplace_back(L"sendHeartBeat");
  EXPECT_TRUE(object->offers("HeartBeatService"));
  script_.names.emplace_back(L"getProjectSummary");
  EXPECT_FALSE(object->offers("SummaryService")) << "it knows one of four";
  EXPECT_FALSE(object->offers("InvoiceService")) << "there is nothing to know";
}

TEST_F(AServiceComponent, OffersTheInterfaceWhoseIdentifierTheSettingsHave) {
  const Settings settings(
      "['Software\\Brimvale\\Torvex\\AppData\\ServiceInterfaces']\n"
      "HeartBeatService = \"{0E2B0F41-52F6-4B7E-8A0B-663B0D0C5102}\"\n"
      "SummaryService = \"0E2B0F41\"\n");
  script_.names.emplace_back(L"sendHeartBeat");
  const auto object = make();
  EXPECT_FALSE(object->offers("HeartBeatService"));
  script_.interfaces.push_back(kInterface);
  EXPECT_TRUE(object->offers("HeartBeatService"));
  const Error error = error_of([&] { object->offers("SummaryService"); });
  EXPECT_EQ(error.number, error_numbers::kTypeMismatch);
  EXPECT_TRUE(has(error.description, "ServiceInterfaces\\SummaryService is \"0E2B0F41\""))
      << error.description;
}

TEST_F(AServiceComponent, GoesWithItsThread) {
  for (int turn = 0; turn < 50; ++turn) {
    DWORD thread = 0;
    std::thread([&] {
      thread = ::GetCurrentThreadId();
      DWORD cookie = 0;
      ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
      ::CoRegisterClassObject(kClass, &class_, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie);
      // As a session keeps it: until the thread is at its end, and the host is long done.
      struct Kept {
        std::shared_ptr<ServiceObject> object;
      };
      detail::ThreadRecord<Kept>::get().object = make();
      ::CoRevokeClassObject(cookie);
      ::CoUninitialize();
    }).join();
    ASSERT_EQ(script_.alive, 0);
    ASSERT_EQ(script_.released_by, thread);
  }
}

}  // namespace
}  // namespace bvconn::test
