#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>

#include "bvconn/automation/interface.h"
#include "bvconn/observation/observe.h"

namespace bvconn::automation {
namespace {

const std::set<std::string> kNoConnectors{"BVConnectorObject", "BVServices", "BVMethods"};

int operations_of(const ClassInfo& info) {
  int count = 0;
  for (const Member& member : info.members) count += member.kind == MemberKind::kOperation ? 1 : 0;
  return count;
}

TEST(WholeInterface, HasTwentyTwoClassesInTheirOrder) {
  std::vector<std::string> names;
  for (const ClassInfo* info : classes()) names.push_back(info->name);
  EXPECT_EQ(names, (std::vector<std::string>{
                       "BVConnectorObject",
                       "BVGenericConnector",
                       "BVServices",
                       "BVMethods",
                       "BVProjectConnector",
                       "BVQuoteConnector",
                       "BVOrderConnector",
                       "BVRequestForQuoteConnector",
                       "BVSalesInstrumentConnector",
                       "BVAcknowledgementConnector",
                       "BVSubmittalConnector",
                       "BVRMAConnector",
                       "BVSearchConnector",
                       "BVInvoiceConnector",
                       "BVMaintenanceConnector",
                       "BVPrintConnector",
                       "BVHeartBeatConnector",
                       "BVSummaryConnector",
                       "BVPostalConnector",
                       "BVExportConnector",
                       "BVDocumentConnector",
                       "BVConfigConnector",
                   }));
}

TEST(WholeInterface, HasTwoHundredAndFiveOperationsInNineteenConnectors) {
  const std::map<std::string, int> expected{
      {"BVGenericConnector", 1},
      {"BVProjectConnector", 11},
      {"BVQuoteConnector", 4},
      {"BVOrderConnector", 2},
      {"BVRequestForQuoteConnector", 2},
      {"BVSalesInstrumentConnector", 16},
      {"BVAcknowledgementConnector", 3},
      {"BVSubmittalConnector", 15},
      {"BVRMAConnector", 6},
      {"BVSearchConnector", 55},
      {"BVInvoiceConnector", 15},
      {"BVMaintenanceConnector", 45},
      {"BVPrintConnector", 16},
      {"BVHeartBeatConnector", 2},
      {"BVSummaryConnector", 8},
      {"BVPostalConnector", 1},
      {"BVExportConnector", 1},
      {"BVDocumentConnector", 1},
      {"BVConfigConnector", 1},
  };
  std::map<std::string, int> counted;
  int all = 0;
  for (const ClassInfo* info : classes()) {
    if (kNoConnectors.contains(info->name)) continue;
    counted[info->name] = operations_of(*info);
    all += operations_of(*info);
  }
  EXPECT_EQ(counted, expected);
  EXPECT_EQ(all, 205);
}

TEST(WholeInterface, HasTheRowsOfTheCataloguesAndTheMembersOfTheConnectorObject) {
  EXPECT_EQ(find_class("BVServices")->members.size(), 20U);
  EXPECT_EQ(find_class("BVMethods")->members.size(), 227U);
  EXPECT_EQ(find_class("BVConnectorObject")->members.size(), 29U);
  EXPECT_EQ(find_class("BVGenericConnector")->members.size(), 2U);
  EXPECT_EQ(find_class("BVHeartBeatConnector")->members.size(), 3U);
}

TEST(WholeInterface, TakesItsRoutesAsOftenAsTold) {
  int both = 0;
  int dal_alone = 0;
  int soap_alone = 0;
  int nothing = 0;
  for (const ObservedOperation& operation : observe_all()) {
    if (kNoConnectors.contains(operation.cls)) continue;
    const bool soap = !operation.requests.empty();
    const bool dal = !operation.dal_calls.empty();
    both += soap && dal ? 1 : 0;
    dal_alone += dal && !soap ? 1 : 0;
    soap_alone += soap && !dal ? 1 : 0;
    nothing += !soap && !dal ? 1 : 0;
  }
  EXPECT_EQ(both, 108);
  EXPECT_EQ(dal_alone, 6);
  EXPECT_EQ(soap_alone, 88);
  EXPECT_EQ(nothing, 3);
}

}  // namespace
}  // namespace bvconn::automation
