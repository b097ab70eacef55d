#include "sandbox/http/client.h"

#include <algorithm>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http/empty_body.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/string_body.hpp>
#include <boost/beast/http/write.hpp>
#include <charconv>
#include <cstdint>
#include <limits>
#include <optional>
#include <utility>

namespace bvconn::sandbox {
namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;

namespace {

using ErrorCode = boost::system::error_code;

/// One request and its reply. The steps are asynchronous, since only those have a time limit.
class Exchange {
 public:
  Exchange(http::request<http::string_body> request, std::chrono::milliseconds patience)
      : request_(std::move(request)) {
    parser_.body_limit(std::numeric_limits<std::uint64_t>::max());
    stream_.expires_after(patience);
  }

  http::response<http::string_body> run(const std::string& host, const std::string& port) {
    const auto addresses = resolver_.resolve(host, port, error_);
    if (!error_) connect(addresses);
    context_.run();
    if (error_) throw NoAnswer(error_.message());
    return parser_.release();
  }

 private:
  void connect(const asio::ip::tcp::resolver::results_type& addresses) {
    stream_.async_connect(addresses, [this](ErrorCode error, const auto& /*endpoint*/) {
      if (!failed(error)) write();
    });
  }

  void write() {
    http::async_write(stream_, request_, [this](ErrorCode error, std::size_t /*bytes*/) {
      if (!failed(error)) read();
    });
  }

  void read() {
    http::async_read(stream_, buffer_, parser_,
                     [this](ErrorCode error, std::size_t /*bytes*/) { error_ = error; });
  }

  bool failed(ErrorCode error) {
    error_ = error;
    return error.failed();
  }

  asio::io_context context_{1};
  asio::ip::tcp::resolver resolver_{context_};
  beast::tcp_stream stream_{context_};
  beast::flat_buffer buffer_;
  http::request<http::string_body> request_;
  http::response_parser<http::string_body> parser_;
  ErrorCode error_;
};

[[noreturn]] void refuse(std::string_view url) {
  throw std::invalid_argument("'" + std::string(url) +
                              "' is no address of a sandbox, expected one such as "
                              "http://127.0.0.1:8080");
}

bool is_port(std::string_view text) {
  std::uint16_t port = 0;
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, port);
  return read.ec == std::errc() && read.ptr == end && port != 0;
}

}  // namespace

Client::Client(std::string_view url) : url_(url) {
  constexpr std::string_view kScheme = "http://";
  if (!url.starts_with(kScheme)) refuse(url_);
  std::string_view rest = url.substr(kScheme.size());
  if (rest.ends_with('/')) rest.remove_suffix(1);
  const auto colon = rest.rfind(':');
  const bool has_port = colon != std::string_view::npos && !rest.ends_with(']');
  host_ = rest.substr(0, has_port ? colon : rest.size());
  port_ = has_port ? rest.substr(colon + 1) : "80";
  if (host_.starts_with('[') && host_.ends_with(']')) host_ = host_.substr(1, host_.size() - 2);
  if (host_.empty() || host_.find_first_of("/?#@ ") != std::string::npos || !is_port(port_)) {
    refuse(url_);
  }
}

ClientReply Client::send(std::string_view method, std::string_view target, std::string body,
                         std::string_view content_type) {
  http::request<http::string_body> request;
  request.version(11);
  request.method_string({method.data(), method.size()});
  request.target({target.data(), target.size()});
  const bool is_ipv6 = host_.find(':') != std::string::npos;
  request.set(http::field::host, (is_ipv6 ? "[" + host_ + "]" : host_) + ":" + port_);
  request.set(http::field::connection, "close");
  if (!body.empty()) {
    request.set(http::field::content_type, {content_type.data(), content_type.size()});
  }
  request.body() = std::move(body);
  request.prepare_payload();
  try {
    auto reply = Exchange(std::move(request), patience_).run(host_, port_);
    return {.status = static_cast<int>(reply.result_int()), .body = std::move(reply.body())};
  } catch (const NoAnswer& error) {
    throw NoAnswer("no sandbox answers at " + url_ + ": " + error.what());
  }
}

std::string url_encoded(std::string_view text) {
  constexpr std::string_view kPlain =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string encoded;
  for (const char c : text) {
    if (kPlain.find(c) != std::string_view::npos) {
      encoded.push_back(c);
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    encoded.append({'%', kDigits[byte >> 4U], kDigits[byte & 0xFU]});
  }
  return encoded;
}

}  // namespace bvconn::sandbox
