#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "bvconn/platform/logging/session_logger.h"
#include "files/temp_folder.h"

namespace bvconn::files_test {

/// A logger over a file of the test's own.
class FileLogger : public testing::Test {
 protected:
  std::shared_ptr<SessionLogger> logger(const char* mask) {
    const ScopedEnvironment log("BVCONN_LOG_FILE", path());
    const ScopedEnvironment level("BVCONN_LOG_MASK", mask);
    return make_file_logger();
  }

  std::string path() const { return folder_.file("logs/deep/bvconn.log"); }

  /// The lines without time and thread.
  std::vector<std::string> lines() const {
    std::vector<std::string> texts;
    for (const std::string& line : lines_of(path())) {
      texts.push_back(line.substr(line.find("] ") + 2));
    }
    return texts;
  }

  TempFolder folder_;
};

}  // namespace bvconn::files_test
