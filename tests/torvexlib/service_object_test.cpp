#include "bvconn/platform/torvexlib/service_object.h"

#include <gtest/gtest.h>

#include <thread>

#include "bvconn/platform/error.h"
#include "support/error_of.h"
#include "support/misbehaving_server.h"

namespace bvconn::test {
namespace {

using Arguments = std::vector<Variant>;
using answers::reply;

/// Each test runs its calls on a thread of its own: address and login belong to the thread.
class HttpServiceObject : public testing::Test {
 protected:
  template <typename Action>
  static void on_new_thread(Action action) {
    std::thread(action).join();
  }

  static void set_url(const std::string& url) {
    make_http_service_object("AuthenticationService")
        ->invoke("SetServerUrl", Arguments{Variant(url)}, false);
  }

  static std::string call(std::string_view object, std::string_view operation,
                          const Arguments& arguments = {}) {
    return make_http_service_object(object)->invoke(operation, arguments, false);
  }

  static Error error_of_call(std::string_view object, std::string_view operation,
                             const Arguments& arguments = {}) {
    return error_of([&] { call(object, operation, arguments); });
  }

  static std::string first_line(const SeenRequest& request) {
    return request.bytes.substr(0, request.bytes.find("\r\n"));
  }

  static bool has(const SeenRequest& request, std::string_view text) {
    return request.bytes.find(text) != std::string::npos;
  }

  static bool has_line(const SeenRequest& request, std::string_view line) {
    return has(request, "\r\n" + std::string(line) + "\r\n");
  }

  MisbehavingServer server_;
};

TEST_F(HttpServiceObject, PostsTheArgumentsToObjectAndOperation) {
  on_new_thread([this] {
    server_.answer(reply("<Envelope/>"));
    set_url(server_.url("/dal"));
    EXPECT_EQ(call("SearchService", "SearchForCustomer", {Variant("G1"), Variant(true)}),
              "<Envelope/>");
    const std::vector<SeenRequest> requests = server_.requests();
    ASSERT_EQ(requests.size(), 1U);
    EXPECT_EQ(first_line(requests[0]), "POST /dal/SearchService/SearchForCustomer HTTP/1.1");
    EXPECT_TRUE(has_line(requests[0], "Content-Type: application/json")) << requests[0].bytes;
    EXPECT_FALSE(has(requests[0], "Authorization"));
    EXPECT_FALSE(has(requests[0], "Expect"));
    EXPECT_EQ(requests[0].body, R"({"arguments":["G1",true]})");
  });
}

TEST_F(HttpServiceObject, ExactlyOneSlashFollowsTheAddress) {
  on_new_thread([this] {
    for (const char* tail : {"", "/", "//", "/dal/", "/dal///"}) {
      server_.answer(reply("x"));
      set_url("http://" + server_.host() + tail);
      call("OrderService", "GetOrder");
    }
    const std::vector<SeenRequest> requests = server_.requests();
    ASSERT_EQ(requests.size(), 5U);
    EXPECT_EQ(first_line(requests[0]), "POST /OrderService/GetOrder HTTP/1.1");
    EXPECT_EQ(first_line(requests[1]), "POST /OrderService/GetOrder HTTP/1.1");
    EXPECT_EQ(first_line(requests[2]), "POST /OrderService/GetOrder HTTP/1.1");
    EXPECT_EQ(first_line(requests[3]), "POST /dal/OrderService/GetOrder HTTP/1.1");
    EXPECT_EQ(first_line(requests[4]), "POST /dal/OrderService/GetOrder HTTP/1.1");
  });
}

TEST_F(HttpServiceObject, AnOperationIsOneSegmentOfThePathWhateverItsName) {
  on_new_thread([this] {
    server_.answer(reply("x"));
    server_.answer(reply("x"));
    set_url("http://" + server_.host());
    call("OrderService", "a/b?c d#\xC3\xA4%");
    call("OrderService", "..");
    const std::vector<SeenRequest> requests = server_.requests();
    ASSERT_EQ(requests.size(), 2U);
    EXPECT_EQ(first_line(requests[0]), "POST /OrderService/a%2Fb%3Fc%20d%23%C3%A4%25 HTTP/1.1");
    EXPECT_EQ(first_line(requests[1]), "POST /OrderService/.. HTTP/1.1");
  });
}

TEST_F(HttpServiceObject, ALoginServesAllObjectsOfTheThread) {
  on_new_thread([this] {
    server_.answer(reply("welcome", "200 OK", answers::kXml, {{"session-token", " T1 "}}));
    server_.answer(reply("found"));
    server_.answer(reply("beat"));
    set_url("http://" + server_.host());
    const Arguments login = {Variant("user"), Variant("secret"), Variant("7.1"), Variant("US")};
    EXPECT_EQ(call("AuthenticationService", "Login", login), "welcome");
    EXPECT_EQ(call("SearchService", "SearchForBrands"), "found");
    EXPECT_EQ(call("HeartBeatService", "sendHeartBeat"), "beat");
    const std::vector<SeenRequest> requests = server_.requests();
    ASSERT_EQ(requests.size(), 3U);
    EXPECT_EQ(requests[0].body, R"({"arguments":["user","secret","7.1","US"]})");
    EXPECT_FALSE(has(requests[0], "Authorization"));
    EXPECT_TRUE(has_line(requests[1], "Authorization: Bearer T1")) << requests[1].bytes;
    EXPECT_TRUE(has_line(requests[2], "Authorization: Bearer T1")) << requests[2].bytes;
  });
}

TEST_F(HttpServiceObject, OnlyALoginBringsAToken) {
  on_new_thread([this] {
    server_.answer(reply("x", "200 OK", answers::kXml, {{"Session-Token", "stray"}}));
    server_.answer(reply("x", "500 Oops", answers::kXml, {{"Session-Token", "refused"}}));
    server_.answer(reply("x"));
    set_url("http://" + server_.host());
    call("SearchService", "Login");
    error_of_call("AuthenticationService", "Login");
    call("SearchService", "SearchForBrands");
    for (const SeenRequest& request : server_.requests()) {
      EXPECT_FALSE(has(request, "Authorization")) << request.bytes;
    }
  });
}

TEST_F(HttpServiceObject, SettingTheAddressSendsNothingAndForgetsTheToken) {
  on_new_thread([this] {
    server_.answer(reply("", "200 OK", answers::kXml, {{"Session-Token", "T1"}}));
    server_.answer(reply(""));
    set_url("http://" + server_.host());
    call("AuthenticationService", "Login");
    set_url("http://" + server_.host());
    EXPECT_EQ(server_.requests().size(), 1U);
    call("SearchService", "SearchForBrands");
    ASSERT_EQ(server_.requests().size(), 2U);
    EXPECT_FALSE(has(server_.requests()[1], "Authorization"));
  });
}

TEST_F(HttpServiceObject, AddressAndTokenBelongToTheThread) {
  on_new_thread([this] {
    server_.answer(reply("", "200 OK", answers::kXml, {{"Session-Token", "T1"}}));
    server_.answer(reply(""));
    set_url("http://" + server_.host());
    call("AuthenticationService", "Login");
    on_new_thread([this] {
      const Error error = error_of_call("SearchService", "SearchForBrands");
      EXPECT_EQ(hex_number(error.number), "0x80044308");
      EXPECT_EQ(error.source, "SearchService");
      set_url("http://" + server_.host());
      call("SearchService", "SearchForBrands");
    });
    ASSERT_EQ(server_.requests().size(), 2U);
    EXPECT_FALSE(has(server_.requests()[1], "Authorization"));
  });
}

TEST_F(HttpServiceObject, ObjectsOfAThreadShareOneConnection) {
  on_new_thread([this] {
    for (int i = 0; i < 3; ++i) {
      server_.answer(reply("x"));
    }
    set_url("http://" + server_.host());
    call("SearchService", "SearchForBrands");
    call("OrderService", "GetOrder");
    call("QuoteService", "GetQuote");
    ASSERT_EQ(server_.requests().size(), 3U);
    EXPECT_EQ(server_.requests()[2].connection, 1);
  });
}

TEST_F(HttpServiceObject, AnotherConnectionIsMadeWhenTheServerClosedTheKeptOne) {
  on_new_thread([this] {
    server_.answer({answers::then_close(reply("a")), reply("b")});
    set_url("http://" + server_.host());
    EXPECT_EQ(call("SearchService", "SearchForBrands"), "a");
    ASSERT_TRUE(server_.wait_for_closed(1));
    EXPECT_EQ(call("SearchService", "SearchForBrands"), "b");
    ASSERT_EQ(server_.requests().size(), 2U);
    EXPECT_EQ(server_.requests()[1].connection, 2);
  });
}

TEST_F(HttpServiceObject, AJsonBodyTellsTheErrorOfTheOperation) {
  on_new_thread([this] {
    server_.answer(
        reply(R"({"number":-2147204607,"source":"Dal","description":"no such customer"})",
              "500 Internal Server Error"));
    set_url("http://" + server_.host());
    const Error error = error_of_call("SearchService", "SearchForCustomer");
    EXPECT_EQ(hex_number(error.number), "0x80044201");
    EXPECT_EQ(error.source, "Dal");
    EXPECT_EQ(error.description, "no such customer");
    EXPECT_EQ(error.helpFile, "");
    EXPECT_EQ(error.helpContext, 0);
  });
}

TEST_F(HttpServiceObject, AnyOtherBodyGivesTheTransportsError) {
  on_new_thread([this] {
    server_.answer(reply("<html>come\r\nback</html>", "503 Too Busy"));
    set_url("http://" + server_.host());
    const Error error = error_of_call("SearchService", "SearchForCustomer");
    EXPECT_EQ(hex_number(error.number), "0x80044305");
    EXPECT_EQ(error.source, "SearchService");
    EXPECT_EQ(error.description,
              "The server answered to http://" + server_.host() +
                  "/SearchService/SearchForCustomer with the status 503 Too Busy: "
                  "<html>come back</html>");
  });
}

TEST_F(HttpServiceObject, OnlyTheStatus200IsAResult) {
  on_new_thread([this] {
    set_url("http://" + server_.host());
    for (const char* status : {"201 Created", "202 Accepted", "404 Not Found"}) {
      server_.answer(reply("text", status));
      EXPECT_EQ(hex_number(error_of_call("SearchService", "SearchForBrands").number), "0x80044305")
          << status;
    }
  });
}

TEST_F(HttpServiceObject, ARedirectIsNotFollowed) {
  on_new_thread([this] {
    server_.answer(answers::redirect("http://127.0.0.1:1/elsewhere"));
    set_url("http://" + server_.host());
    const Error error = error_of_call("SearchService", "SearchForBrands");
    EXPECT_EQ(hex_number(error.number), "0x80044305");
    EXPECT_NE(error.description.find("http://127.0.0.1:1/elsewhere"), std::string::npos)
        << error.description;
    EXPECT_EQ(server_.requests().size(), 1U);
  });
}

TEST_F(HttpServiceObject, AResultIsTheBodyAsItIs) {
  on_new_thread([this] {
    const std::string body("a\0b\r\n\xFF\xEF\xBB\xBF", 9);
    server_.answer(reply(body));
    server_.answer(reply(""));
    set_url("http://" + server_.host());
    EXPECT_EQ(call("SearchService", "SearchForBrands"), body);
    EXPECT_EQ(call("AuthenticationService", "GetDisabledServices"), "");
  });
}

TEST_F(HttpServiceObject, AnArgumentThatCannotTravelSendsNothing) {
  on_new_thread([this] {
    set_url("http://" + server_.host());
    EXPECT_EQ(error_of_call("SearchService", "SearchForBrands", {Variant("\xFF")}).number, 13);
    EXPECT_TRUE(server_.requests().empty());
  });
}

TEST_F(HttpServiceObject, AnAddressThatIsNoUrlIsRefusedAtTheFirstCall) {
  on_new_thread([] {
    set_url("ftp://example.com/dal");
    const Error error = error_of_call("SearchService", "SearchForBrands");
    EXPECT_EQ(hex_number(error.number), "0x80044308");
    EXPECT_EQ(error.source, "SearchService");
  });
}

TEST_F(HttpServiceObject, AServerThatIsNotThereCannotBeReached) {
  on_new_thread([] {
    std::string url;
    {
      const MisbehavingServer gone;
      url = "http://" + gone.host();
    }
    set_url(url);
    const Error error = error_of_call("OrderService", "GetOrder");
    EXPECT_EQ(hex_number(error.number), "0x80044301");
    EXPECT_EQ(error.source, "OrderService");
  });
}

TEST_F(HttpServiceObject, AProxyOfTheEnvironmentDoesNotCount) {
  on_new_thread([this] {
    ::setenv("http_proxy", "http://127.0.0.1:1", 1);
    server_.answer(reply("straight"));
    set_url("http://" + server_.host());
    EXPECT_EQ(call("SearchService", "SearchForBrands"), "straight");
    ::unsetenv("http_proxy");
  });
}

TEST_F(HttpServiceObject, OffersItsOwnInterfaceAlone) {
  const auto object = make_http_service_object("HeartBeatService");
  EXPECT_EQ(object->name(), "HeartBeatService");
  EXPECT_TRUE(object->offers("HeartBeatService"));
  EXPECT_FALSE(object->offers("SearchService"));
}

TEST_F(HttpServiceObject, OnlyTheAuthenticationServiceTakesTheAddress) {
  on_new_thread([this] {
    set_url("http://" + server_.host());
    server_.answer(reply("", "404 Not Found"));
    const Error error = error_of_call("SearchService", "SetServerUrl", {Variant("http://x")});
    EXPECT_EQ(hex_number(error.number), "0x80044305");
    EXPECT_EQ(error_of_call("AuthenticationService", "SetServerUrl").number, 13);
  });
}

}  // namespace
}  // namespace bvconn::test
