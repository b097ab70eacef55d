#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "sandbox/raw_client.h"

namespace bvconn::test {

/// A reader of the journal's events, from where it asks on.
class EventsReader {
 public:
  explicit EventsReader(std::uint16_t port, const std::string& query = "",
                        const std::string& headers = "")
      : client_(port) {
    client_.send(http_request("GET", "/admin/journal/events" + query, headers, ""));
  }

  /// All that came until these words did; without them after ten seconds.
  std::string until(const std::string& words) {
    using std::chrono::steady_clock;
    const auto deadline = steady_clock::now() + std::chrono::seconds(10);
    while (seen_.find(words) == std::string::npos && steady_clock::now() < deadline) {
      seen_ += client_.receive_some(std::chrono::milliseconds(100));
    }
    return seen_;
  }
  bool ends(std::chrono::milliseconds patience) { return client_.ends(patience); }
  RawReply reply() { return client_.receive(); }

 private:
  RawClient client_;
  std::string seen_;
};

}  // namespace bvconn::test
