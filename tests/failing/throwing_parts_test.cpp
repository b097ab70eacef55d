#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "bvconn/automation/interface.h"
#include "bvconn/core/heart_beat_time.h"
#include "bvconn/core/session_state.h"
#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/platform/error_numbers.h"
#include "failing/throwing_world.h"
#include "support/prepared_call.h"

// Each member of an application's platform throws in turn, whatever it may be, in each operation of
// the interface: one Error leaves it, and the next call is as good as ever.
namespace bvconn::test {
namespace {

using automation::ClassInfo;
using automation::Member;

// Where a sanitizer makes it slow, a member that has thrown each kind throws one in each operation.
#ifdef BVCONN_SANITIZED
constexpr bool kThrowsEachKindOnce = true;
#else
constexpr bool kThrowsEachKindOnce = false;
#endif

// A boolean as well as a text, so that every operation can make something of it.
constexpr std::string_view kReply =
    "<e:Envelope xmlns:e='http://schemas.xmlsoap.org/soap/envelope/'><e:Body><response>"
    "<return>True</return></response></e:Body></e:Envelope>";

struct Ending {
  bool foreign = false;
  std::optional<Error> error;

  bool operator==(const Ending& other) const {
    return foreign == other.foreign && error.has_value() == other.error.has_value() &&
           (!error || error->number == other.error->number);
  }
};

Ending ending_of(const ClassInfo& info, const Member& member) {
  try {
    PreparedCall(info, member).run();
    return {};
  } catch (const Error& error) {
    return {.foreign = false, .error = error};
  } catch (...) {
    return {.foreign = true, .error = {}};
  }
}

/// What is there for the record of exchanges, or for further words about a reply that is wrong:
/// nothing that happens in it changes the end of a call.
bool changes_nothing(std::string_view member) {
  return member == "Platform.exchange_listener" || member == "the listener" ||
         member == "Transport.LastWire" || member == "ServiceObject.last_wire" ||
         member == "ServiceObject.name" || member == "Transport.LastReply";
}

/// Where an error of this member may end without leaving the operation. TraceSoapTraffic logs its
/// own, and so do the operations that swallow theirs; and an exchange without a time is recorded
/// all the same; and what a reply says besides being wrong is only added to the words about that.
bool may_be_swallowed(std::string_view member, const ClassInfo& info, const Member& operation) {
  if (operation.name == "GetDocuments" || operation.name == "sendHeartBeat") return true;
  if (info.name == "BVSubmittalConnector" && member.find("ogger") != std::string_view::npos) {
    return true;  // its constructor and destructor
  }
  const bool writes_setting = operation.name == "GetConfiguredProduct";
  if (member == "Logger.EnterMethod" || member == "Logger.ExitMethod") return writes_setting;
  return member.starts_with("Settings.") || member == "Platform.settings" ||
         member == "Platform.logger" || member == "Logger.LogWarning" ||
         member == "Logger.LogInfo" || member == "Platform.clock" || member == "Clock.now";
}

void expect_number_of(const Error& error, Thrown thrown) {
  if (thrown == Thrown::kError) {
    EXPECT_EQ(error.number, kThrownNumber);
    EXPECT_EQ(error.source, "the application");
  } else {
    EXPECT_EQ(error.number, error_numbers::kFailed);
    EXPECT_EQ(error.source, "BVConn");
  }
}

class ThrowingParts : public testing::Test {
 protected:
  /// One operation with one step that throws: whose step it is, "" when there are fewer.
  std::string_view expect_one_error(const ClassInfo& info, const Member& member, std::size_t number,
                                    Thrown thrown, const Ending& good) {
    ThrowingWorld world(reply);
    if (dal) {
      BVConnectorObject().InitTorvexDAL("http://a-server/dal");
      BVConnectorObject().UseTorvexDAL();
    }
    const Date beat = Global::LastHeartBeat();
    world.arm(number, thrown);
    const Ending ending = ending_of(info, member);
    world.disarm();
    if (world.struck().empty()) return "";
    struck[world.struck()].insert(thrown);
    SCOPED_TRACE(info.name + "." + member.name + ", " + std::string(world.struck()) + ", step " +
                 std::to_string(number) + ", thrown " + std::to_string(static_cast<int>(thrown)));
    EXPECT_FALSE(ending.foreign) << "something but an Error left";
    if (changes_nothing(world.struck())) {
      EXPECT_TRUE(ending == good);
    } else if (ending == good) {
      EXPECT_TRUE(may_be_swallowed(world.struck(), info, member));
    } else if (ending.error) {
      expect_number_of(*ending.error, thrown);
      const bool before_reply =
          world.struck() == "Transport.Send" || world.struck() == "ServiceObject.invoke";
      if (before_reply) {
        EXPECT_TRUE(Global::LastHeartBeat() == beat);
      }
    } else {
      ADD_FAILURE() << "it ended well, other than without the throw";
    }
    EXPECT_EQ(BVConnectorObject().UsingTorvexDAL(), dal);
    EXPECT_TRUE(ending_of(info, member) == good) << "the next call";
    return world.struck();
  }

  Ending good_ending(const ClassInfo& info, const Member& member) const {
    const ThrowingWorld world(reply);
    if (dal) {
      BVConnectorObject().InitTorvexDAL("http://a-server/dal");
      BVConnectorObject().UseTorvexDAL();
    }
    return ending_of(info, member);
  }

  void expect_one_error_everywhere() {
    std::size_t operations = 0;
    for (const ClassInfo* info : automation::classes()) {
      if (info->name == "BVConnectorObject") continue;
      for (const Member& member : info->members) {
        if (member.kind != automation::MemberKind::kOperation) continue;
        ++operations;
        EXPECT_GT(expect_one_error_at_each_step(*info, member, operations), 0U)
            << info->name << "." << member.name;
      }
    }
    EXPECT_EQ(operations, 205U);
    for (const auto& [member, kinds] : struck) EXPECT_EQ(kinds.size(), kThrown.size()) << member;
  }

  /// The number of its steps.
  std::size_t expect_one_error_at_each_step(const ClassInfo& info, const Member& member,
                                            std::size_t operation) {
    const Ending good = good_ending(info, member);
    for (std::size_t step = 1;; ++step) {
      std::string_view throwing;
      for (std::size_t i = 0; i < kThrown.size(); ++i) {
        const Thrown thrown = kThrown[(operation + step + i) % kThrown.size()];
        if (i > 0 && kThrowsEachKindOnce && struck[throwing].contains(thrown)) continue;
        throwing = expect_one_error(info, member, step, thrown, good);
        if (throwing.empty()) return step - 1;
      }
    }
  }

  std::string_view reply = kReply;
  bool dal = false;
  /// What was thrown from which member.
  std::map<std::string_view, std::set<Thrown>> struck;
};

TEST_F(ThrowingParts, MakeOneErrorOfEveryOperationOnTheSoapRoute) {
  expect_one_error_everywhere();
  for (const char* member : {"Platform.transport",
                             "Platform.logger",
                             "Platform.settings",
                             "Platform.clock",
                             "Platform.exchange_listener",
                             "the listener",
                             "Logger.LogMask",
                             "Logger.TracingFilePath",
                             "Logger.LogInfo",
                             "Logger.LogAtLevel",
                             "Logger.EnterMethod",
                             "Logger.ExitMethod",
                             "Logger.LogWarning",
                             "Settings.Exists",
                             "Settings.Write",
                             "Settings.ReadNumber",
                             "Settings.ReadString (user)",
                             "Settings.ReadString (machine)",
                             "Transport.Option",
                             "Transport.setProxy",
                             "Transport.SOAPAction",
                             "Transport.Timeout",
                             "Transport.Send",
                             "Transport.Receive",
                             "Transport.LastWire",
                             "Clock.now",
                             "Clock.timer"}) {
    EXPECT_TRUE(struck.contains(member)) << member;
  }
}

TEST_F(ThrowingParts, MakeOneErrorOfEveryOperationThatGetsAFault) {
  reply =
      "<e:Envelope xmlns:e='http://schemas.xmlsoap.org/soap/envelope/'><e:Body><e:Fault>"
      "<faultcode>e:Server</faultcode><faultstring>no</faultstring></e:Fault></e:Body>"
      "</e:Envelope>";
  expect_one_error_everywhere();
  EXPECT_TRUE(struck.contains("Logger.LogError"));
}

TEST_F(ThrowingParts, MakeOneErrorOfEveryOperationThatGetsNoEnvelope) {
  reply = "no envelope";
  expect_one_error_everywhere();
  EXPECT_TRUE(struck.contains("Transport.LastReply"));
}

TEST_F(ThrowingParts, MakeOneErrorOfEveryOperationOnTheDataAccessLayerRoute) {
  dal = true;
  expect_one_error_everywhere();
  for (const char* member : {"ServiceObject.invoke", "ServiceObject.last_wire"}) {
    EXPECT_TRUE(struck.contains(member)) << member;
  }
}

}  // namespace
}  // namespace bvconn::test
