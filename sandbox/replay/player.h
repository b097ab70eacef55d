#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "sandbox/http/message.h"
#include "sandbox/replay/asked_request.h"
#include "sandbox/replay/recording.h"

namespace bvconn::sandbox {

enum class PlayOrder : std::uint8_t {
  /// A request gets the first recorded exchange of its own kind that was not used yet; when all are
  /// used, the last of them again.
  kAny,
  /// Requests have to come as they were recorded, each once.
  kRecorded,
};

/// Answers requests from a recording, on any thread.
class Player {
 public:
  Player(std::vector<Recorded> recorded, PlayOrder order);

  /// The recorded reply; a fault where there is none, which names the nearest exchange and in what
  /// it differs.
  Reply answer(const AskedRequest& asked);

 private:
  using Key = std::tuple<Route, std::string, std::string>;

  std::optional<std::size_t> take(const AskedRequest& asked);
  std::string complaint(const AskedRequest& asked) const;
  const Recorded& nearest(const AskedRequest& asked) const;
  const std::vector<std::size_t>& nearest_method(const AskedRequest& asked) const;

  const std::vector<Recorded> recorded_;
  const PlayOrder order_;
  /// What was recorded of each method, in its order.
  std::map<Key, std::vector<std::size_t>> by_method_;
  bool logs_in_ = false;  ///< whether anything was recorded of the login
  std::mutex mutex_;
  std::vector<bool> used_;
  std::size_t next_ = 0;
};

}  // namespace bvconn::sandbox
