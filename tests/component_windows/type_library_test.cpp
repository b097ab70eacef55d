#include <gtest/gtest.h>

#include <string>

#include "component_windows/client.h"

namespace bvconn::test {
namespace {

constexpr GUID kLibrary{
    0x1EAEE68B, 0x3985, 0x4111, {0xB0, 0xEF, 0xDA, 0x8F, 0x41, 0x00, 0x1F, 0x5F}};
constexpr GUID kInvoices{
    0xB1D1DDEA, 0xA3A5, 0x4FD6, {0xAE, 0x06, 0x63, 0x0F, 0x3C, 0xBF, 0x7E, 0x97}};
constexpr GUID kHeartBeats{
    0xEB53E7FF, 0xD252, 0x455E, {0x9A, 0x28, 0x11, 0x2B, 0xD8, 0x61, 0x5E, 0xFF}};
constexpr GUID kEvents{
    0x67B9CEFF, 0x038A, 0x4645, {0xA9, 0x07, 0xC2, 0xC2, 0xCF, 0x3F, 0x93, 0x50}};

using Register = HRESULT(STDAPICALLTYPE*)();

/// The name of a type; it lets go of the type.
std::wstring name_of(ITypeInfo* info) {
  if (info == nullptr) return L"(none)";
  BSTR name = nullptr;
  info->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr);
  std::wstring text = name == nullptr ? L"" : name;
  ::SysFreeString(name);
  info->Release();
  return text;
}

TEST(TypeLibrary, TellsTheInterfaceOfAnObjectWithTheObjectsOwnNumbers) {
  const Library library;
  IDispatch* const invoices = library.make(kInvoices);
  ASSERT_NE(invoices, nullptr);
  UINT count = 0;
  EXPECT_EQ(invoices->GetTypeInfoCount(&count), S_OK);
  EXPECT_EQ(count, 1u);
  ITypeInfo* info = nullptr;
  ASSERT_EQ(invoices->GetTypeInfo(0, LOCALE_USER_DEFAULT, &info), S_OK);
  std::wstring name = L"GetInvoice";
  LPOLESTR names[] = {name.data()};
  MEMBERID id = MEMBERID_NIL;
  EXPECT_EQ(info->GetIDsOfNames(names, 1, &id), S_OK);
  EXPECT_EQ(id, id_of(invoices, L"GetInvoice"));
  EXPECT_EQ(name_of(info), L"_BVInvoiceConnector");
  EXPECT_EQ(invoices->GetTypeInfo(1, LOCALE_USER_DEFAULT, &info), DISP_E_BADINDEX);
  EXPECT_EQ(info, nullptr);
  invoices->Release();
}

TEST(TypeLibrary, IsReadOnceAndKept) {
  const Library library;
  IDispatch* const invoices = library.make(kInvoices);
  ASSERT_NE(invoices, nullptr);
  ITypeInfo* info = nullptr;
  ASSERT_EQ(invoices->GetTypeInfo(0, LOCALE_USER_DEFAULT, &info), S_OK);
  ITypeLib* of_info = nullptr;
  UINT index = 0;
  ASSERT_EQ(info->GetContainingTypeLib(&of_info, &index), S_OK);
  info->Release();
  // Nobody else would have a reference.
  EXPECT_GT(of_info->Release(), 0u);
  invoices->Release();
}

TEST(TypeLibrary, TellsTheClassOfAnObjectAndTheInterfaceOfItsEvents) {
  const Library library;
  IDispatch* const heart = library.make(kHeartBeats);
  ASSERT_NE(heart, nullptr);
  IProvideClassInfo2* of_class = nullptr;
  ASSERT_EQ(
      heart->QueryInterface(__uuidof(IProvideClassInfo2), reinterpret_cast<void**>(&of_class)),
      S_OK);
  ITypeInfo* info = nullptr;
  EXPECT_EQ(of_class->GetClassInfo(&info), S_OK);
  EXPECT_EQ(name_of(info), L"BVHeartBeatConnector");
  GUID events{};
  EXPECT_EQ(of_class->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events), S_OK);
  EXPECT_EQ(events, kEvents);
  IProvideClassInfo* shorter = nullptr;
  EXPECT_EQ(heart->QueryInterface(__uuidof(IProvideClassInfo), reinterpret_cast<void**>(&shorter)),
            S_OK);
  EXPECT_EQ(shorter, of_class);
  if (shorter != nullptr) shorter->Release();
  of_class->Release();
  heart->Release();
}

// Tools and other apartments find it by its identifier, in the library's own file.
TEST(TypeLibrary, IsFoundByItsIdentifierWhileItIsRegistered) {
  ::CoInitialize(nullptr);
  {
    const Library library;
    ITypeLib* found = nullptr;
    EXPECT_NE(::LoadRegTypeLib(kLibrary, 1, 0, LOCALE_NEUTRAL, &found), S_OK);
    ASSERT_EQ(library.find<Register>("DllRegisterServer")(), S_OK);
    ASSERT_EQ(::LoadRegTypeLib(kLibrary, 1, 0, LOCALE_NEUTRAL, &found), S_OK);
    // 22 classes, three helpers and three results, each with its interface, and the events.
    EXPECT_EQ(found->GetTypeInfoCount(), 2u * (22 + 3 + 3) + 1);
    found->Release();
    EXPECT_EQ(library.find<Register>("DllUnregisterServer")(), S_OK);
    EXPECT_NE(::LoadRegTypeLib(kLibrary, 1, 0, LOCALE_NEUTRAL, &found), S_OK);
  }
  ::CoUninitialize();
}

}  // namespace
}  // namespace bvconn::test
