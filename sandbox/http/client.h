#pragma once

#include <chrono>
#include <stdexcept>
#include <string>
#include <string_view>

namespace bvconn::sandbox {

/// What a running sandbox answered.
struct ClientReply {
  int status = 0;
  std::string body;
};

/// The sandbox does not answer, or what answers is no HTTP.
class NoAnswer : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What a client has to show, and whom it trusts.
struct ClientOptions {
  /// In PEM: for https, besides the authorities that the system knows; "" for these alone.
  std::string authority_file{};
  /// What administering the sandbox takes; "" to send none.
  std::string token{};
};

/// Asks a running sandbox, each time on a connection of its own.
class Client {
 public:
  /// "http://127.0.0.1:8080" or "https://...", without a path. Throws std::invalid_argument for
  /// another text.
  explicit Client(std::string_view url, ClientOptions options = {});

  /// The target is path and query. Throws NoAnswer.
  ClientReply send(std::string_view method, std::string_view target, std::string body = "",
                   std::string_view content_type = "text/plain; charset=utf-8");

  /// As it was given.
  const std::string& url() const { return url_; }
  /// From the beginning of a connection to the end of the answer.
  void patience(std::chrono::milliseconds patience) { patience_ = patience; }

 private:
  ClientOptions options_;
  std::string url_;
  bool is_secure_ = false;
  std::string host_;
  std::string port_;
  std::chrono::milliseconds patience_{30'000};
};

/// The text as a part of a path or of a query.
std::string url_encoded(std::string_view text);

}  // namespace bvconn::sandbox
