#include "bvconn/automation/class_builder.h"
#include "bvconn/automation/classes/groups.h"
#include "bvconn/connectors/print/bv_print_connector.h"

namespace bvconn::automation {

// clang-format off
const ClassInfo& print_connector_class() {
  using C = BVPrintConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVPrintConnector")
          .operation<&C::GetPrintInfos>("GetPrintInfos", {"aServerURL", "aSessionID"})
          .operation<&C::GetPrintTemplates>("GetPrintTemplates", {"aServerURL", "aSessionID"})
          .operation<&C::GetQuotePrintoutDefaults>("GetQuotePrintoutDefaults", {"aServerURL", "aSessionID", "getUserDefaults"})
          .operation<&C::GetOrderPrintoutDefaults>("GetOrderPrintoutDefaults", {"aServerURL", "aSessionID", "getUserDefaults"})
          .operation<&C::GetProjectPrintoutDefaults>("GetProjectPrintoutDefaults", {"aServerURL", "aSessionID", "getUserDefaults"})
          .operation<&C::GetRFQPrintoutDefaults>("GetRFQPrintoutDefaults", {"aServerURL", "aSessionID", "getUserDefaults"})
          .operation<&C::GetSAPPrintoutDefaults>("GetSAPPrintoutDefaults", {"aServerURL", "aSessionID", "getUserDefaults"})
          .operation<&C::GetQuotePrintout>("GetQuotePrintout", {"aServerURL", "aSessionID", "aUID"})
          .operation<&C::SaveQuotePrintout>("SaveQuotePrintout", {"aServerURL", "aSessionID", "aQuotePrintoutNode"})
          .operation<&C::GetOrderPrintout>("GetOrderPrintout", {"aServerURL", "aSessionID", "aUID"})
          .operation<&C::SaveOrderPrintout>("SaveOrderPrintout", {"aServerURL", "aSessionID", "aOrderPrintoutNode"})
          .operation<&C::getProposalComments>("getProposalComments", {"aAgentID", "aServerURL", "aSessionID"})
          .operation<&C::getRFQAuxiliaryInfo>("getRFQAuxiliaryInfo", {"aQuoteGID", "aManufacturerGID", "aServerURL", "aSessionID"})
          .operation<&C::getRFQFromProjAuxInfo>("getRFQFromProjAuxInfo", {"aProjectGID", "aManufacturerGID", "aServerURL", "aSessionID"})
          .operation<&C::GetRFQPrintout>("GetRFQPrintout", {"aServerURL", "aSessionID", "aUID"})
          .operation<&C::SaveRFQPrintout>("SaveRFQPrintout", {"aServerURL", "aSessionID", "aRFQPrintoutNode"})
          .take();
  return info;
}
// clang-format on

}  // namespace bvconn::automation
