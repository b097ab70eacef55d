#include "sandbox/operations/operations.h"

namespace bvconn::sandbox {

Operations all_operations() {
  Operations operations;
  add_authentication(operations);
  add_heart_beat(operations);
  add_invoices(operations);
  add_documents(operations);
  return operations;
}

}  // namespace bvconn::sandbox
