#include "bvconn/automation/class_builder.h"
#include "bvconn/automation/classes/groups.h"
#include "bvconn/connectors/invoice/bv_invoice_connector.h"

namespace bvconn::automation {

// clang-format off
const ClassInfo& invoice_connector_class() {
  using C = BVInvoiceConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVInvoiceConnector")
          .operation<&C::GetInvoice>("GetInvoice", {"aServerURL", "aSessionID", "strInvoiceUID"})
          .take();
  return info;
}
// clang-format on

}  // namespace bvconn::automation
