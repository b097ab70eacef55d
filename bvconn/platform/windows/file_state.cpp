#include "bvconn/platform/file_state.h"

#include <io.h>

#include <cerrno>
#include <string_view>

#include "bvconn/platform/windows/system.h"
#include "bvconn/platform/windows/wide_text.h"

namespace bvconn::detail {
namespace {

constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// An open handle, closed with this object.
class Handle {
 public:
  /// For what is said of a file alone; links are followed, and a folder is opened too.
  explicit Handle(const std::string& path)
      : handle_(::CreateFileW(wide_path(path).c_str(), FILE_READ_ATTRIBUTES, kShared, nullptr,
                              OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr)) {}
  ~Handle() {
    if (*this) ::CloseHandle(handle_);
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  explicit operator bool() const { return handle_ != INVALID_HANDLE_VALUE; }
  HANDLE get() const { return handle_; }

 private:
  HANDLE handle_;
};

HANDLE handle_of(int file) {
  return reinterpret_cast<HANDLE>(::_get_osfhandle(file));
}

std::uint64_t joined(DWORD high, DWORD low) {
  return std::uint64_t{high} << 32 | low;
}

/// From the system's count, of 100 ns since 1601.
std::int64_t in_ns(std::int64_t ticks) {
  constexpr std::int64_t kTicksTo1970 = 116'444'736'000'000'000;
  return (ticks - kTicksTo1970) * 100;
}

std::optional<FileState> state_from(HANDLE handle) noexcept {
  BY_HANDLE_FILE_INFORMATION info{};
  FILE_BASIC_INFO basic{};
  const bool is_disk = ::GetFileType(handle) == FILE_TYPE_DISK;
  if (!is_disk) return FileState{};
  if (::GetFileInformationByHandle(handle, &info) == 0 ||
      ::GetFileInformationByHandleEx(handle, FileBasicInfo, &basic, sizeof(basic)) == 0) {
    errno = errno_of(::GetLastError());
    return std::nullopt;
  }
  return FileState{.device = info.dwVolumeSerialNumber,
                   .inode = joined(info.nFileIndexHigh, info.nFileIndexLow),
                   .size = static_cast<std::int64_t>(joined(info.nFileSizeHigh, info.nFileSizeLow)),
                   .content_ns = in_ns(basic.LastWriteTime.QuadPart),
                   .status_ns = in_ns(basic.ChangeTime.QuadPart),
                   .is_regular = (info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0};
}

/// The byte that the lock is on lies where no file reaches: locks on this system keep others from
/// reading and writing what they are on.
OVERLAPPED lock_place() {
  OVERLAPPED place{};
  place.Offset = 0xFFFFFFFE;
  place.OffsetHigh = 0x7FFFFFFF;
  return place;
}

}  // namespace

std::optional<FileState> state_of(const std::string& path) noexcept {
  const Handle handle(path);
  if (handle) return state_from(handle.get());
  errno = errno_of(::GetLastError());
  return std::nullopt;
}

std::optional<FileState> state_of(int file) noexcept {
  return state_from(handle_of(file));
}

std::optional<FileState> state_without_times_of(const std::string& path) noexcept {
  return state_of(path);
}

std::optional<FileState> state_without_times_of(int file) noexcept {
  return state_of(file);
}

int try_lock(int file, FileHold hold) noexcept {
  unlock(file);
  OVERLAPPED place = lock_place();
  const DWORD kind = hold == FileHold::kAlone ? LOCKFILE_EXCLUSIVE_LOCK : 0;
  if (::LockFileEx(handle_of(file), kind | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place) != 0) {
    return 0;
  }
  const DWORD code = ::GetLastError();
  return code == ERROR_IO_PENDING ? EWOULDBLOCK : errno_of(code);
}

void unlock(int file) noexcept {
  OVERLAPPED place = lock_place();
  ::UnlockFileEx(handle_of(file), 0, 1, 0, &place);
}

std::string real_path(const std::string& path) {
  const Handle handle(path);
  if (!handle) return "";
  std::wstring name;
  while (true) {
    const DWORD size = ::GetFinalPathNameByHandleW(
        handle.get(), name.data(), static_cast<DWORD>(name.size()), FILE_NAME_NORMALIZED);
    if (size == 0) return "";
    const bool had_room = size < name.size();
    name.resize(size);
    if (had_room) break;
  }
  constexpr std::wstring_view kPlain = L"\\\\?\\";
  constexpr std::wstring_view kServer = L"\\\\?\\UNC\\";
  if (name.starts_with(kServer)) return narrow(name.replace(0, kServer.size(), L"\\\\"));
  return narrow(name.starts_with(kPlain) ? name.substr(kPlain.size()) : name);
}

int rename_file(const std::string& from, const std::string& to) noexcept {
  // A reader that has the other file open refuses this for as long as it reads.
  constexpr int kAttempts = 50;
  constexpr DWORD kWait_ms = 2;
  const std::wstring old_name = wide_path(from);
  const std::wstring new_name = wide_path(to);
  for (int attempt = 1;; ++attempt) {
    if (::MoveFileExW(old_name.c_str(), new_name.c_str(), MOVEFILE_REPLACE_EXISTING) != 0) return 0;
    const DWORD code = ::GetLastError();
    const bool may_end = code == ERROR_ACCESS_DENIED || code == ERROR_SHARING_VIOLATION;
    if (!may_end || attempt == kAttempts) return errno_of(code);
    ::Sleep(kWait_ms);
  }
}

void remove_file(const std::string& path) noexcept {
  ::DeleteFileW(wide_path(path).c_str());
}

int flush_file(int file) noexcept {
  return ::FlushFileBuffers(handle_of(file)) != 0 ? 0 : errno_of(::GetLastError());
}

// The system keeps its names by itself.
void flush_folder(const std::string&) noexcept {}

// A file has the permissions of its folder here.
int take_over_owner(int, const std::string&) noexcept {
  return 0;
}

}  // namespace bvconn::detail
