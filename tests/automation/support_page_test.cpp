#include <gtest/gtest.h>

#include <cstddef>
#include <regex>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "automation/scripted_server.h"
#include "automation/shell.h"
#include "automation/tool_process.h"
#include "sandbox/sandbox_process.h"

namespace bvconn::test {
namespace {

/// A block of the page: what is typed, and what the page shows of the output.
struct Transcript {
  std::string typed;
  std::vector<std::string> shown;
};

std::vector<Transcript> transcripts() {
  std::istringstream page(read_text(BVCONN_SUPPORT_PAGE));
  std::vector<Transcript> found;
  bool inside = false;
  for (std::string line; std::getline(page, line);) {
    if (line.starts_with("```")) {
      inside = !inside;
      if (inside) found.emplace_back();
    } else if (inside && line.starts_with("$ ")) {
      found.back().typed += line.substr(2) + "\n";
    } else if (inside) {
      found.back().shown.push_back(line);
    }
  }
  return found;
}

std::string replaced(std::string text, std::string_view what, std::string_view with) {
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at)) {
    text.replace(at, what.size(), with);
    at += with.size();
  }
  return text;
}

/// A line without what differs from one machine and run to the next.
std::string essence(const std::string& line) {
  static const std::regex kNumber("[0-9]+(\\.[0-9]+)*");
  static const std::regex kBlanksBehind(" +$");
  constexpr std::string_view kTimes = "  times (ms)  ";
  if (line.starts_with(kTimes)) return std::string(kTimes);  // A step that took none is left out.
  return std::regex_replace(std::regex_replace(line, kNumber, "N"), kBlanksBehind, "");
}

/// The lines of an output in the words of the page.
std::vector<std::string> printed(std::string output, const Shell& shell, const std::string& url) {
  const std::string home = shell.folder.path().string();
  output = replaced(std::move(output), url, "https://server.example/soap");
  output = replaced(std::move(output), home + "/machine.toml", "/etc/bvconn/settings.toml");
  output = replaced(std::move(output), home + "/user.toml", "~/.config/bvconn/settings.toml");
  output = replaced(std::move(output), home + "/bvconn/", "~/.local/state/bvconn/");
  std::vector<std::string> lines;
  std::istringstream text(output);
  for (std::string line; std::getline(text, line);) lines.push_back(line);
  return lines;
}

/// Runs what a block shows; `url` is where its server is.
void expect_as_shown(const Transcript& block, const Shell& shell, const std::string& url) {
  SCOPED_TRACE(block.typed);
  const std::string typed = replaced(block.typed, "https://server.example/soap", url);
  const auto outcome = shell.run("cd \"$HOME\"; exec 2>&1\n" + typed);
  const auto lines = printed(outcome.out, shell, url);
  for (std::size_t at = 0; at < block.shown.size(); ++at) {
    const std::string& shown = block.shown[at];
    if (shown == "  …") return;  // And so on.
    ASSERT_LT(at, lines.size()) << "nothing is printed for: " << shown;
    const std::string line = essence(lines[at]);
    if (const std::size_t end = shown.find("…"); end != std::string::npos) {
      const std::string begin = essence(shown.substr(0, end));
      EXPECT_EQ(line.substr(0, begin.size()), begin);
    } else {
      EXPECT_EQ(line, essence(replaced(shown, "server.example is", "127.0.0.1 is")));
    }
  }
  EXPECT_EQ(lines.size(), block.shown.size()) << outcome.out;
}

TEST(SupportPage, ShowsWhatItsCommandsPrint) {
  const auto blocks = transcripts();
  ASSERT_EQ(blocks.size(), 4U);
  SandboxProcess sandbox;
  const std::string url = "http://127.0.0.1:" + std::to_string(sandbox.port()) + "/soap";
  expect_as_shown(blocks[0], Shell(), replaced(dead_url(), "http:", "https:"));
  expect_as_shown(blocks[1], Shell({{"BVCONN_SERVER", url}, {"BVCONN_SESSION", "S"}}), url);
  const Shell machine;
  machine.folder.file("machine.toml",
                      "['Software\\Brimvale\\Torvex\\AppData']\ntracePort = \"8888\"\n");
  expect_as_shown(blocks[2], machine, url);
  expect_as_shown(blocks[3], Shell(), url);
}

}  // namespace
}  // namespace bvconn::test
