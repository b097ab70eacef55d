#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "bvconn/platform/error.h"
#include "bvconn/platform/platform.h"

namespace bvconn::test {

/// A world that takes no memory to remember what happened in it. Each send, and each operation of a
/// service object, is answered with the same text.
class QuietWorld {
 public:
  explicit QuietWorld(std::string_view reply);

  std::string reply;
  /// What each send fails with instead.
  std::optional<Error> send_error;

  // What the error lines of the log said.
  int errors_logged = 0;
  std::int32_t last_logged = 0;
  /// Lack of memory while `TraceSoapTraffic` was read: logged, and it fails no send.
  int short_settings_logged = 0;
  int beats_that_were_ok = 0;
  /// The text of the message box begins with it.
  bool shown_out_of_memory = false;

 private:
  platform::ScopedPlatform scope_;
};

}  // namespace bvconn::test
