#include "sandbox/record/recording_folder.h"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "sandbox/own_files.h"

namespace bvconn::sandbox {
namespace {

namespace fs = std::filesystem;

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
