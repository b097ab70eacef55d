#include "bvconn/platform/settings/file_store.h"

#include <gtest/gtest.h>

#include "bvconn/platform/error.h"
#include "files/temp_folder.h"
#include "support/error_of.h"

namespace bvconn::detail {
namespace {

using files_test::TempFolder;
using test::error_of;
using namespace std::chrono_literals;

TEST(FileLock, IsHeldByOneAtATime) {
  const TempFolder folder;
  const std::string path = folder.file("settings.toml.lock");
  const FileLock held(path, 0ms);
  const auto begin = std::chrono::steady_clock::now();
  const Error error = error_of([&] { const FileLock second(path, 50ms); });
  EXPECT_EQ(hex_number(error.number), "0x80041004");
  EXPECT_EQ(error.source, "RegistryAccess");
  EXPECT_EQ(error.description, "Another program has held the lock \"" + path + "\" for 50 ms");
  EXPECT_GE(std::chrono::steady_clock::now() - begin, 50ms);
}

TEST(FileLock, IsFreeAgainAfterItsHolder) {
  const TempFolder folder;
  const std::string path = folder.file("settings.toml.lock");
  { const FileLock held(path, 0ms); }
  EXPECT_NO_THROW(FileLock(path, 0ms));
}

TEST(ReplaceFile, LeavesNothingBesideTheFile) {
  const TempFolder folder;
  replace_file(folder.file("a.toml"), "one");
  replace_file(folder.file("a.toml"), "two");
  EXPECT_EQ(files_test::bytes_of(folder.file("a.toml")), "two");
  const std::filesystem::directory_iterator entries(folder.file(""));
  EXPECT_EQ(std::distance(begin(entries), end(entries)), 1);
}

TEST(ReplaceFile, TakesOverWhatACrashLeftBehind) {
  const TempFolder folder;
  files_test::put_bytes(folder.file("a.toml.new"), "half a fi");
  replace_file(folder.file("a.toml"), "whole");
  EXPECT_EQ(files_test::bytes_of(folder.file("a.toml")), "whole");
  EXPECT_FALSE(files_test::exists(folder.file("a.toml.new")));
}

TEST(ReplaceFile, AFailureLeavesTheFolderAsItWas) {
  const TempFolder folder;
  std::filesystem::create_directories(folder.file("a.toml/in the way"));
  EXPECT_THROW(replace_file(folder.file("a.toml"), "x"), Error);
  EXPECT_FALSE(files_test::exists(folder.file("a.toml.new")));
}

}  // namespace
}  // namespace bvconn::detail
