#pragma once

#include <cstddef>
#include <filesystem>
#include <mutex>
#include <string>
#include <string_view>

namespace bvconn::sandbox {

/// A folder that takes recorded exchanges, each a file of its own, from any thread.
class RecordingFolder {
 public:
  /// Makes the folder if its parent is there. Throws std::runtime_error, with one line, where files
  /// cannot be written into it. Numbers go on behind those of the files that it holds.
  explicit RecordingFolder(std::filesystem::path folder);

  /// The highest number of all files that it held from the beginning.
  std::size_t last_number() const { return last_; }

  /// The number of the next exchange; they are given in the order of requests.
  std::size_t next_number();

  /// Writes "000001-NAME.wire" whole or not at all. Throws std::system_error.
  void write(std::size_t number, std::string_view name, std::string_view text) const;

 private:
  std::filesystem::path folder_;
  std::mutex mutex_;
  std::size_t last_ = 0;
};

}  // namespace bvconn::sandbox
