#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "automation/tool_process.h"

namespace bvconn::test {
namespace {

using nlohmann::ordered_json;
using testing::HasSubstr;
using testing::Not;

TEST(Skeleton, HasEveryArgumentInInterfaceOrder) {
  EXPECT_EQ(Tool::run({"skeleton", "BVGenericConnector.Send"}).out,
            R"({"id":1,"call":"BVGenericConnector.Send","args":{"aService":"<aService>",)"
            R"("aMethod":"<aMethod>","aRootNodeName":"<aRootNodeName>",)"
            R"("aSoapNode":{"xml":"<aSoapNode/>"},"aServerURL":"<aServerURL>","aTimeout":0,)"
            R"("aSessionID":"NOTHING"}})"
            "\n");
}

TEST(Skeleton, OfACallIsAShellCommand) {
  EXPECT_EQ(Tool::run({"skeleton", "BVHeartBeatConnector.sendHeartBeat", "--call"}).out,
            "bvconn call BVHeartBeatConnector.sendHeartBeat \\\n"
            "  aServerURL='<aServerURL>' \\\n"
            "  aSessionID='<aSessionID>' \\\n"
            "  isBrimvale=false\n");
}

TEST(Skeleton, OfEveryOperationIsUnderstoodByABatch) {
  const auto classes = ordered_json::parse(Tool::run({"list", "--json"}).out);
  std::vector<std::string> lines;
  for (const auto& each : classes) {
    for (const auto& member : each["members"]) {
      if (member["kind"] != "operation") continue;
      const std::string path =
          each["class"].get<std::string>() + "." + member["name"].get<std::string>();
      lines.push_back(Tool::run({"skeleton", path}).lines().at(0));
    }
  }
  EXPECT_GT(lines.size(), 200U);
  const Tool::Outcome outcome = Tool::batch(lines);
  EXPECT_THAT(outcome.out, Not(HasSubstr("\"usage\"")));
  EXPECT_EQ(outcome.status, 0);
}

}  // namespace
}  // namespace bvconn::test
