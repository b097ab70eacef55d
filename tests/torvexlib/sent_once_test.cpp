#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <memory>
#include <ostream>
#include <string>
#include <tuple>
#include <vector>

#include "bvconn/platform/error.h"
#include "bvconn/platform/http/http_transport.h"
#include "bvconn/platform/thread_record.h"
#include "bvconn/platform/tls_files.h"
#include "bvconn/platform/torvexlib/json_poster.h"
#include "support/error_of.h"
#include "support/misbehaving_server.h"
#include "support/tls_server.h"

namespace bvconn::test {
namespace {

using Kind = Step::Kind;

/// What the server does with a request: it reads all of it or nothing, and then ends the
/// connection.
struct Ending {
  const char* name;
  bool reads;
  Answer steps;
};
void PrintTo(const Ending& ending, std::ostream* out) {
  *out << ending.name;
}

/// A client of the library: one for each of the two routes.
class Client {
 public:
  virtual ~Client() = default;
  virtual std::string post(const std::string& url, const std::string& body) = 0;
};

class TransportClient final : public Client {
 public:
  explicit TransportClient(const std::string& ca_file) {
    transport_->Timeout(20'000);
    transport_->Option("tls.ca_file", ca_file);
  }
  std::string post(const std::string& url, const std::string& body) override {
    transport_->Send(url, body);
    return transport_->Receive("UTF-8");
  }

 private:
  std::shared_ptr<HTTPTransport> transport_ = make_http_transport();
};

class PosterClient final : public Client {
 public:
  explicit PosterClient(const std::string& ca_file)
      : poster_({.time_out = std::chrono::seconds(20)}) {
    use_tls_files({.ca_file = ca_file});
  }
  std::string post(const std::string& url, const std::string& body) override {
    return poster_.post("OrderService", url, "", body).body;
  }

 private:
  detail::ThreadScope fresh_files_;
  detail::JsonPoster poster_;
};

struct Size {
  const char* name;
  std::size_t bytes;
};
void PrintTo(const Size& size, std::ostream* out) {
  *out << size.name;
}

using Case = std::tuple<bool, bool, Ending, Size>;

/// The server acts on whatever it read, so that the number of requests that reach it is the number
/// of orders that are saved.
class SentOnce : public testing::TestWithParam<Case> {
 protected:
  bool by_transport() const { return std::get<0>(GetParam()); }
  bool secure() const { return std::get<1>(GetParam()); }
  Ending ending() const { return std::get<2>(GetParam()); }

  std::string post(const std::string& body) {
    return client_->post(server_.url("/", secure() ? "https" : "http"), body);
  }

  void expect_lost() {
    const std::string save(std::get<3>(GetParam()).bytes, 's');
    const Error error = error_of([&] { post(save); });
    EXPECT_EQ(hex_number(error.number), "0x80044307") << error.description;
    EXPECT_EQ(error.source, by_transport() ? "HTTPTransport" : "OrderService");
    EXPECT_NE(error.description.find(server_.host()), std::string::npos) << error.description;
  }

  /// The saves among the requests that arrived whole.
  std::size_t saves() const {
    const std::vector<SeenRequest> requests = server_.requests();
    return static_cast<std::size_t>(
        std::count_if(requests.begin(), requests.end(),
                      [](const SeenRequest& request) { return request.body.starts_with('s'); }));
  }

 private:
  TlsIdentity identity_;

 protected:
  MisbehavingServer server_{secure() ? tls_streams(identity_) : plain_streams()};

 private:
  std::unique_ptr<Client> client_ = make_client();

  std::unique_ptr<Client> make_client() const {
    if (by_transport()) {
      return std::make_unique<TransportClient>(identity_.certificate_file());
    }
    return std::make_unique<PosterClient>(identity_.certificate_file());
  }
};

class OverAKeptConnection : public SentOnce {};

TEST_P(OverAKeptConnection, IsLostAndReachesTheServerOnceAtMost) {
  const Ending end = ending();
  if (end.reads) {
    server_.answer({answers::reply("<first/>"), end.steps});
  } else {
    server_.answer(answers::reply("<first/>") + Answer{{.kind = Kind::kUnread}} + end.steps);
  }
  EXPECT_EQ(post("first"), "<first/>");
  expect_lost();
  EXPECT_EQ(post("next"), "<ok/>");
  // Connections are taken in their order: one that the lost call had made would have been the
  // second.
  EXPECT_EQ(server_.connections(), 2);
  EXPECT_EQ(server_.last_request().connection, 2);
  EXPECT_EQ(saves(), end.reads ? 1U : 0U);
  EXPECT_EQ(server_.requests().size(), end.reads ? 3U : 2U);
}

class OverANewConnection : public SentOnce {};

TEST_P(OverANewConnection, IsLostAndReachesTheServerOnce) {
  server_.answer(ending().steps);
  expect_lost();
  EXPECT_EQ(post("next"), "<ok/>");
  EXPECT_EQ(server_.connections(), 2);
  EXPECT_EQ(saves(), 1U);
  EXPECT_EQ(server_.requests().size(), 2U);
}

class ByAServerThatDies : public SentOnce {};

// Nothing to connect to is no news about the request that the server had read before.
TEST_P(ByAServerThatDies, IsLostAndNotJustUnreachable) {
  server_.answer({answers::reply("<first/>"), Answer{{.kind = Kind::kDeaf}} + ending().steps});
  EXPECT_EQ(post("first"), "<first/>");
  expect_lost();
  EXPECT_EQ(server_.connections(), 1);
  EXPECT_EQ(saves(), 1U);
  const Error error = error_of([&] { post("next"); });
  EXPECT_EQ(hex_number(error.number), "0x80044301") << error.description;
}

// More than the buffers of both sockets take.
constexpr std::size_t kLargeBytes = std::size_t{24} << 20;

const auto kRoutes = testing::Bool();
const auto kSchemes = testing::Bool();
const auto kSizes = testing::Values(Size{"Small", 20}, Size{"Large", kLargeBytes});
const auto kReadEndings = testing::Values(Ending{"ReadAndReset", true, {{.kind = Kind::kReset}}},
                                          Ending{"ReadAndClosed", true, {{.kind = Kind::kClose}}},
                                          Ending{"ReadAndCut", true, {{.kind = Kind::kCut}}});
const auto kUnreadEndings =
    testing::Values(Ending{"UnreadAndReset", false, {{.kind = Kind::kReset}}},
                    Ending{"UnreadAndClosed", false, {{.kind = Kind::kClose}}});

std::string name_of(const testing::TestParamInfo<Case>& test) {
  const auto& [by_transport, secure, ending, size] = test.param;
  return std::string(by_transport ? "Soap" : "Json") + (secure ? "Tls" : "Plain") + size.name +
         ending.name;
}

INSTANTIATE_TEST_SUITE_P(Read, OverAKeptConnection,
                         testing::Combine(kRoutes, kSchemes, kReadEndings, kSizes), name_of);
INSTANTIATE_TEST_SUITE_P(Unread, OverAKeptConnection,
                         testing::Combine(kRoutes, kSchemes, kUnreadEndings, kSizes), name_of);
INSTANTIATE_TEST_SUITE_P(Read, OverANewConnection,
                         testing::Combine(kRoutes, kSchemes, kReadEndings, kSizes), name_of);
INSTANTIATE_TEST_SUITE_P(Read, ByAServerThatDies,
                         testing::Combine(kRoutes, kSchemes, kReadEndings, kSizes), name_of);

}  // namespace
}  // namespace bvconn::test
