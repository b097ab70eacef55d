#include "sandbox/record/recording_folder.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace bvconn::sandbox {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const fs::path& path) {
  throw std::system_error(errno, std::generic_category(), "cannot write '" + path.string() + "'");
}

/// A file that is there under its own name only when it is complete. Its owner alone may read it.
class NewFile {
 public:
  explicit NewFile(fs::path path)
      : path_(std::move(path)),
        descriptor_(::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600)) {
    if (descriptor_ < 0) fail(path_);
  }
  ~NewFile() {
    if (descriptor_ >= 0) ::close(descriptor_);
    if (!is_done_) ::unlink(path_.c_str());
  }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  void write(std::string_view text) {
    while (!text.empty()) {
      const ssize_t count = ::write(descriptor_, text.data(), text.size());
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) fail(path_);
      text.remove_prefix(static_cast<std::size_t>(count));
    }
  }

  // What is late in failing fails here, before the file has its name.
  void finish(const fs::path& name) {
    if (::fsync(descriptor_) != 0) fail(path_);
    if (::rename(path_.c_str(), name.c_str()) != 0) fail(name);
    is_done_ = true;
  }

 private:
  fs::path path_;
  int descriptor_;
  bool is_done_ = false;
};

std::size_t number_of(const std::string& name) {
  std::size_t number = 0;
  std::from_chars(name.data(), name.data() + name.size(), number);
  return number;
}

}  // namespace

RecordingFolder::RecordingFolder(fs::path folder) : folder_(std::move(folder)) {
  std::error_code error;
  fs::create_directory(folder_, error);
  if (!fs::is_directory(folder_)) {
    throw std::runtime_error("'" + folder_.string() + "' is no folder and cannot be made" +
                             (error ? ": " + error.message() : ""));
  }
  NewFile(folder_ / (".probe-" + std::to_string(::getpid()))).write("x");
  for (const auto& entry : fs::directory_iterator(folder_)) {
    if (entry.path().extension() != ".wire") continue;
    last_ = std::max(last_, number_of(entry.path().filename().string()));
  }
}

std::size_t RecordingFolder::next_number() {
  const std::lock_guard lock(mutex_);
  return ++last_;
}

void RecordingFolder::write(std::size_t number, std::string_view name,
                            std::string_view text) const {
  constexpr std::size_t kDigits = 6;
  std::string file = std::to_string(number);
  file.insert(0, kDigits - std::min(kDigits, file.size()), '0');
  const fs::path unfinished = folder_ / ("." + file + "-" + std::to_string(::getpid()));
  file.append("-").append(name).append(".wire");
  NewFile written(unfinished);
  written.write(text);
  written.finish(folder_ / file);
}

}  // namespace bvconn::sandbox
