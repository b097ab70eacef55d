#include <string>
#include <utility>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/soap/variant.h"
#include "sandbox/operations/documents.h"
#include "sandbox/operations/keys.h"
#include "sandbox/store/documents_tree.h"
#include "sandbox/store/reconciles.h"

namespace bvconn::sandbox {
namespace {

constexpr const char* kService = "urn:InvoiceService";

// The codes with which the server says what is wrong.
constexpr const char* kNoSuchReconcile = "10011";
constexpr const char* kLockedByAnother = "10012";
constexpr const char* kCannotAssociate = "10061";
constexpr const char* kCannotReconcile = "10071";
constexpr const char* kNothingToSave = "10081";

[[noreturn]] void refuse(const char* code, const std::string& text) {
  throw Fault{.code = code, .text = text, .detail = {{"message", text}}};
}

void refuse_lock_of_another(const SoapCall& call, const Document& reconcile, const char* code) {
  if (reconcile.locked_by.empty() || reconcile.locked_by == call.user_id) return;
  refuse(code,
         "The order reconcile '" + reconcile.gid + "' is locked by '" + reconcile.locked_by + "'");
}

Document need_with_code(SoapCall& call, const std::string& gid, const char* code) {
  auto found = call.sandbox.store.documents().find(gid);
  if (!found || found->kind != kReconcileKind.name) {
    refuse(code, "There is no order reconcile with the GID '" + gid + "'");
  }
  return std::move(*found);
}

/// Keeps the document with this lock.
void keep_locked(SoapCall& call, Document& reconcile, const SoapNode& tree,
                 std::string_view locked_by) {
  set_child(tree, "LockedBy", locked_by);
  call.sandbox.store.documents().keep(kReconcileKind, reconcile, tree);
}

// As with other documents, what is new is not kept before it is saved.
void new_reconcile(SoapCall& call) {
  const std::string gid = call.sandbox.store.documents().fresh_gid(kReconcileKind);
  const SoapNode tree = reconcile_form(gid, key_at(call, 0));
  if (call.parameters.Count() > 1) {
    for (const std::string& uid : keys_in(call.parameters.Item(1))) {
      const auto invoice = call.sandbox.store.invoice(uid);
      if (!invoice) refuse_key("invoice", "UID", uid);
      append_invoice_line(tree, *invoice);
    }
  }
  call.results.Append(tree);
}

void get_reconcile(SoapCall& call) {
  Document reconcile = need_with_code(call, key_at(call, 0), kNoSuchReconcile);
  refuse_lock_of_another(call, reconcile, kLockedByAnother);
  const SoapNode tree = reconcile.tree();
  if (reconcile.locked_by != call.user_id) keep_locked(call, reconcile, tree, call.user_id);
  call.results.Append(tree);
}

void save_reconcile(SoapCall& call) {
  const SoapNode tree = call.parameters.Item(0);
  if (tree.Nodes().Count() == 0) refuse(kNothingToSave, "The order reconcile has no content");
  const auto known = call.sandbox.store.documents().find(child_text(tree, "GID"));
  if (known) refuse_lock_of_another(call, *known, fault_codes::kClient);
  set_child(tree, "LockedBy", call.user_id);
  call.results.Append(keep_document(call, kReconcileKind, tree).tree());
}

void pilfer_reconcile(SoapCall& call) {
  Document reconcile = need(call, kReconcileKind, key_at(call, 0));
  keep_locked(call, reconcile, reconcile.tree(), call.user_id);
  answer_text(call, call.user_id);
}

void unlock_reconcile(SoapCall& call) {
  Document reconcile = need(call, kReconcileKind, key_at(call, 0));
  refuse_lock_of_another(call, reconcile, fault_codes::kClient);
  const SoapNode tree = reconcile.tree();
  if (to_boolean(call.parameters.Item(1).Value())) {
    set_child(tree, "Lines", SoapNode::make("Lines"));
  }
  keep_locked(call, reconcile, tree, "");
  answer_text(call, "Unlocked");
}

void associate(SoapCall& call) {
  const std::string number = key_at(call, 0);
  const auto invoice = call.sandbox.store.invoice_by_number(number);
  if (!invoice) refuse(kCannotAssociate, "There is no invoice with the number '" + number + "'");
  Document reconcile = need_with_code(call, key_at(call, 1), kCannotAssociate);
  refuse_lock_of_another(call, reconcile, kCannotAssociate);
  Documents documents = call.sandbox.store.documents();
  if (const auto owner = documents.owner_of_line(kReconcileKind, invoice->uid)) {
    refuse(kCannotAssociate, "The invoice '" + number + "' belongs to '" + *owner + "'");
  }
  const SoapNode tree = reconcile.tree();
  append_invoice_line(tree, *invoice);
  documents.keep(kReconcileKind, reconcile, tree);
  call.results.Append(tree);
}

/// The pay period that the client wants, or else the invoice's own.
std::string pay_period(const SoapCall& call, const Invoice& invoice) {
  const std::string wanted = key_at(call, 2);
  return conversions::format_text(wanted.empty() ? invoice.pay_period_date : wanted, "mm/dd/yyyy");
}

/// Reconciles an invoice where it is, or in a reconcile of its own.
SoapNode reconcile_invoice(SoapCall& call, const std::string& uid) {
  const auto invoice = call.sandbox.store.invoice(uid);
  if (!invoice) refuse(kCannotReconcile, "There is no invoice with the UID '" + uid + "'");
  Documents documents = call.sandbox.store.documents();
  Document reconcile;
  SoapNode tree;
  if (const auto owner = documents.owner_of_line(kReconcileKind, uid)) {
    reconcile = *documents.find(*owner);
    refuse_lock_of_another(call, reconcile, kCannotReconcile);
    tree = reconcile.tree();
  } else {
    reconcile.gid = documents.fresh_gid(kReconcileKind);
    tree = reconcile_form(reconcile.gid, key_at(call, 1));
    append_invoice_line(tree, *invoice);
  }
  set_child(tree, "Status", "RECONCILED");
  set_child(tree, "PayPeriodDate", pay_period(call, *invoice));
  documents.keep(kReconcileKind, reconcile, tree);
  return tree;
}

void auto_reconcile_single(SoapCall& call) {
  call.results.Append(reconcile_invoice(call, key_at(call, 0)));
}

void auto_reconcile_multiple(SoapCall& call) {
  SoapNodes answer = begin_answer(call);
  for (const std::string& uid : keys_in(call.parameters.Item(0))) {
    answer.Append(reconcile_invoice(call, uid));
  }
}

}  // namespace

void add_reconciles(Operations& operations) {
  add_method(operations, kService, "getNewReconcile", new_reconcile);
  add_method(operations, kService, "getOrderReconcile", get_reconcile);
  add_method(operations, kService, "saveOrderReconcile", save_reconcile);
  add_method(operations, kService, "pilferOrderReconcile", pilfer_reconcile);
  add_method(operations, kService, "unlockOrderReconcile", unlock_reconcile);
  add_method(operations, kService, "assocInvoiceAndOrderReconcile", associate);
  add_method(operations, kService, "autoReconcileSingle", auto_reconcile_single);
  add_method(operations, kService, "autoReconcileMultiple", auto_reconcile_multiple);
}

}  // namespace bvconn::sandbox
