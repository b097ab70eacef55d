#pragma once

#include <memory>
#include <string>

#include "common/replies.h"

namespace bench {

/// One way to make the call.
class Peer {
 public:
  virtual ~Peer() = default;
  /// Makes a call, up to where a value can be taken from each field of the reply. The result of the
  /// last call may be held until the next.
  virtual void call(const Case& which) = 0;
  /// What the last call gave, as `facts` has it; for a peer that reads no XML the bytes of the
  /// body. Takes from the result what an application would take.
  virtual std::string seen(const Case& which) = 0;
};

/// Each way has a source of its own with this function, and a program of its own. The URL is
/// without a path.
std::unique_ptr<Peer> make_peer(const std::string& url);

}  // namespace bench
