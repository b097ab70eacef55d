#include <gtest/gtest.h>

#include <cerrno>
#include <optional>
#include <set>
#include <string>

#include "bvconn/connectors/search/bv_search_connector.h"
#include "bvconn/core/heart_beat_time.h"
#include "bvconn/core/session_state.h"
#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "files/temp_folder.h"
#include "live/own_files.h"
#include "support/failing_calls.h"
#include "support/misbehaving_server.h"

// Whole calls that read settings and write log, traffic and exchanges, with each call of the system
// that their files take failing in turn.
namespace bvconn::test {
namespace {

using error_numbers::from_bits;

class WholeCall : public testing::Test {
 protected:
  WholeCall() {
    write_settings();
    server.otherwise(answers::brands());
  }

  void write_settings() {
    files.write("machine.toml",
                "['Software\\Brimvale\\Torvex\\AppData']\ndefaultTimeOut = 60000\n");
    files.write("user.toml",
                "['Software\\Brimvale\\Torvex\\AppData']\nTraceSoapTraffic = 'True'\n");
  }

  void begin_session(bool dal) {
    session() = SessionState();
    if (!dal) return;
    BVConnectorObject().InitTorvexDAL(server.url());
    BVConnectorObject().UseTorvexDAL();
  }

  std::optional<Error> error() {
    try {
      EXPECT_EQ(BVSearchConnector().SearchForBrands("S1", server.url("/soap")).Value(),
                Variant(std::string("the brands")));
      return std::nullopt;
    } catch (const Error& raised) {
      return raised;
    }
  }

  /// The names of the calls that were struck.
  std::set<std::string> expect_settings_alone_to_fail_it(bool dal) {
    std::set<std::string> calls;
    for_each_failing_call([&](std::size_t number, std::size_t way) {
      begin_session(dal);
      write_settings();
      const std::string settings = files.contents("machine.toml") + files.contents("user.toml");
      const Date beat = Global::LastHeartBeat();
      std::optional<Error> failed;
      bool struck_now = false;
      {
        const FailingCall failing(Calls::kFiles, number, way);
        failed = error();
        struck_now = FailingCall::has_struck();
      }
      if (!struck_now) return false;
      SCOPED_TRACE(struck() + ", call " + std::to_string(number));
      calls.emplace(struck_call());
      if (failed) {
        EXPECT_EQ(failed->number, from_bits(0x80041002)) << failed->description;
        EXPECT_EQ(failed->source, "RegistryAccess");
        EXPECT_TRUE(Global::LastHeartBeat() == beat);
        const bool reads =
            struck_call() == "open" || struck_call() == "fstat" || struck_call() == "read";
        EXPECT_TRUE(reads) << "nothing else of a call depends on a file";
      }
      // A file that is not there for a moment is one without the value, which is then set.
      const bool was_absent = struck_call() == "open" && struck_code() == ENOENT;
      if (!was_absent) {
        EXPECT_EQ(files.contents("machine.toml") + files.contents("user.toml"), settings);
      }
      EXPECT_FALSE(error()) << "the next call";
      return true;
    });
    return calls;
  }

  OwnFiles files;
  files_test::ScopedEnvironment exchanges{"BVCONN_EXCHANGES", files.path("exchanges.jsonl")};
  files_test::ScopedEnvironment mask{"BVCONN_LOG_MASK", "255"};
  MisbehavingServer server;
};

TEST_F(WholeCall, FailsOverItsSettingsAloneOnTheSoapRoute) {
  const std::set<std::string> calls = expect_settings_alone_to_fail_it(false);
  for (const char* call : {"open", "fstat", "read", "write", "flock", "statx", "close"}) {
    EXPECT_TRUE(calls.contains(call)) << call;
  }
}

TEST_F(WholeCall, FailsOverNoFileOnTheDataAccessLayerRoute) {
  EXPECT_TRUE(expect_settings_alone_to_fail_it(true).contains("write"));
}

}  // namespace
}  // namespace bvconn::test
