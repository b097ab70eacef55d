#include "bvconn/automation/class_builder.h"
#include "bvconn/automation/classes/declared_classes.h"
#include "bvconn/connectors/print/bv_print_connector.h"

namespace bvconn::automation {

const ClassInfo& print_connector_class() {
  using C = BVPrintConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVPrintConnector")
          .BVCONN_OPERATION(GetPrintInfos, "aServerURL", "aSessionID")
          .BVCONN_OPERATION(GetPrintTemplates, "aServerURL", "aSessionID")
          .BVCONN_OPERATION(GetQuotePrintoutDefaults, "aServerURL", "aSessionID", "getUserDefaults")
          .BVCONN_OPERATION(GetOrderPrintoutDefaults, "aServerURL", "aSessionID", "getUserDefaults")
          .BVCONN_OPERATION(GetProjectPrintoutDefaults, "aServerURL", "aSessionID",
                            "getUserDefaults")
          .BVCONN_OPERATION(GetRFQPrintoutDefaults, "aServerURL", "aSessionID", "getUserDefaults")
          .BVCONN_OPERATION(GetSAPPrintoutDefaults, "aServerURL", "aSessionID", "getUserDefaults")
          .BVCONN_OPERATION(GetQuotePrintout, "aServerURL", "aSessionID", "aUID")
          .BVCONN_OPERATION(SaveQuotePrintout, "aServerURL", "aSessionID", "aQuotePrintoutNode")
          .BVCONN_OPERATION(GetOrderPrintout, "aServerURL", "aSessionID", "aUID")
          .BVCONN_OPERATION(SaveOrderPrintout, "aServerURL", "aSessionID", "aOrderPrintoutNode")
          .BVCONN_OPERATION(getProposalComments, "aAgentID", "aServerURL", "aSessionID")
          .BVCONN_OPERATION(getRFQAuxiliaryInfo, "aQuoteGID", "aManufacturerGID", "aServerURL",
                            "aSessionID")
          .BVCONN_OPERATION(getRFQFromProjAuxInfo, "aProjectGID", "aManufacturerGID", "aServerURL",
                            "aSessionID")
          .BVCONN_OPERATION(GetRFQPrintout, "aServerURL", "aSessionID", "aUID")
          .BVCONN_OPERATION(SaveRFQPrintout, "aServerURL", "aSessionID", "aRFQPrintoutNode")
          .take();
  return info;
}

}  // namespace bvconn::automation
