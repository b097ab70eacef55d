#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "bvconn/platform/platform.h"

namespace bvconn::automation::detail {

/// What reached the outside world in one run.
struct Sightings {
  struct Post {
    std::string text;
    std::optional<std::string> soap_action;
    std::int32_t timeout_ms = 0;
  };
  struct DalCall {
    std::string object;
    std::string operation;
    bool by_name = false;
    std::vector<Variant> arguments;
  };

  std::vector<Post> posts;
  std::vector<DalCall> dal_calls;

  bool empty() const { return posts.empty() && dal_calls.empty(); }
};

/// A platform that answers every request alike and keeps what it was asked: nothing is sent, logged
/// or stored.
class World {
 public:
  World();

  platform::Platform platform() const;
  /// Forgets what was seen, and what earlier requests have set on the transport.
  void forget();
  const Sightings& sightings() const;

  struct State;

 private:
  std::shared_ptr<State> state_;
};

}  // namespace bvconn::automation::detail
