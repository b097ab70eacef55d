// Runs the cases of hostile files through a program `bvconn batch`, which may be one of another
// system: `hostile_batch_runner FILE…`. What such a program does not show, as its memory, its files
// and the record of an exchange, is not looked at here.

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "automation/tool_process.h"
#include "bvconn/platform/conversions/text.h"
#include "bvconn/platform/error.h"
#include "hostile/hostile_bytes.h"
#include "hostile/hostile_file.h"
#include "hostile/hostile_server.h"
#include "hostile/hostile_tests.h"

namespace bvconn::test {
namespace {

using nlohmann::ordered_json;

/// The program may come up while a call runs.
constexpr int kSlower = 10;

/// The request that makes a call of `hostile_calls.h`.
ordered_json request_of(const std::string& name, const std::string& url) {
  static const std::map<std::string, std::pair<std::string, ordered_json>> calls{
      {"GetQuotePrintout",
       {"BVPrintConnector.GetQuotePrintout", {{"aSessionID", "S-1"}, {"aUID", "U-1"}}}},
      {"GetInvoice",
       {"BVInvoiceConnector.GetInvoice", {{"aSessionID", "S-1"}, {"strInvoiceUID", "U-1"}}}},
      {"SearchForAuthorizations",
       {"BVSearchConnector.SearchForAuthorizations", {{"aSessionID", "S-1"}}}},
      {"GetDocuments", {"BVDocumentConnector.GetDocuments", {{"aGID", "G-1"}}}},
      {"getNewAcknowledgment",
       {"BVAcknowledgementConnector.getNewAcknowledgment",
        {{"serializedAckObject", "<a/>"}, {"aSessionID", "S-1"}}}},
      {"pilferSalesInstrument",
       {"BVSalesInstrumentConnector.pilferSalesInstrument",
        {{"SIGID", "G-1"},
         {"doc", {{"document", true}}},
         {"SIType", "order"},
         {"aSessionID", "S-1"}}}},
      {"sendHeartBeat", {"BVHeartBeatConnector.sendHeartBeat", {{"aSessionID", "S-1"}}}},
  };
  if (name == "InitTorvexDAL") {
    return {{"call", "BVConnectorObject.InitTorvexDAL"}, {"args", {{"dal_server_url", url}}}};
  }
  const auto& [path, arguments] = calls.at(name);
  ordered_json all = arguments;
  all["aServerURL"] = url;
  return {{"call", path}, {"args", all}};
}

/// A batch that goes on until it is no longer needed.
class Caller {
 public:
  Caller(std::int32_t timeout_ms, const std::string& authority)
      : tool_(options(timeout_ms, authority), "", {}) {}

  void settings(const std::string& text) { tool_.folder.file("machine.toml", text); }

  ordered_json ask(const ordered_json& request) {
    tool_.send(request.dump() + "\n");
    while (true) {
      const std::string line = tool_.read_line();
      if (line.empty()) throw std::runtime_error("there is no answer to " + request.dump());
      auto answer = ordered_json::parse(line);
      if (!answer.contains("event")) return answer;
    }
  }

 private:
  static std::vector<std::string> options(std::int32_t timeout_ms, const std::string& authority) {
    std::vector<std::string> words{"batch"};
    if (timeout_ms != 0)
      words.insert(words.end(), {"--timeout", std::to_string(timeout_ms) + "ms"});
    if (!authority.empty()) words.insert(words.end(), {"--ca-file", authority});
    return words;
  }

  Tool tool_;
};

bool is_tool_of_another_system() {
  return std::getenv("BVCONN_TRIED_TOOL") != nullptr;
}

/// The file of the authority for a program that goes on: each case has one of its own in its place.
/// Windows reads it at each connection; other libraries keep what they have read.
std::string same_file(const std::string& authority) {
  static const TemporaryFolder folder;
  return authority.empty() ? "" : folder.file("authority.pem", read_text(authority));
}

/// One for all cases that want no other.
std::shared_ptr<Caller> caller_for(const HostileCase& hostile, const std::string& authority) {
  const std::int32_t timeout_ms = hostile.timeout_ms;
  const bool keeps_authority = !authority.empty() && !is_tool_of_another_system();
  // The port of the proxy is read once.
  if (keeps_authority || !hostile.through.empty()) {
    return std::make_shared<Caller>(timeout_ms, authority);
  }
  const std::string file = same_file(authority);
  static std::map<std::pair<std::int32_t, std::string>, std::shared_ptr<Caller>> kept;
  auto& caller = kept[{timeout_ms, file}];
  if (!caller) caller = std::make_shared<Caller>(timeout_ms, file);
  return caller;
}

class FarCaseRunner {
 public:
  FarCaseRunner(const HostileCase& hostile, std::string route)
      : case_(hostile), route_(std::move(route)), expected_(hostile.expected.at(route_)) {}

  void run() {
    HostileServer server(case_);
    const std::string good = response_around("<return>good</return>");
    holes_ = {{"canary", canary_.url()},
              {"canary host", canary_.host()},
              {"canary file", "file:///etc/hostname"},
              {"host", server.sockets().host()},
              {"port", std::to_string(server.sockets().port())},
              {"soap", "http://schemas.xmlsoap.org/soap/envelope/"},
              {"good", good},
              {"good length", std::to_string(good.size())}};
    const std::string url = case_.url.empty() ? url_of(server) : expanded(case_.url, holes_);
    if (!detail::is_utf8(url)) GTEST_SKIP() << "a line of a batch has no such address";
    caller_ = caller_for(case_, server.authority());
    caller_->settings(settings(server));
    call(server, url);
    caller_->settings("");
    EXPECT_EQ(canary_.connections(), 0) << "something was fetched";
  }

 private:
  bool by_dal() const { return route_ == "dal"; }
  bool starts_dal() const { return case_.call == "InitTorvexDAL"; }

  /// By its name where it speaks TLS: the system's own of Windows goes by the names of a
  /// certificate alone, and not by its addresses.
  static std::string url_of(const HostileServer& server) {
    std::string url = server.url("/soap");
    const std::string number = "@127.0.0.1:";
    const std::size_t at = url.find(number);
    if (url.starts_with("https") && at != std::string::npos) {
      url.replace(at, number.size(), "@localhost:");
    }
    return url;
  }

  std::string settings(const HostileServer& server) const {
    if (case_.through.empty()) return "";
    const bool has_port = case_.through.starts_with("port ");
    return "['Software\\Brimvale\\Torvex\\AppData']\ntracePort = \"" +
           (has_port ? case_.through.substr(5) : std::to_string(server.sockets().port())) + "\"\n";
  }

  void call(HostileServer& server, const std::string& url) {
    if (!by_dal()) {
      caller_->ask({{"set", "BVConnectorObject.UsingTorvexDAL"}, {"value", false}});
    } else if (!starts_dal()) {
      start_hostile_dal(url, server);
    }
    if (case_.kept) good_call(url);
    const std::size_t requests = server.sockets().requests().size();
    server.arm(case_, holes_, case_.on.value_or(1) - 1);
    const auto begin = std::chrono::steady_clock::now();
    check(caller_->ask(request_of(case_.call, url)));
    EXPECT_LE(std::chrono::steady_clock::now() - begin, case_.within * kSlower);
    EXPECT_LE(server.sockets().requests().size(), requests + (starts_dal() ? 2 : 1))
        << "a request went out twice";
    if (server.ends_connection()) wait_for_end(server, closed_ + 1);
    if (server.get_well() && case_.url.empty() && !case_.through.starts_with("port ")) {
      if (starts_dal()) start_dal(url);
      good_call(url);
    }
  }

  // What comes ahead of a request needs a connection of its own, so that of the login is closed.
  void start_hostile_dal(const std::string& url, HostileServer& server) {
    bool is_ahead = false;
    for (const auto& step : case_.steps) is_ahead |= step.moment != HostileStep::Moment::kAsked;
    if (is_ahead) server.sockets().answer({good_answer(), answers::then_close(good_answer())});
    start_dal(url);
    if (is_ahead) wait_for_end(server, ++closed_);
  }

  static void wait_for_end(const HostileServer& server, int count) {
    server.sockets().wait_for_closed(count);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }

  void start_dal(const std::string& url) {
    caller_->ask(request_of("InitTorvexDAL", url));
    caller_->ask({{"call", "BVConnectorObject.UseTorvexDAL"}, {"args", ordered_json::object()}});
  }

  void good_call(const std::string& url) {
    const auto answer = caller_->ask(request_of("GetQuotePrintout", url));
    EXPECT_EQ(text_in(answer), kGoodValue) << answer.dump();
  }

  void check(const ordered_json& answer) {
    if (!expected_.raises && is_beyond_printing(answer)) {
      GTEST_SKIP() << "a line of a batch has no room for what was read";
    }
    if (expected_.raises) {
      check_error(answer);
    } else if (answer.contains("error")) {
      ADD_FAILURE() << answer["error"].dump();
    } else {
      check_value(answer);
    }
  }

  /// A small reply that shares its parts may hold more than any text of it could.
  static bool is_beyond_printing(const ordered_json& answer) {
    return answer.contains("error") && answer["error"]["source"] == "bvconn" &&
           answer["error"]["hex"] == "0x80044206";
  }

  void check_error(const ordered_json& answer) {
    const std::string wanted = hex_number(*expected_.raises);
    if (!answer.contains("error")) {
      ADD_FAILURE() << "no error was raised, but " << wanted << " is expected: " << answer.dump();
      return;
    }
    const auto& error = answer["error"];
    EXPECT_EQ(error["hex"], wanted) << error.dump();
    if (expected_.source) {
      EXPECT_EQ(error["source"], *expected_.source);
    }
    const std::string words = error["description"];
    if (expected_.words) {
      EXPECT_EQ(words, expanded(*expected_.words, holes_));
    }
    for (const std::string& part : expected_.silent) {
      EXPECT_EQ(words.find(expanded(part, holes_)), std::string::npos) << words;
    }
    EXPECT_EQ(words.find("word@"), std::string::npos) << words;
  }

  /// The text that a call gave; nothing for a value that is none.
  static std::optional<std::string> text_in(const ordered_json& answer) {
    if (answer.contains("document")) return answer["document"].get<std::string>();
    ordered_json value = answer.value("result", ordered_json());
    if (value.is_object() && value.contains("node")) value = value["node"]["value"];
    if (value.is_null()) return "";
    if (!value.is_string()) return std::nullopt;
    return value.get<std::string>();
  }

  void check_value(const ordered_json& answer) {
    const auto text = text_in(answer);
    if (expected_.value && text) {
      EXPECT_EQ(*text, expanded(*expected_.value, holes_));
    }
    if (expected_.size && text) {
      EXPECT_EQ(text->size(), *expected_.size);
    }
    const auto& result = answer["result"];
    const bool is_node = result.is_object() && result.contains("node");
    if (expected_.nodes && is_node) {
      EXPECT_EQ(result["node"]["nodes"].size(), *expected_.nodes);
    }
    if (expected_.unreadable) {
      EXPECT_TRUE(is_node && result["node"].contains("unreadable")) << answer.dump();
    }
  }

  const HostileCase& case_;
  std::string route_;
  const Expected& expected_;
  MisbehavingServer canary_;  ///< is called by nobody
  Holes holes_;
  std::shared_ptr<Caller> caller_;
  int closed_ = 0;  ///< connections of the server, by its script
};

}  // namespace
}  // namespace bvconn::test

int main(int argc, char** argv) {
  using namespace bvconn::test;
  return run_hostile_files(argc, argv, [](const HostileCase& hostile, const std::string& route) {
    if (!hostile.options.empty()) GTEST_SKIP() << "no line of a batch sets such an option";
    FarCaseRunner(hostile, route).run();
  });
}
