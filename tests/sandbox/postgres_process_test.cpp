#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "sandbox/postgres_server.h"
#include "sandbox/sandbox_process.h"

namespace bvconn::test {
namespace {

using ::testing::HasSubstr;

class PostgresProcess : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!server().missing().empty()) GTEST_SKIP() << server().missing();
  }
  static PostgresServer& server() { return PostgresServer::shared(); }
};

std::string first_invoice(SandboxProcess& sandbox) {
  return sandbox
      .soap("urn:InvoiceService", "getInvoice", "<param xsi:type=\"xsd:string\">INV-1001</param>")
      .body;
}

TEST_F(PostgresProcess, ADatabaseThatIsGoneForAWhileIsToldAndThenMended) {
  SandboxProcess sandbox({"--port", "0", "--db", server().make_database()});
  const std::string before = first_invoice(sandbox);
  EXPECT_THAT(before, HasSubstr("INV-1001"));
  const std::string token = sandbox.login();
  server().stop();
  for (int i = 0; i < 2; ++i) {
    const std::string fault = first_invoice(sandbox);
    EXPECT_THAT(fault, HasSubstr("<faultcode>SOAP-ENV:Server</faultcode>"));
    EXPECT_THAT(fault, HasSubstr("cannot be reached"));
  }
  const RawReply refused =
      sandbox.dal("AuthenticationService/GetDisabledServices", R"({"arguments":[]})", token);
  EXPECT_EQ(refused.status, 500);
  EXPECT_THAT(refused.body, HasSubstr("cannot be reached"));
  server().start();
  EXPECT_EQ(first_invoice(sandbox), before);
  EXPECT_EQ(
      sandbox.dal("AuthenticationService/GetDisabledServices", R"({"arguments":[]})", token).status,
      200);
}

TEST_F(PostgresProcess, AServerThatIsStartedAnewBetweenCallsIsNotNoticed) {
  SandboxProcess sandbox({"--port", "0", "--db", server().make_database()});
  const std::string before = first_invoice(sandbox);
  server().stop();
  server().start();
  EXPECT_EQ(first_invoice(sandbox), before);
}

TEST_F(PostgresProcess, WithoutTheDatabaseItDoesNotStart) {
  SandboxProcess sandbox({"--port", "0", "--db", server().address("nowhere")});
  EXPECT_EQ(sandbox.wait(), 1);
  EXPECT_THAT(sandbox.errors(), HasSubstr("cannot be reached"));
  EXPECT_EQ(sandbox.errors().find('\n'), sandbox.errors().size() - 1);
}

}  // namespace
}  // namespace bvconn::test
