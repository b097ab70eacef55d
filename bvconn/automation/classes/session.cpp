#include "bvconn/automation/classes/class_rows.h"
#include "bvconn/connectors/session/bv_config_connector.h"
#include "bvconn/connectors/session/bv_document_connector.h"
#include "bvconn/connectors/session/bv_export_connector.h"
#include "bvconn/connectors/session/bv_generic_connector.h"
#include "bvconn/connectors/session/bv_heart_beat_connector.h"
#include "bvconn/connectors/session/bv_postal_connector.h"
#include "bvconn/connectors/session/bv_summary_connector.h"

namespace bvconn::automation {

#include "bvconn/automation/classes/session_rows.inc"

}  // namespace bvconn::automation
