#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

#include "bvconn/platform/platform.h"

namespace bvconn::tool {

/// Where the lines of a trace go; flushed line by line.
class Trace {
 public:
  /// @param shows_secrets  Whether passwords stand in it as they are.
  Trace(std::shared_ptr<std::ostream> out, bool shows_secrets)
      : out_(std::move(out)), shows_secrets_(shows_secrets) {}

  void line(std::string_view text);
  bool shows_secrets() const { return shows_secrets_; }

 private:
  std::shared_ptr<std::ostream> out_;
  bool shows_secrets_;
};

/// The platform with everything that the library does on it written to the trace: one line of JSON
/// for each call, in order. What gives a result is written when it is there, everything else before
/// it is done.
platform::Platform traced(platform::Platform inner, std::shared_ptr<Trace> trace);

}  // namespace bvconn::tool
