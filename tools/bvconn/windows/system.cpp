#include "system.h"

#include <fcntl.h>
#include <io.h>

#include <algorithm>
#include <cerrno>
#include <climits>

#include "bvconn/platform/conversions/date.h"
#include "bvconn/platform/file_state.h"
#include "bvconn/platform/files.h"
#include "bvconn/platform/local_time.h"
#include "bvconn/platform/windows/system.h"
#include "bvconn/platform/windows/wide_text.h"

namespace bvconn::tool {
namespace {

std::string digits(std::int64_t number, std::size_t count) {
  std::string text = std::to_string(number);
  if (text.size() < count) text.insert(0, count - text.size(), '0');
  return text;
}

std::string registry_text(const wchar_t* name) {
  constexpr const wchar_t* kVersion = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion";
  wchar_t text[256];
  DWORD size = sizeof(text);
  const LSTATUS code =
      ::RegGetValueW(HKEY_LOCAL_MACHINE, kVersion, name, RRF_RT_REG_SZ, nullptr, text, &size);
  return code == ERROR_SUCCESS ? detail::narrow(text) : "";
}

}  // namespace

// Here such a write fails without being told to. What is written and read are bytes, whose line
// ends stay as they are.
void survive_broken_pipes() {
  for (const int file : {0, 1, 2}) ::_setmode(file, _O_BINARY);
}

// A starter that closed them left no number free for others here.
void hold_standard_files() {}

// What the system gives `main` is in the code page of the user, which has but some of the letters,
// and has the names of files in the place of patterns.
std::vector<std::string> command_line(int, const char* const*) {
  int count = 0;
  wchar_t** const all = ::CommandLineToArgvW(::GetCommandLineW(), &count);
  std::vector<std::string> words;
  for (int i = 1; all != nullptr && i < count; ++i) words.push_back(detail::narrow(all[i]));
  ::LocalFree(all);
  return words;
}

std::optional<std::string> variable_of(const char* name) {
  if (::GetEnvironmentVariableW(detail::wide(name).c_str(), nullptr, 0) == 0) return std::nullopt;
  return detail::environment(name);
}

void set_variable(const char* name, const std::string& value) {
  ::_wputenv_s(detail::wide(name).c_str(), detail::wide(value).c_str());
}

std::vector<std::string> variables() {
  std::vector<std::string> all;
  wchar_t* const block = ::GetEnvironmentStringsW();
  for (const wchar_t* each = block; each != nullptr && *each != L'\0';) {
    const std::wstring_view entry(each);
    all.push_back(detail::narrow(entry));
    each += entry.size() + 1;
  }
  ::FreeEnvironmentStringsW(block);
  return all;
}

std::string user_settings_folder() {
  return variable_of("LOCALAPPDATA").value_or("");
}

std::string system_name() {
  const std::string build = registry_text(L"CurrentBuildNumber");
  constexpr int kBits = static_cast<int>(sizeof(void*)) * CHAR_BIT;
  return "Windows " + build + (build.empty() ? "" : ", ") + std::to_string(kBits) + " bits";
}

std::string distribution_name() {
  return registry_text(L"ProductName");
}

std::string local_time_text() {
  constexpr Date k1970{25'569LL * 24 * 60 * 60 * 1000};
  const detail::LocalMoment now = detail::local_now();
  const CivilDate date = to_civil(Date{k1970.milliseconds + now.wall_ms()});
  const std::int64_t east = std::abs(now.zone.offset_s) / 60;
  return digits(date.year, 4) + "-" + digits(date.month, 2) + "-" + digits(date.day, 2) + "T" +
         digits(date.hour, 2) + ":" + digits(date.minute, 2) + ":" + digits(date.second, 2) +
         (now.zone.offset_s < 0 ? "-" : "+") + digits(east / 60 * 100 + east % 60, 4);
}

std::ptrdiff_t write_standard_output(const char* text, std::size_t count) {
  const int code = detail::write_all(1, {text, count});
  if (code == 0) return static_cast<std::ptrdiff_t>(count);
  errno = code;
  return -1;
}

int make_private_file(const std::string& path) {
  return detail::open_file(path, O_WRONLY | O_CREAT | O_TRUNC).code;
}

std::string trouble_with_appending(const std::string& path) {
  const detail::OpenedFile opened = detail::open_file(path, O_WRONLY | O_APPEND | O_CREAT);
  if (opened.code != 0) return detail::system_message(opened.code);
  const auto state = detail::state_of(opened.file.get());
  return state && state->is_regular ? "" : "it is no regular file";
}

// No program can be started so here.
bool is_standard_input_a_folder() {
  return false;
}

}  // namespace bvconn::tool
