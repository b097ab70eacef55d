#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

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
  EXPECT_THAT(completed({"call", "--pr"}), ElementsAre("--print-request"));
  EXPECT_THAT(completed({"describe", "--"}), Contains("--json"));
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
