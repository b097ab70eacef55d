#include "sandbox/own_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "bvconn/platform/files.h"

namespace bvconn::sandbox {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const fs::path& path) {
  throw std::system_error(errno, std::generic_category(), "cannot write '" + path.string() + "'");
}

[[noreturn]] void refuse(const std::string& path, const std::string& reason) {
  throw std::runtime_error("'" + path + "' cannot be used: " + reason);
}

bool is_visible(char c) {
  return c > ' ' && c <= '~';
}

}  // namespace

NewFile::NewFile(fs::path path)
    : path_(std::move(path)),
      descriptor_(::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600)) {
  if (descriptor_ < 0) fail(path_);
}

NewFile::~NewFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
  if (!is_done_) ::unlink(path_.c_str());
}

void NewFile::write(std::string_view text) {
  errno = detail::write_all(descriptor_, text);
  if (errno != 0) fail(path_);
}

void NewFile::finish(const fs::path& name) {
  if (::fsync(descriptor_) != 0) fail(path_);
  if (::rename(path_.c_str(), name.c_str()) != 0) fail(name);
  is_done_ = true;
}

std::string text_of_file(const std::string& path, std::size_t bytes_max, Readers readers) {
  const detail::OpenedFile opened = detail::open_file(path, O_RDONLY);
  if (!opened.file) refuse(path, detail::system_message(opened.code));
  struct stat state {};
  if (::fstat(opened.file.get(), &state) != 0) refuse(path, detail::system_message(errno));
  const bool is_open_to_others = (state.st_mode & (S_IRWXG | S_IRWXO)) != 0;
  if (readers == Readers::kOwnerAlone && is_open_to_others) {
    refuse(path, "others than its owner may open it; 'chmod 600' ends that");
  }
  std::string text(bytes_max + 1, '\0');
  std::size_t size = 0;
  while (size < text.size()) {
    const auto count = detail::read_some(opened.file.get(), text.data() + size, text.size() - size);
    if (count < 0) refuse(path, detail::system_message(errno));
    if (count == 0) break;
    size += static_cast<std::size_t>(count);
  }
  if (size > bytes_max) refuse(path, "it is larger than " + std::to_string(bytes_max) + " bytes");
  text.resize(size);
  return text;
}

std::string word_of_file(const std::string& path) {
  constexpr std::size_t kLongest = 4096;
  constexpr std::string_view kBlanks = " \t\r\n";
  std::string text = text_of_file(path, kLongest, Readers::kOwnerAlone);
  text.erase(0, std::min(text.find_first_not_of(kBlanks), text.size()));
  text.erase(text.find_last_not_of(kBlanks) + 1);
  if (text.empty()) refuse(path, "it is empty");
  if (!std::all_of(text.begin(), text.end(), is_visible)) {
    refuse(path, "it holds more than one word of plain letters, digits and signs");
  }
  return text;
}

}  // namespace bvconn::sandbox
