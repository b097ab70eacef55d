#include "bvconn/automation/classes/class_rows.h"
#include "bvconn/connectors/search/bv_search_connector.h"

namespace bvconn::automation {

#include "bvconn/automation/classes/search_rows.inc"

}  // namespace bvconn::automation
