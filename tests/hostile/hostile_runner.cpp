// Runs the cases of hostile files: `hostile_runner FILE…`. Each is one ctest entry.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <exception>
#include <thread>
#include <utility>
#include <vector>

#include "bvconn/core/session_state.h"
#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/platform/conversions/text.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/timeout_scope.h"
#include "bvconn/platform/tls_files.h"
#include "hostile/hostile_calls.h"
#include "hostile/hostile_file.h"
#include "hostile/hostile_server.h"
#include "hostile/hostile_tests.h"
#include "hostile/process_watch.h"
#include "live/own_files.h"

namespace bvconn::test {
namespace {

namespace numbers = error_numbers;
using Clock = std::chrono::steady_clock;

#ifdef BVCONN_SANITIZED
constexpr int kSlower = 10;
constexpr bool kMeasuresMemory = false;
#else
constexpr int kSlower = 1;
constexpr bool kMeasuresMemory = true;
#endif
constexpr std::size_t kMiB = std::size_t{1} << 20;
/// A description is for people: whatever came back, it stays short.
constexpr std::size_t kWordsMax = 4000;
/// More nodes than this are not looked at one by one.
constexpr int kWalkedMax = 200'000;

std::string hex(std::int32_t number) {
  return hex_number(number);
}

/// What the options are that a case may set.
constexpr std::array<std::pair<const char*, const char*>, 2> kUsualOptions{{
    {"http.max_reply_bytes", "1073741824"},
    {"http.connect_timeout_ms", "300000"},
}};

/// What the case's thread found, so that its expectations are looked at in one place.
struct Seen {
  Given given;
  std::optional<Error> error;
  std::optional<Exchange> exchange;
  std::chrono::milliseconds took{0};
  std::size_t growth = 0;
};

// Whoever gets a reply looks at it.
void walk(const SoapNode& root) {
  std::vector<SoapNode> open{root};
  for (int seen = 0; !open.empty() && seen < kWalkedMax; ++seen) {
    const SoapNode node = open.back();
    open.pop_back();
    const std::size_t count = node.Nodes().Count();
    for (std::size_t i = 0; i < count && open.size() < std::size_t{kWalkedMax}; ++i) {
      open.push_back(node.Nodes().Item(i));
    }
    if (count > 0) continue;
    try {
      node.Value();
    } catch (const Error&) {
      // A value that does not fit its type is an answer like any other.
    }
  }
}

class CaseRunner {
 public:
  CaseRunner(const HostileCase& hostile, std::string route, OwnFiles& files)
      : case_(hostile),
        route_(std::move(route)),
        expected_(hostile.expected.at(route_)),
        files_(files),
        file_canary_(files.path("canary.txt").string()) {
    home_.otherwise(good_answer());
  }

  void run() {
    const Held before = held_now();
    {
      HostileServer server(case_);
      const std::string good = response_around("<return>good</return>");
      holes_ = {{"canary", canary_.url()},
                {"canary host", canary_.host()},
                {"canary file", "file://" + files_.path("canary.txt").string()},
                {"host", server.sockets().host()},
                {"port", std::to_string(server.sockets().port())},
                {"soap", "http://schemas.xmlsoap.org/soap/envelope/"},
                {"good", good},
                {"good length", std::to_string(good.size())}};
      files_.write("machine.toml", settings(server));
      // A thread of its own: its session, its connections and its record begin anew, and go with
      // it.
      std::thread([&] { guarded(server); }).join();
      EXPECT_EQ(canary_.connections(), 0) << "something was fetched";
      EXPECT_FALSE(file_canary_.was_opened()) << "a file was read";
    }
    const Held after = held_again(before);
    EXPECT_EQ(after.descriptors, before.descriptors) << "descriptors are left over";
    EXPECT_EQ(after.threads, before.threads) << "threads are left over";
  }

 private:
  bool by_dal() const { return route_ == "dal"; }
  bool starts_dal() const { return case_.call == "InitTorvexDAL"; }

  std::string settings(const HostileServer& server) const {
    if (case_.through.empty()) return "";
    const bool has_port = case_.through.starts_with("port ");
    return "['Software\\Brimvale\\Torvex\\AppData']\ntracePort = \"" +
           (has_port ? case_.through.substr(5) : std::to_string(server.sockets().port())) + "\"\n";
  }

  void guarded(HostileServer& server) {
    try {
      in_thread(server);
    } catch (const Error& error) {
      ADD_FAILURE() << hex(error.number) << " " << error.description;
    } catch (const std::exception& error) {
      ADD_FAILURE() << error.what();
    }
  }

  void in_thread(HostileServer& server) {
    const auto transport = BVConnectorObject().HTTPTransportObject();
    if (!server.authority().empty()) use_tls_files({.ca_file = server.authority()});
    const bool straight = case_.through.empty();
    if (straight) good_call(home_.url("/dal"));
    // A logger keeps its file from its first line on.
    session().Logger().LogWarning("hostile_runner", "in_thread", "begins", 0);
    const Held before = held_now();

    const std::string url = case_.url.empty() ? server.url("/soap") : expanded(case_.url, holes_);
    if (by_dal() && !starts_dal()) start_hostile_dal(url, server);
    if (case_.kept) good_call(url);
    for (const auto& [key, value] : case_.options) transport->Option(key, expanded(value, holes_));
    const std::size_t requests = server.sockets().requests().size();
    server.arm(case_, holes_, case_.on.value_or(1) - 1);
    const Seen seen = seen_in(url);
    for (const auto& [key, value] : kUsualOptions) transport->Option(key, value);
    check(seen, server);
    EXPECT_LE(server.sockets().requests().size(), requests + (starts_dal() ? 2 : 1))
        << "a request went out twice";

    if (server.ends_connection()) wait_for_end(server, closed_ + 1);
    if (server.get_well() && case_.url.empty() && !case_.through.starts_with("port ")) {
      good_call(url);
      check_request(server.sockets());
    }
    if (!straight) return;
    good_call(home_.url("/dal"));
    const Held after = held_again(before);
    EXPECT_EQ(after.descriptors, before.descriptors) << "descriptors grow from call to call";
    EXPECT_EQ(after.threads, before.threads) << "threads grow from call to call";
  }

  // What comes ahead of a request needs a connection of its own, so that of the login is closed.
  void start_hostile_dal(const std::string& url, HostileServer& server) {
    const TimeoutScope limit(std::chrono::milliseconds(case_.timeout_ms));
    const bool is_ahead = std::any_of(case_.steps.begin(), case_.steps.end(), [](const auto& step) {
      return step.moment != HostileStep::Moment::kAsked;
    });
    if (is_ahead) {
      server.sockets().answer({good_answer(), answers::then_close(good_answer())});
    }
    start_dal(url);
    if (is_ahead) wait_for_end(server, ++closed_);
  }

  // On a busy machine the end of a connection arrives a moment after it was sent, and the next
  // request must not meet it on its way.
  static void wait_for_end(const HostileServer& server, int count) {
    server.sockets().wait_for_closed(count);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }

  void start_dal(const std::string& url) {
    dal_url_ = url;
    BVConnectorObject().InitTorvexDAL(url);
    BVConnectorObject().UseTorvexDAL();
  }

  // The same operation on the same thread; the address of the other route is set with each.
  void good_call(const std::string& url) {
    if (by_dal() && dal_url_ != url) start_dal(url);
    const Given given = call_of("GetQuotePrintout")(url);
    EXPECT_EQ(to_text(given.node.Value()), kGoodValue);
  }

  Seen seen_in(const std::string& url) {
    const HostileCall call = call_of(case_.call);
    const TimeoutScope limit(std::chrono::milliseconds(case_.timeout_ms));
    if (!call) throw std::runtime_error("nothing is known of the call " + case_.call);
    Seen seen;
    if (starts_dal()) dal_url_.clear();  // Whatever comes of it, a good call begins it anew.
    const auto run = [&] {
      const auto begin = Clock::now();
      try {
        seen.given = call(url);
        if (seen.given.node) walk(seen.given.node);
      } catch (const Error& error) {
        seen.error = error;
      }
      seen.took = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin);
    };
    if (kMeasuresMemory) {
      seen.growth = peak_growth(run);
    } else {
      run();
    }
    seen.exchange = session().LastExchange();
    return seen;
  }

  void check(const Seen& seen, const HostileServer& server) {
    EXPECT_LE(seen.took.count(), case_.within.count() * kSlower) << "milliseconds";
    if (kMeasuresMemory) {
      EXPECT_LE(seen.growth, case_.memory_mib * kMiB) << "bytes, resident, at the peak";
    }
    ::testing::Test::RecordProperty("milliseconds", static_cast<int>(seen.took.count()));
    ::testing::Test::RecordProperty("kibibytes", static_cast<int>(seen.growth >> 10U));
    if (expected_.raises) {
      check_error(seen);
    } else if (seen.error) {
      ADD_FAILURE() << hex(seen.error->number) << " " << seen.error->description;
    } else {
      check_value(seen.given);
    }
    check_exchange(seen, server);
  }

  void check_error(const Seen& seen) {
    if (!seen.error) {
      ADD_FAILURE() << "no error was raised, but " << hex(*expected_.raises) << " is expected";
      return;
    }
    const Error& error = *seen.error;
    EXPECT_EQ(hex(error.number), hex(*expected_.raises)) << error.description;
    if (expected_.words) {
      EXPECT_EQ(error.description, expanded(*expected_.words, holes_));
    }
    for (const std::string& part : expected_.says) {
      const std::string words = expanded(part, holes_);
      EXPECT_NE(error.description.find(words), std::string::npos)
          << "\"" << words << "\" is missing in: " << error.description;
    }
    for (const std::string& part : expected_.silent) {
      EXPECT_EQ(error.description.find(expanded(part, holes_)), std::string::npos)
          << error.description;
    }
    EXPECT_EQ(outcome_text(error.outcome), expected_.outcome.value_or("answered"))
        << error.description;
    EXPECT_EQ(error.source, expected_.source.value_or(usual_source(error)));
    EXPECT_EQ(error.description.find("word@"), std::string::npos) << error.description;
    const bool in_its_own_words = error.number != numbers::kSoapFault && !expected_.source;
    if (in_its_own_words) {
      EXPECT_LE(error.description.size(), kWordsMax);
      EXPECT_TRUE(detail::is_utf8(error.description)) << error.description;
      EXPECT_EQ(error.description.find_first_of(std::string_view("\0\r\n\x1b\x7f", 5)),
                std::string::npos)
          << error.description;
    }
  }

  // Who raises an error of this number.
  std::string usual_source(const Error& error) const {
    const auto bits = static_cast<std::uint32_t>(error.number);
    if (bits >= 0x80044301U && bits <= 0x80044309U) {
      return by_dal() ? "PrintingService" : "HTTPTransport";
    }
    if (error.number == numbers::kNoSuchNode) return "SoapNodes";
    if (bits >= 0x80044201U && bits <= 0x80044206U) return "SoapEnvelope";
    return "BVConn";
  }

  void check_value(const Given& given) {
    const auto text = [&] { return given.text ? *given.text : to_text(given.node.Value()); };
    if (expected_.value) {
      EXPECT_EQ(text(), expanded(*expected_.value, holes_));
    }
    if (expected_.size) {
      EXPECT_EQ(text().size(), *expected_.size);
    }
    if (expected_.nodes) {
      EXPECT_EQ(given.node.Nodes().Count(), *expected_.nodes);
    }
    if (expected_.unreadable) check_unreadable(given.node);
  }

  void check_unreadable(const SoapNode& node) {
    try {
      const std::string type(type_name(node.Value().type()));
      ADD_FAILURE() << "the value was read, as " << type;
    } catch (const Error& error) {
      EXPECT_EQ(hex(error.number), hex(*expected_.unreadable)) << error.description;
    }
  }

  void check_exchange(const Seen& seen, const HostileServer& server) {
    if (!seen.exchange) {
      ADD_FAILURE() << "the call has no record";
      return;
    }
    const bool is_sent = expected_.outcome.value_or("") != "not sent";
    EXPECT_EQ(seen.exchange->http_status, expected_.status.value_or(is_sent ? 200 : 0));
    if (!is_sent) {
      EXPECT_TRUE(server.sockets().requests().empty() || case_.kept || by_dal());
    }
    if (!expected_.recorded) return;
    if (!seen.exchange->error) {
      ADD_FAILURE() << "the record has no error";
      return;
    }
    EXPECT_EQ(hex(seen.exchange->error->number), hex(*expected_.recorded))
        << seen.exchange->error->description;
  }

  void check_request(const MisbehavingServer& server) {
    const std::string request = server.last_request().bytes;
    for (const std::string& line : expected_.sends) {
      EXPECT_NE(request.find(expanded(line, holes_)), std::string::npos) << request;
    }
    for (const std::string& line : expected_.sends_not) {
      EXPECT_EQ(request.find(expanded(line, holes_)), std::string::npos) << request;
    }
  }

  const HostileCase& case_;
  std::string route_;
  const Expected& expected_;
  OwnFiles& files_;
  MisbehavingServer home_;    ///< is always good
  MisbehavingServer canary_;  ///< is called by nobody
  FileCanary file_canary_;
  Holes holes_;
  std::string dal_url_;
  int closed_ = 0;  ///< connections of the server, by its script
};

/// Settings and log of the process, named by its environment.
OwnFiles& own_files() {
  static OwnFiles files;
  return files;
}

}  // namespace
}  // namespace bvconn::test

int main(int argc, char** argv) {
  using namespace bvconn::test;
  return run_hostile_files(argc, argv, [](const HostileCase& hostile, const std::string& route) {
    CaseRunner(hostile, route, own_files()).run();
  });
}
