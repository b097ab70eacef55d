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
  const auto error_of = [&](const char* arguments) {
    return error_text(sandbox.dal("AuthenticationService/Login",
                                  R"({"arguments":)" + std::string(arguments) + "}"));
  };
  EXPECT_EQ(error_of(R"(["anna","secret"])"),
            "400 AuthenticationService: Login: has 2 arguments, expected 4 (a text, a text, "
            "a text, a text)");
  EXPECT_EQ(error_of(R"(["anna","secret",1,"US"])"),
            "400 AuthenticationService: Login: argument 3 is a whole number of 32 bits, "
            "expected a text");
}

TEST(SandboxDal, ArgumentsThatDoNotFitAreRefusedWithTheirPlace) {
  struct Case {
    const char *path, *arguments, *told;
  };
  const Case cases[] = {
      {"OrderService/getSAPOrderView", R"(["ORD-5001"])",
       "OrderService: getSAPOrderView: has 1 argument, expected 2 ('aOrderGID', 'aIncludePrice')"},
      {"OrderService/getSAPOrderView", R"([true,"ORD-5001"])",
       "OrderService: getSAPOrderView: argument 1 ('aOrderGID') is a boolean, expected a text; 1 "
       "more "
       "difference"},
      {"OrderService/getSAPOrderView", R"(["ORD-5001",null])",
       "OrderService: getSAPOrderView: argument 2 ('aIncludePrice') is null, expected a boolean"},
      {"SearchService/SearchForGLCodes", R"(["","","True"])",
       "SearchService: SearchForGLCodes: argument 3 ('Misc') is a text, expected a boolean"},
      {"SearchService/SearchForAllAgents", R"(["92"])",
       "SearchService: SearchForAllAgents: argument 1 ('aAgentID') is a text, expected a whole "
       "number of 32 bits"},
      {"SearchService/SearchForAllAgents", R"([5000000000])",
       "SearchService: SearchForAllAgents: argument 1 ('aAgentID') is a whole number of 64 bits, "
       "expected a whole number of 32 bits"},
      {"ProjectService/SaveProject", R"([{"Project":"PRJ-3001"}])",
       "ProjectService: SaveProject: argument 1 is an object or a nested array, expected a text"},
      {"HeartBeatService/sendHeartBeat", R"([1])",
       "HeartBeatService: sendHeartBeat: has 1 argument, expected 0"},
  };
  SandboxProcess sandbox;
  const std::string token = sandbox.login();
  for (const Case& each : cases) {
    const std::string body = R"({"arguments":)" + std::string(each.arguments) + "}";
    EXPECT_EQ(error_text(sandbox.dal(each.path, body, token)), "400 " + std::string(each.told));
  }
}

TEST(SandboxDal, AVariantOfTheCallersTypeIsTakenAndOneThatNestsIsNot) {
  SandboxProcess sandbox;
  const std::string token = sandbox.login();
  const auto status = [&](const std::string& first_po) {
    std::string arguments = R"("","anna")";
    for (int i = 0; i < 18; ++i) arguments += R"(,"")";
    arguments += R"(,false,false,"","",)" + first_po;
    return sandbox
        .dal("SearchService/OrdersSearchEmailExport", "{\"arguments\":[" + arguments + "]}", token)
        .status;
  };
  for (const char* each : {"null", "\"4711\"", "4711", "true", "0.5", "[\"4711\",4712]"}) {
    EXPECT_EQ(status(each), 200) << each;
  }
  EXPECT_EQ(status("[[1]]"), 400);
  EXPECT_EQ(status(std::string(100'000, '[') + std::string(100'000, ']')), 400);
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
