#include "bvconn/connectors/documents/bv_submittal_connector.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>
#include <thread>
#include <type_traits>

#include "bvconn/platform/soap/variant.h"
#include "support/error_of.h"
#include "support/recording_platform.h"

namespace bvconn {
namespace {

using Lines = std::vector<std::string>;
using test::envelope_text;
using test::error_of;
using test::RecordingPlatform;

static_assert(std::is_nothrow_destructible_v<BVSubmittalConnector>);

const std::string kMakingStarts =
    "LogInfo BVSubmittalConnector.Class_Initialize() \"Entering Method...\" 0";
const std::string kMakingEnds =
    "LogInfo BVSubmittalConnector.Class_Initialize() \"Exiting Method...\" 0";
const std::string kEndStarts =
    "LogInfo BVSubmittalConnector.Class_Terminate() \"Entering Method...\" 0";
const std::string kEndEnds =
    "LogInfo BVSubmittalConnector.Class_Terminate() \"Exiting Method...\" 0";

/// A logger that writes nothing and, once told to, fails at every line.
class FailingLogger final : public SessionLogger {
 public:
  bool fails = false;
  Lines tried;  ///< "class.method" of each line, failed ones included

  std::string LogFilePath() override { return "/nowhere/bvconn.log"; }
  std::int32_t LogMask() override { return 0; }
  std::string TracingFilePath() override { return "/nowhere/traffic.log"; }
  void LogError(std::string_view cls, std::string_view method, const Error& /*error*/,
                std::int32_t /*line*/) override {
    write(cls, method, 62);
  }
  void LogWarning(std::string_view cls, std::string_view method, std::string_view /*text*/,
                  std::int32_t /*code*/) override {
    write(cls, method, 61);
  }
  void LogInfo(std::string_view cls, std::string_view method, std::string_view /*text*/,
               std::int32_t /*code*/) override {
    write(cls, method, 61);
  }
  void LogAtLevel(std::int32_t /*level*/, std::string_view cls, std::string_view method,
                  std::string_view /*text*/, std::int32_t /*code*/) override {
    write(cls, method, 61);
  }
  void EnterMethod(std::string_view cls, std::string_view method, std::int32_t /*level*/) override {
    write(cls, method, 61);
  }
  void ExitMethod(std::string_view cls, std::string_view method, std::int32_t /*level*/) override {
    write(cls, method, 61);
  }

 private:
  void write(std::string_view cls, std::string_view method, std::int32_t number) {
    tried.push_back(std::string(cls).append(".").append(method));
    if (fails) throw Error(number, "SessionLogger", number == 62 ? "still full" : "disk full");
  }
};

/// A world whose logger is a `FailingLogger`.
struct UnloggableWorld {
  RecordingPlatform world;
  std::shared_ptr<FailingLogger> logger = std::make_shared<FailingLogger>();
  platform::ScopedPlatform scope{platform_with(logger)};

  static platform::Platform platform_with(const std::shared_ptr<FailingLogger>& logger) {
    platform::Platform changed = platform::current();
    changed.logger = [logger] { return logger; };
    return changed;
  }
};

TEST(SubmittalConnector, LogsTheMakingAndTheEndOfAnObjectOnceAroundAllItsCalls) {
  RecordingPlatform world;
  world.use_dal();
  world.dal_answers["SubmittalService.GetAllSubmittalsForQuote"] = envelope_text("r", "<a>1</a>");
  world.dal_answers["SubmittalService.GetAllSubmittalsForProject"] = envelope_text("r", "<b>2</b>");
  {
    BVSubmittalConnector connector;
    EXPECT_EQ(world.record.log, (Lines{kMakingStarts, kMakingEnds}));
    connector.GetAllSubmittalsForQuote("S-1", "Q-2", "http://h/");
    connector.GetAllSubmittalsForProject("S-1", "P-3", "http://h/");
  }
  const std::string quote = "LogInfo BVSubmittalConnector.GetAllSubmittalsForQuote() ";
  const std::string project = "LogInfo BVSubmittalConnector.GetAllSubmittalsForProject() ";
  EXPECT_EQ(world.record.log,
            (Lines{kMakingStarts, kMakingEnds, quote + "\"Entering Method...\" 0",
                   quote + "\"Exiting Method...\" 0", project + "\"Entering Method...\" 0",
                   project + "\"Exiting Method...\" 0", kEndStarts, kEndEnds}));
}

TEST(SubmittalConnector, LogsTheMakingAndTheEndOfEachObject) {
  RecordingPlatform world;
  std::optional<BVSubmittalConnector> first(std::in_place);
  std::optional<BVSubmittalConnector> second(std::in_place);
  EXPECT_EQ(world.record.log, (Lines{kMakingStarts, kMakingEnds, kMakingStarts, kMakingEnds}));
  world.record.clear();
  first.reset();
  EXPECT_EQ(world.record.log, (Lines{kEndStarts, kEndEnds}));
  second.reset();
  EXPECT_EQ(world.record.log, (Lines{kEndStarts, kEndEnds, kEndStarts, kEndEnds}));
}

TEST(SubmittalConnector, IsNotMadeWhenTheLoggerFailsAtTheErrorLineToo) {
  UnloggableWorld unloggable;
  unloggable.logger->fails = true;
  const Error error = error_of([&] { const BVSubmittalConnector connector; });
  EXPECT_EQ(error.number, 62);
  EXPECT_EQ(error.description, "still full");
  EXPECT_EQ(unloggable.logger->tried, (Lines{"BVSubmittalConnector.Class_Initialize()",
                                             "BVSubmittalConnector.Class_Initialize"}));
}

TEST(SubmittalConnector, EndsQuietlyWhenTheLoggerFailsAtTheErrorLineToo) {
  UnloggableWorld unloggable;
  std::optional<BVSubmittalConnector> connector(std::in_place);
  unloggable.logger->tried.clear();
  unloggable.logger->fails = true;
  connector.reset();
  EXPECT_EQ(unloggable.logger->tried, (Lines{"BVSubmittalConnector.Class_Terminate()",
                                             "BVSubmittalConnector.Class_Terminate"}));
}

/// A logger that shows on standard error which of the world's loggers was given each line, and when
/// it goes.
class NumberedLogger final : public SessionLogger {
 public:
  explicit NumberedLogger(int number) : number_(number) {}
  ~NumberedLogger() override { std::cerr << "logger " << number_ << " goes\n"; }

  std::string LogFilePath() override { return ""; }
  std::int32_t LogMask() override { return 0; }
  std::string TracingFilePath() override { return ""; }
  void LogError(std::string_view, std::string_view, const Error&, std::int32_t) override {}
  void LogWarning(std::string_view, std::string_view, std::string_view, std::int32_t) override {}
  void LogInfo(std::string_view, std::string_view method, std::string_view text,
               std::int32_t) override {
    std::cerr << "logger " << number_ << ": " << method << " " << text << "\n";
  }
  void LogAtLevel(std::int32_t, std::string_view, std::string_view, std::string_view,
                  std::int32_t) override {}
  void EnterMethod(std::string_view, std::string_view, std::int32_t) override {}
  void ExitMethod(std::string_view, std::string_view, std::int32_t) override {}

 private:
  int number_;
};

void install_numbered_loggers() {
  platform::Platform changed = platform::system_platform();
  changed.logger = [] {
    static int made = 0;
    return std::make_shared<NumberedLogger>(++made);
  };
  platform::install(changed);
}

#if defined(_WIN32)
// What the first thread keeps goes with the process there, after all that is static; so the logger
// of its session is still the one that the last lines need.
const std::string kLinesOfOneObject =
    "logger 1: Class_Initialize\\(\\) Entering Method...\n"
    "logger 1: Class_Initialize\\(\\) Exiting Method...\n"
    "logger 1: Class_Terminate\\(\\) Entering Method...\n"
    "logger 1: Class_Terminate\\(\\) Exiting Method...\n"
    "logger 1 goes\n$";
#else
const std::string kLinesOfOneObject =
    "logger 1: Class_Initialize\\(\\) Entering Method...\n"
    "logger 1: Class_Initialize\\(\\) Exiting Method...\n"
    "logger 1 goes\n"
    "logger 2: Class_Terminate\\(\\) Entering Method...\n"
    "logger 2: Class_Terminate\\(\\) Exiting Method...\n"
    "logger 2 goes\n$";
#endif

TEST(SubmittalConnectorDeathTest, OfStaticLifetimeWritesItsLastLinesWithALoggerThatStillLives) {
  EXPECT_EXIT(
      {
        install_numbered_loggers();
        static const BVSubmittalConnector connector;
        std::exit(0);
      },
      testing::ExitedWithCode(0), kLinesOfOneObject);
}

TEST(SubmittalConnectorDeathTest, MadeLateInAStaticPlaceOutlivesThePlatformsFirstUseToo) {
  EXPECT_EXIT(
      {
        static std::optional<BVSubmittalConnector> place;
        install_numbered_loggers();
        place.emplace();
        std::exit(0);
      },
      testing::ExitedWithCode(0), kLinesOfOneObject);
}

// The compiler for Windows frees such a place before it destroys what is in it.
#if !defined(_WIN32)
TEST(SubmittalConnectorDeathTest, ThatOutlivesItsThreadsSessionReleasesWhatItsLastLinesNeeded) {
  EXPECT_EXIT(
      {
        install_numbered_loggers();
        std::thread([] {
          // Destroyed after the session, since its place was there before.
          thread_local std::unique_ptr<BVSubmittalConnector> place;
          place.reset();
          place = std::make_unique<BVSubmittalConnector>();
        }).join();
        std::exit(0);
      },
      testing::ExitedWithCode(0), kLinesOfOneObject);
}
#endif

TEST(SubmittalConnector, ThatEndsWhileAnErrorIsUnderWayLetsThatErrorPass) {
  UnloggableWorld unloggable;
  const Error error = error_of([&] {
    BVSubmittalConnector connector;
    unloggable.logger->tried.clear();
    unloggable.logger->fails = true;
    connector.CreateSubmittal("S-1", SoapNode::make("Sheet"), "http://h/");
  });
  EXPECT_EQ(error.number, 62);
  EXPECT_EQ(unloggable.logger->tried,
            (Lines{"Global.sendXML", "Global.sendXML", "BVSubmittalConnector.Class_Terminate()",
                   "BVSubmittalConnector.Class_Terminate"}));
}

TEST(SubmittalConnector, SendsAnArrayThatWasNeverAllocatedAsOneEmptyList) {
  RecordingPlatform world;
  world.reply(envelope_text("r", "<a>1</a>"));
  BVSubmittalConnector().GetSubmittalCommentsForProjectLineItems("S-1", StringArray(), "http://h/");
  ASSERT_EQ(world.sent.size(), 1U);
  EXPECT_NE(world.sent[0].text.find(
                "<param xsi:type=\"SOAP-ENC:Array\" SOAP-ENC:arrayType=\"xsd:string[0]\"/>"
                "<param_bool xsi:type=\"xsd:boolean\">true</param_bool></m:"),
            std::string::npos)
      << world.sent[0].text;
}

}  // namespace
}  // namespace bvconn
