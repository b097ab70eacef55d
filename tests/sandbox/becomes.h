#pragma once

#include <chrono>
#include <functional>
#include <thread>

namespace bvconn::test {

/// Whether something holds before long, as what one process tells another does. The bound is for a
/// busy machine; it is reached only where the test fails.
inline bool becomes(const std::function<bool()>& holds) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (!holds()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return true;
}

}  // namespace bvconn::test
