#pragma once

#include <functional>
#include <string>
#include <vector>

#include "bvconn/dal/dal_switch.h"

namespace bvconn::dal::test {

/// One operation: how it is called, and the line that the service object has to see for it. The
/// lines are the contract with the other side, so each is written out in full.
struct OperationCase {
  std::string line;
  std::function<std::string(const Services&)> call;
};
using Cases = std::vector<OperationCase>;

// One list for each object, in the object's order; the search service's 36 operations in three.
Cases authentication_service();
Cases summary_service();
Cases heart_beat_service();
Cases search_service_lookups();
Cases search_service_searches();
Cases search_service_exports();
Cases project_service();
Cases quote_service();
Cases order_service();
Cases maintenance_service();
Cases inventory_inquiry_service();
Cases rma_service();
Cases printing_service();
Cases submittal_service();
Cases sales_instrument_service();

/// All of them, one object after another.
Cases all_cases();

}  // namespace bvconn::dal::test
