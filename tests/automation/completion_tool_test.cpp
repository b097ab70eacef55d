#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "automation/shell.h"
#include "automation/tool_process.h"

namespace bvconn::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

std::vector<std::string> completed(std::vector<std::string> words) {
  words.insert(words.begin(), {"complete", "--"});
  return Tool::run(words).lines();
}

TEST(Completion, StartsWithTheSubcommands) {
  EXPECT_THAT(completed({""}), testing::IsSupersetOf({"list", "call", "batch", "describe",
                                                      "skeleton", "completion"}));
  EXPECT_THAT(completed({"desc"}), ElementsAre("describe"));
}

TEST(Completion, GoesFromClassToOperationToArguments) {
  EXPECT_THAT(completed({"call", "BVHeart"}), ElementsAre("BVHeartBeatConnector."));
  EXPECT_THAT(completed({"call", "BVHeartBeatConnector."}),
              ElementsAre("BVHeartBeatConnector.sendHeartBeat",
                          "BVHeartBeatConnector.UpdateHeartBeatTime"));
  EXPECT_THAT(completed({"call", "BVHeartBeatConnector.sendHeartBeat", ""}),
              ElementsAre("aServerURL=", "aSessionID=", "isBrimvale="));
  EXPECT_THAT(completed({"call", "BVHeartBeatConnector.sendHeartBeat", "aS"}),
              ElementsAre("aServerURL=", "aSessionID="));
}

TEST(Completion, LeavesOutArgumentsThatAreGiven) {
  EXPECT_THAT(completed({"call", "BVHeartBeatConnector.sendHeartBeat", "aServerURL=x",
                         "isBrimvale:=true", ""}),
              ElementsAre("aSessionID="));
}

TEST(Completion, KnowsTheOptionsOfASubcommand) {
  EXPECT_THAT(completed({"call", "--pri"}), ElementsAre("--print-request"));
  EXPECT_THAT(completed({"describe", "--"}), Contains("--json"));
}

TEST(Completion, OfSettingsGoesOnToTheirNames) {
  EXPECT_THAT(completed({"settings", "get", "t"}), ElementsAre("tracePort"));
  EXPECT_THAT(completed({"settings", "set", ""}),
              ElementsAre("tracePort", "defaultTimeOut", "TraceSoapTraffic"));
  EXPECT_THAT(completed({"settings", "get", "tracePort", ""}), IsEmpty());
  EXPECT_THAT(completed({"settings", "list", ""}), IsEmpty());
}

TEST(Completion, OfListIsClassesAlone) {
  EXPECT_THAT(completed({"list", "BVMeth"}), ElementsAre("BVMethods"));
}

TEST(Completion, OfAValueIsNothing) {
  EXPECT_THAT(completed({"call", "BVHeartBeatConnector.sendHeartBeat", "aServerURL=h"}), IsEmpty());
}

/// What bash offers for a line, one candidate after another.
std::string bash_offers(const std::string& line) {
  const std::string folder = std::filesystem::path(BVCONN_TOOL).parent_path().string();
  const std::string script = "PATH='" + folder +
                             ":'$PATH; source <(bvconn completion bash); compopt() { :; }; "
                             "COMP_LINE='" +
                             line + "'; COMP_POINT=" + std::to_string(line.size()) +
                             "; _bvconn; printf '%s\\n' \"${COMPREPLY[@]}\"";
  const TemporaryFolder scratch;
  const std::string command = "bash " + scratch.file("try.sh", script);
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(::popen(command.c_str(), "r"), ::pclose);
  std::string text;
  std::array<char, 4096> buffer;
  while (std::fgets(buffer.data(), buffer.size(), pipe.get()) != nullptr) text += buffer.data();
  return text;
}

TEST(Completion, InBashReplacesTheWordThatIsBegun) {
  EXPECT_EQ(bash_offers("bvconn desc"), "describe\n");
  EXPECT_EQ(bash_offers("bvconn call BVHeart"), "BVHeartBeatConnector.\n");
  EXPECT_EQ(bash_offers("bvconn call BVHeartBeatConnector.sendHeartBeat "),
            "aServerURL=\naSessionID=\nisBrimvale=\n");
  EXPECT_EQ(bash_offers("bvconn call BVHeartBeatConnector.sendHeartBeat aServerURL=http://h/ aSe"),
            "aSessionID=\n");
}

TEST(Completion, KnowsTheFormsOfOutputInBothSpellings) {
  EXPECT_THAT(completed({"call", "BVHeartBeatConnector.sendHeartBeat", "--output", "j"}),
              ElementsAre("json"));
  EXPECT_THAT(completed({"call", "--output=r"}), ElementsAre("--output=raw"));
}

TEST(Completion, KnowsTheProfiles) {
  const Shell shell;
  shell.profiles("[test]\nserver = 's'\n[live]\nserver = 't'\n");
  EXPECT_EQ(shell.run("bvconn complete -- batch --profile ''").out, "live\ntest\n");
  EXPECT_EQ(Shell().run("bvconn complete -- batch --profile ''").out, "");
}

TEST(Completion, TakesTheValueOfAnOptionForNoOperation) {
  EXPECT_THAT(completed({"call", "--user", "BVHeartBeatConnector.sendHeartBeat",
                         "BVHeartBeatConnector.Up"}),
              ElementsAre("BVHeartBeatConnector.UpdateHeartBeatTime"));
  EXPECT_THAT(completed({"call", "--ca-file", ""}), IsEmpty());
}

TEST(Completion, OfWhatTakesNoOperationIsItsOptions) {
  EXPECT_THAT(completed({"batch", ""}), IsEmpty());
  EXPECT_THAT(completed({"batch", "--fa"}), ElementsAre("--fail"));
}

/// What zsh makes of a line at the press of a tab: `bvconn` shows its words when the line is run.
std::string zsh_line(const std::string& line) {
  TerminalSession zsh("exec env TERM=dumb zsh -f -i");
  zsh.type("PS1='> '; autoload -Uz compinit; compinit -D -u; unsetopt beep; stty -echo\n");
  zsh.type(
      "bvconn() { case $1 in (comp*) command bvconn \"$@\";; (*) print -r -- \"[$*]\";; esac }\n");
  zsh.type("source <(bvconn completion zsh); print 'rea''dy'\n");
  EXPECT_TRUE(zsh.wait_for("ready")) << zsh.seen();
  zsh.type(line + "\t");
  // What is completed has to be there before the line is ended.
  std::this_thread::sleep_for(std::chrono::milliseconds(1500));
  zsh.type("\n");
  const std::size_t from = zsh.seen().size();
  if (!zsh.wait_for_after(from, "]")) return zsh.seen();
  const std::string text = zsh.seen().substr(from);
  const std::size_t end = text.rfind(']');
  const std::size_t begin = text.rfind('[', end);
  return text.substr(begin, end - begin + 1);
}

TEST(Completion, InZshReplacesTheWordThatIsBegun) {
  if (!is_installed("zsh")) GTEST_SKIP() << "zsh is not installed here";
  EXPECT_EQ(zsh_line("bvconn desc"), "[describe]");
  EXPECT_EQ(zsh_line("bvconn call BVHeart"), "[call BVHeartBeatConnector.]");
  EXPECT_EQ(zsh_line("bvconn call BVHeartBeatConnector.sendHeartBeat aServerURL=http://h/ aSe"),
            "[call BVHeartBeatConnector.sendHeartBeat aServerURL=http://h/ aSessionID=]");
  EXPECT_EQ(zsh_line("bvconn call BVHeartBeatConnector.sendHeartBeat --output j"),
            "[call BVHeartBeatConnector.sendHeartBeat --output json]");
}

std::string fish_offers(const std::string& line) {
  return Shell()
      .run("fish -N -c " +
           shell_quoted("bvconn completion fish | source; complete -C " + shell_quoted(line)))
      .out;
}

TEST(Completion, InFishOffersWhatContinuesTheWord) {
  if (!is_installed("fish")) GTEST_SKIP() << "fish is not installed here";
  EXPECT_EQ(fish_offers("bvconn desc"), "describe\n");
  EXPECT_EQ(fish_offers("bvconn call BVHeart"), "BVHeartBeatConnector.\n");
  EXPECT_EQ(fish_offers("bvconn call BVHeartBeatConnector.sendHeartBeat aS"),
            "aServerURL=\naSessionID=\n");
  EXPECT_EQ(fish_offers("bvconn call --output j"), "json\n");
}

TEST(Completion, InFishFallsBackToFiles) {
  if (!is_installed("fish")) GTEST_SKIP() << "fish is not installed here";
  const Shell shell;
  shell.folder.file("authority.pem", "");
  EXPECT_EQ(
      shell
          .run("cd \"$HOME\"; fish -N -c " +
               shell_quoted("bvconn completion fish | source; complete -C 'bvconn call --ca-file "
                            "auth'"))
          .out,
      "authority.pem\n");
}

TEST(Completion, HasAScriptForEachShell) {
  EXPECT_THAT(Tool::run({"completion", "bash"}).out, HasSubstr("complete -F _bvconn bvconn\n"));
  EXPECT_THAT(Tool::run({"completion", "zsh"}).out, StartsWith("#compdef bvconn\n"));
  EXPECT_THAT(Tool::run({"completion", "fish"}).out, HasSubstr("complete -c bvconn -f"));
  const Tool::Outcome unknown = Tool::run({"completion", "zhs"});
  EXPECT_EQ(unknown.status, 2);
  EXPECT_EQ(unknown.out, "");
  EXPECT_EQ(unknown.err,
            "bvconn: completion: bash, zsh or fish is expected, not zhs; did you mean zsh?\n");
}

}  // namespace
}  // namespace bvconn::test
