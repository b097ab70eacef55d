#include "sandbox/operations/operations.h"

#include <utility>

namespace bvconn::sandbox {
namespace {

Method in_transaction(Method method) {
  return [method = std::move(method)](SoapCall& call) {
    Transaction transaction = call.sandbox.store.transaction();
    method(call);
    transaction.commit();
  };
}

}  // namespace

void refuse(const std::string& text) {
  throw Fault{.code = fault_codes::kClient, .text = text, .detail = {{"message", text}}};
}

void add_method(Operations& operations, const std::string& service, const std::string& name,
                Method method) {
  operations.soap[{service, name}] = in_transaction(std::move(method));
}

void add_dal_method(Operations& operations, const std::string& object, const std::string& operation,
                    Method method) {
  operations.dal_alone[{object, operation}] = in_transaction(std::move(method));
}

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
