#include "bvconn/platform/file_state.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>

#include "bvconn/platform/files.h"
#include "files/temp_folder.h"

namespace bvconn::detail {
namespace {

using files_test::put_bytes;
using files_test::TempFolder;

void expect_to_say(const FileState& state, const struct stat& status) {
  EXPECT_EQ(state.device, status.st_dev);
  EXPECT_EQ(state.inode, status.st_ino);
  EXPECT_EQ(state.size, status.st_size);
  EXPECT_EQ(state.is_regular, S_ISREG(status.st_mode));
}

void expect_as_by_stat(const std::string& path) {
  SCOPED_TRACE(path);
  struct stat status {};
  ASSERT_EQ(::stat(path.c_str(), &status), 0);
  const auto with_times = state_of(path);
  const auto without = state_without_times_of(path);
  ASSERT_TRUE(with_times && without);
  expect_to_say(*with_times, status);
  expect_to_say(*without, status);
}

TEST(StateWithoutTimes, SaysOfFilesFoldersAndDevicesWhatStatSays) {
  const TempFolder folder;
  const std::string file = folder.file("a");
  put_bytes(file, "12345");
  std::filesystem::create_hard_link(file, folder.file("b"));
  std::filesystem::create_symlink(file, folder.file("c"));
  for (const std::string& path : {file, folder.file("b"), folder.file("c"), folder.file("."),
                                  std::string("/dev/null"), std::string("/proc/self/status")}) {
    expect_as_by_stat(path);
  }
}

TEST(StateWithoutTimes, OfAnOpenFileIsThatOfItsPathAlsoOnceItIsRemoved) {
  const TempFolder folder;
  const std::string path = folder.file("a");
  put_bytes(path, "12345");
  const OpenedFile opened = open_file(path, O_RDONLY);
  const auto by_path = state_without_times_of(path);
  const auto open = state_without_times_of(opened.file.get());
  ASSERT_TRUE(by_path && open);
  EXPECT_TRUE(by_path->is_same_file(*open));
  EXPECT_EQ(open->size, 5);
  std::filesystem::remove(path);
  const auto removed = state_without_times_of(opened.file.get());
  ASSERT_TRUE(removed);
  EXPECT_TRUE(removed->is_same_file(*open));
}

TEST(StateWithoutTimes, OfNothingIsNothingAndTheSystemSaysWhy) {
  const TempFolder folder;
  errno = 0;
  EXPECT_FALSE(state_without_times_of(folder.file("none")));
  EXPECT_EQ(errno, ENOENT);
  errno = 0;
  EXPECT_FALSE(state_without_times_of(-1));
  EXPECT_EQ(errno, EBADF);
}

TEST(RenameFile, TakesThePlaceOfOneThatIsOpen) {
  const TempFolder folder;
  put_bytes(folder.file("old"), "old");
  put_bytes(folder.file("new"), "new");
  const OpenedFile reader = open_file(folder.file("old"), O_RDONLY);
  EXPECT_EQ(rename_file(folder.file("new"), folder.file("old")), 0);
  EXPECT_EQ(files_test::bytes_of(folder.file("old")), "new");
  EXPECT_FALSE(files_test::exists(folder.file("new")));
  char bytes[8] = {};
  EXPECT_EQ(read_some(reader.file.get(), bytes, 8), 3);
  EXPECT_EQ(std::string(bytes), "old") << "whoever has it open reads on";
}

}  // namespace
}  // namespace bvconn::detail
