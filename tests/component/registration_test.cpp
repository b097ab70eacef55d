#include "bvconn/component/registration.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>

#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/platform.h"

namespace bvconn::component {
namespace {

using Values = std::map<std::string, std::string, std::less<>>;

class SettingsInMemory final : public RegistryAccess {
 public:
  SettingsInMemory(Values& values, bool fails) : values_(values), fails_(fails) {}

  bool Exists(std::string_view path) override { return values_.contains(path); }
  void Write(std::string_view path, const SettingValue& value, std::string_view type) override {
    if (fails_) throw Error(error_numbers::kSettingsUnusable, "RegistryAccess", "Read only");
    EXPECT_EQ(type, "REG_SZ");
    values_[std::string(path)] = std::get<std::string>(value);
  }
  double ReadNumber(SettingsRoot, std::string_view, std::string_view) override { return 0; }
  std::string ReadString(SettingsRoot, std::string_view, std::string_view) override { return {}; }

 private:
  Values& values_;
  bool fails_;
};

class Registration : public testing::Test {
 protected:
  platform::Platform world() {
    platform::Platform platform = platform::current();
    platform.settings = [this] { return std::make_unique<SettingsInMemory>(values, fails); };
    return platform;
  }

  Values values;
  bool fails = false;
  platform::ScopedPlatform scope{world()};
};

TEST_F(Registration, WritesForEachClassWhereItsLibraryIs) {
  ASSERT_EQ(register_classes(), kOk);
  const std::string key = R"(HKCU\Software\Classes\CLSID\{B1D1DDEA-A3A5-4FD6-AE06-630F3CBF7E97}\)";
  EXPECT_EQ(values[key + "ProgID"], "BVConn.BVInvoiceConnector");
  EXPECT_TRUE(std::filesystem::is_regular_file(values[key + "InprocServer32"]));
  EXPECT_TRUE(std::filesystem::path(values[key + "InprocServer32"]).is_absolute());
  EXPECT_EQ(values[key + R"(InprocServer32\ThreadingModel)"], "Apartment");
  EXPECT_EQ(values[R"(HKCU\Software\Classes\BVConn.BVInvoiceConnector\CLSID)"],
            "{B1D1DDEA-A3A5-4FD6-AE06-630F3CBF7E97}");
  // 22 classes and three helpers, four values each.
  EXPECT_EQ(values.size(), 100u);
}

TEST_F(Registration, UndoingItEmptiesWhatWasWrittenAndNothingElse) {
  values[R"(HKCU\Software\Classes\Other.Class\CLSID)"] = "{other}";
  ASSERT_EQ(register_classes(), kOk);
  ASSERT_EQ(unregister_classes(), kOk);
  EXPECT_EQ(values.size(), 101u);
  for (const auto& [path, value] : values) {
    if (path == R"(HKCU\Software\Classes\Other.Class\CLSID)") {
      EXPECT_EQ(value, "{other}");
    } else {
      EXPECT_EQ(value, "") << path;
    }
  }
}

TEST_F(Registration, UndoingWhatNeverWasWritesNothing) {
  EXPECT_EQ(unregister_classes(), kOk);
  EXPECT_TRUE(values.empty());
}

TEST_F(Registration, SettingsThatCannotBeWrittenAreAFailureOfRegistration) {
  ASSERT_EQ(register_classes(), kOk);
  fails = true;
  EXPECT_EQ(register_classes(), kRegistrationFailed);
  EXPECT_EQ(unregister_classes(), kRegistrationFailed);
}

}  // namespace
}  // namespace bvconn::component
