#pragma once

#include <gtest/gtest.h>
#include <signal.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/observation/world.h"
#include "bvconn/platform/platform.h"
#include "bvconn/platform/soap/variant.h"
#include "sandbox/sandbox_process.h"

namespace bvconn::test {

/// The library with its real connections against the real server.
class SandboxDocuments : public ::testing::Test {
 protected:
  SandboxDocuments() : scope_(real_connections()) { start({"--port", "0", "--verbose"}); }

  void start(const std::vector<std::string>& arguments) {
    sandbox_ = std::make_unique<SandboxProcess>(arguments);
    url_ = base() + "/soap";
  }
  void go_by_dal() {
    BVConnectorObject object;
    object.UserName("anna");
    object.Password("secret");
    object.InitTorvexDAL(base() + "/dal");
    object.UseTorvexDAL();
  }
  /// The requests that the server saw; it ends with this.
  std::string requests_seen() {
    EXPECT_EQ(sandbox_->end_by(SIGTERM), 0);
    return sandbox_->errors();
  }

  SandboxProcess& sandbox() { return *sandbox_; }

  std::string url_;

 private:
  static platform::Platform real_connections() {
    auto world = automation::detail::World().platform();
    world.transport = make_http_transport;
    world.service_object = make_http_service_object;
    return world;
  }
  std::string base() const { return "http://127.0.0.1:" + std::to_string(sandbox_->port()); }

  std::unique_ptr<SandboxProcess> sandbox_;
  platform::ScopedPlatform scope_;
};

/// The text of a child, which has to be there.
inline std::string text(const SoapNode& node, std::string_view name) {
  return to_text(node.Nodes().ItemByName(name).Value());
}

inline bool has(const SoapNode& node, std::string_view name) {
  for (const SoapNode& each : node.Nodes()) {
    if (each.Name() == name) return true;
  }
  return false;
}

}  // namespace bvconn::test
