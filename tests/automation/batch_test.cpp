#include "batch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "support/recording_platform.h"

namespace bvconn::test {
namespace {

using testing::ElementsAre;

constexpr std::string_view kBeat =
    R"({"id":3,"call":"BVHeartBeatConnector.sendHeartBeat","args":{"aServerURL":"u","aSessionID":"S"}})";
constexpr std::string_view kBeatAnswer = R"({"id":4,"result":"beat"})";

/// Output that fails for the line of an event: the operation keeps what an event's handler throws,
/// but the batch knows that a line is missing.
class FailingOutput {
 public:
  void operator()(std::string_view line) {
    if (line.find("\"event\"") != std::string_view::npos) throw std::runtime_error("no room");
    lines.emplace_back(line);
  }
  std::vector<std::string> lines;
};

TEST(BatchFailure, SomethingElseThanAnErrorIsAnsweredAndGivesStatus1) {
  RecordingPlatform platform;
  platform.fail_send(Error(-2147204350, "HTTPTransport", "time-out"));
  FailingOutput output;
  tool::Batch batch([&](std::string_view line) { output(line); });
  batch.run(kBeat);
  EXPECT_EQ(batch.status(), 1);
  batch.run(R"({"id":4,"get":"BVMethods.Beat"})");
  batch.run("not JSON");
  EXPECT_EQ(batch.status(), 1);
  ASSERT_EQ(output.lines.size(), 3U);
  EXPECT_EQ(output.lines[0],
            R"({"id":3,"error":{"number":-1,"hex":"0xFFFFFFFF","source":"bvconn",)"
            R"("description":"Internal failure: no room","helpFile":"","helpContext":0}})");
  EXPECT_EQ(output.lines[1], kBeatAnswer);
}

TEST(BatchFailure, AFailedCallLeavesStatus0) {
  RecordingPlatform platform;
  platform.fail_send(Error(-2147204350, "HTTPTransport", "time-out", "help.chm", 12));
  std::vector<std::string> lines;
  tool::Batch batch([&](std::string_view line) { lines.emplace_back(line); });
  batch.run(R"({"id":1,"call":"BVGenericConnector.Send","args":{"aService":"urn:S","aMethod":"m",)"
            R"("aRootNodeName":"r","aSoapNode":null,"aServerURL":"u"}})");
  EXPECT_EQ(batch.status(), 0);
  // A tail that raises an error again leaves help file and context out.
  EXPECT_THAT(lines, ElementsAre(R"({"id":1,"error":{"number":-2147204350,"hex":"0x80044302",)"
                                 R"("source":"HTTPTransport","description":"time-out",)"
                                 R"("helpFile":"","helpContext":0},"args":{"aSoapNode":null}})"));
}

TEST(BatchFailure, ALineThatIsNotUnderstoodCallsNothing) {
  RecordingPlatform platform;
  std::vector<std::string> lines;
  tool::Batch batch([&](std::string_view line) { lines.emplace_back(line); });
  batch.run(R"({"id":1,"call":"BVGenericConnector.Send","args":{"aService":"urn:S","aMethod":"m",)"
            R"("aRootNodeName":"r","aSoapNode":null}})");
  EXPECT_THAT(lines, ElementsAre(R"({"id":1,"usage":"BVGenericConnector.Send: argument aServerURL)"
                                 R"( is required"})"));
  EXPECT_THAT(platform.record.all, ElementsAre());
  EXPECT_EQ(batch.status(), 2);
}

}  // namespace
}  // namespace bvconn::test
