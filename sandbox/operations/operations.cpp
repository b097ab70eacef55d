#include "sandbox/operations/operations.h"

namespace bvconn::sandbox {

Operations all_operations() {
  Operations operations;
  add_authentication(operations);
  add_heart_beat(operations);
  add_invoices(operations);
  add_documents(operations);
  add_reconciles(operations);
  add_commissions(operations);
  add_texts(operations);
  add_maintenance(operations);
  add_printing(operations);
  add_summaries(operations);
  add_session_services(operations);
  add_searches(operations);
  return operations;
}

}  // namespace bvconn::sandbox
