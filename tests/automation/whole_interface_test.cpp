#include <gtest/gtest.h>

#include <set>
#include <string>

#include "bvconn/automation/interface.h"
#include "bvconn/observation/observe.h"

namespace bvconn::automation {
namespace {

const std::set<std::string> kNoConnectors{"BVConnectorObject", "BVServices", "BVMethods"};

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
