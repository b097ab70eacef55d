#pragma once

#include <filesystem>
#include <string>

namespace bvconn::test {

/// A folder of the test's own for the settings, the log and the traffic, named to the library by
/// the environment; and a session that starts anew. Made before any thread is started.
class OwnFiles {
 public:
  OwnFiles();
  ~OwnFiles();
  OwnFiles(const OwnFiles&) = delete;
  OwnFiles& operator=(const OwnFiles&) = delete;

  std::filesystem::path path(const std::string& name) const { return folder_ / name; }
  std::string contents(const std::string& name) const;
  void write(const std::string& name, const std::string& text) const;

 private:
  std::filesystem::path folder_;
};

}  // namespace bvconn::test
