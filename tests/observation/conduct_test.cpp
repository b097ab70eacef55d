#include "bvconn/observation/conduct.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "bvconn/platform/error_numbers.h"

namespace bvconn::automation {
namespace {

using error_numbers::from_bits;
using error_numbers::kSoapFault;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

ObservedConduct conduct_of(std::string_view cls, std::string_view operation) {
  const ClassInfo& info = *find_class(cls);
  return observe_conduct(info, *info.find(operation));
}

std::vector<std::string> written(const std::vector<Sightings::LogLine>& lines) {
  std::vector<std::string> texts;
  for (const auto& line : lines) texts.push_back(line.action + " " + line.cls + "." + line.method);
  return texts;
}

TEST(Conduct, AFaultCodeThatIsMappedIsFound) {
  const ObservedConduct conduct = conduct_of("BVInvoiceConnector", "GetInvoice");
  ASSERT_TRUE(conduct.soap && conduct.soap->fault);
  EXPECT_EQ(conduct.soap->fault->number, kSoapFault);
  EXPECT_TRUE(conduct.soap->fault->server_text);
  EXPECT_THAT(conduct.soap->codes, ElementsAre(Pair(10041, from_bits(0x80042739))));
  EXPECT_FALSE(conduct.dal);
  EXPECT_FALSE(conduct.condition);
}

TEST(Conduct, TwoCodesCanLeaveAsOneNumber) {
  const ObservedConduct conduct = conduct_of("BVInvoiceConnector", "GetOrderReconcile");
  ASSERT_TRUE(conduct.soap);
  EXPECT_THAT(conduct.soap->codes,
              ElementsAre(Pair(10011, from_bits(0x8004271B)), Pair(10012, from_bits(0x8004271B))));
}

TEST(Conduct, ThePlainTailLogsAndKeepsThreeValues) {
  const ObservedConduct conduct = conduct_of("BVOrderConnector", "getSAPOrderView");
  ASSERT_TRUE(conduct.soap && conduct.soap->broken);
  EXPECT_TRUE(conduct.soap->broken->number);
  EXPECT_TRUE(conduct.soap->broken->source);
  EXPECT_TRUE(conduct.soap->broken->description);
  EXPECT_FALSE(conduct.soap->broken->help);
  EXPECT_THAT(written(conduct.soap->log), ElementsAre("LogError BVOrderConnector.getSAPOrderView"));
}

TEST(Conduct, ABareTailKeepsAllValuesAndLogsNothing) {
  const ObservedConduct conduct = conduct_of("BVSearchConnector", "SearchForQuotes");
  EXPECT_FALSE(conduct.soap);
  ASSERT_TRUE(conduct.dal && conduct.dal->broken);
  EXPECT_TRUE(conduct.dal->broken->help);
  EXPECT_THAT(conduct.dal->log, IsEmpty());
}

TEST(Conduct, TheHeartBeatSwallowsWhatGoesWrong) {
  const ObservedConduct conduct = conduct_of("BVHeartBeatConnector", "sendHeartBeat");
  ASSERT_TRUE(conduct.soap && conduct.dal);
  EXPECT_FALSE(conduct.soap->broken);
  EXPECT_FALSE(conduct.soap->fault);
  EXPECT_FALSE(conduct.dal->broken);
}

TEST(Conduct, LogNamesAreThoseOfTheLines) {
  // An order's line bears brackets, and the error of GetSAPInvoice another operation's name.
  EXPECT_THAT(written(conduct_of("BVOrderConnector", "getSAPOrderView").log),
              ElementsAre("EnterMethod BVOrderConnector.getSAPOrderView()",
                          "ExitMethod BVOrderConnector.getSAPOrderView()"));
  const ObservedConduct invoice = conduct_of("BVInvoiceConnector", "GetSAPInvoice");
  EXPECT_THAT(written(invoice.log), ElementsAre("EnterMethod BVInvoiceConnector.GetSAPInvoice",
                                                "ExitMethod BVInvoiceConnector.GetSAPInvoice"));
  EXPECT_THAT(written(invoice.soap->log), ElementsAre("LogError BVInvoiceConnector.GetInvoice"));
}

TEST(Conduct, AReadGoesByTheLayerWhereItIsOnAndNotDisabled) {
  const auto condition = conduct_of("BVOrderConnector", "getSAPOrderView").condition;
  ASSERT_TRUE(condition);
  EXPECT_TRUE(condition->needs_route);
  EXPECT_FALSE(condition->needs_save);
  EXPECT_THAT(condition->disabled_by, ElementsAre("urn:OrderService.getSAPOrderView"));
}

TEST(Conduct, ASaveAsksForTheSwitchOfSavesToo) {
  const auto condition = conduct_of("BVProjectConnector", "SaveProject").condition;
  ASSERT_TRUE(condition);
  EXPECT_TRUE(condition->needs_route);
  EXPECT_TRUE(condition->needs_save);
  EXPECT_THAT(condition->disabled_by, ElementsAre("urn:ProjectService.save"));
}

TEST(Conduct, LinesAboutTimeAreTheSameEachTimeSinceNonePasses) {
  const ObservedConduct conduct = conduct_of("BVSearchConnector", "SearchForCustomer");
  std::vector<std::string> texts;
  for (const auto& line : conduct.log) texts.push_back(line.text);
  EXPECT_THAT(texts, testing::Contains("Total time in method: 0"));
}

TEST(Conduct, WhatTheLayerAloneServesHasNoCondition) {
  const auto condition = conduct_of("BVSearchConnector", "SearchForQuotes").condition;
  ASSERT_TRUE(condition);
  EXPECT_FALSE(condition->needs_route);
  EXPECT_FALSE(condition->needs_save);
  EXPECT_THAT(condition->disabled_by, IsEmpty());
}

TEST(Conduct, ATextThatDecidesTheServiceHasAnEntryForEach) {
  const auto condition =
      conduct_of("BVSalesInstrumentConnector", "getPreviousSalesInstrumentColumnPrices").condition;
  ASSERT_TRUE(condition);
  EXPECT_EQ(condition->disabled_by.size(), 2U);
}

TEST(Conduct, AnOperationWithoutTrafficHasItsLinesAlone) {
  const ObservedConduct conduct = conduct_of("BVProjectConnector", "setStatusToLostOpportunity");
  EXPECT_FALSE(conduct.soap || conduct.dal || conduct.condition);
  EXPECT_THAT(written(conduct.log),
              ElementsAre("EnterMethod BVProjectConnector.setStatusToLostOpportunity()",
                          "ExitMethod BVProjectConnector.setStatusToLostOpportunity()"));
}

}  // namespace
}  // namespace bvconn::automation
