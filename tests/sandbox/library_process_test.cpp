#include <gtest/gtest.h>
#include <signal.h>

#include <memory>
#include <string>

#include "bvconn/connectors/invoice/bv_invoice_connector.h"
#include "bvconn/connectors/session/bv_heart_beat_connector.h"
#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/observation/world.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/platform.h"
#include "bvconn/platform/soap/variant.h"
#include "sandbox/sandbox_process.h"
#include "support/error_of.h"

namespace bvconn::test {
namespace {

/// The library as an application has it, with its real connections and the rest of the world
/// silent, against the real server.
class LibraryAndSandbox : public ::testing::Test {
 protected:
  LibraryAndSandbox() : scope_(real_connections()) {}

  std::string soap_url() const { return base() + "/soap"; }
  std::string dal_url() const { return base() + "/dal"; }

  void set_disabled(std::string_view text) {
    exchange(sandbox_.port(), http_request("POST", "/admin/disabled", "", text));
  }

  /// The requests that the server saw, one line each; it ends with this.
  std::string requests_seen() {
    EXPECT_EQ(sandbox_.end_by(SIGTERM), 0);
    return sandbox_.errors();
  }

 private:
  static platform::Platform real_connections() {
    auto world = automation::detail::World().platform();
    world.transport = make_http_transport;
    world.service_object = make_http_service_object;
    return world;
  }
  std::string base() const { return "http://127.0.0.1:" + std::to_string(sandbox_.port()); }

  SandboxProcess sandbox_{{"--port", "0", "--verbose"}};
  platform::ScopedPlatform scope_;
};

TEST_F(LibraryAndSandbox, GetInvoiceGivesTheInvoice) {
  const SoapNode node = BVInvoiceConnector().GetInvoice(soap_url(), "S1", "INV-1003");
  EXPECT_EQ(node.Nodes().ItemByName("InvoiceNumber").Value(), Variant("700103"));
}

TEST_F(LibraryAndSandbox, AnUnknownInvoiceIsItsMappedError) {
  const Error error = error_of([&] { BVInvoiceConnector().GetInvoice(soap_url(), "S1", "INV-0"); });
  EXPECT_EQ(hex_number(error.number), "0x80042739");
  EXPECT_EQ(error.source, "BVInvoiceConnector");
}

TEST_F(LibraryAndSandbox, TheHeartBeatGoesByTheDataAccessLayerUntilItIsDisabledThere) {
  BVConnectorObject object;
  object.UserName("anna");
  object.Password("secret");
  object.InitTorvexDAL(dal_url());
  object.UseTorvexDAL();
  BVHeartBeatConnector connector;
  connector.sendHeartBeat(soap_url(), "S1");
  set_disabled("urn:HeartBeatService.beat|");
  object.InitTorvexDAL(dal_url());
  connector.sendHeartBeat(soap_url(), "S1");
  EXPECT_EQ(requests_seen(),
            "POST /dal/AuthenticationService/Login - 200\n"
            "POST /dal/AuthenticationService/GetDisabledServices - 200\n"
            "POST /dal/HeartBeatService/sendHeartBeat - 200\n"
            "POST /admin/disabled - 200\n"
            "POST /dal/AuthenticationService/Login - 200\n"
            "POST /dal/AuthenticationService/GetDisabledServices - 200\n"
            "POST /soap \"urn:HeartBeatService\" 200\n");
}

}  // namespace
}  // namespace bvconn::test
