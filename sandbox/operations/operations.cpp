#include "sandbox/operations/operations.h"

#include <string_view>
#include <utility>

namespace bvconn::sandbox {
namespace {

/// What a method's name tells: those that only look things up need not wait for those that write.
/// One that is taken for such and writes all the same fails.
Turn turn_of(std::string_view name) {
  // These make a key and take a lock.
  if (name.starts_with("getNew") || name == "getOrderReconcile") return Turn::kStore;
  const auto begins = [&](std::string_view word) { return name.starts_with(word); };
  const bool looks_up = begins("get") || begins("search") || begins("Search");
  return looks_up ? Turn::kNone : Turn::kStore;
}

}  // namespace

void refuse(const std::string& text) {
  throw Fault{.code = fault_codes::kClient, .text = text, .detail = {{"message", text}}};
}

void add_method(Operations& operations, const std::string& service, const std::string& name,
                Method method) {
  operations.soap[{service, name}] = {.run = std::move(method), .turn = turn_of(name)};
}

void add_dal_method(Operations& operations, const std::string& object, const std::string& operation,
                    Method method) {
  operations.dal_alone[{object, operation}] = {.run = std::move(method),
                                               .turn = turn_of(operation)};
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
