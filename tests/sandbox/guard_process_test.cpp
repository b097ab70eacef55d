#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "sandbox/command_run.h"
#include "sandbox/sandbox_process.h"

namespace bvconn::test {
namespace {

using ::testing::HasSubstr;

/// A request whose headers are these and no others but its length.
RawReply ask(const SandboxProcess& sandbox, const std::string& method, const std::string& target,
             const std::string& headers, const std::string& body = "") {
  return exchange(sandbox.port(), method + " " + target + " HTTP/1.1\r\n" + headers +
                                      "Connection: close\r\nContent-Length: " +
                                      std::to_string(body.size()) + "\r\n\r\n" + body);
}

class SandboxGuard : public ::testing::Test {
 protected:
  int journal(const std::string& headers) {
    return ask(sandbox_, "GET", "/admin/journal", headers).status;
  }
  std::string port() const { return std::to_string(sandbox_.port()); }

  SandboxProcess sandbox_{{"--port", "0", "--allowed-host", "Sandbox.example"}};
};

TEST_F(SandboxGuard, KnowsItsOwnNamesAlone) {
  EXPECT_EQ(journal("Host: 127.0.0.1:" + port() + "\r\n"), 200);
  EXPECT_EQ(journal("Host: LOCALHOST:80\r\n"), 200);
  EXPECT_EQ(journal("Host: [::1]:" + port() + "\r\n"), 200);
  EXPECT_EQ(journal("Host: [::1]\r\n"), 200);
  EXPECT_EQ(journal("Host: sandbox.example\r\n"), 200);
  EXPECT_EQ(journal(""), 200);
  for (const char* name : {"evil.example", "evil.example:8080", "127.0.0.1.evil.example",
                           "sandbox.example.evil", "[::2]", ""}) {
    EXPECT_EQ(journal("Host: " + std::string(name) + "\r\n"), 403) << name;
  }
  EXPECT_EQ(journal("Host: localhost\r\nHost: evil.example\r\n"), 400);
  EXPECT_EQ(ask(sandbox_, "GET", "/admin/journal", "Host: evil.example\r\n").body,
            "The sandbox is not asked by the name 'evil.example'; --allowed-host NAME allows "
            "one.\n");
}

TEST_F(SandboxGuard, RefusesPagesOfOtherOrigins) {
  const std::string own = "Host: 127.0.0.1:" + port() + "\r\n";
  EXPECT_EQ(journal(own + "Origin: http://127.0.0.1:" + port() + "\r\n"), 200);
  for (const std::string& origin :
       {std::string("null"), std::string("http://evil.example"), std::string("http://127.0.0.1:1"),
        "http://localhost:" + port(), "127.0.0.1:" + port(), std::string()}) {
    EXPECT_EQ(journal(own + "Origin: " + origin + "\r\n"), 403) << origin;
  }
  EXPECT_EQ(journal("Origin: null\r\n"), 403);
  EXPECT_EQ(journal(own + "Sec-Fetch-Site: same-origin\r\n"), 200);
  EXPECT_EQ(journal(own + "Sec-Fetch-Site: none\r\n"), 200);
  EXPECT_EQ(journal(own + "Sec-Fetch-Site: cross-site\r\n"), 403);
  EXPECT_EQ(journal(own + "Sec-Fetch-Site: same-site\r\n"), 403);
  const std::string fault = R"({"kind":"close"})";
  EXPECT_EQ(
      ask(sandbox_, "POST", "/admin/faults", own + "Origin: http://evil.example\r\n", fault).status,
      403);
  EXPECT_EQ(ask(sandbox_, "GET", "/admin/faults", own).body, "{\n  \"faults\": []\n}\n");
}

TEST_F(SandboxGuard, LetsClientsNameTheServerAsTheyLike) {
  const std::string text = envelope_text("urn:InvoiceService", "getInvoice",
                                         R"(<param xsi:type="xsd:string">INV-1001</param>)");
  const std::string headers = "Content-Type: text/xml\r\nSOAPAction: \"urn:InvoiceService\"\r\n";
  const auto soap = [&](const std::string& more) {
    return ask(sandbox_, "POST", "/soap", headers + more, text);
  };
  EXPECT_EQ(soap("Host: balancer.example\r\n").status, 200);
  EXPECT_EQ(soap("").status, 200);
  // A page that a browser shows is no client of this protocol.
  EXPECT_EQ(soap("Host: 127.0.0.1\r\nOrigin: http://evil.example\r\n").status, 403);
  EXPECT_EQ(soap("Host: evil.example\r\nOrigin: http://evil.example\r\n").status, 403);
  EXPECT_EQ(soap("Host: 127.0.0.1\r\nSec-Fetch-Site: cross-site\r\n").status, 403);
  EXPECT_EQ(ask(sandbox_, "POST", "/dal/AuthenticationService/login",
                "Host: evil.example\r\nOrigin: http://evil.example\r\n", "{}")
                .status,
            403);
}

TEST_F(SandboxGuard, ServesThePageUnderAStrictPolicy) {
  const RawReply page = ask(sandbox_, "GET", "/", "Host: localhost\r\n");
  EXPECT_EQ(page.status, 200);
  EXPECT_EQ(page.header("Content-Type"), "text/html; charset=utf-8");
  EXPECT_EQ(page.header("X-Content-Type-Options"), "nosniff");
  const std::string policy = page.header("Content-Security-Policy");
  EXPECT_THAT(policy, HasSubstr("default-src 'none'; script-src 'self'; style-src 'self'; "));
  EXPECT_THAT(policy, HasSubstr("frame-ancestors 'none'"));
  EXPECT_THAT(policy, ::testing::Not(HasSubstr("unsafe")));
  const RawReply script = ask(sandbox_, "GET", "/page/main.js", "Host: localhost\r\n");
  EXPECT_EQ(script.header("Content-Type"), "text/javascript; charset=utf-8");
  EXPECT_EQ(ask(sandbox_, "POST", "/", "Host: localhost\r\n").status, 405);
  EXPECT_EQ(ask(sandbox_, "GET", "/", "Host: evil.example\r\n").status, 403);
  // A link leads there from anywhere, which nothing else of a stranger does.
  const std::string followed = "Host: localhost\r\nSec-Fetch-Site: cross-site\r\n";
  const std::string shown = "Sec-Fetch-Mode: navigate\r\nSec-Fetch-Dest: ";
  EXPECT_EQ(ask(sandbox_, "GET", "/", followed + shown + "document\r\n").status, 200);
  EXPECT_EQ(ask(sandbox_, "GET", "/", followed + shown + "iframe\r\n").status, 403);
  EXPECT_EQ(ask(sandbox_, "GET", "/page/main.js", followed).status, 403);
  EXPECT_EQ(ask(sandbox_, "GET", "/admin/faults", followed + shown + "document\r\n").status, 403);
}

TEST(SandboxOptions, RefusesAnAllowedHostThatIsNone) {
  const CommandRun run = run_sandbox({"--allowed-host", "http://sandbox.example"});
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.err, HasSubstr("'http://sandbox.example' is no host name, expected one such as "
                                 "sandbox.example, without a port"));
}

}  // namespace
}  // namespace bvconn::test
