#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace bvconn::test {

/// A server on the loopback that hands out scripted replies in order, one for each request, and
/// keeps the requests. Without a script it answers 500.
class ScriptedServer {
 public:
  struct Request {
    std::string line;  ///< "POST /path HTTP/1.1"
    std::string headers;
    std::string body;
  };

  ScriptedServer();
  ~ScriptedServer();
  ScriptedServer(const ScriptedServer&) = delete;
  ScriptedServer& operator=(const ScriptedServer&) = delete;

  std::string url() const;
  /// An XML reply.
  void reply(std::string body);
  /// A reply of any kind; `head` is the status line and further headers, each with its line end.
  void reply_with(std::string head, std::string body);
  std::vector<Request> requests();

 private:
  void serve();
  void answer(int connection);

  std::uint16_t port_ = 0;
  int listener_ = -1;
  std::atomic<bool> stopping_{false};
  std::mutex mutex_;
  std::deque<std::string> replies_;
  std::vector<Request> requests_;
  std::thread thread_;
};

/// A port on the loopback that nobody listens on.
std::string dead_url();

/// A reply whose method element `<NAME>` holds this XML, and one that is a fault.
std::string reply_envelope(const std::string& inner, const std::string& method = "reply");
std::string fault_envelope(const std::string& code, const std::string& text);

}  // namespace bvconn::test
