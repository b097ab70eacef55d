#include "bvconn/platform/logging/append_file.h"

#include <fcntl.h>

#include <cerrno>
#include <chrono>
#include <thread>
#include <utility>

#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/files.h"

// Whoever opens the file for a line writes it under a shared lock, and a file is put aside under an
// exclusive one. So no writer holds up another, but for the moment in which the file changes its
// name, and between the look at the name and the write the name cannot go to another file. Who has
// the file open already looks at the name too, but writes without a lock: what becomes of the file
// between the two becomes of it as if the line had been in it when it was looked at.
namespace bvconn {
namespace {

// A writer that was stopped while it held the lock must not stop all others: they write without.
constexpr int kLockAttempts = 200;
constexpr std::chrono::microseconds kLockPoll{200};
/// The file may be moved away again and again while a line tries to reach it.
constexpr int kOpenAttempts = 100;

detail::OpenedFile open_for_appending(const std::string& path) {
  const auto open = [&] { return detail::open_file(path, O_WRONLY | O_APPEND | O_CREAT); };
  detail::OpenedFile opened = open();
  // The folders are looked at only when something is missing: a line costs few calls as a rule.
  if (opened.code == ENOENT && detail::make_folders_of(path)) opened = open();
  return opened;
}

bool lock(int file, detail::FileHold hold) {
  for (int attempt = 0; attempt < kLockAttempts; ++attempt) {
    const int code = detail::try_lock(file, hold);
    if (code == 0) return true;
    if (code != EWOULDBLOCK && code != EINTR) return false;
    std::this_thread::sleep_for(kLockPoll);
  }
  return false;
}

/// Whether the path still leads to the open file.
bool leads_to(const std::string& path, const detail::FileState& open_file) {
  const auto named = detail::state_without_times_of(path);
  return named && named->is_same_file(open_file);
}

/// Makes room for a new file of that name, or finds that somebody else has. The file itself is
/// moved, not a link to it, so that the link goes on leading to where the log is wanted.
bool put_aside(const std::string& path, int file, const detail::FileState& state) {
  if (!lock(file, detail::FileHold::kAlone)) return false;
  if (!leads_to(path, state)) return true;
  const std::string real = detail::real_path(path);
  return !real.empty() && detail::rename_file(real, real + ".1") == 0;
}

struct Appended {
  const char* step = "";
  int code = 0;
  detail::Descriptor file{};  ///< that was written to
};

Appended append(const std::string& path, std::string_view bytes, std::uint64_t max_bytes) {
  bool is_bounded = max_bytes != 0;
  for (int attempt = 1;; ++attempt) {
    detail::OpenedFile opened = open_for_appending(path);
    if (!opened.file) return {.step = "open", .code = opened.code};
    const int file = opened.file.get();
    const auto state = detail::state_without_times_of(file);
    // The lock of a device would be one for the whole system.
    const bool is_locked = state && state->is_regular && lock(file, detail::FileHold::kShared);
    if (is_locked && attempt < kOpenAttempts) {
      // What the size was before the lock is no longer sure, but only a little is added meanwhile.
      if (!leads_to(path, *state)) continue;
      const auto size = static_cast<std::uint64_t>(state->size);
      if (is_bounded && size != 0 && size + bytes.size() > max_bytes) {
        is_bounded = put_aside(path, file, *state);
        continue;
      }
    }
    const int code = detail::write_all(file, bytes);
    if (is_locked) detail::unlock(file);
    return {.step = "write", .code = code, .file = std::move(opened.file)};
  }
}

}  // namespace

void append_to_file(const std::string& path, std::string_view bytes, std::uint64_t max_bytes) {
  const Appended appended = append(path, bytes, max_bytes);
  if (appended.code != 0) {
    throw Error(error_numbers::kLogFile, "SessionLogger",
                std::string("Cannot ") + appended.step + " the log file \"" + path +
                    "\": " + detail::system_message(appended.code));
  }
}

bool try_append_to_file(const std::string& path, std::string_view bytes, std::uint64_t max_bytes) {
  return append(path, bytes, max_bytes).code == 0;
}

bool AppendedFile::append(std::string_view lines) {
  if (file_) {
    if (const std::optional<bool> written = append_to_open(lines)) return *written;
  }
  bool all_written = true;
  while (!lines.empty()) {
    const std::size_t end = lines.find('\n');
    const std::string_view line = lines.substr(0, end == lines.npos ? end : end + 1);
    lines.remove_prefix(line.size());
    all_written = append_and_keep(line) && all_written;
  }
  return all_written;
}

bool AppendedFile::append_and_keep(std::string_view line) {
  file_ = detail::Descriptor();
  Appended appended = bvconn::append(path_, line, max_bytes_);
  if (appended.code != 0) return false;
  if (const auto state = detail::state_without_times_of(appended.file.get())) {
    state_ = *state;
    file_ = std::move(appended.file);
  }
  return true;
}

// Nothing where the file is none to write to any longer, and nothing of the line is in it.
std::optional<bool> AppendedFile::append_to_open(std::string_view bytes) const {
  const auto named = detail::state_without_times_of(path_);
  if (!named || !named->is_same_file(state_)) return std::nullopt;
  const auto size = static_cast<std::uint64_t>(named->size);
  const bool is_full = max_bytes_ != 0 && size != 0 && size + bytes.size() > max_bytes_;
  if (is_full && named->is_regular) return std::nullopt;
  return detail::write_all(file_.get(), bytes) == 0;
}

}  // namespace bvconn
