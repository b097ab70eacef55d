#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace bvconn::test {

/// A folder for one test, which goes with this object.
class OwnFolder {
 public:
  OwnFolder()
      : folder_(std::filesystem::temp_directory_path() /
                ("bvsandbox-test-" + std::to_string(std::random_device{}()))) {
    std::filesystem::create_directory(folder_);
  }
  ~OwnFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  OwnFolder(const OwnFolder&) = delete;
  OwnFolder& operator=(const OwnFolder&) = delete;

  std::string path(const std::string& name = "") const {
    return name.empty() ? folder_.string() : (folder_ / name).string();
  }
  /// Writes a file that its owner alone may open; gives its path.
  std::string write(const std::string& name, const std::string& text) const {
    using std::filesystem::perms;
    std::ofstream(path(name)) << text;
    std::filesystem::permissions(path(name), perms::owner_read | perms::owner_write);
    return path(name);
  }
  std::string read(const std::string& name) const {
    std::ifstream file(path(name));
    return {std::istreambuf_iterator<char>(file), {}};
  }

 private:
  std::filesystem::path folder_;
};

}  // namespace bvconn::test
