#include <gtest/gtest.h>

#include <string>

#include "bvconn/platform/windows/wide_text.h"

namespace bvconn::detail {
namespace {

/// Of more letters than the system takes in its usual form.
const std::string kLongName(130, 'n');
const std::wstring kWideName(130, L'n');

TEST(WidePath, OfAShortPathHasTheSystemsSlashesAlone) {
  EXPECT_EQ(wide_path("C:/a/b.log"), L"C:\\a\\b.log");
  EXPECT_EQ(wide_path("b.log"), L"b.log");
  EXPECT_EQ(wide_path("C:\\Größe\\Ł"), L"C:\\Gr\u00F6\u00DFe\\\u0141");
}

TEST(WidePath, EndsAtANul) {
  EXPECT_EQ(wide_path(std::string("a\0b", 3)), L"a");
}

TEST(WidePath, OfALongPathIsInTheFormWithoutABound) {
  EXPECT_EQ(wide_path("C:/" + kLongName + "/" + kLongName),
            L"\\\\?\\C:\\" + kWideName + L"\\" + kWideName);
}

TEST(WidePath, OfALongPathHasNoDotsLeft) {
  EXPECT_EQ(wide_path("C:\\" + kLongName + "\\.\\other\\..\\" + kLongName),
            L"\\\\?\\C:\\" + kWideName + L"\\" + kWideName);
}

TEST(WidePath, OfALongPathOnAServerNamesTheServer) {
  EXPECT_EQ(wide_path("\\\\server\\share\\" + kLongName + "\\" + kLongName),
            L"\\\\?\\UNC\\server\\share\\" + kWideName + L"\\" + kWideName);
}

TEST(WidePath, OfALongPathBelowTheWorkingFolderBeginsAtItsRoot) {
  const std::wstring path = wide_path(kLongName + "/" + kLongName);
  EXPECT_TRUE(path.starts_with(L"\\\\?\\")) << narrow(path);
  EXPECT_TRUE(path.ends_with(L"\\" + kWideName + L"\\" + kWideName)) << narrow(path);
}

TEST(WidePath, ThatHasNoBoundAlreadyStaysAsItIs) {
  const std::string path = "\\\\?\\C:\\" + kLongName + "\\" + kLongName;
  EXPECT_EQ(wide_path(path), L"\\\\?\\C:\\" + kWideName + L"\\" + kWideName);
}

}  // namespace
}  // namespace bvconn::detail
