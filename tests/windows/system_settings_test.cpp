#include "bvconn/platform/settings/system_settings.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/windows/system.h"

namespace bvconn::detail {
namespace {

constexpr SettingsRoot kUser = SettingsRoot::kCurrentUser;

// Values that others have written, each in its own way; gone with the test.
class SystemSettings : public testing::Test {
 protected:
  SystemSettings() {
    // Of the view that programs of 32 bits have.
    ::RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\BVConnTest", 0, nullptr, REG_OPTION_VOLATILE,
                      KEY_ALL_ACCESS | KEY_WOW64_32KEY, nullptr, &key_, nullptr);
  }
  ~SystemSettings() override {
    ::RegCloseKey(key_);
    ::RegDeleteKeyExW(HKEY_CURRENT_USER, L"Software\\BVConnTest", KEY_WOW64_32KEY, 0);
  }

  void is(DWORD type, const void* bytes, std::size_t size) {
    ASSERT_EQ(::RegSetValueExW(key_, L"value", 0, type, static_cast<const BYTE*>(bytes),
                               static_cast<DWORD>(size)),
              ERROR_SUCCESS);
  }
  void is_text(DWORD type, const std::wstring& text, std::size_t units) {
    is(type, text.c_str(), units * sizeof(wchar_t));
  }
  std::string text() { return settings->ReadString(kUser, "Software\\BVConnTest", "value"); }
  double number() { return settings->ReadNumber(kUser, "Software\\BVConnTest", "value"); }

  std::unique_ptr<RegistryAccess> settings = make_settings();
  HKEY key_ = nullptr;
};

TEST_F(SystemSettings, ANumberOf64BitsIsReadInFull) {
  for (const std::int64_t value : {0xFFFFFFFFLL, -5'000'000'000LL}) {
    is(REG_QWORD, &value, sizeof value);
    EXPECT_EQ(text(), std::to_string(value));
    EXPECT_EQ(number(), static_cast<double>(value));
  }
}

// A time-out of -1, which is none, is written as one of 32 bits.
TEST_F(SystemSettings, ANumberOf32BitsHasItsSign) {
  const std::uint32_t value = 0xFFFFFFFF;
  is(REG_DWORD, &value, sizeof value);
  EXPECT_EQ(text(), "-1");
  EXPECT_EQ(number(), -1);
  settings->Write("HKCU\\Software\\BVConnTest\\value", std::int64_t{-1}, "");
  EXPECT_EQ(number(), -1);
  settings->Write("HKCU\\Software\\BVConnTest\\value", std::int64_t{0x80000000}, "");
  EXPECT_EQ(number(), 2147483648.0);
}

TEST_F(SystemSettings, ATextMayLackItsNul) {
  is_text(REG_SZ, L"61000", 5);
  EXPECT_EQ(text(), "61000");
  EXPECT_EQ(number(), 61000);
  is_text(REG_EXPAND_SZ, L"61000", 5);
  EXPECT_EQ(text(), "61000");
  is_text(REG_SZ, L"", 0);
  EXPECT_EQ(text(), "");
}

TEST_F(SystemSettings, ATextOfTheKindThatIsExpandedHasItsVariablesReplaced) {
  ::SetEnvironmentVariableW(L"BVCONN_EXPANDED", std::wstring(300, L'\u00FC').c_str());
  const std::wstring stored = L"a %BVCONN_EXPANDED% %BVCONN_NO_SUCH% z";
  std::string longer;
  for (int i = 0; i < 300; ++i) longer += "\xC3\xBC";
  is_text(REG_EXPAND_SZ, stored, stored.size() + 1);
  EXPECT_EQ(text(), "a " + longer + " %BVCONN_NO_SUCH% z");
  is_text(REG_SZ, stored, stored.size() + 1);
  EXPECT_EQ(text(), "a %BVCONN_EXPANDED% %BVCONN_NO_SUCH% z");
  ::SetEnvironmentVariableW(L"BVCONN_EXPANDED", L"");
}

TEST_F(SystemSettings, AValueOfAnotherKindIsATypeMismatch) {
  is(REG_BINARY, "12", 2);
  EXPECT_TRUE(settings->Exists("HKCU\\Software\\BVConnTest\\value"));
  for (const bool as_text : {true, false}) {
    try {
      as_text ? static_cast<void>(text()) : static_cast<void>(number());
      ADD_FAILURE() << "it is read";
    } catch (const Error& error) {
      EXPECT_EQ(error.number, error_numbers::kTypeMismatch);
    }
  }
}

TEST_F(SystemSettings, AKeyThatMayNotBeReadIsAnErrorThatNamesIt) {
  SECURITY_DESCRIPTOR rights{};
  ::InitializeSecurityDescriptor(&rights, SECURITY_DESCRIPTOR_REVISION);
  ACL nobody{};
  ::InitializeAcl(&nobody, sizeof nobody, ACL_REVISION);
  ::SetSecurityDescriptorDacl(&rights, TRUE, &nobody, FALSE);
  ASSERT_EQ(::RegSetKeySecurity(key_, DACL_SECURITY_INFORMATION, &rights), ERROR_SUCCESS);
  for (const bool reads : {true, false}) {
    try {
      if (reads) static_cast<void>(text());
      if (!reads) settings->Write("HKCU\\Software\\BVConnTest\\value", "x", "");
      ADD_FAILURE() << "nothing is refused";
    } catch (const Error& error) {
      EXPECT_EQ(error.number, error_numbers::kSettingsUnusable);
      EXPECT_EQ(error.source, "RegistryAccess");
      EXPECT_NE(error.description.find("HKCU\\Software\\BVConnTest\\value"), std::string::npos)
          << error.description;
    }
  }
  ::SetSecurityDescriptorDacl(&rights, TRUE, nullptr, FALSE);
  ::RegSetKeySecurity(key_, DACL_SECURITY_INFORMATION, &rights);
}

}  // namespace
}  // namespace bvconn::detail
