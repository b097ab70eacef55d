#include "bvconn/platform/logging/append_file.h"

#include <gtest/gtest.h>

#include "bvconn/platform/error.h"
#include "files/temp_folder.h"
#include "support/error_of.h"

namespace bvconn {
namespace {

using files_test::TempFolder;
using test::error_of;

TEST(AppendToFile, AddsBehindWhatIsThere) {
  const TempFolder folder;
  append_to_file(folder.file("a.log"), "one\r\n");
  append_to_file(folder.file("a.log"), "two\n");
  EXPECT_EQ(files_test::bytes_of(folder.file("a.log")), "one\r\ntwo\n");
}

TEST(AppendToFile, MakesFileAndFoldersForTheOwnerAlone) {
  const TempFolder folder;
  append_to_file(folder.file("x/y/a.log"), "line");
  EXPECT_EQ(files_test::mode_of(folder.file("x")), 0700U);
  EXPECT_EQ(files_test::mode_of(folder.file("x/y/a.log")), 0600U);
}

TEST(AppendToFile, FailsWithTheLogFilesNumberAndNamesTheFile) {
  const TempFolder folder;
  files_test::put_bytes(folder.file("file"), "x");
  const std::string path = folder.file("file/a.log");
  const Error error = error_of([&] { append_to_file(path, "line"); });
  EXPECT_EQ(hex_number(error.number), "0x80041003");
  EXPECT_EQ(error.source, "SessionLogger");
  EXPECT_EQ(error.description, "Cannot open the log file \"" + path + "\": Not a directory");
  EXPECT_FALSE(try_append_to_file(path, "line"));
}

TEST(AppendToFile, AFullDiskIsAnError) {
  if (!files_test::exists("/dev/full")) {
    GTEST_SKIP() << "no device that is always full";
  }
  const Error error = error_of([&] { append_to_file("/dev/full", "line"); });
  EXPECT_EQ(error.description, "Cannot write the log file \"/dev/full\": No space left on device");
}

}  // namespace
}  // namespace bvconn
