#include "bvconn/automation/classes/class_rows.h"
#include "bvconn/connectors/documents/bv_acknowledgement_connector.h"
#include "bvconn/connectors/documents/bv_order_connector.h"
#include "bvconn/connectors/documents/bv_project_connector.h"
#include "bvconn/connectors/documents/bv_quote_connector.h"
#include "bvconn/connectors/documents/bv_request_for_quote_connector.h"
#include "bvconn/connectors/documents/bv_rma_connector.h"
#include "bvconn/connectors/documents/bv_sales_instrument_connector.h"
#include "bvconn/connectors/documents/bv_submittal_connector.h"

namespace bvconn::automation {

#include "bvconn/automation/classes/documents_rows.inc"

}  // namespace bvconn::automation
