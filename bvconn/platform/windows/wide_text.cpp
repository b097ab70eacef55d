#include "bvconn/platform/windows/wide_text.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <new>

#include "bvconn/platform/windows/system.h"

namespace bvconn::detail {
namespace {

int counted(std::size_t size) {
  if (size > INT_MAX) throw std::bad_alloc();
  return static_cast<int>(size);
}

}  // namespace

std::wstring wide(std::string_view text) {
  const int size = counted(text.size());
  if (size == 0) return {};
  const int needed = ::MultiByteToWideChar(CP_UTF8, 0, text.data(), size, nullptr, 0);
  std::wstring result(static_cast<std::size_t>(needed), L'\0');
  ::MultiByteToWideChar(CP_UTF8, 0, text.data(), size, result.data(), needed);
  return result;
}

std::string narrow(std::wstring_view text) {
  const int size = counted(text.size());
  if (size == 0) return {};
  const int needed =
      ::WideCharToMultiByte(CP_UTF8, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
  std::string result(static_cast<std::size_t>(needed), '\0');
  ::WideCharToMultiByte(CP_UTF8, 0, text.data(), size, result.data(), needed, nullptr, nullptr);
  return result;
}

std::wstring wide_path(std::string_view path) {
  std::wstring result = wide(path.substr(0, path.find('\0')));
  std::replace(result.begin(), result.end(), L'/', L'\\');
  return result;
}

int errno_of(unsigned long code) noexcept {
  switch (code) {
    case ERROR_SUCCESS:
      return 0;
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_PATHNAME:
      return ENOENT;
    case ERROR_INVALID_NAME:
      return EINVAL;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_WRITE_PROTECT:
    case ERROR_DELETE_PENDING:
      return EACCES;
    case ERROR_LOCK_VIOLATION:
      return EWOULDBLOCK;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
      return EEXIST;
    case ERROR_DIRECTORY:
      return ENOTDIR;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
      return ENOSPC;
    case ERROR_TOO_MANY_OPEN_FILES:
      return EMFILE;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
      return ENOMEM;
    case ERROR_FILENAME_EXCED_RANGE:
      return ENAMETOOLONG;
    case ERROR_BROKEN_PIPE:
    case ERROR_NO_DATA:
      return EPIPE;
    default:
      return EIO;
  }
}

std::string windows_message(unsigned long code) {
  std::array<wchar_t, 512> text{};
  constexpr DWORD kFlags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
  DWORD size = ::FormatMessageW(kFlags, nullptr, code, 0, text.data(),
                                static_cast<DWORD>(text.size()), nullptr);
  while (size > 0 && (text[size - 1] == L'\n' || text[size - 1] == L'\r' ||
                      text[size - 1] == L' ' || text[size - 1] == L'.')) {
    --size;
  }
  if (size == 0) return "Error " + std::to_string(code);
  return narrow({text.data(), size});
}

}  // namespace bvconn::detail
