#include <gtest/gtest.h>

#include <new>
#include <string>

#include "bvconn/platform/settings/registry_access.h"
#include "files/temp_folder.h"
#include "support/watched_memory.h"

namespace bvconn::test {
namespace {

/// Reads one value from a settings file of this text, with each allocation failing in turn, and
/// gives the number of those whose lack was reported as such.
std::size_t times_out_of_memory(const std::string& toml) {
  const files_test::TempFolder folder;
  const files_test::ScopedEnvironment place("BVCONN_MACHINE_SETTINGS", folder.file("s.toml"));
  files_test::put_bytes(folder.file("s.toml"), toml);
  const auto settings = make_settings_files();
  std::size_t times = 0;
  bool struck = true;
  for (std::size_t number = 1; struck; ++number) {
    try {
      const FailingMemory shortage(number, Shortage::kOnward);
      settings->ReadNumber(SettingsRoot::kLocalMachine, R"(Software\Brimvale)", "port");
      struck = FailingMemory::has_struck();
    } catch (const std::bad_alloc&) {
      ++times;
    }
  }
  return times;
}

// Who catches it makes error 7 of it; a reader that swore never to throw would end the process.
TEST(LackOfMemory, IsReportedByTheReaderOfSettingsFiles) {
  EXPECT_GT(times_out_of_memory("['Software\\Brimvale']\nport = 8888\ntext = \"of many letters, so "
                                "that it needs memory\"\nlist = [1, {a.b = 2}]\n"),
            5U);
}

}  // namespace
}  // namespace bvconn::test
