#include "bvconn/platform/windows/wide_text.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <new>
#include <utility>

#include "bvconn/platform/windows/system.h"

namespace bvconn::detail {
namespace {

int counted(std::size_t size) {
  if (size > INT_MAX) throw std::bad_alloc();
  return static_cast<int>(size);
}

/// "" for what the flags refuse.
std::string narrow_with(DWORD flags, std::wstring_view text) {
  const int size = counted(text.size());
  if (size == 0) return {};
  const int needed =
      ::WideCharToMultiByte(CP_UTF8, flags, text.data(), size, nullptr, 0, nullptr, nullptr);
  std::string result(static_cast<std::size_t>(needed), '\0');
  ::WideCharToMultiByte(CP_UTF8, flags, text.data(), size, result.data(), needed, nullptr, nullptr);
  return result;
}

/// The path from its root on, in the form that the system does not bound. It looks for no "." and
/// ".." in that form, so they are resolved first.
std::wstring without_bound(std::wstring path) {
  constexpr std::wstring_view kServer = L"\\\\";
  constexpr std::wstring_view kUnbounded = L"\\\\?\\";
  constexpr std::wstring_view kDevice = L"\\\\.\\";
  if (path.starts_with(kUnbounded) || path.starts_with(kDevice)) return path;
  std::wstring full(::GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
  const DWORD size =
      ::GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
  if (size == 0 || size >= full.size()) return path;
  full.resize(size);
  if (full.starts_with(kServer)) return full.replace(0, kServer.size(), L"\\\\?\\UNC\\");
  return full.insert(0, kUnbounded);
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
  return narrow_with(0, text);
}

std::optional<std::string> narrow_strictly(std::wstring_view text) {
  std::string result = narrow_with(WC_ERR_INVALID_CHARS, text);
  if (result.empty() && !text.empty()) return std::nullopt;
  return result;
}

std::wstring wide_path(std::string_view path) {
  // Of a folder the system wants room for the name of a file in it.
  constexpr std::size_t kLongestPlain = 247;
  std::wstring result = wide(path.substr(0, path.find('\0')));
  std::replace(result.begin(), result.end(), L'/', L'\\');
  return result.size() <= kLongestPlain ? result : without_bound(std::move(result));
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
