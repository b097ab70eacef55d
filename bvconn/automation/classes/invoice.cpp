#include "bvconn/automation/classes/class_rows.h"
#include "bvconn/connectors/invoice/bv_invoice_connector.h"

namespace bvconn::automation {

#include "bvconn/automation/classes/invoice_rows.inc"

}  // namespace bvconn::automation
