#include "bvconn/platform/http/http_transport.h"

#include "bvconn/platform/http/socket_transport.h"

namespace bvconn {

HTTPTransport::~HTTPTransport() = default;

std::string HTTPTransport::LastReply() const {
  return "";
}

const WireFacts* HTTPTransport::LastWire() const {
  return nullptr;
}

std::shared_ptr<HTTPTransport> make_http_transport() {
  return std::make_shared<detail::SocketTransport>();
}

}  // namespace bvconn
