#pragma once

#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace bvconn::files_test {

#if defined(_WIN32)

inline std::string made_folder(const std::string& pattern) {
  const std::string begin = pattern.substr(0, pattern.find('X'));
  std::random_device random;
  std::string path;
  do {
    path = begin + std::to_string(random());
  } while (!std::filesystem::create_directory(path));
  return path;
}

inline void set_variable(const char* name, const char* value) {
  ::_putenv_s(name, value == nullptr ? "" : value);
}

#else

inline std::string made_folder(std::string pattern) {
  return ::mkdtemp(pattern.data());
}

inline void set_variable(const char* name, const char* value) {
  if (value == nullptr) {
    ::unsetenv(name);
  } else {
    ::setenv(name, value, 1);
  }
}

/// Makes a named pipe, and gives its path.
inline std::string pipe_at(std::string path) {
  ::mkfifo(path.c_str(), 0600);
  return path;
}

#endif

/// A folder of a test's own, removed with all that it holds.
class TempFolder {
 public:
  TempFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "bvconn-files-XXXXXX").string();
    path_ = made_folder(name);
  }
  ~TempFolder() { std::filesystem::remove_all(path_); }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  std::string file(std::string_view name) const { return path_ + "/" + std::string(name); }

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
    set_variable(name, value);
  }
  ScopedEnvironment(const char* name, const std::string& value)
      : ScopedEnvironment(name, value.c_str()) {}
  ~ScopedEnvironment() { set_variable(name_, had_ ? old_.c_str() : nullptr); }
  ScopedEnvironment(const ScopedEnvironment&) = delete;
  ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

 private:
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
