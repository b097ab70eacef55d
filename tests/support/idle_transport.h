#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "bvconn/platform/http/http_transport.h"

namespace bvconn::test {

/// A transport that takes everything, remembers nothing and takes no memory for it: only what it
/// answers is left to say.
class IdleTransport : public HTTPTransport {
 public:
  void Option(std::string_view, std::string_view) override {}
  void setProxy(std::string_view, std::string_view) override {}
  void NoProxy() override {}
  void SOAPAction(std::string_view) override {}
  void Timeout(std::int32_t) override {}
  void Send(std::string_view, std::string_view) override {}
};

}  // namespace bvconn::test
