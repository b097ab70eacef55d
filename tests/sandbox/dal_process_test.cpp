#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "bvconn/platform/soap/soap_envelope.h"
#include "bvconn/platform/soap/variant.h"
#include "sandbox/sandbox_process.h"

namespace bvconn::test {
namespace {

constexpr std::string_view kNoArguments = R"({"arguments":[]})";

/// "status source: description" of a reply that has to be an error in JSON.
std::string error_text(const RawReply& reply) {
  const auto body = nlohmann::json::parse(reply.body, nullptr, false);
  if (!body.is_object() || !body.contains("number") || !body["number"].is_number_integer()) {
    return "no error: " + reply.body;
  }
  return std::to_string(reply.status) + " " + body.value("source", "") + ": " +
         body.value("description", "");
}

TEST(SandboxDal, LoginGivesATokenThatOpensTheRest) {
  SandboxProcess sandbox;
  const std::string token = sandbox.login();
  ASSERT_EQ(token.size(), 32U);
  const auto reply = sandbox.dal("HeartBeatService/sendHeartBeat", kNoArguments, token);
  EXPECT_EQ(reply.status, 200);
  const auto envelope = SoapEnvelope::make();
  envelope.Parse(reply.body, "");
  EXPECT_EQ(envelope.Parameters().Item(0).Value(), Variant("OK"));
}

TEST(SandboxDal, EachLoginHasATokenOfItsOwn) {
  SandboxProcess sandbox;
  EXPECT_NE(sandbox.login(), sandbox.login());
}

TEST(SandboxDal, ALoginWithoutAPasswordIsRefused) {
  SandboxProcess sandbox;
  const auto reply =
      sandbox.dal("AuthenticationService/Login", R"({"arguments":["anna","","1.0","US"]})");
  EXPECT_EQ(error_text(reply),
            "401 AuthenticationService: User 'anna' is unknown, or the password is wrong");
  EXPECT_EQ(reply.header("Session-Token"), "");
}

TEST(SandboxDal, ALoginWithoutFourTextsIsABadRequest) {
  SandboxProcess sandbox;
  for (const char* body :
       {R"({"arguments":["anna","secret"]})", R"({"arguments":["anna","secret",1,"US"]})"}) {
    EXPECT_EQ(error_text(sandbox.dal("AuthenticationService/Login", body)),
              "400 AuthenticationService: Login takes four texts: user, password, version, "
              "country code");
  }
}

TEST(SandboxDal, WithoutATokenTheHeartBeatIsRefused) {
  SandboxProcess sandbox;
  for (const char* token : {"", "00000000000000000000000000000000"}) {
    const auto reply = sandbox.dal("HeartBeatService/sendHeartBeat", kNoArguments, token);
    EXPECT_EQ(error_text(reply).find("401 HeartBeatService: sendHeartBeat needs a login"), 0U)
        << reply.body;
  }
}

TEST(SandboxDal, DisabledServicesAreToldAsGivenAtStart) {
  SandboxProcess sandbox({"--disabled", "urn:HeartBeatService.beat|"});
  const auto reply =
      sandbox.dal("AuthenticationService/GetDisabledServices", kNoArguments, sandbox.login());
  EXPECT_EQ(reply.status, 200);
  EXPECT_EQ(reply.header("Content-Type"), "text/plain; charset=utf-8");
  EXPECT_EQ(reply.body, "urn:HeartBeatService.beat|");
}

TEST(SandboxDal, DisabledServicesCanBeChangedAtRunTime) {
  SandboxProcess sandbox;
  const std::string token = sandbox.login();
  const auto told = [&] {
    return sandbox.dal("AuthenticationService/GetDisabledServices", kNoArguments, token).body;
  };
  EXPECT_EQ(told(), "");
  const std::string text = "urn:HeartBeatService.beat|urn:QuoteService.save|";
  EXPECT_EQ(exchange(sandbox.port(), http_request("POST", "/admin/disabled", "", text)).body, text);
  EXPECT_EQ(told(), text);
  EXPECT_EQ(exchange(sandbox.port(), http_request("GET", "/admin/disabled", "", "")).body, text);
  exchange(sandbox.port(), http_request("POST", "/admin/disabled", "", ""));
  EXPECT_EQ(told(), "");
}

TEST(SandboxDal, AnUnknownOperationIsToldWithItsObject) {
  SandboxProcess sandbox;
  EXPECT_EQ(error_text(sandbox.dal("SearchService/SearchForYetis", kNoArguments, sandbox.login())),
            "404 SearchService: The sandbox has no operation 'SearchForYetis' of the object "
            "'SearchService'");
}

TEST(SandboxDal, APathWithoutObjectAndOperationIsNotFound) {
  SandboxProcess sandbox;
  EXPECT_EQ(error_text(sandbox.dal("SearchService", kNoArguments)),
            "404 bvsandbox: The path is '/dal/SearchService', expected "
            "/dal/{Object}/{Operation}");
}

TEST(SandboxDal, ABodyOfAnotherFormIsABadRequest) {
  SandboxProcess sandbox;
  const std::string token = sandbox.login();
  for (const char* body :
       {"", "[]", "{\"arguments\":", "{\"arguments\":{}}", "{\"args\":[]}", "\xff\xfe"}) {
    EXPECT_EQ(error_text(sandbox.dal("HeartBeatService/sendHeartBeat", body, token)),
              "400 HeartBeatService: sendHeartBeat: the body is not JSON of the form "
              "{\"arguments\":[...]}")
        << body;
  }
}

TEST(SandboxDal, AnotherContentTypeIsRefused) {
  SandboxProcess sandbox;
  const auto reply =
      exchange(sandbox.port(), http_request("POST", "/dal/HeartBeatService/sendHeartBeat",
                                            "Content-Type: text/plain\r\n", kNoArguments));
  EXPECT_EQ(error_text(reply),
            "415 HeartBeatService: sendHeartBeat: Content-Type is 'text/plain', expected "
            "'application/json'");
}

}  // namespace
}  // namespace bvconn::test
