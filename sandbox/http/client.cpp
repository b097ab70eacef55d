#include "sandbox/http/client.h"

#include <openssl/err.h>
#include <openssl/ssl.h>

#include <algorithm>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/asio/ssl/error.hpp>
#include <boost/asio/ssl/host_name_verification.hpp>
#include <boost/asio/ssl/stream.hpp>
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
namespace ssl = boost::asio::ssl;

namespace {

using ErrorCode = boost::system::error_code;

/// Trusts whom the system trusts, and the authority.
ssl::context context_of(const std::string& authority_file) {
  ssl::context context(ssl::context::tls_client);
  SSL_CTX_set_min_proto_version(context.native_handle(), TLS1_2_VERSION);
  ErrorCode error;
  // Where the system has no store, nobody is in it.
  context.set_default_verify_paths(error);
  error.clear();
  if (!authority_file.empty()) context.load_verify_file(authority_file, error);
  if (error) throw NoAnswer("'" + authority_file + "' holds no authority: " + error.message());
  return context;
}

/// One request and its reply. The steps are asynchronous, since only those have a time limit.
class Exchange {
 public:
  Exchange(http::request<http::string_body> request, std::chrono::milliseconds patience)
      : request_(std::move(request)) {
    parser_.body_limit(std::numeric_limits<std::uint64_t>::max());
    stream_.expires_after(patience);
  }

  /// From then on by TLS, with a server that has this name.
  void secure(ssl::context& context, const std::string& host) {
    tls_.emplace(stream_, context);
    tls_->set_verify_mode(ssl::verify_peer);
    tls_->set_verify_callback(ssl::host_name_verification(host));
    boost::system::error_code is_name;
    asio::ip::make_address(host, is_name);
    if (is_name) SSL_set_tlsext_host_name(tls_->native_handle(), host.c_str());
  }

  http::response<http::string_body> run(const std::string& host, const std::string& port) {
    const auto addresses = resolver_.resolve(host, port, error_);
    if (!error_) connect(addresses);
    context_.run();
    if (error_) throw NoAnswer(error_.message() + advice());
    return parser_.release();
  }

 private:
  void connect(const asio::ip::tcp::resolver::results_type& addresses) {
    stream_.async_connect(addresses, [this](ErrorCode error, const auto& /*endpoint*/) {
      if (failed(error)) return;
      if (!tls_) return write(stream_);
      tls_->async_handshake(ssl::stream_base::client, [this](ErrorCode refused) {
        if (!failed(refused)) write(*tls_);
      });
    });
  }

  template <class Stream>
  void write(Stream& stream) {
    http::async_write(stream, request_, [this, &stream](ErrorCode error, std::size_t /*bytes*/) {
      if (!failed(error)) read(stream);
    });
  }

  template <class Stream>
  void read(Stream& stream) {
    http::async_read(stream, buffer_, parser_,
                     [this](ErrorCode error, std::size_t /*bytes*/) { error_ = error; });
  }

  bool failed(ErrorCode error) {
    error_ = error;
    return error.failed();
  }

  std::string advice() const {
    const bool is_untrusted = error_.category() == asio::error::get_ssl_category() &&
                              ERR_GET_REASON(static_cast<unsigned long>(error_.value())) ==
                                  SSL_R_CERTIFICATE_VERIFY_FAILED;
    return is_untrusted ? "; --tls-authority names the file that its start line tells" : "";
  }

  asio::io_context context_{1};
  asio::ip::tcp::resolver resolver_{context_};
  beast::tcp_stream stream_{context_};
  std::optional<ssl::stream<beast::tcp_stream&>> tls_;
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

Client::Client(std::string_view url, ClientOptions options)
    : options_(std::move(options)), url_(url) {
  constexpr std::string_view kPlain = "http://";
  constexpr std::string_view kSecure = "https://";
  is_secure_ = url.starts_with(kSecure);
  if (!is_secure_ && !url.starts_with(kPlain)) refuse(url_);
  std::string_view rest = url.substr((is_secure_ ? kSecure : kPlain).size());
  if (rest.ends_with('/')) rest.remove_suffix(1);
  const auto colon = rest.rfind(':');
  const bool has_port = colon != std::string_view::npos && !rest.ends_with(']');
  host_ = rest.substr(0, has_port ? colon : rest.size());
  port_ = has_port ? rest.substr(colon + 1) : is_secure_ ? "443" : "80";
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
  if (!options_.token.empty()) {
    request.set(http::field::authorization, "Bearer " + options_.token);
  }
  if (!body.empty()) {
    request.set(http::field::content_type, {content_type.data(), content_type.size()});
  }
  request.body() = std::move(body);
  request.prepare_payload();
  try {
    // Outlives the exchange.
    auto context = is_secure_ ? std::optional(context_of(options_.authority_file)) : std::nullopt;
    Exchange exchange(std::move(request), patience_);
    if (context) exchange.secure(*context, host_);
    auto reply = exchange.run(host_, port_);
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
