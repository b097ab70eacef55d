#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "component_windows/client.h"

// What the library writes to the registry's classes, and what of it stays.
namespace bvconn::test {
namespace {

constexpr const wchar_t* kInvoicesText = L"{B1D1DDEA-A3A5-4FD6-AE06-630F3CBF7E97}";
constexpr const wchar_t* kTypeLibrary = L"TypeLib\\{1EAEE68B-3985-4111-B0EF-DA8F41001F5F}";

using Install = HRESULT(STDAPICALLTYPE*)(BOOL, const wchar_t*);
using Register = HRESULT(STDAPICALLTYPE*)();

// Everything below a key: paths of keys and, with a colon, of values, and what the values hold.
using Listing = std::map<std::wstring, std::wstring>;

void list(HKEY root, const std::wstring& path, Listing& listing) {
  HKEY key = nullptr;
  if (::RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return;
  listing[path];
  wchar_t name[256];
  for (DWORD index = 0;; ++index) {
    DWORD size = 256;
    BYTE data[2048];
    DWORD bytes = sizeof data;
    const LSTATUS code = ::RegEnumValueW(key, index, name, &size, nullptr, nullptr, data, &bytes);
    if (code == ERROR_NO_MORE_ITEMS) break;
    listing[path + L":" + name] =
        code == ERROR_SUCCESS
            ? std::wstring(reinterpret_cast<wchar_t*>(data), bytes / sizeof(wchar_t))
            : L"(long)";
  }
  std::vector<std::wstring> below;
  for (DWORD index = 0;; ++index) {
    DWORD size = 256;
    if (::RegEnumKeyExW(key, index, name, &size, nullptr, nullptr, nullptr, nullptr) !=
        ERROR_SUCCESS) {
      break;
    }
    below.emplace_back(name);
  }
  ::RegCloseKey(key);
  for (const std::wstring& child : below) list(root, path + L"\\" + child, listing);
}

// The key of all classes itself is there for every user but in a fresh home of wine.
Listing classes_of(HKEY root) {
  Listing listing;
  list(root, L"Software\\Classes", listing);
  listing.erase(L"Software\\Classes");
  return listing;
}

// Without the NUL at its end.
std::wstring text_at(const Listing& listing, const std::wstring& path) {
  const auto found = listing.find(L"Software\\Classes\\" + path);
  return found == listing.end() ? L"(none)" : found->second.c_str();
}

struct Place {
  HKEY root;
  const wchar_t* whom;
};

class RegistrationFor : public testing::TestWithParam<Place> {};

TEST_P(RegistrationFor, WritesTheKeysThatHostsReadAndLeavesNothingBehind) {
  const Library library;
  const auto install = library.find<Install>("DllInstall");
  ASSERT_NE(install, nullptr);
  const Listing before = classes_of(GetParam().root);
  ASSERT_EQ(install(TRUE, GetParam().whom), S_OK);
  const Listing during = classes_of(GetParam().root);
  const std::wstring key = std::wstring(L"CLSID\\") + kInvoicesText;
  EXPECT_EQ(text_at(during, key + L":"), L"BVConn.BVInvoiceConnector");
  EXPECT_EQ(text_at(during, key + L"\\ProgID:"), L"BVConn.BVInvoiceConnector");
  EXPECT_EQ(text_at(during, key + L"\\InprocServer32:ThreadingModel"), L"Apartment");
  const std::wstring file = text_at(during, key + L"\\InprocServer32:");
  EXPECT_NE(::GetFileAttributesW(file.c_str()), INVALID_FILE_ATTRIBUTES);
  for (const std::wstring prefix : {L"BVConn.", L"BVConnector."}) {
    EXPECT_EQ(text_at(during, prefix + L"BVInvoiceConnector\\CLSID:"), kInvoicesText);
  }
  ASSERT_EQ(install(FALSE, GetParam().whom), S_OK);
  EXPECT_EQ(classes_of(GetParam().root), before);
  // What is not there is no failure.
  EXPECT_EQ(install(FALSE, GetParam().whom), S_OK);
}

INSTANTIATE_TEST_SUITE_P(EachPlace, RegistrationFor,
                         testing::Values(Place{HKEY_LOCAL_MACHINE, L"machine"},
                                         Place{HKEY_CURRENT_USER, L"user"}),
                         [](const auto& place) {
                           return std::string(place.param.root == HKEY_CURRENT_USER ? "User"
                                                                                    : "Machine");
                         });

TEST(Registration, KnowsNobodyElse) {
  const Library library;
  EXPECT_EQ(library.find<Install>("DllInstall")(TRUE, L"everybody"), E_INVALIDARG);
}

// A key that the test makes below the classes of the user, which lasts as long as this object.
class ClassKey {
 public:
  ClassKey(const std::wstring& path, DWORD options) : path_(L"Software\\Classes\\" + path) {
    ::RegCreateKeyExW(HKEY_CURRENT_USER, path_.c_str(), 0, nullptr, options, KEY_ALL_ACCESS,
                      nullptr, &key_, nullptr);
  }
  ~ClassKey() {
    ::RegCloseKey(key_);
    ::RegDeleteTreeW(HKEY_CURRENT_USER, path_.c_str());
  }
  ClassKey(const ClassKey&) = delete;
  ClassKey& operator=(const ClassKey&) = delete;

  // Nobody may do anything with it, or all may.
  void allow(bool everything) const {
    SECURITY_DESCRIPTOR rights{};
    ::InitializeSecurityDescriptor(&rights, SECURITY_DESCRIPTOR_REVISION);
    ACL nothing{};
    ::InitializeAcl(&nothing, sizeof nothing, ACL_REVISION);
    ::SetSecurityDescriptorDacl(&rights, TRUE, everything ? nullptr : &nothing, FALSE);
    ::RegSetKeySecurity(key_, DACL_SECURITY_INFORMATION, &rights);
  }

 private:
  std::wstring path_;
  HKEY key_ = nullptr;
};

class RegistrationForTheUser : public testing::Test {
 protected:
  HRESULT install(BOOL wanted) { return library.find<Install>("DllInstall")(wanted, L"user"); }

  const Library library;
  // What other tests left out is not this one's affair.
  const Listing before = classes_of(HKEY_CURRENT_USER);
};

// A copy of the library's file in a folder of its own.
class Copy {
 public:
  Copy() {
    wchar_t folder[MAX_PATH] = {};
    ::GetTempPathW(MAX_PATH, folder);
    folder_ = std::wstring(folder) + L"bvconn-newer-" + std::to_wstring(::GetCurrentProcessId());
    ::CreateDirectoryW(folder_.c_str(), nullptr);
    ::CopyFileW(BVCONN_COMPONENT, file().c_str(), FALSE);
  }
  ~Copy() { remove(); }
  Copy(const Copy&) = delete;
  Copy& operator=(const Copy&) = delete;

  std::wstring file() const { return folder_ + L"\\BVConn.dll"; }
  void remove() const {
    ::DeleteFileW(file().c_str());
    ::RemoveDirectoryW(folder_.c_str());
  }

 private:
  std::wstring folder_;
};

TEST_F(RegistrationForTheUser, RemovingAnOlderCopyLeavesANewerOneRegistered) {
  const Copy copy;
  {
    const Library newer(copy.file().c_str());
    ASSERT_TRUE(newer.loaded());
    ASSERT_EQ(install(TRUE), S_OK);
    ASSERT_EQ(newer.find<Install>("DllInstall")(TRUE, L"user"), S_OK);
    const Listing during = classes_of(HKEY_CURRENT_USER);
    const std::wstring key = std::wstring(L"CLSID\\") + kInvoicesText;
    ASSERT_EQ(text_at(during, key + L"\\InprocServer32:"), copy.file());
    EXPECT_EQ(install(FALSE), S_OK);
    EXPECT_EQ(classes_of(HKEY_CURRENT_USER), during);
    EXPECT_EQ(newer.find<Install>("DllInstall")(FALSE, L"user"), S_OK);
  }
  EXPECT_EQ(classes_of(HKEY_CURRENT_USER), before);
}

TEST_F(RegistrationForTheUser, WhatPointsToAFileThatIsGoneIsRemoved) {
  const Copy copy;
  {
    const Library newer(copy.file().c_str());
    ASSERT_TRUE(newer.loaded());
    ASSERT_EQ(newer.find<Install>("DllInstall")(TRUE, L"user"), S_OK);
  }
  copy.remove();
  EXPECT_NE(classes_of(HKEY_CURRENT_USER), before);
  EXPECT_EQ(install(FALSE), S_OK);
  EXPECT_EQ(classes_of(HKEY_CURRENT_USER), before);
}

TEST_F(RegistrationForTheUser, AnotherVersionOfTheTypeLibraryStays) {
  const std::wstring version = std::wstring(kTypeLibrary) + L"\\2.0";
  ASSERT_EQ(install(TRUE), S_OK);
  {
    const ClassKey other(version, REG_OPTION_VOLATILE);
    EXPECT_EQ(install(FALSE), S_OK);
    const Listing after = classes_of(HKEY_CURRENT_USER);
    EXPECT_TRUE(after.contains(L"Software\\Classes\\" + version));
    EXPECT_FALSE(after.contains(L"Software\\Classes\\" + std::wstring(kTypeLibrary) + L"\\1.0"));
  }
  EXPECT_EQ(install(FALSE), S_OK);
  EXPECT_EQ(classes_of(HKEY_CURRENT_USER), before);
}

// Nothing that lasts can be made below a key that does not.
TEST_F(RegistrationForTheUser, OneThatIsRefusedMidwayLeavesNothing) {
  const ClassKey refusing(std::wstring(L"CLSID\\") + kInvoicesText, REG_OPTION_VOLATILE);
  EXPECT_EQ(install(TRUE), SELFREG_E_CLASS);
  EXPECT_EQ(classes_of(HKEY_CURRENT_USER), before);
}

TEST_F(RegistrationForTheUser, AKeyThatIsRefusedKeepsNoOther) {
  ASSERT_EQ(install(TRUE), S_OK);
  const std::wstring path = std::wstring(L"CLSID\\") + kInvoicesText;
  {
    const ClassKey kept(path, 0);
    kept.allow(false);
    EXPECT_EQ(install(FALSE), SELFREG_E_CLASS);
    kept.allow(true);
    Listing after = classes_of(HKEY_CURRENT_USER);
    EXPECT_TRUE(after.contains(L"Software\\Classes\\" + path));
    std::erase_if(after, [&](const auto& entry) {
      return entry.first.starts_with(L"Software\\Classes\\" + path) ||
             entry.first == L"Software\\Classes\\CLSID" || before.contains(entry.first);
    });
    EXPECT_EQ(after, Listing());
  }
  EXPECT_EQ(install(FALSE), S_OK);
  EXPECT_EQ(classes_of(HKEY_CURRENT_USER), before);
}

// Windows keeps the classes of a user's programs of 32 bits below a key of their own, which it
// makes with the first of them. Wine does so only where there is that key: the test makes it.
TEST_F(RegistrationForTheUser, LeavesNoKeyOfTheOtherViewBehind) {
  constexpr const wchar_t* kPath = L"Software\\Classes\\Wow6432Node";
  if (sizeof(void*) == 8) GTEST_SKIP() << "of programs of 32 bits";
  HKEY key = nullptr;
  ::RegCreateKeyExW(HKEY_CURRENT_USER, kPath, 0, nullptr, 0, KEY_READ | KEY_WOW64_64KEY, nullptr,
                    &key, nullptr);
  ::RegCloseKey(key);
  ASSERT_EQ(install(TRUE), S_OK);
  ASSERT_EQ(install(FALSE), S_OK);
  EXPECT_EQ(::RegOpenKeyExW(HKEY_CURRENT_USER, kPath, 0, KEY_READ | KEY_WOW64_64KEY, &key),
            ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(classes_of(HKEY_CURRENT_USER), before);
}

// By the names of a registered class, as programs make it that know nothing else of the library.
TEST(Registration, TheSystemMakesWhatIsRegisteredByBothNames) {
  ::CoInitialize(nullptr);
  {
    const Library library;
    ASSERT_EQ(library.find<Register>("DllRegisterServer")(), S_OK);
    for (const wchar_t* name : {L"BVConn.BVMethods", L"BVConnector.BVMethods"}) {
      CLSID id{};
      ASSERT_EQ(::CLSIDFromProgID(name, &id), S_OK);
      IDispatch* methods = nullptr;
      ASSERT_EQ(::CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IDispatch),
                                   reinterpret_cast<void**>(&methods)),
                S_OK);
      Answer row;
      call(row, methods, L"GetInvoice");
      EXPECT_EQ(row.value.text(), L"getInvoice");
      methods->Release();
    }
    EXPECT_EQ(library.find<Register>("DllUnregisterServer")(), S_OK);
  }
  ::CoUninitialize();
}

}  // namespace
}  // namespace bvconn::test
