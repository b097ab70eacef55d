// Runs the cases of wire files: `wire_runner FILE…`. Each is one ctest entry.

#include <gtest/gtest.h>

#include <charconv>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>

#include "batch.h"
#include "bvconn/core/session_state.h"
#include "files/temp_folder.h"
#include "laws.h"
#include "sandbox/wire/wire_text.h"
#include "service_objects.h"
#include "support/keyed_text.h"
#include "support/recording_platform.h"

namespace bvconn::test {
namespace {

using wire::reply_text;
using wire::request_text;
using Lines = std::vector<std::string>;

const Lines kTraceLines{
    "LogInfo Global.TraceSoapTraffic() - Property Get \"Entering Method...\" 0",
    "LogInfo Global.TraceSoapTraffic() - Property Get \"Entering Method...\" 0"};
const Lines kTracePortLines{"EnterMethod Global.TracePort 2", "ExitMethod Global.TracePort 2"};
const Lines kTimeoutLines{"EnterMethod Global.DefaultTimeout 2",
                          "ExitMethod Global.DefaultTimeout 2"};
const std::string kBeatLine =
    "LogAtLevel 4 Global.LastHeartBeat \"Heart Beat Time Updated: 1/5/2007 1:04:09 PM\" 0";

void replace_all(std::string& text, std::string_view what, std::string_view with) {
  for (std::size_t at = text.find(what); at != std::string::npos;
       at = text.find(what, at + with.size())) {
    text.replace(at, what.size(), with);
  }
}

bool starts(const std::string& text, std::string_view with, std::string& rest) {
  if (!text.starts_with(with)) return false;
  rest = text.substr(with.size());
  return true;
}

std::optional<Error> broken_error(const WireStep& step) {
  if (!step.broken) return std::nullopt;
  std::istringstream words(*step.broken);
  std::string number;
  std::string source;
  std::string description;
  words >> number >> source;
  std::getline(words >> std::ws, description);
  return Error(static_cast<std::int32_t>(std::stoul(number, nullptr, 0)), source, description,
               "help.chm", 12);
}

// Whether the text is the expected one, where `{words}` stands for any words.
bool is_with_words(std::string_view text, std::string_view expected) {
  constexpr std::string_view kWords = "{words}";
  const std::size_t at = expected.find(kWords);
  if (at == std::string_view::npos) return text == expected;
  if (!text.starts_with(expected.substr(0, at))) return false;
  text.remove_prefix(at);
  expected.remove_prefix(at + kWords.size());
  while (!text.empty()) {
    text.remove_prefix(1);
    if (is_with_words(text, expected)) return true;
  }
  return false;
}

void expect_text(const std::string& text, const std::string& expected) {
  EXPECT_EQ(is_with_words(text, expected) ? expected : text, expected);
}

void expect_lines(Lines lines, const Lines& expected) {
  for (std::size_t i = 0; i < lines.size() && i < expected.size(); ++i) {
    if (is_with_words(lines[i], expected[i])) lines[i] = expected[i];
  }
  EXPECT_EQ(lines, expected);
}

class CaseRunner {
 public:
  explicit CaseRunner(const WireCase& wire_case) : case_(wire_case) {}

  void run() {
    world_.timer = {100.0};
    world_.log_file = folder_.file("bvconn.log");
    platform::Platform world = platform::current();
    world.service_object = [make = world.service_object](std::string_view name) {
      return reached(make(name));
    };
    platform::install(std::move(world));
    for (const WireStep& step : case_.steps) {
      SCOPED_TRACE("line " + std::to_string(step.line) + ": call " + step.member);
      run(step);
    }
    EXPECT_FALSE(case_.steps.empty()) << "the case calls nothing";
  }

 private:
  void set_up(const std::string& line) {
    std::string rest;
    auto& state = session();
    if (line == "UsingTorvexDAL") {
      world_.use_dal();
#define BVCONN_SERVICE_OBJECT(name, ...) state.name = reached(std::move(state.name));
#include "bvconn/platform/torvexlib/service_object_rows.inc"
    } else if (line == "UseDALSave") {
      state.UseDALSave = true;
    } else if (line == "UsingTorvexDAL without service objects") {
      state.UsingTorvexDAL = true;
    } else if (line == "not UsingTorvexDAL") {
      state.UsingTorvexDAL = false;
    } else if (line == "not UseDALSave") {
      state.UseDALSave = false;
    } else if (line == "unwritable log file") {
      world_.log_file = folder_.file("");
    } else if (starts(line, "failing log line ", rest)) {
      world_.log_failure.emplace(rest, Error(61, "SessionLogger", "disk full"));
    } else if (line == "isBrimvale") {
      state.isBrimvale = true;
    } else if (starts(line, "disabled ", rest)) {
      state.DisabledDALServices = rest;
    } else if (starts(line, "mask ", rest)) {
      world_.log_mask = std::stoi(rest, nullptr, 0);
    } else if (starts(line, "timer ", rest)) {
      world_.timer.clear();
      std::istringstream seconds(rest);
      for (double second = 0; seconds >> second;) world_.timer.push_back(second);
    } else if (starts(line, "setting ", rest)) {
      const std::size_t equals = rest.find(" = ");
      std::string path = rest.substr(0, equals);
      for (char& c : path) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
      world_.settings[path] = rest.substr(equals + 3);
    } else {
      ADD_FAILURE() << "given: nothing is known of \"" << line << "\"";
    }
  }

  void run(const WireStep& step) {
    for (const std::string& line : step.given) set_up(line);
    world_.record.clear();
    world_.sent.clear();
    session().LastHeartBeat = Date{};
    std::filesystem::remove(folder_.file("bvconn.log"));
    script(step);
    std::string answer;
    {
      tool::Batch batch([&](std::string_view line) { answer = line; });
      batch.run("{\"id\":1,\"call\":\"" + step.member +
                "\",\"args\":" + (step.arguments.empty() ? "{}" : step.arguments) + "}");
    }
    ASSERT_TRUE(step.answer) << "the step states no answer";
    expect_text(answer, "{\"id\":1," + step.answer->substr(1));
    expect_traffic(step);
    expect_transport(step);
    expect_lines(world_.record.log, expanded_log(step));
    expect_log_file(step);
    for (const std::string& line : step.after) expect_state(line);
  }

  void script(const WireStep& step) {
    if (step.url) {
      if (const auto error = broken_error(step)) {
        world_.fail_send(*error);
      } else {
        world_.reply(reply_text(step));
      }
    }
    world_.dal_answers.clear();
    world_.dal_errors.clear();
    for (const std::string& line : step.dal) {
      const std::string operation = line.substr(0, line.find('('));
      world_.dal_answers[operation] = reply_text(step);
      if (const auto error = broken_error(step)) world_.dal_errors.emplace(operation, *error);
    }
  }

  void expect_traffic(const WireStep& step) {
    Lines dal = step.dal;
    for (std::string& line : dal) replace_all(line, "{request}", "\"" + request_text(step) + "\"");
    EXPECT_EQ(world_.record.dal, dal);
    ASSERT_EQ(world_.sent.size(), step.url ? 1U : 0U);
    if (!step.url) return;
    EXPECT_EQ(world_.sent[0].url, *step.url);
    EXPECT_EQ(world_.sent[0].text, request_text(step));
    std::string action = "none";
    std::string timeout = "none";
    for (const std::string& line : world_.record.transport) {
      starts(line, "SOAPAction ", action);
      starts(line, "Timeout ", timeout);
    }
    const std::string wanted = step.soap_action.value_or("(not stated)");
    EXPECT_EQ(action, wanted == "none" ? wanted : "\"" + wanted + "\"");
    EXPECT_EQ(timeout, step.timeout.value_or("300000"));
  }

  // All that was asked of the transport, in order, where the step tells it; nothing where nothing
  // goes out.
  void expect_transport(const WireStep& step) {
    if (step.transport.empty() && step.url) return;
    Lines lines = step.transport;
    if (lines == Lines{"none"}) lines.clear();
    for (std::string& line : lines) {
      replace_all(line, "{log file}", world_.log_file);
      replace_all(line, "{tracing file}", world_.tracing_file);
    }
    EXPECT_EQ(world_.record.transport, lines);
  }

  // What the library has written into the file by itself in this step: each line ends in CR LF.
  void expect_log_file(const WireStep& step) {
    std::string expected;
    for (std::string line : step.log_file) {
      replace_all(line, "{request}", request_text(step));
      expected.append(line).append("\r\n");
    }
    EXPECT_EQ(files_test::bytes_of(folder_.file("bvconn.log")), expected);
  }

  Lines expanded_log(const WireStep& step) {
    Lines lines;
    for (const std::string& line : step.log) expand(line, step, lines);
    return lines;
  }

  static void append(Lines& lines, const Lines& more) {
    lines.insert(lines.end(), more.begin(), more.end());
  }

  // The last line of a function of `Global` that failed: the error as it was raised.
  static std::string error_line(const std::string& function, const WireStep& step) {
    std::string error = "0x80044201 \"SoapEnvelope\" \"The reply is a SOAP fault\"";
    if (const auto broken = broken_error(step)) {
      error = hex_number(broken->number) + " \"" + broken->source + "\" \"" + broken->description +
              "\"";
    }
    return "LogError Global." + function + " " + error + " 0";
  }

  static void function(Lines& lines, const std::string& name, const Lines& inside) {
    lines.push_back("EnterMethod Global." + name + " 1");
    append(lines, inside);
    lines.push_back("ExitMethod Global." + name + " 1");
  }

  void expand(const std::string& line, const WireStep& step, Lines& lines) {
    const bool failed = step.fault || step.broken;
    std::string name;
    if (line == "@getEnvelope" || line == "@getEnvelopeStart" || line == "@getEnvelopeEnd") {
      function(lines, line.substr(1), {});
    } else if (starts(line, "@sendXML ", name)) {
      send_xml(lines, name, step);
    } else if (line == "@exchange") {
      expand("@getHTTPTransport", step, lines);
      function(lines, "getResponseEnvelope", {kBeatLine});
      if (failed) {
        lines.resize(lines.size() - 2);
        lines.push_back(error_line("getResponseEnvelope", step));
      }
    } else if (line == "@getHTTPTransport" || line == "@sendXMLAndLoadDoc") {
      Lines inside = kTraceLines;
      append(inside, kTracePortLines);
      append(inside, kTimeoutLines);
      if (line == "@sendXMLAndLoadDoc") inside.push_back(kBeatLine);
      function(lines, line.substr(1), inside);
      if (line == "@sendXMLAndLoadDoc" && step.broken) {
        lines.resize(lines.size() - 2);
        lines.push_back(error_line("sendXMLAndLoadDoc", step));
      }
    } else if (line == "@inline" || line == "@inlineUntraced") {
      const bool untraced = line == "@inlineUntraced";
      if (!untraced) append(lines, kTraceLines);
      append(lines, kTracePortLines);
      append(lines, kTimeoutLines);
      if (untraced && !failed) lines.push_back(kBeatLine);
    } else {
      EXPECT_NE(line.front(), '@') << "nothing is known of " << line;
      lines.push_back(line);
    }
  }

  void send_xml(Lines& lines, const std::string& name, const WireStep& step) {
    lines.emplace_back("EnterMethod Global.sendXML 1");
    append(lines, kTraceLines);
    append(lines, kTracePortLines);
    if (step.timeout.value_or("300000") == "300000") append(lines, kTimeoutLines);
    if (step.fault || step.broken) {
      lines.push_back(error_line("sendXML", step));
      return;
    }
    lines.push_back(kBeatLine);
    const std::size_t blank = name.find(' ');
    const std::string seconds = blank == std::string::npos ? "0" : name.substr(blank + 1);
    lines.push_back("LogAtLevel 16 Global.sendXML \"Time to execute " + name.substr(0, blank) +
                    "Response: " + seconds + "\" 0");
    lines.emplace_back("ExitMethod Global.sendXML 1");
  }

  void expect_state(const std::string& line) {
    const auto& state = session();
    if (line == "UseDALSave" || line == "not UseDALSave") {
      EXPECT_EQ(state.UseDALSave, line == "UseDALSave") << "after: " << line;
    } else if (line == "LastHeartBeat" || line == "not LastHeartBeat") {
      EXPECT_EQ(state.LastHeartBeat == world_.now, line == "LastHeartBeat") << "after: " << line;
    } else {
      ADD_FAILURE() << "after: nothing is known of \"" << line << "\"";
    }
  }

  const WireCase& case_;
  files_test::TempFolder folder_;
  RecordingPlatform world_;
};

class WireTest : public ::testing::Test {
 public:
  explicit WireTest(WireCase wire_case) : case_(std::move(wire_case)) {}
  void TestBody() override { CaseRunner(case_).run(); }

 private:
  WireCase case_;
};

std::optional<WireFile> read_file(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(stream), {}};
  if (!stream && text.empty()) return std::nullopt;
  return read_wire_file(text);
}

// The file of the same operation's other route, if there is one.
std::optional<WireFile> read_other_route(const std::filesystem::path& path) {
  const std::string operation = path.stem().stem().string();
  const bool soap = path.stem().extension() == ".soap";
  return read_file(path.parent_path() / (operation + (soap ? ".dal" : ".soap") + ".wire"));
}

bool register_file(const std::string& path) {
  const std::optional<WireFile> file = read_file(path);
  if (!file) {
    std::cerr << path << ": cannot be read\n";
    return false;
  }
  const std::optional<WireFile> other = read_other_route(path);
  const LawCases by_law = law_cases(*file, other ? &*other : nullptr);
  const std::string suite = std::filesystem::path(path).stem().string();
  for (const auto* problems : {&file->problems, &by_law.problems}) {
    for (const std::string& problem : *problems) std::cerr << path << ": " << problem << "\n";
  }
  for (const auto* cases : {&file->cases, &by_law.cases}) {
    for (const WireCase& wire_case : *cases) {
      ::testing::RegisterTest(
          suite.c_str(), test_name(wire_case.claim).c_str(), nullptr, nullptr, path.c_str(), 1,
          [wire_case]() -> ::testing::Test* { return new WireTest(wire_case); });
    }
  }
  return file->problems.empty() && by_law.problems.empty();
}

}  // namespace
}  // namespace bvconn::test

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  bool understood = argc > 1;
  for (int i = 1; i < argc; ++i) understood = bvconn::test::register_file(argv[i]) && understood;
  if (!understood) {
    std::cerr << "usage: wire_runner FILE…\n";
    return 2;
  }
  return RUN_ALL_TESTS();
}
