#include "bvconn/connectors/session/bv_summary_connector.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "bvconn/platform/error_numbers.h"
#include "support/error_of.h"
#include "support/recording_platform.h"

namespace bvconn {
namespace {

using test::envelope_text;
using test::error_of;
using test::RecordingPlatform;

const StringArray kQuotes{"Q-3"};
const StringArray kOrders{"O-4", "O-5"};

TEST(GetUserSummaryByGIDs, FailsOnAnArrayThatWasNeverAllocatedBeforeItCallsTheServiceObject) {
  RecordingPlatform world;
  world.use_dal();
  const Error error = error_of([&] {
    BVSummaryConnector().GetUserSummaryByGIDs(StringArray(), kQuotes, kOrders, "http://h/", "S-1");
  });
  EXPECT_EQ(error.number, error_numbers::kSubscriptOutOfRange);
  EXPECT_EQ(error.source, "BVConn");
  EXPECT_TRUE(world.record.dal.empty());
}

TEST(GetUserSummaryByGIDs, SendsAnArrayThatWasNeverAllocatedAsAnEmptyListBySoap) {
  RecordingPlatform world;
  world.reply(envelope_text("r", "<a>1</a>"));
  BVSummaryConnector().GetUserSummaryByGIDs(StringArray(), kQuotes, kOrders, "http://h/", "S-1");
  ASSERT_EQ(world.sent.size(), 1U);
  EXPECT_NE(world.sent[0].text.find(
                "<param xsi:type=\"SOAP-ENC:Array\" SOAP-ENC:arrayType=\"xsd:string[0]\"/>"
                "<param xsi:type=\"SOAP-ENC:Array\" SOAP-ENC:arrayType=\"xsd:string[1]\">"
                "<item>Q-3</item></param>"),
            std::string::npos)
      << world.sent[0].text;
}

TEST(GetUserSummaryByGIDs, ReadsTheArraysInTheirOrder) {
  RecordingPlatform world;
  world.use_dal();
  const Error error = error_of([&] {
    BVSummaryConnector().GetUserSummaryByGIDs(kQuotes, "no array", StringArray(), "http://h/",
                                              "S-1");
  });
  EXPECT_EQ(error.number, error_numbers::kTypeMismatch);
}

}  // namespace
}  // namespace bvconn
