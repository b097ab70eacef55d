#include "bvconn/automation/classes/class_rows.h"
#include "bvconn/connectors/print/bv_print_connector.h"

namespace bvconn::automation {

#include "bvconn/automation/classes/print_rows.inc"

}  // namespace bvconn::automation
