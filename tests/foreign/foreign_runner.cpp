// Runs call files against a server on a SOAP stack that is not ours: `foreign_runner STACK FILE…`.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "batch.h"
#include "foreign/call_file.h"
#include "foreign/foreign_server.h"
#include "foreign/stated_json.h"
#include "live/own_files.h"
#include "support/keyed_text.h"

namespace bvconn::test {
namespace {

/// Takes away what a stack does not let its services know, so that no test can ask for it.
void leave_out_unknowable(std::string_view stack, Json& seen) {
  // PHP's server gives the values alone; it looks for a function by its local name.
  if (stack == "php") seen.erase("service");
  // gSOAP's finds parameters by their names, and gives those that it expects.
  if (stack != "perl") seen.erase("names");
  // gSOAP's takes the quotes off the SOAPAction.
  if (stack == "gsoap" && seen.contains("action") && seen["action"].is_string()) {
    const std::string action = seen["action"];
    seen["action"] = action.size() < 2 ? action : action.substr(1, action.size() - 2);
  }
}

/// The answer without what every line of a batch has besides, and without the nodes that were
/// given, which are not the server's.
Json bare_answer(const std::string& line) {
  Json answer = Json::parse(line, nullptr, false);
  if (answer.is_object()) {
    answer.erase("id");
    answer.erase("args");
  }
  return answer;
}

void expect_json(const Json& actual, const Json& stated, const char* what) {
  EXPECT_EQ(actual.dump(), filled_in(stated, actual).dump()) << what;
}

class ForeignTest : public ::testing::Test {
 public:
  ForeignTest(std::string stack, ForeignServer& server, ForeignCase foreign_case)
      : stack_(std::move(stack)), server_(server), case_(std::move(foreign_case)) {}

  void TestBody() override {
    if (!server_.missing().empty()) GTEST_SKIP() << server_.missing();
    ASSERT_NE(server_.url(), "") << "the server did not start: " << server_.output();
    server_.take_seen();
    const OwnFiles files;
    for (const ForeignCall& call : case_.calls) {
      SCOPED_TRACE("line " + std::to_string(call.line) + ": call " + call.member);
      run(call);
    }
    if (HasFailure()) std::cerr << server_.output();
  }

 private:
  void run(const ForeignCall& call) {
    Json request{{"call", call.member}};
    request["args"] = call.arguments.empty() ? Json::object() : read_stated(call.arguments);
    request["args"]["aServerURL"] = server_.url();
    std::vector<std::string> lines;
    {
      tool::Batch batch([&](std::string_view line) { lines.emplace_back(line); });
      batch.run(request.dump());
    }
    expect_seen(for_stack(call.seen, stack_));
    ASSERT_EQ(lines.size(), 1U) << "an event came before the answer: " << lines.front();
    expect_json(bare_answer(lines[0]), read_stated(for_stack(call.answer, stack_)),
                "what comes back");
  }

  void expect_seen(const std::string& stated) {
    const std::vector<std::string> seen = server_.take_seen();
    ASSERT_EQ(seen.size(), stated == "nothing" ? 0U : 1U) << "requests that came to the server";
    if (stated == "nothing") return;
    Json expected = read_stated(stated);
    leave_out_unknowable(stack_, expected);
    expect_json(Json::parse(seen[0], nullptr, false), expected, "what the server saw");
  }

  std::string stack_;
  ForeignServer& server_;
  ForeignCase case_;
};

/// JSON that cannot be read, and keys that nobody could check, are slips of the file.
void check_json(CallFile& file) {
  for (const ForeignCase& one : file.cases) {
    for (const ForeignCall& call : one.calls) {
      std::vector<std::string> texts;
      if (!call.arguments.empty()) texts.push_back(call.arguments);
      for (const auto& [stack, text] : call.answer) texts.push_back(text);
      for (const auto& [stack, text] : call.seen) {
        if (text != "nothing") texts.push_back(text);
      }
      for (const std::string& text : texts) {
        if (Json::accept(text)) continue;
        file.problems.push_back("line " + std::to_string(call.line) + ": no JSON: " + text);
      }
    }
  }
}

bool register_file(const std::string& stack, ForeignServer& server, const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  CallFile file = read_call_file(std::string{std::istreambuf_iterator<char>(stream), {}});
  check_json(file);
  for (const std::string& problem : file.problems) std::cerr << path << ": " << problem << "\n";
  const std::string suite = stack + "." + std::filesystem::path(path).stem().string();
  for (const ForeignCase& one : file.cases) {
    if (one.without.contains(stack)) continue;
    ::testing::RegisterTest(
        suite.c_str(), test_name(one.claim).c_str(), nullptr, nullptr, path.c_str(), 1,
        [=, &server]() -> ::testing::Test* { return new ForeignTest(stack, server, one); });
  }
  return file.problems.empty();
}

}  // namespace
}  // namespace bvconn::test

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  if (argc < 3) {
    std::cerr << "usage: foreign_runner STACK FILE…\n";
    return 2;
  }
  const std::string stack = argv[1];
  bvconn::test::ForeignServer server(stack);
  bool understood = true;
  for (int i = 2; i < argc; ++i) {
    understood = bvconn::test::register_file(stack, server, argv[i]) && understood;
  }
  return understood ? RUN_ALL_TESTS() : 2;
}
