#include "bvconn/platform/files.h"

#include <fcntl.h>
#include <io.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <system_error>
#include <utility>

#include "bvconn/platform/windows/system.h"
#include "bvconn/platform/windows/wide_text.h"

namespace bvconn::detail {

namespace {

/// The code of what is there but no file; the system has none that says so.
constexpr int kNoFile = -1;

HANDLE handle_of(int file) {
  return reinterpret_cast<HANDLE>(::_get_osfhandle(file));
}

int last_errno() noexcept {
  return errno_of(::GetLastError());
}

bool is_folder(const std::wstring& path) {
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

/// The device that swallows everything; the system knows it in every folder.
bool is_null_device(std::wstring path) {
  std::transform(path.begin(), path.end(), path.begin(), [](wchar_t c) {
    return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
  });
  return path == L"nul" || path == L"\\\\.\\nul";
}

/// What is appended to is never written elsewhere, so that lines of several writers never mix. It
/// is read as well, without which there is no lock.
DWORD access_of(int flags) {
  if ((flags & O_APPEND) != 0) return FILE_APPEND_DATA | FILE_GENERIC_READ;
  if ((flags & O_RDWR) != 0) return GENERIC_READ | GENERIC_WRITE;
  return (flags & O_WRONLY) != 0 ? GENERIC_WRITE | FILE_READ_ATTRIBUTES : GENERIC_READ;
}

DWORD disposition_of(int flags) {
  if ((flags & O_CREAT) == 0) return (flags & O_TRUNC) != 0 ? TRUNCATE_EXISTING : OPEN_EXISTING;
  if ((flags & O_EXCL) != 0) return CREATE_NEW;
  return (flags & O_TRUNC) != 0 ? CREATE_ALWAYS : OPEN_ALWAYS;
}

}  // namespace

OpenedFile open_file(const std::string& path, int flags) {
  // The device that swallows everything has its name of other systems here too.
  const std::wstring name = path == "/dev/null" ? L"NUL" : wide_path(path);
  if (name.empty()) return {.file = Descriptor(), .code = ENOENT};
  // Others may write, rename and remove the file meanwhile, as they may on any other system.
  constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const HANDLE handle = ::CreateFileW(name.c_str(), access_of(flags), kShared, nullptr,
                                      disposition_of(flags), FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) {
    const int code = last_errno();
    return {.file = Descriptor(), .code = is_folder(name) ? EISDIR : code};
  }
  const DWORD kind = ::GetFileType(handle);
  const bool is_file = kind == FILE_TYPE_DISK || (kind == FILE_TYPE_CHAR && is_null_device(name));
  const int file =
      is_file ? ::_open_osfhandle(reinterpret_cast<std::intptr_t>(handle), _O_BINARY | _O_NOINHERIT)
              : -1;
  if (file >= 0) return {.file = Descriptor(file), .code = 0};
  ::CloseHandle(handle);
  return {.file = Descriptor(), .code = is_file ? EMFILE : kNoFile};
}

std::string environment(const char* name) {
  const std::wstring variable = wide(name);
  std::wstring value;
  while (true) {
    const DWORD size =
        ::GetEnvironmentVariableW(variable.c_str(), value.data(), static_cast<DWORD>(value.size()));
    // Without the NUL where the value had room, with it where it had not.
    const bool had_room = size < value.size() || size == 0;
    value.resize(size);
    if (had_room) return narrow(value);
  }
}

std::string user_file(UserFolder, std::string_view name) {
  std::string folder = environment("LOCALAPPDATA");
  if (folder.empty()) return "";
  return folder.append("\\").append(name);
}

std::string machine_file(std::string_view name) {
  std::string folder = environment("ProgramData");
  if (folder.empty()) folder = "C:\\ProgramData";
  return folder.append("\\").append(name);
}

bool make_folders_of(const std::string& path) {
  const std::wstring file = wide_path(path);
  bool there = true;
  for (std::size_t end = file.find(L'\\', 1); end != std::wstring::npos;
       end = file.find(L'\\', end + 1)) {
    const std::wstring folder = file.substr(0, end);
    // A drive and a server cannot be made, and need not be.
    there = ::CreateDirectoryW(folder.c_str(), nullptr) != 0 || is_folder(folder) ||
            folder.ends_with(L':');
  }
  return there;
}

std::ptrdiff_t read_some(int file, char* to, std::size_t size) noexcept {
  constexpr std::size_t kMost = std::size_t{1} << 30;
  DWORD got = 0;
  if (::ReadFile(handle_of(file), to, static_cast<DWORD>(std::min(size, kMost)), &got, nullptr) !=
          0 ||
      ::GetLastError() == ERROR_HANDLE_EOF || ::GetLastError() == ERROR_BROKEN_PIPE) {
    return static_cast<std::ptrdiff_t>(got);
  }
  errno = last_errno();
  return -1;
}

int write_all(int file, std::string_view bytes) noexcept {
  constexpr std::size_t kMost = std::size_t{1} << 30;
  while (!bytes.empty()) {
    DWORD written = 0;
    const auto wanted = static_cast<DWORD>(std::min(bytes.size(), kMost));
    if (::WriteFile(handle_of(file), bytes.data(), wanted, &written, nullptr) == 0) {
      return last_errno();
    }
    bytes.remove_prefix(written);
  }
  return 0;
}

std::string system_message(int code) {
  if (code == kNoFile) return "It is neither a regular file nor NUL";
  return std::generic_category().message(code);
}

}  // namespace bvconn::detail
