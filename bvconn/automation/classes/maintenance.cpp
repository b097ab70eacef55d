#include "bvconn/automation/classes/class_rows.h"
#include "bvconn/connectors/maintenance/bv_maintenance_connector.h"

namespace bvconn::automation {

#include "bvconn/automation/classes/maintenance_rows.inc"

}  // namespace bvconn::automation
