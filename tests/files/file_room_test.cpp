#include <fcntl.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include "bvconn/platform/file_state.h"
#include "bvconn/platform/files.h"
#include "files/temp_folder.h"

// What files and their locks do on every system.
namespace bvconn::detail {
namespace {

using files_test::bytes_of;
using files_test::exists;
using files_test::put_bytes;
using files_test::TempFolder;

constexpr int kWriting = O_WRONLY | O_CREAT;

TEST(OpenFile, MakesOneReadsItAndSaysWhyItCannot) {
  const TempFolder folder;
  const std::string path = folder.file("a");
  EXPECT_EQ(open_file(path, O_RDONLY).code, ENOENT);
  EXPECT_EQ(open_file(folder.file("none/a"), kWriting).code, ENOENT);
  EXPECT_EQ(open_file(folder.file("."), O_RDONLY).code, EISDIR);
  EXPECT_EQ(open_file("", O_RDONLY).code, ENOENT);
  ASSERT_EQ(write_all(open_file(path, kWriting).file.get(), "12345"), 0);
  EXPECT_EQ(open_file(path, kWriting | O_EXCL).code, EEXIST);
  const OpenedFile opened = open_file(path, O_RDONLY);
  ASSERT_TRUE(opened.file);
  char bytes[8] = {};
  EXPECT_EQ(read_some(opened.file.get(), bytes, 3), 3);
  EXPECT_EQ(std::string(bytes), "123");
  EXPECT_EQ(read_some(opened.file.get(), bytes, 8), 2);
  EXPECT_EQ(read_some(opened.file.get(), bytes, 8), 0);
  EXPECT_NE(write_all(opened.file.get(), "x"), 0) << "it was opened for reading";
  EXPECT_EQ(bytes_of(path), "12345");
}

TEST(OpenFile, EmptiesOneWhereItIsToldTo) {
  const TempFolder folder;
  const std::string path = folder.file("a");
  put_bytes(path, "12345");
  ASSERT_EQ(write_all(open_file(path, kWriting).file.get(), "ab"), 0);
  EXPECT_EQ(bytes_of(path), "ab345");
  ASSERT_EQ(write_all(open_file(path, kWriting | O_TRUNC).file.get(), "c"), 0);
  EXPECT_EQ(bytes_of(path), "c");
}

TEST(OpenFile, AppendsBehindWhatOthersAppendedMeanwhile) {
  const TempFolder folder;
  const std::string path = folder.file("a");
  const OpenedFile first = open_file(path, kWriting | O_APPEND);
  const OpenedFile second = open_file(path, kWriting | O_APPEND);
  for (const OpenedFile* each : {&first, &second, &first}) {
    ASSERT_EQ(write_all(each->file.get(), each == &first ? "one\r\n" : "two\n"), 0);
  }
  EXPECT_EQ(bytes_of(path), "one\r\ntwo\none\r\n");
}

TEST(OpenFile, KnowsTheDeviceThatSwallowsEverything) {
  const OpenedFile opened = open_file("/dev/null", O_RDWR);
  ASSERT_TRUE(opened.file);
  EXPECT_EQ(write_all(opened.file.get(), "x"), 0);
  char byte = 0;
  EXPECT_EQ(read_some(opened.file.get(), &byte, 1), 0);
  const auto state = state_of(opened.file.get());
  ASSERT_TRUE(state);
  EXPECT_FALSE(state->is_regular);
}

TEST(FilesFolders, AreMadeAsFarAsTheyAreMissing) {
  const TempFolder folder;
  EXPECT_TRUE(make_folders_of(folder.file("x/y/z/a")));
  EXPECT_TRUE(std::filesystem::is_directory(folder.file("x/y/z")));
  EXPECT_FALSE(exists(folder.file("x/y/z/a")));
  EXPECT_TRUE(make_folders_of(folder.file("x/y/z/a")));
  put_bytes(folder.file("file"), "x");
  EXPECT_FALSE(make_folders_of(folder.file("file/below/a")));
}

TEST(FileStates, TellSizeKindAndWhetherItIsTheSameFile) {
  const TempFolder folder;
  put_bytes(folder.file("a"), "12345");
  put_bytes(folder.file("b"), "12345");
  const auto a = state_of(folder.file("a"));
  const auto b = state_of(folder.file("b"));
  const auto all = state_of(folder.file("."));
  ASSERT_TRUE(a && b && all);
  EXPECT_EQ(a->size, 5);
  EXPECT_TRUE(a->is_regular);
  EXPECT_FALSE(all->is_regular);
  EXPECT_FALSE(a->is_same_file(*b));
  EXPECT_TRUE(a->is_same_file(*state_without_times_of(folder.file("./a"))));
  errno = 0;
  EXPECT_FALSE(state_of(folder.file("none")));
  EXPECT_EQ(errno, ENOENT);
}

TEST(FileStates, OfAnOpenFileAreThoseOfItsPathUntilAnotherTakesIt) {
  const TempFolder folder;
  put_bytes(folder.file("a"), "12345");
  const OpenedFile opened = open_file(folder.file("a"), O_RDONLY);
  const auto open = state_of(opened.file.get());
  ASSERT_TRUE(open);
  EXPECT_TRUE(open->is_same_file(*state_of(folder.file("a"))));
  put_bytes(folder.file("b"), "123");
  ASSERT_EQ(rename_file(folder.file("a"), folder.file("old")), 0);
  ASSERT_EQ(rename_file(folder.file("b"), folder.file("a")), 0);
  EXPECT_TRUE(open->is_same_file(*state_of(opened.file.get())));
  EXPECT_TRUE(open->is_same_file(*state_of(folder.file("old"))));
  EXPECT_FALSE(open->is_same_file(*state_of(folder.file("a"))));
}

TEST(FileStates, HaveTheTimesOfTheirChanges) {
  using namespace std::chrono;
  const auto now_ns = [] {
    return duration_cast<nanoseconds>(system_clock::now().time_since_epoch()).count();
  };
  constexpr std::int64_t kSlack_ns = 2'000'000'000;
  const TempFolder folder;
  const std::string path = folder.file("a");
  const std::int64_t before = now_ns();
  put_bytes(path, "1");
  const auto first = state_of(path);
  ASSERT_TRUE(first);
  EXPECT_GE(first->content_ns, before - kSlack_ns);
  EXPECT_LE(first->content_ns, now_ns() + kSlack_ns);
  std::this_thread::sleep_for(milliseconds(30));
  put_bytes(path, "2");
  const auto second = state_of(path);
  ASSERT_TRUE(second);
  EXPECT_GT(second->content_ns, first->content_ns);
  EXPECT_GT(second->status_ns, first->status_ns);
  // Nobody can set that one.
  std::filesystem::last_write_time(path, std::filesystem::last_write_time(path) - hours(1));
  const auto set_back = state_of(path);
  ASSERT_TRUE(set_back);
  EXPECT_LT(set_back->content_ns, first->content_ns);
  EXPECT_GE(set_back->status_ns, second->status_ns);
}

TEST(TryLock, IsHeldByOneAloneOrByManyTogether) {
  const TempFolder folder;
  const std::string path = folder.file("a");
  put_bytes(path, "");
  const OpenedFile first = open_file(path, O_RDWR);
  const OpenedFile second = open_file(path, O_RDWR);
  const int one = first.file.get();
  const int other = second.file.get();
  EXPECT_EQ(try_lock(one, FileHold::kShared), 0);
  EXPECT_EQ(try_lock(other, FileHold::kShared), 0);
  EXPECT_EQ(try_lock(other, FileHold::kAlone), EWOULDBLOCK);
  unlock(one);
  EXPECT_EQ(try_lock(other, FileHold::kAlone), 0);
  EXPECT_EQ(try_lock(one, FileHold::kShared), EWOULDBLOCK);
  EXPECT_EQ(try_lock(one, FileHold::kAlone), EWOULDBLOCK);
  EXPECT_EQ(try_lock(other, FileHold::kAlone), 0) << "whoever has it may take it again";
  unlock(other);
  EXPECT_EQ(try_lock(one, FileHold::kAlone), 0);
}

TEST(TryLock, KeepsNobodyFromReadingAndWriting) {
  const TempFolder folder;
  const std::string path = folder.file("a");
  const OpenedFile held = open_file(path, O_WRONLY | O_CREAT | O_APPEND);
  ASSERT_EQ(try_lock(held.file.get(), FileHold::kAlone), 0);
  const OpenedFile other = open_file(path, O_WRONLY | O_APPEND);
  EXPECT_EQ(write_all(other.file.get(), "other "), 0);
  EXPECT_EQ(write_all(held.file.get(), "held"), 0);
  EXPECT_EQ(bytes_of(path), "other held");
}

TEST(TryLock, GoesWithTheFile) {
  const TempFolder folder;
  const std::string path = folder.file("a");
  put_bytes(path, "");
  const OpenedFile second = open_file(path, O_RDONLY);
  {
    const OpenedFile first = open_file(path, O_RDONLY);
    ASSERT_EQ(try_lock(first.file.get(), FileHold::kAlone), 0);
    EXPECT_EQ(try_lock(second.file.get(), FileHold::kShared), EWOULDBLOCK);
  }
  EXPECT_EQ(try_lock(second.file.get(), FileHold::kShared), 0);
}

// There are systems on which nothing takes the place of a file that is open.
TEST(RenameFile, WaitsForAReaderThatIsDoneSoon) {
  const TempFolder folder;
  put_bytes(folder.file("old"), "old");
  put_bytes(folder.file("new"), "new");
  OpenedFile reader = open_file(folder.file("old"), O_RDONLY);
  std::thread done([&reader] {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    reader.file.close();
  });
  EXPECT_EQ(rename_file(folder.file("new"), folder.file("old")), 0);
  EXPECT_EQ(bytes_of(folder.file("old")), "new");
  EXPECT_FALSE(exists(folder.file("new")));
  done.join();
}

TEST(RenameFile, SaysWhyItCannot) {
  const TempFolder folder;
  EXPECT_EQ(rename_file(folder.file("none"), folder.file("b")), ENOENT);
  put_bytes(folder.file("a"), "a");
  std::filesystem::create_directories(folder.file("in the way/x"));
  EXPECT_NE(rename_file(folder.file("a"), folder.file("in the way")), 0);
  EXPECT_EQ(bytes_of(folder.file("a")), "a");
}

TEST(RemoveFile, RemovesOneThatIsOpen) {
  const TempFolder folder;
  put_bytes(folder.file("a"), "12345");
  const OpenedFile opened = open_file(folder.file("a"), O_RDONLY);
  remove_file(folder.file("a"));
  char bytes[8] = {};
  EXPECT_EQ(read_some(opened.file.get(), bytes, 8), 5);
  remove_file(folder.file("none"));
}

TEST(RealPath, IsThatOfTheFileAndNothingWhereThereIsNone) {
  const TempFolder folder;
  put_bytes(folder.file("a"), "x");
  std::filesystem::create_directory(folder.file("x"));
  const std::string real = real_path(folder.file("a"));
  EXPECT_EQ(real_path(folder.file("x/../a")), real);
  EXPECT_TRUE(state_of(real)->is_same_file(*state_of(folder.file("a"))));
  EXPECT_EQ(real.find("?"), std::string::npos) << real;
  EXPECT_EQ(std::filesystem::path(real), std::filesystem::canonical(folder.file("a")));
  EXPECT_EQ(real_path(folder.file("none")), "");
}

TEST(FlushFile, BringsWhatWasWrittenToTheDisk) {
  const TempFolder folder;
  const OpenedFile opened = open_file(folder.file("a"), kWriting);
  ASSERT_EQ(write_all(opened.file.get(), "x"), 0);
  EXPECT_EQ(flush_file(opened.file.get()), 0);
  flush_folder(folder.file("."));
  EXPECT_EQ(bytes_of(folder.file("a")), "x");
}

}  // namespace
}  // namespace bvconn::detail
