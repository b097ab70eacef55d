#include "bvconn/automation/class_builder.h"
#include "bvconn/automation/classes/declared_classes.h"
#include "bvconn/connectors/invoice/bv_invoice_connector.h"

namespace bvconn::automation {

const ClassInfo& invoice_connector_class() {
  using C = BVInvoiceConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVInvoiceConnector")
          .BVCONN_OPERATION(
              InvoiceSearch, "aServerURL", "aSessionID",
              BVCONN_OPTIONAL(InvoiceSearchCriteria, strInvoiceNumber, strPONumber, strProjectName,
                              strManufacturer, strManufacturerOrderNumber, strStatus,
                              strCustomerGID, strCustomerAccountNumber, strPartnerID,
                              strCustomerSoldToName, strAgent, strTorvexOrderNumber,
                              strInvoiceDateFrom, strInvoiceDateTo, strPayPeriodDateFrom,
                              strPayPeriodDateTo))
          .BVCONN_OPERATION(GetInvoice, "aServerURL", "aSessionID", "strInvoiceUID")
          .BVCONN_OPERATION(GetSAPInvoice, "aServerURL", "aSessionID", "strInvoiceUID")
          .BVCONN_OPERATION(SaveOrderReconcile, "aServerURL", "aSessionID", "aSoapNode")
          .BVCONN_OPERATION(GetOrderReconcile, "aServerURL", "aSessionID", "aUID", "aAgentID")
          .BVCONN_OPERATION(GetNewReconicle, "aServerURL", "aSessionID", "aAgentID", "strUIDs?")
          .BVCONN_OPERATION(GetCommissionStatement, "aServerURL", "aSessionID", "aCommKey")
          .BVCONN_OPERATION(GetSAPCommissionStatement, "aServerURL", "aSessionID", "aCommKey")
          .BVCONN_OPERATION(PilferOrderReconcile, "aServerURL", "aSessionID", "aGID")
          .BVCONN_OPERATION(UnlockOrderReconcile, "aServerURL", "aSessionID", "aGID",
                            "blnUnassociate", "aAgentID")
          .BVCONN_OPERATION(AssocInvoiceAndOrderReconcile, "aServerURL", "aSessionID",
                            "aInvoiceNumber", "aReconcileGID", "aAgentID")
          .BVCONN_OPERATION(AutoReconcileSingle, "aServerURL", "aSessionID", "aInvoiceUID",
                            "aAgentID", "strPayPeriodDate?")
          .BVCONN_OPERATION(AutoReconcileMultiple, "aServerURL", "aSessionID", "strUIDs",
                            "aAgentID", "strPayPeriodDate?")
          .BVCONN_OPERATION(GetCommissionRange, "aServerURL", "aSessionID", "aListCount")
          .BVCONN_OPERATION(GetCommissionRangeByAgent, "aServerURL", "aSessionID", "aListCount",
                            "aAgentID")
          .take();
  return info;
}

}  // namespace bvconn::automation
