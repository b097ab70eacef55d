#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "sandbox/http/message.h"

namespace bvconn::sandbox {

/// One thing that a connection does while a reply leaves.
struct Step {
  enum class Kind : std::uint8_t {
    kSend,    ///< sends `bytes`
    kFill,    ///< sends `count` bytes that are made on the way
    kWait,    ///< waits for `pause`
    kClose,   ///< ends the connection in order
    kReset,   ///< ends it by a reset
    kFollow,  ///< sends what `stream` says, as long as there is somebody to read it
  };
  Kind kind = Kind::kSend;
  std::string bytes{};
  std::uint64_t count = 0;
  std::chrono::milliseconds pause{0};
  /// kSend: so many bytes at once, with a pause after each time; 0 for all.
  std::size_t piece_bytes = 0;
  std::shared_ptr<ReplyStream> stream{};
};

/// What a connection has to do for a reply. Without a last kClose or kReset it goes on.
std::vector<Step> steps_of(const Reply& reply, bool keep_alive, bool with_body);

}  // namespace bvconn::sandbox
