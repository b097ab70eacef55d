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
#include "live/own_files.h"

namespace bvconn::test {
namespace {

using Json = nlohmann::json;

/// Stands for any text, such as a name that the stack makes up.
constexpr std::string_view kAnyText = "{any}";

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

bool matches(std::string_view text, std::string_view pattern) {
  const std::size_t at = pattern.find(kAnyText);
  if (at == std::string_view::npos) return text == pattern;
  if (!text.starts_with(pattern.substr(0, at))) return false;
  text.remove_prefix(at);
  pattern.remove_prefix(at + kAnyText.size());
  while (!matches(text, pattern)) {
    if (text.empty()) return false;
    text.remove_prefix(1);
  }
  return true;
}

/// Takes over from the other value what `{any}` stands for, and namespaces that are not stated:
/// results are taken by local names, and each stack has a namespace of its own liking for them.
void fill_in(Json& expected, const Json& actual) {
  if (expected.type() != actual.type()) return;
  if (expected.is_string()) {
    if (matches(actual.get<std::string>(), expected.get<std::string>())) expected = actual;
  } else if (expected.is_array()) {
    for (std::size_t i = 0; i < std::min(expected.size(), actual.size()); ++i) {
      fill_in(expected[i], actual[i]);
    }
  } else if (expected.is_object()) {
    for (const auto& [key, value] : actual.items()) {
      if (key == "namespace" && !expected.contains(key)) expected[key] = value;
      if (expected.contains(key)) fill_in(expected[key], value);
    }
  }
}

/// Writes out what stands for many characters: `{3 times ab}` is ababab.
std::string written_out(std::string text) {
  constexpr std::string_view kTimes = " times ";
  for (std::size_t times = text.find(kTimes); times != std::string::npos;
       times = text.find(kTimes, times + 1)) {
    const std::size_t open = text.rfind('{', times);
    const std::size_t close = text.find('}', times);
    const std::size_t begin = times + kTimes.size();
    std::string many;
    for (int left = std::stoi(text.substr(open + 1)); left > 0; --left) {
      many.append(text, begin, close - begin);
    }
    text.replace(open, close + 1 - open, many);
    times = open + many.size();
  }
  return text;
}

Json stated_json(const std::string& text) {
  return Json::parse(written_out(text));
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

/// Compared as text, in which 2 and 2.0 differ.
void expect_json(const Json& actual, Json expected, const char* what) {
  fill_in(expected, actual);
  EXPECT_EQ(actual.dump(), expected.dump()) << what;
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
    request["args"] = call.arguments.empty() ? Json::object() : stated_json(call.arguments);
    request["args"]["aServerURL"] = server_.url();
    std::vector<std::string> lines;
    {
      tool::Batch batch([&](std::string_view line) { lines.emplace_back(line); });
      batch.run(request.dump());
    }
    expect_seen(for_stack(call.seen, stack_));
    ASSERT_EQ(lines.size(), 1U) << "an event came before the answer: " << lines.front();
    expect_json(bare_answer(lines[0]), stated_json(for_stack(call.answer, stack_)),
                "what comes back");
  }

  void expect_seen(const std::string& stated) {
    const std::vector<std::string> seen = server_.take_seen();
    ASSERT_EQ(seen.size(), stated == "nothing" ? 0U : 1U) << "requests that came to the server";
    if (stated == "nothing") return;
    Json expected = stated_json(stated);
    leave_out_unknowable(stack_, expected);
    expect_json(Json::parse(seen[0], nullptr, false), expected, "what the server saw");
  }

  std::string stack_;
  ForeignServer& server_;
  ForeignCase case_;
};

// The claim as a test's name may be: letters, digits and underscores.
std::string test_name(const std::string& claim) {
  std::string name;
  for (const char c : claim) {
    const bool kept = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    name.push_back(kept ? c : '_');
  }
  return name;
}

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
