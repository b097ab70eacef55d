// Takes the input for a settings file: it is read as whole numbers, as text and by its paths, and a
// value is written into it. A file that reads must hold what was written, and whatever else it
// held.
#include <fcntl.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/settings/registry_access.h"
#include "fuzzing.h"

namespace {

using namespace bvconn;  // NOLINT(google-build-using-namespace): the interface under test
using fuzz::require;
namespace numbers = error_numbers;

constexpr std::string_view kKey = "Software\\Brimvale\\Torvex\\AppData";
constexpr std::string_view kPath = "HKCU\\Software\\Brimvale\\Torvex\\AppData\\";
constexpr auto kRoot = SettingsRoot::kCurrentUser;

/// A folder in memory, where there is one, that goes with the program.
class Folder {
 public:
  Folder() {
    std::string pattern = "/dev/shm/bvconn-fuzz-XXXXXX";
    if (::mkdtemp(pattern.data()) == nullptr) {
      pattern = (std::filesystem::temp_directory_path() / "bvconn-fuzz-XXXXXX").string();
      require(::mkdtemp(pattern.data()) != nullptr, "there is no folder for the settings");
    }
    path_ = pattern;
    ::setenv("BVCONN_USER_SETTINGS", file().c_str(), 1);
    ::setenv("BVCONN_MACHINE_SETTINGS", (path_ / "none").c_str(), 1);
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  std::string file() const { return path_ / "settings.toml"; }

  void write(std::string_view text) const {
    const int file_number = ::open(file().c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    const ssize_t written = ::write(file_number, text.data(), text.size());
    require(written == static_cast<ssize_t>(text.size()), "the settings cannot be written");
    ::close(file_number);
  }

 private:
  std::filesystem::path path_;
};

/// What reading gives; nothing where it fails with one of the numbers that reading has.
template <typename Read>
auto read(Read action) -> std::optional<decltype(action())> {
  try {
    return action();
  } catch (const Error& error) {
    fuzz::require_error(error,
                        {numbers::kSettingsNotToml, numbers::kTypeMismatch, numbers::kOverflow});
    return std::nullopt;
  }
}

std::optional<std::string> text_of(RegistryAccess& settings, std::string_view name) {
  return read([&] { return settings.ReadString(kRoot, kKey, name); });
}

std::optional<bool> exists(RegistryAccess& settings, std::string_view name) {
  return read([&] { return settings.Exists(std::string(kPath).append(name)); });
}

bool write(RegistryAccess& settings, std::string_view value) {
  try {
    settings.Write(std::string(kPath).append("tracePort"), std::string(value), "REG_SZ");
    return true;
  } catch (const Error& error) {
    fuzz::require_error(error, {numbers::kSettingsNotToml, numbers::kSettingsUnusable});
    return false;
  }
}

void check_good_file(RegistryAccess& settings, std::string_view text) {
  const auto other = text_of(settings, "defaultTimeOut");
  if (exists(settings, "defaultTimeOut") == false) {
    require(other == "", "a value that is not there is something", text);
  }
  static_cast<void>(read([&] { return settings.ReadNumber(kRoot, kKey, "defaultTimeOut"); }));
  const std::string_view value = text.substr(0, text.find('\n'));
  const auto before = text_of(settings, "tracePort");
  if (write(settings, value)) {
    require(text_of(settings, "TRACEPORT") == value, "what was written is not there", text);
    require(text_of(settings, "defaultTimeOut") == other, "writing changed another value", text);
  } else {
    require(text_of(settings, "tracePort") == before, "a failed write left a trace", text);
  }
}

void check_bad_file(RegistryAccess& settings, std::string_view text) {
  require(!text_of(settings, "tracePort"), "a file that does not read has values", text);
  require(!write(settings, "8888"), "a file that does not read was written", text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Folder folder;
  static const auto settings = make_settings_files();
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  folder.write(text);
  if (exists(*settings, "tracePort")) {
    check_good_file(*settings, text);
  } else {
    check_bad_file(*settings, text);
  }
  return 0;
}
