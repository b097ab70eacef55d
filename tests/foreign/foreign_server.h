#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "files/temp_folder.h"

namespace bvconn::test {

/// A server on a SOAP stack that is not ours, as a child process on a free port of the loopback
/// address; it ends with this object, or with the test's process, at the latest.
class ForeignServer {
 public:
  /// Starts the server of this name and waits until it listens. Where the stack is not there,
  /// `missing` says what to install.
  explicit ForeignServer(std::string_view stack);
  ~ForeignServer();
  ForeignServer(const ForeignServer&) = delete;
  ForeignServer& operator=(const ForeignServer&) = delete;

  const std::string& missing() const { return missing_; }
  /// "" when it did not start.
  const std::string& url() const { return url_; }
  /// What it wrote about each request that came since the last time, one line of JSON each.
  std::vector<std::string> take_seen();
  /// Everything that it printed.
  std::string output() const;

 private:
  void start(std::vector<std::string> words);
  std::optional<int> ended();
  void wait_until_it_listens();

  files_test::TempFolder folder_;
  pid_t child_ = -1;
  std::string missing_;
  std::string url_;
  std::size_t taken_ = 0;
};

}  // namespace bvconn::test
