#pragma once

#include <memory>
#include <string>

#include "bvconn/observation/sightings.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/platform.h"

namespace bvconn::automation::detail {

/// A platform that answers every request alike and keeps what it was asked and what was logged:
/// nothing is sent, written or stored.
class World {
 public:
  World();

  platform::Platform platform() const;
  /// Forgets what was seen, and what earlier requests have set on the transport.
  void forget();
  /// What everything is answered with from now on; the usual answer is a good one.
  void answer_with(std::string text);
  /// Every request fails like this from now on, until there is an answer again.
  void fail_with(Error error);
  void answer_as_usual();
  const Sightings& sightings() const;

  struct State;

 private:
  std::shared_ptr<State> state_;
};

}  // namespace bvconn::automation::detail
