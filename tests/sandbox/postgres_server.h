#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

namespace bvconn::test {

/// A PostgreSQL server of the test's own, with its data and its socket in a folder of its own,
/// which both go with this object at the latest. Where the test runs as root the server does not,
/// which it would refuse.
class PostgresServer {
 public:
  PostgresServer();
  ~PostgresServer();
  PostgresServer(const PostgresServer&) = delete;
  PostgresServer& operator=(const PostgresServer&) = delete;

  /// The one that the tests of this process share.
  static PostgresServer& shared();

  /// What is not here, so that there is no server; "" when there is one.
  const std::string& missing() const { return missing_; }
  /// The address of a database.
  std::string address(const std::string& database) const;
  /// A new database that holds nothing; `rest` is the rest of the statement that makes it.
  std::string make_database(const std::string& rest = "");
  /// Ends it as an administrator would in a hurry, and starts it again on the same data.
  void stop();
  void start();

 private:
  /// Starts a program of PostgreSQL's as the user that owns the folder.
  pid_t run(const std::string& program, const std::vector<std::string>& arguments) const;
  bool run_to_end(const std::string& program, const std::vector<std::string>& arguments) const;
  bool answers() const;

  std::string missing_;
  std::filesystem::path programs_;
  std::filesystem::path folder_;
  pid_t server_ = -1;
  int databases_ = 0;
};

}  // namespace bvconn::test
