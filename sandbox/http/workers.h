#pragma once

#include <boost/asio/post.hpp>
#include <boost/asio/thread_pool.hpp>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "sandbox/http/server.h"

namespace bvconn::sandbox {

/// The threads on which requests are read and answered, while the server's own goes on serving
/// other connections. Everything but the work itself belongs to the server's thread.
class Workers {
 public:
  explicit Workers(const Limits& limits);

  /// A place among the requests that are being answered; given back by letting go of it. Null where
  /// too many or too large ones wait already, and when the server is about to end.
  std::shared_ptr<void> enter(std::size_t body_bytes);

  /// Runs this on one of the threads.
  template <typename Work>
  void run(Work work) {
    boost::asio::post(*pool_, std::move(work));
  }

  /// Lets nobody in from now on, and calls this once there is nobody left.
  void drain(std::function<void()> on_empty);
  /// Whether the server is about to end.
  bool draining() const { return draining_; }
  /// Waits for the work that has begun, and forgets the rest.
  void end();

 private:
  void leave(std::size_t body_bytes);

  const Limits& limits_;
  std::optional<boost::asio::thread_pool> pool_;
  std::size_t inside_ = 0;
  std::size_t bytes_inside_ = 0;
  bool draining_ = false;
  std::function<void()> on_empty_;
};

}  // namespace bvconn::sandbox
