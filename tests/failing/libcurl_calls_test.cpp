#include <curl/curl.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "bvconn/connectors/search/bv_search_connector.h"
#include "bvconn/core/heart_beat_time.h"
#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "live/own_files.h"
#include "support/failing_calls.h"
#include "support/misbehaving_server.h"

// Each call of libcurl fails in turn, in a call of an operation that goes to a real server.
namespace bvconn::test {
namespace {

using error_numbers::from_bits;

/// What a failure of libcurl has to come out as; nothing where the call does not need what failed.
std::optional<std::int32_t> number_of(std::string_view call, int code) {
  if (call == "curl_easy_getinfo") return std::nullopt;  // measures alone
  if (call == "curl_url_set") {
    return code == CURLUE_OUT_OF_MEMORY ? error_numbers::kOutOfMemory : from_bits(0x80044308);
  }
  switch (code) {
    case CURLE_OUT_OF_MEMORY:
      return error_numbers::kOutOfMemory;
    case CURLE_OPERATION_TIMEDOUT:
      return from_bits(0x80044302);
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_PEER_FAILED_VERIFICATION:
      return from_bits(0x80044303);
    case CURLE_COULDNT_RESOLVE_PROXY:
      return from_bits(0x80044304);
    default:
      return from_bits(0x80044301);  // nothing went out
  }
}

class LibcurlCalls : public testing::Test {
 protected:
  LibcurlCalls() { server.otherwise(answers::brands()); }

  void use_dal() {
    BVConnectorObject().UserName("anna");
    BVConnectorObject().Password("secret");
    BVConnectorObject().InitTorvexDAL(server.url());
    BVConnectorObject().UseTorvexDAL();
  }

  /// A call on a kept connection, or on a new one: under the host's other name it leads elsewhere.
  std::optional<std::int32_t> error_number() {
    try {
      const SoapNode brands = BVSearchConnector().SearchForBrands("S1", url());
      EXPECT_EQ(brands.Value(), Variant(std::string("the brands")));
      return std::nullopt;
    } catch (const Error& error) {
      EXPECT_FALSE(error.description.empty());
      return error.number;
    }
  }

  std::string url() const {
    return by_other_name ? "http://localhost:" + std::to_string(server.port()) + "/soap"
                         : server.url("/soap");
  }

  /// After the reply, what fails is no matter of the call.
  std::optional<std::int32_t> expected_number(bool went_out) const {
    if (went_out && struck_call() == "curl_easy_setopt") return std::nullopt;
    return number_of(struck_call(), struck_code());
  }

  /// The number of failures.
  std::size_t expect_each_failure_is_told(bool on_kept_connections) {
    return for_each_failing_call([&](std::size_t number, std::size_t way) {
      by_other_name = false;
      EXPECT_EQ(error_number(), std::nullopt) << "the call before";
      const std::size_t requests = server.requests().size();
      const Date heart_beat = Global::LastHeartBeat();
      std::optional<std::int32_t> failed;
      bool struck_now = false;
      by_other_name = !on_kept_connections;
      {
        const FailingCall failing(Calls::kLibcurl, number, way);
        failed = error_number();
        struck_now = FailingCall::has_struck();
      }
      if (!struck_now) return false;
      SCOPED_TRACE(struck() + ", call " + std::to_string(number));
      EXPECT_EQ(failed, expected_number(server.requests().size() > requests));
      if (failed) {
        EXPECT_TRUE(Global::LastHeartBeat() == heart_beat);
      }
      by_other_name = false;
      EXPECT_EQ(error_number(), std::nullopt) << "the next call";
      return true;
    });
  }

  OwnFiles files;
  MisbehavingServer server;
  bool by_other_name = false;
};

TEST_F(LibcurlCalls, ThatStartItAreTriedAgainByTheNextCall) {
  constexpr std::size_t kCallsBeforeItAtMost = 12;
  int strikes = 0;
  for (std::size_t number = 1; number <= kCallsBeforeItAtMost; ++number) {
    for (std::size_t way = 0; way < 2; ++way) {
      std::optional<std::int32_t> failed;
      {
        const FailingCall failing(Calls::kLibcurl, number, way);
        failed = error_number();
      }
      if (!FailingCall::has_struck() || struck_call() != "curl_global_init") continue;
      ++strikes;
      EXPECT_EQ(failed, struck_code() == CURLE_OUT_OF_MEMORY ? error_numbers::kOutOfMemory
                                                             : from_bits(0x80044301));
    }
  }
  EXPECT_EQ(error_number(), std::nullopt);
  if (strikes == 0) GTEST_SKIP() << "another test of this process has started libcurl";
}

TEST_F(LibcurlCalls, FailEachAsOneErrorOnTheSoapRoute) {
  ASSERT_EQ(error_number(), std::nullopt);
  // Some twenty options that a connection needs, each with three ways to fail.
  EXPECT_GT(expect_each_failure_is_told(false), 60U);
}

TEST_F(LibcurlCalls, FailEachAsOneErrorOnAKeptConnection) {
  ASSERT_EQ(error_number(), std::nullopt);
  // The body and its length, and the exchange itself.
  EXPECT_GT(expect_each_failure_is_told(true), 9U);
}

TEST_F(LibcurlCalls, FailEachAsOneErrorOnTheDataAccessLayerRoute) {
  use_dal();
  ASSERT_EQ(error_number(), std::nullopt);
  EXPECT_GT(expect_each_failure_is_told(true), 9U);
}

}  // namespace
}  // namespace bvconn::test
