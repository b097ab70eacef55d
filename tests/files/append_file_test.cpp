#include "bvconn/platform/logging/append_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <csignal>

#include "bvconn/platform/error.h"
#include "bvconn/platform/files.h"
#include "files/temp_folder.h"
#include "support/error_of.h"

namespace bvconn {
namespace {

using files_test::pipe_at;
using files_test::TempFolder;
using test::error_of;

TEST(AppendToFile, AddsBehindWhatIsThere) {
  const TempFolder folder;
  append_to_file(folder.file("a.log"), "one\r\n");
  append_to_file(folder.file("a.log"), "two\n");
  EXPECT_EQ(files_test::bytes_of(folder.file("a.log")), "one\r\ntwo\n");
}

// A program may have closed its standard input, so that the first file that is opened is number 0.
TEST(Descriptor, ClosesNumberZeroToo) {
  const int input = ::dup(0);
  ASSERT_EQ(::close(0), 0);
  {
    const detail::OpenedFile opened = detail::open_file("/dev/null", O_RDONLY);
    ASSERT_EQ(opened.file.get(), 0);
  }
  EXPECT_EQ(::fcntl(0, F_GETFD), -1);
  ASSERT_EQ(::dup2(input, 0), 0);
  ::close(input);
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

TEST(AppendToFile, AFileThatCannotGrowIsAnError) {
  const TempFolder folder;
  const std::string path = folder.file("a.log");
  struct rlimit old {};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &old), 0);
  const rlimit small{.rlim_cur = 2, .rlim_max = old.rlim_max};
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
  const Error error = error_of([&] { append_to_file(path, "line"); });
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &old), 0);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(error.description, "Cannot write the log file \"" + path + "\": File too large");
}

TEST(AppendToFile, APipeIsRefusedWithoutWaitingWhetherItIsReadOrNot) {
  const TempFolder folder;
  const std::string path = pipe_at(folder.file("pipe.log"));
  const std::string refusal =
      "Cannot open the log file \"" + path + "\": It is neither a regular file nor /dev/null";
  const Error unread = error_of([&] { append_to_file(path, "line"); });
  EXPECT_EQ(hex_number(unread.number), "0x80041003");
  EXPECT_EQ(unread.description, refusal);
  const detail::Descriptor reader(::open(path.c_str(), O_RDONLY | O_NONBLOCK));
  ASSERT_TRUE(reader);
  EXPECT_EQ(error_of([&] { append_to_file(path, "line"); }).description, refusal);
  EXPECT_FALSE(try_append_to_file(path, "line"));
}

TEST(AppendToFile, ADeviceIsRefusedButForNull) {
  EXPECT_EQ(hex_number(error_of([] { append_to_file("/dev/zero", "line"); }).number), "0x80041003");
  EXPECT_NO_THROW(append_to_file("/dev/null", "line"));
  EXPECT_TRUE(try_append_to_file("/dev/null", "line"));
}

TEST(AppendToFile, ASocketIsRefused) {
  const TempFolder folder;
  const std::string path = folder.file("s");
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  ASSERT_LT(path.size(), sizeof(address.sun_path));
  path.copy(address.sun_path, path.size());
  const detail::Descriptor socket(::socket(AF_UNIX, SOCK_STREAM, 0));
  ASSERT_EQ(::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
  EXPECT_EQ(
      error_of([&] { append_to_file(path, "line"); }).description,
      "Cannot open the log file \"" + path + "\": It is neither a regular file nor /dev/null");
}

}  // namespace
}  // namespace bvconn
