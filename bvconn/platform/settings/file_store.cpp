#include "bvconn/platform/settings/file_store.h"

#include <fcntl.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <thread>
#include <utility>

#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/file_state.h"

namespace bvconn::detail {
namespace {

namespace fs = std::filesystem;

constexpr int kMaxLinks = 40;
constexpr std::chrono::milliseconds kLockPoll{5};
constexpr std::string_view kSource = "RegistryAccess";

Descriptor open_or_fail(std::string_view doing, const std::string& path, int flags) {
  OpenedFile opened = open_file(path, flags);
  if (!opened.file) {
    fail_unusable(doing, path, system_message(opened.code));
  }
  return std::move(opened.file);
}

std::string folder_of(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

void write_durably(const std::string& temporary, const std::string& path, std::string_view bytes) {
  OpenedFile opened = open_file(temporary, O_WRONLY | O_CREAT | O_EXCL);
  if (!opened.file) {
    fail_unusable("write", path, system_message(opened.code));
  }
  Descriptor& file = opened.file;
  if (const int refused = take_over_owner(file.get(), path); refused != 0) {
    fail_unusable("write", path, system_message(refused));
  }
  int code = write_all(file.get(), bytes);
  if (code == 0) code = flush_file(file.get());
  if (const int closed = file.close(); code == 0) {
    code = closed;
  }
  if (code != 0) {
    fail_unusable("write", path, system_message(code));
  }
}

}  // namespace

void fail_unusable(std::string_view doing, const std::string& path, std::string_view reason) {
  throw Error(error_numbers::kSettingsUnusable, kSource,
              std::string("Cannot ")
                  .append(doing)
                  .append(" the settings file \"")
                  .append(path)
                  .append("\": ")
                  .append(reason));
}

namespace {

/// Asked while a file is read, since its size may say nothing of what it gives.
void check_size(const std::string& path, std::size_t size) {
  if (size > kLargestSettings) {
    throw Error(error_numbers::kSettingsNotToml, kSource,
                "The settings file \"" + path + "\" is larger than " +
                    std::to_string(kLargestSettings) + " bytes");
  }
}

/// Of a file that was read. What a file of the system's own holds may change and its size be none.
std::optional<FileStamp> lasting_stamp(const FileState& state, std::size_t size,
                                       std::int64_t asked_at_ns) {
  const std::optional<FileStamp> stamp = stamp_of(state);
  const bool is_lasting = stamp && stamp->size == static_cast<std::int64_t>(size) &&
                          can_be_trusted(*stamp, asked_at_ns);
  return is_lasting ? stamp : std::nullopt;
}

}  // namespace

std::optional<SettingsText> read_settings_file(const std::string& path) {
  const auto [file, code] = open_file(path, O_RDONLY);
  // A path that leads through a file cannot hold one either.
  if (code == ENOENT || code == ENOTDIR) {
    return std::nullopt;
  }
  if (!file) {
    fail_unusable("read", path, system_message(code));
  }
  const std::int64_t asked_at_ns = now_ns();
  const std::optional<FileState> state = state_of(file.get());
  if (!state) fail_unusable("read", path, system_message(errno));
  std::string bytes;
  std::array<char, 16384> block;
  while (true) {
    const std::ptrdiff_t got = read_some(file.get(), block.data(), block.size());
    if (got == 0) {
      const auto stamp = lasting_stamp(*state, bytes.size(), asked_at_ns);
      return SettingsText{.bytes = std::move(bytes), .stamp = stamp};
    }
    if (got > 0) {
      bytes.append(block.data(), static_cast<std::size_t>(got));
      check_size(path, bytes.size());
    } else if (errno != EINTR) {
      fail_unusable("read", path, system_message(errno));
    }
  }
}

std::string resolve_links(const std::string& path) {
  fs::path target = path;
  std::error_code code;
  for (int i = 0; i < kMaxLinks; ++i) {
    if (!fs::is_symlink(fs::symlink_status(target, code))) {
      if (fs::is_other(fs::status(target, code))) {
        fail_unusable("write", target.string(), "It is no regular file");
      }
      return target.string();
    }
    const fs::path link = fs::read_symlink(target, code);
    if (code) {
      fail_unusable("write", path, code.message());
    }
    target = target.parent_path() / link;
  }
  fail_unusable("write", path, system_message(ELOOP));
}

FileLock::FileLock(const std::string& path, std::chrono::milliseconds wait)
    : file_(open_or_fail("lock", path, O_RDWR | O_CREAT)) {
  const auto deadline = std::chrono::steady_clock::now() + wait;
  while (const int code = try_lock(file_.get(), FileHold::kAlone)) {
    if (code != EWOULDBLOCK && code != EINTR) fail_unusable("lock", path, system_message(code));
    if (std::chrono::steady_clock::now() >= deadline) {
      throw Error(error_numbers::kSettingsLock, kSource,
                  "Another program has held the lock \"" + path + "\" for " +
                      std::to_string(wait.count()) + " ms");
    }
    std::this_thread::sleep_for(kLockPoll);
  }
}

void replace_file(const std::string& path, std::string_view bytes) {
  check_size(path, bytes.size());
  // The lock makes this writer the only one, so a file of this name is what a crash left behind.
  const std::string temporary = path + ".new";
  const std::string folder = folder_of(path);
  remove_file(temporary);
  try {
    write_durably(temporary, path, bytes);
    if (const int code = rename_file(temporary, path); code != 0) {
      fail_unusable("replace", path, system_message(code));
    }
  } catch (...) {
    remove_file(temporary);
    throw;
  }
  // The rename itself lasts only when the folder is on the disk too, and the file is replaced by
  // now: so a folder that cannot be brought there fails nothing.
  flush_folder(folder);
}

}  // namespace bvconn::detail
