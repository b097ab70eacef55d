#include "sandbox/http/address.h"

#include <boost/asio/ip/address.hpp>

namespace bvconn::sandbox {
namespace asio = boost::asio;

std::optional<std::string> numeric_address(const std::string& text) {
  if (text == "localhost") return asio::ip::address_v4::loopback().to_string();
  const bool is_bracketed = text.size() > 2 && text.front() == '[' && text.back() == ']';
  boost::system::error_code error;
  const auto address =
      asio::ip::make_address(is_bracketed ? text.substr(1, text.size() - 2) : text, error);
  if (error || (is_bracketed && address.is_v4())) return std::nullopt;
  return address.to_string();
}

bool is_loopback(const std::string& address) {
  boost::system::error_code error;
  const auto parsed = asio::ip::make_address(address, error);
  return !error && parsed.is_loopback();
}

std::string address_in_url(const std::string& listening) {
  boost::system::error_code error;
  const auto address = asio::ip::make_address(listening, error);
  if (!error && address.is_unspecified()) return address.is_v4() ? "127.0.0.1" : "[::1]";
  return !error && address.is_v6() ? "[" + listening + "]" : listening;
}

}  // namespace bvconn::sandbox
