#pragma once

#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace bvconn::files_test {

/// A folder of a test's own, removed with all that it holds.
class TempFolder {
 public:
  TempFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "bvconn-files-XXXXXX").string();
    path_ = ::mkdtemp(name.data());
  }
  ~TempFolder() { std::filesystem::remove_all(path_); }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  std::string file(std::string_view name) const { return path_ + "/" + std::string(name); }

  /// Makes a named pipe, and gives its path.
  std::string pipe(std::string_view name) const {
    std::string path = file(name);
    ::mkfifo(path.c_str(), 0600);
    return path;
  }

 private:
  std::string path_;
};

/// Sets an environment variable, or takes it away, and puts it back.
class ScopedEnvironment {
 public:
  ScopedEnvironment(const char* name, const char* value) : name_(name) {
    const char* old = std::getenv(name);
    had_ = old != nullptr;
    old_ = had_ ? old : "";
    set(value);
  }
  ScopedEnvironment(const char* name, const std::string& value)
      : ScopedEnvironment(name, value.c_str()) {}
  ~ScopedEnvironment() { set(had_ ? old_.c_str() : nullptr); }
  ScopedEnvironment(const ScopedEnvironment&) = delete;
  ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

 private:
  void set(const char* value) {
    if (value == nullptr) {
      ::unsetenv(name_);
    } else {
      ::setenv(name_, value, 1);
    }
  }

  const char* name_;
  bool had_ = false;
  std::string old_;
};

inline std::string bytes_of(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void put_bytes(const std::string& path, std::string_view bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

inline std::vector<std::string> lines_of(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) {
    lines.push_back(line);
  }
  return lines;
}

inline bool exists(const std::string& path) {
  return std::filesystem::exists(path);
}

/// The permission bits of a file or folder.
inline unsigned mode_of(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777U : 0U;
}

}  // namespace bvconn::files_test
