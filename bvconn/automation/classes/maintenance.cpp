#include "bvconn/automation/class_builder.h"
#include "bvconn/automation/classes/declared_classes.h"
#include "bvconn/connectors/maintenance/bv_maintenance_connector.h"

namespace bvconn::automation {

const ClassInfo& maintenance_connector_class() {
  using C = BVMaintenanceConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVMaintenanceConnector")
          .BVCONN_OPERATION(GetAllParagraphs, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(CreateParagraph, "aSessionID", "aSoapNode", "aServerURL")
          .BVCONN_OPERATION(UpdateParagraph, "aSessionID", "aSoapNode", "aServerURL")
          .BVCONN_OPERATION(DeleteParagraph, "aSessionID", "aParagraphUID", "aServerURL")
          .BVCONN_OPERATION(OrderParagraphs, "aSessionID", "aParagraphUID", "aServerURL")
          .BVCONN_OPERATION(GetAllRemarks, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(CreateRemark, "aSessionID", "aSoapNode", "aServerURL")
          .BVCONN_OPERATION(UpdateRemark, "aSessionID", "aSoapNode", "aServerURL")
          .BVCONN_OPERATION(DeleteRemark, "aSessionID", "aRemarkUID", "aServerURL")
          .BVCONN_OPERATION(OrderRemarks, "aSessionID", "aRemarkUID", "aServerURL")
          .BVCONN_OPERATION(GetUserLogo, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(GetUserLogoList, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(SetUserLogo, "aSessionID", "aLogo", "aServerURL")
          .BVCONN_OPERATION(UpdatePassword, "aSessionID", "aPassword", "aServerURL")
          .BVCONN_OPERATION(SaveQuotePrintoutDefault, "aSessionID", "aServerURL",
                            "aQuotePrintoutNode")
          .BVCONN_OPERATION(SaveAgentQuotePrintoutDefault, "aSessionID", "aServerURL",
                            "aPrintInfoUID")
          .BVCONN_OPERATION(SaveAgentOrderPrintoutDefault, "aSessionID", "aServerURL",
                            "aPrintInfoUID")
          .BVCONN_OPERATION(SaveAgentProjectPrintoutDefault, "aSessionID", "aServerURL",
                            "aPrintInfoUID")
          .BVCONN_OPERATION(SaveAgentSAPPrintoutDefault, "aSessionID", "aServerURL",
                            "aPrintInfoUID")
          .BVCONN_OPERATION(SaveAgentOrderSubmitPrintoutDefault, "aSessionID", "aServerURL",
                            "aPrintInfoUID")
          .BVCONN_OPERATION(SaveAgentRFQPrintoutDefault, "aSessionID", "aServerURL",
                            "aPrintInfoUID")
          .BVCONN_OPERATION(GetAgentQuotePrintoutDefault, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(GetAgentOrderPrintoutDefault, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(GetAgentSAPPrintoutDefault, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(GetAgentProjectPrintoutDefault, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(GetAgentOrderSubmitPrintoutDefault, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(GetAgentRFQPrintoutDefault, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(SetUserProfile, "aSessionID", "aServerURL", "theNode")
          .BVCONN_OPERATION(SetUserQuotePrintoutDefault, "aSessionID", "aServerURL",
                            "aPrintInfoUID")
          .BVCONN_OPERATION(SetUserOrderPrintoutDefault, "aSessionID", "aServerURL",
                            "aPrintInfoUID")
          .BVCONN_OPERATION(SetUserOrderSubmitPrintoutDefault, "aSessionID", "aServerURL",
                            "aPrintInfoUID")
          .BVCONN_OPERATION(SetUserSAPPrintoutDefault, "aSessionID", "aServerURL", "aPrintInfoUID")
          .BVCONN_OPERATION(SetUserProjectPrintoutDefault, "aSessionID", "aServerURL",
                            "aPrintInfoUID")
          .BVCONN_OPERATION(SetUserRFQPrintoutDefault, "aSessionID", "aServerURL", "aPrintInfoUID")
          .BVCONN_OPERATION(GetUserQuotePrintoutDefault, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(SaveOrderPrintoutDefault, "aSessionID", "aServerURL",
                            "aOrderPrintoutNode")
          .BVCONN_OPERATION(SaveSAPPrintoutDefault, "aSessionID", "aServerURL", "aSAPPrintoutNode")
          .BVCONN_OPERATION(SaveProjectPrintoutDefault, "aSessionID", "aServerURL",
                            "aProjectPrintoutNode")
          .BVCONN_OPERATION(SaveRFQPrintoutDefault, "aSessionID", "aServerURL", "aRFQPrintoutNode")
          .BVCONN_OPERATION(GetUserOrderPrintoutDefault, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(GetUserOrderSubmitPrintoutDefault, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(GetUserRFQPrintoutDefault, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(GetUserSAPPrintoutDefault, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(GetUserProjectPrintoutDefault, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(CheckTypeAheadFile, "aSessionID", "aServerURL")
          .take();
  return info;
}

}  // namespace bvconn::automation
