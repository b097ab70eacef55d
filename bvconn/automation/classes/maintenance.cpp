#include "bvconn/automation/class_builder.h"
#include "bvconn/automation/classes/groups.h"
#include "bvconn/connectors/maintenance/bv_maintenance_connector.h"

namespace bvconn::automation {

// clang-format off
const ClassInfo& maintenance_connector_class() {
  using C = BVMaintenanceConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVMaintenanceConnector")
          .operation<&C::GetAllParagraphs>("GetAllParagraphs", {"aSessionID", "aServerURL"})
          .operation<&C::CreateParagraph>("CreateParagraph", {"aSessionID", "aSoapNode", "aServerURL"})
          .operation<&C::UpdateParagraph>("UpdateParagraph", {"aSessionID", "aSoapNode", "aServerURL"})
          .operation<&C::DeleteParagraph>("DeleteParagraph", {"aSessionID", "aParagraphUID", "aServerURL"})
          .operation<&C::OrderParagraphs>("OrderParagraphs", {"aSessionID", "aParagraphUID", "aServerURL"})
          .operation<&C::GetAllRemarks>("GetAllRemarks", {"aSessionID", "aServerURL"})
          .operation<&C::CreateRemark>("CreateRemark", {"aSessionID", "aSoapNode", "aServerURL"})
          .operation<&C::UpdateRemark>("UpdateRemark", {"aSessionID", "aSoapNode", "aServerURL"})
          .operation<&C::DeleteRemark>("DeleteRemark", {"aSessionID", "aRemarkUID", "aServerURL"})
          .operation<&C::OrderRemarks>("OrderRemarks", {"aSessionID", "aRemarkUID", "aServerURL"})
          .operation<&C::GetUserLogo>("GetUserLogo", {"aSessionID", "aServerURL"})
          .operation<&C::GetUserLogoList>("GetUserLogoList", {"aSessionID", "aServerURL"})
          .operation<&C::SetUserLogo>("SetUserLogo", {"aSessionID", "aLogo", "aServerURL"})
          .operation<&C::UpdatePassword>("UpdatePassword", {"aSessionID", "aPassword", "aServerURL"})
          .operation<&C::SaveQuotePrintoutDefault>("SaveQuotePrintoutDefault", {"aSessionID", "aServerURL", "aQuotePrintoutNode"})
          .operation<&C::SaveAgentQuotePrintoutDefault>("SaveAgentQuotePrintoutDefault", {"aSessionID", "aServerURL", "aPrintInfoUID"})
          .operation<&C::SaveAgentOrderPrintoutDefault>("SaveAgentOrderPrintoutDefault", {"aSessionID", "aServerURL", "aPrintInfoUID"})
          .operation<&C::SaveAgentProjectPrintoutDefault>("SaveAgentProjectPrintoutDefault", {"aSessionID", "aServerURL", "aPrintInfoUID"})
          .operation<&C::SaveAgentSAPPrintoutDefault>("SaveAgentSAPPrintoutDefault", {"aSessionID", "aServerURL", "aPrintInfoUID"})
          .operation<&C::SaveAgentOrderSubmitPrintoutDefault>("SaveAgentOrderSubmitPrintoutDefault", {"aSessionID", "aServerURL", "aPrintInfoUID"})
          .operation<&C::SaveAgentRFQPrintoutDefault>("SaveAgentRFQPrintoutDefault", {"aSessionID", "aServerURL", "aPrintInfoUID"})
          .operation<&C::GetAgentQuotePrintoutDefault>("GetAgentQuotePrintoutDefault", {"aSessionID", "aServerURL"})
          .operation<&C::GetAgentOrderPrintoutDefault>("GetAgentOrderPrintoutDefault", {"aSessionID", "aServerURL"})
          .operation<&C::GetAgentSAPPrintoutDefault>("GetAgentSAPPrintoutDefault", {"aSessionID", "aServerURL"})
          .operation<&C::GetAgentProjectPrintoutDefault>("GetAgentProjectPrintoutDefault", {"aSessionID", "aServerURL"})
          .operation<&C::GetAgentOrderSubmitPrintoutDefault>("GetAgentOrderSubmitPrintoutDefault", {"aSessionID", "aServerURL"})
          .operation<&C::GetAgentRFQPrintoutDefault>("GetAgentRFQPrintoutDefault", {"aSessionID", "aServerURL"})
          .operation<&C::SetUserProfile>("SetUserProfile", {"aSessionID", "aServerURL", "theNode"})
          .operation<&C::SetUserQuotePrintoutDefault>("SetUserQuotePrintoutDefault", {"aSessionID", "aServerURL", "aPrintInfoUID"})
          .operation<&C::SetUserOrderPrintoutDefault>("SetUserOrderPrintoutDefault", {"aSessionID", "aServerURL", "aPrintInfoUID"})
          .operation<&C::SetUserOrderSubmitPrintoutDefault>("SetUserOrderSubmitPrintoutDefault", {"aSessionID", "aServerURL", "aPrintInfoUID"})
          .operation<&C::SetUserSAPPrintoutDefault>("SetUserSAPPrintoutDefault", {"aSessionID", "aServerURL", "aPrintInfoUID"})
          .operation<&C::SetUserProjectPrintoutDefault>("SetUserProjectPrintoutDefault", {"aSessionID", "aServerURL", "aPrintInfoUID"})
          .operation<&C::SetUserRFQPrintoutDefault>("SetUserRFQPrintoutDefault", {"aSessionID", "aServerURL", "aPrintInfoUID"})
          .operation<&C::GetUserQuotePrintoutDefault>("GetUserQuotePrintoutDefault", {"aSessionID", "aServerURL"})
          .operation<&C::SaveOrderPrintoutDefault>("SaveOrderPrintoutDefault", {"aSessionID", "aServerURL", "aOrderPrintoutNode"})
          .operation<&C::SaveSAPPrintoutDefault>("SaveSAPPrintoutDefault", {"aSessionID", "aServerURL", "aSAPPrintoutNode"})
          .operation<&C::SaveProjectPrintoutDefault>("SaveProjectPrintoutDefault", {"aSessionID", "aServerURL", "aProjectPrintoutNode"})
          .operation<&C::SaveRFQPrintoutDefault>("SaveRFQPrintoutDefault", {"aSessionID", "aServerURL", "aRFQPrintoutNode"})
          .operation<&C::GetUserOrderPrintoutDefault>("GetUserOrderPrintoutDefault", {"aSessionID", "aServerURL"})
          .operation<&C::GetUserOrderSubmitPrintoutDefault>("GetUserOrderSubmitPrintoutDefault", {"aSessionID", "aServerURL"})
          .operation<&C::GetUserRFQPrintoutDefault>("GetUserRFQPrintoutDefault", {"aSessionID", "aServerURL"})
          .operation<&C::GetUserSAPPrintoutDefault>("GetUserSAPPrintoutDefault", {"aSessionID", "aServerURL"})
          .operation<&C::GetUserProjectPrintoutDefault>("GetUserProjectPrintoutDefault", {"aSessionID", "aServerURL"})
          .operation<&C::CheckTypeAheadFile>("CheckTypeAheadFile", {"aSessionID", "aServerURL"})
          .take();
  return info;
}
// clang-format on

}  // namespace bvconn::automation
