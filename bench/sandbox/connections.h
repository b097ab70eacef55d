#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace bench {

/// What came back for some requests.
struct Answers {
  std::vector<std::int64_t> times_ns;  ///< of each that was answered, from its first byte out
  std::size_t good = 0;                ///< with the status 200
  std::size_t lost = 0;                ///< asked on a connection that ended before the answer did
};

/// Connections that are kept, to servers on the loopback address; all on the calling thread.
class Connections {
 public:
  Connections();
  ~Connections();
  Connections(const Connections&) = delete;
  Connections& operator=(const Connections&) = delete;

  /// Opens so many in the place of those that are there, by turns to the ports.
  void open(std::size_t count, const std::vector<std::uint16_t>& ports);
  void close();
  std::size_t count() const { return connections_.size(); }

  /// Has one request under way on each connection, taking the texts by turns, until so many are
  /// sent or the time is over; then waits for the last answers.
  Answers ask(const std::vector<std::string>& texts, std::size_t requests,
              std::chrono::milliseconds time);

 private:
  struct Connection {
    int socket = -1;
    std::string received{};
    const std::string* request = nullptr;  ///< that is under way
    std::size_t sent = 0;
    std::int64_t began_ns = 0;
  };

  void begin(Connection& connection, const std::string& request);
  bool write(Connection& connection) const;
  /// True when the whole answer is there.
  bool read(Connection& connection);
  void lose(Connection& connection);

  int events_;
  std::vector<Connection> connections_;
  std::size_t under_way_ = 0;
  Answers answers_;
};

}  // namespace bench
