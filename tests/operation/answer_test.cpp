#include "bvconn/operation/answer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <exception>
#include <fstream>
#include <string>
#include <vector>

#include "bvconn/operation/method_frame.h"
#include "bvconn/platform/error_numbers.h"
#include "files/temp_folder.h"
#include "support/error_of.h"
#include "support/recording_platform.h"

namespace bvconn {
namespace {

using error_numbers::kSoapFault;
using files_test::lines_of;
using files_test::ScopedEnvironment;
using files_test::TempFolder;
using test::envelope_text;
using test::error_of;
using test::fault_text;
using test::RecordingPlatform;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

constexpr Operation kOperation{.log = {.cls = "BVThing", .method = "Do"}, .wire = "do"};

/// Notes, when its scope ends, how many exceptions are on their way through it.
class Watch {
 public:
  explicit Watch(int& passing) : passing_(passing) {}
  ~Watch() { passing_ = std::uncaught_exceptions(); }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

 private:
  int& passing_;
};

TEST(Answer, IsTheValueOfTheReply) {
  RecordingPlatform world;
  for (const char* value : {"R", "R", "true"}) {
    world.reply(envelope_text("r", "<return>" + std::string(value) + "</return>"));
  }
  const SoapNode node =
      ConnectorMethodFrame(kOperation, [](Call& call) { return call.request().send().first(); });
  EXPECT_EQ(node.Value(), Variant("R"));
  const std::string text =
      ConnectorMethodFrame(kOperation, [](Call& call) { return call.request().send().text(); });
  EXPECT_EQ(text, "R");
  EXPECT_TRUE(
      ConnectorMethodFrame(kOperation, [](Call& call) { return call.request().send().boolean(); }));
}

TEST(Answer, TakesAFaultThroughTheBodyWithoutAnException) {
  RecordingPlatform world;
  world.reply(fault_text("Server", "no"));
  int passing = -1;
  const Error error = error_of([&] {
    ConnectorMethodFrame(kOperation, [&](Call& call) {
      const Watch watch(passing);
      return call.request().send().first();
    });
  });
  EXPECT_EQ(error.number, kSoapFault);
  EXPECT_EQ(error.description, "no");
  EXPECT_EQ(passing, 0);
}

TEST(Answer, RaisesAFaultWhereABodyGoesOnWithTheValue) {
  RecordingPlatform world;
  world.reply(fault_text("Server", "no"));
  world.reply(fault_text("Server", "no again"));
  int passing = -1;
  bool went_on = false;
  const Error by_value = error_of([&] {
    ConnectorMethodFrame(kOperation, [&](Call& call) {
      const Watch watch(passing);
      const SoapNode node = call.request().send().first();
      went_on = true;
      return node;
    });
  });
  EXPECT_EQ(by_value.description, "no");
  EXPECT_EQ(passing, 1);
  const Error at_once = error_of([&] {
    ConnectorMethodFrame(kOperation, [&](Call& call) {
      call.request().send().or_raise();
      went_on = true;
    });
  });
  EXPECT_EQ(at_once.description, "no again");
  EXPECT_FALSE(went_on);
}

TEST(Answer, OfABodyThatCaughtAFaultIsThatOfItsLastReply) {
  RecordingPlatform world;
  world.reply(fault_text("Server", "no"));
  world.reply(envelope_text("r", "<return>R</return>"));
  const std::string text = ConnectorMethodFrame(kOperation, [](Call& call) {
    EXPECT_EQ(error_of([&] { call.request().send().or_raise(); }).description, "no");
    return call.send().text();
  });
  EXPECT_EQ(text, "R");
}

TEST(Answer, ThatFailedHasAnErrorLineAndNoLineOfTheExit) {
  RecordingPlatform world;
  world.reply(fault_text("Server", "no"));
  error_of([&] {
    ConnectorMethodFrame(kOperation, [](Call& call) { return call.request().send().first(); });
  });
  EXPECT_THAT(world.record.log, Not(Contains("ExitMethod BVThing.Do 1")));
  EXPECT_EQ(world.record.log.back(), "LogError BVThing.Do 0x80044201 \"SoapEnvelope\" \"no\" 0");
}

TEST(Answer, ThatATailSwallowsIsAnEmptyResult) {
  RecordingPlatform world;
  world.reply(fault_text("Server", "no"));
  constexpr Operation kQuiet{.log = kOperation.log, .wire = "do", .tail = Tail::kSwallow};
  const std::string text =
      ConnectorMethodFrame(kQuiet, [](Call& call) { return call.request().send().text(); });
  EXPECT_EQ(text, "");
}

/// The library's own logger, over the world of the tests.
class LoggedFailure : public testing::Test {
 protected:
  static platform::Platform with_log_file() {
    platform::Platform platform = platform::current();
    platform.logger = [] { return make_file_logger(); };
    return platform;
  }

  /// Without time and thread.
  std::vector<std::string> lines() const {
    std::vector<std::string> texts;
    for (const std::string& line : lines_of(path_))
      texts.push_back(line.substr(line.find("] ") + 2));
    return texts;
  }

  /// How many times this process has written to a file; -1 where the system does not say.
  static long writes() {
#if !defined(_WIN32)  // Wine shows the file of the system below, which counts what wine does too.
    std::ifstream counters("/proc/self/io");
    for (std::string name; counters >> name;) {
      long value = 0;
      counters >> value;
      if (name == "syscw:") return value;
    }
#endif
    return -1;
  }

  TempFolder folder_;
  std::string path_ = folder_.file("bvconn.log");
  ScopedEnvironment log_{"BVCONN_LOG_FILE", path_};
  RecordingPlatform world_;
  platform::ScopedPlatform platform_{with_log_file()};
};

TEST_F(LoggedFailure, IsInTheFileWhenTheOperationThrows) {
  world_.reply(fault_text("Server", "no"));
  try {
    ConnectorMethodFrame(kOperation, [](Call& call) { return call.request().send().first(); });
    ADD_FAILURE() << "a fault was no error";
  } catch (const Error&) {
    EXPECT_THAT(
        lines(),
        ElementsAre("ERROR Global sendXML 0x80044201 SoapEnvelope: The reply is a SOAP fault",
                    "ERROR BVThing Do 0x80044201 SoapEnvelope: no"));
  }
}

TEST_F(LoggedFailure, IsOneWriteHoweverManyLinesItHas) {
  if (writes() < 0) GTEST_SKIP() << "the system counts no writes";
  long before = 0;
  for (int i = 0; i < 2; ++i) {  // the first time opens the file
    world_.reply(fault_text("Server", "no"));
    before = writes();
    error_of([] {
      ConnectorMethodFrame(kOperation, [](Call& call) { return call.request().send().first(); });
    });
  }
  EXPECT_EQ(writes() - before, 1);
  EXPECT_EQ(lines().size(), 4U);
}

TEST_F(LoggedFailure, IsInTheFileBeforeABodyGoesOn) {
  world_.reply(fault_text("Server", "no"));
  ConnectorMethodFrame(kOperation, [&](Call& call) {
    error_of([&] { call.request().send().or_raise(); });
    EXPECT_EQ(lines().size(), 1U);
  });
}

TEST_F(LoggedFailure, IsInTheFileWhenSendXmlThrows) {
  world_.reply(fault_text("Server", "no"));
  try {
    Global::sendXML(SoapEnvelope::make(), "urn:x", "http://h/", 0);
    ADD_FAILURE() << "a fault was no error";
  } catch (const Error&) {
    EXPECT_EQ(lines().size(), 1U);
  }
}

}  // namespace
}  // namespace bvconn
