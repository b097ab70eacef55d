#include "bvconn/automation/class_builder.h"
#include "bvconn/automation/classes/groups.h"
#include "bvconn/connectors/invoice/bv_invoice_connector.h"

namespace bvconn::automation {

// clang-format off
const ClassInfo& invoice_connector_class() {
  using C = BVInvoiceConnector;
  using K = InvoiceSearchCriteria;
  static const ClassInfo info =
      ClassBuilder<C>("BVInvoiceConnector")
          .operation<&C::InvoiceSearch>("InvoiceSearch", {"aServerURL", "aSessionID"},
              {field<&K::strInvoiceNumber>("strInvoiceNumber?"),
               field<&K::strPONumber>("strPONumber?"),
               field<&K::strProjectName>("strProjectName?"),
               field<&K::strManufacturer>("strManufacturer?"),
               field<&K::strManufacturerOrderNumber>("strManufacturerOrderNumber?"),
               field<&K::strStatus>("strStatus?"),
               field<&K::strCustomerGID>("strCustomerGID?"),
               field<&K::strCustomerAccountNumber>("strCustomerAccountNumber?"),
               field<&K::strPartnerID>("strPartnerID?"),
               field<&K::strCustomerSoldToName>("strCustomerSoldToName?"),
               field<&K::strAgent>("strAgent?"),
               field<&K::strTorvexOrderNumber>("strTorvexOrderNumber?"),
               field<&K::strInvoiceDateFrom>("strInvoiceDateFrom?"),
               field<&K::strInvoiceDateTo>("strInvoiceDateTo?"),
               field<&K::strPayPeriodDateFrom>("strPayPeriodDateFrom?"),
               field<&K::strPayPeriodDateTo>("strPayPeriodDateTo?")})
          .operation<&C::GetInvoice>("GetInvoice", {"aServerURL", "aSessionID", "strInvoiceUID"})
          .operation<&C::GetSAPInvoice>("GetSAPInvoice", {"aServerURL", "aSessionID", "strInvoiceUID"})
          .operation<&C::SaveOrderReconcile>("SaveOrderReconcile", {"aServerURL", "aSessionID", "aSoapNode"})
          .operation<&C::GetOrderReconcile>("GetOrderReconcile", {"aServerURL", "aSessionID", "aUID", "aAgentID"})
          .operation<&C::GetNewReconicle>("GetNewReconicle", {"aServerURL", "aSessionID", "aAgentID", "strUIDs?"})
          .operation<&C::GetCommissionStatement>("GetCommissionStatement", {"aServerURL", "aSessionID", "aCommKey"})
          .operation<&C::GetSAPCommissionStatement>("GetSAPCommissionStatement", {"aServerURL", "aSessionID", "aCommKey"})
          .operation<&C::PilferOrderReconcile>("PilferOrderReconcile", {"aServerURL", "aSessionID", "aGID"})
          .operation<&C::UnlockOrderReconcile>("UnlockOrderReconcile", {"aServerURL", "aSessionID", "aGID", "blnUnassociate", "aAgentID"})
          .operation<&C::AssocInvoiceAndOrderReconcile>("AssocInvoiceAndOrderReconcile", {"aServerURL", "aSessionID", "aInvoiceNumber", "aReconcileGID", "aAgentID"})
          .operation<&C::AutoReconcileSingle>("AutoReconcileSingle", {"aServerURL", "aSessionID", "aInvoiceUID", "aAgentID", "strPayPeriodDate?"})
          .operation<&C::AutoReconcileMultiple>("AutoReconcileMultiple", {"aServerURL", "aSessionID", "strUIDs", "aAgentID", "strPayPeriodDate?"})
          .operation<&C::GetCommissionRange>("GetCommissionRange", {"aServerURL", "aSessionID", "aListCount"})
          .operation<&C::GetCommissionRangeByAgent>("GetCommissionRangeByAgent", {"aServerURL", "aSessionID", "aListCount", "aAgentID"})
          .take();
  return info;
}
// clang-format on

}  // namespace bvconn::automation
