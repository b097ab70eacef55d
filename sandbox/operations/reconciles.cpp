#include <string>
#include <utility>
#include <vector>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/soap/variant.h"
#include "sandbox/operations/documents.h"
#include "sandbox/operations/keys.h"
#include "sandbox/operations/locks.h"
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

constexpr std::string_view kReconciled = "RECONCILED";

[[noreturn]] void refuse(const char* code, const std::string& text) {
  throw Fault{.code = code, .text = text, .detail = {{"message", text}}};
}

Document need_with_code(SoapCall& call, const std::string& gid, const char* code) {
  auto found = call.store.documents().find(gid);
  if (!found || found->kind != kReconcileKind.name) {
    refuse(code, "There is no order reconcile with the GID '" + gid + "'");
  }
  return std::move(*found);
}

/// An invoice that is closed has been reconciled, and belongs where it is.
void refuse_closed(const Invoice& invoice, const char* code) {
  if (invoice.status != kClosedInvoice) return;
  refuse(code, "The invoice '" + invoice.uid + "' is closed: it has been reconciled");
}

bool is_reconciled(const SoapNode& reconcile) {
  return child_text(reconcile, "Status") == kReconciled;
}

/// The invoices that stand in the lines are paid out with the reconcile.
void close_invoices(SoapCall& call, const SoapNode& reconcile) {
  for (const SoapNode& line : lines_of(reconcile)) {
    call.store.close_invoice(line_key(line));
  }
}

// As with other documents, what is new is not kept before it is saved.
void new_reconcile(SoapCall& call) {
  const std::string gid = call.store.documents().fresh_gid(kReconcileKind);
  const SoapNode tree = reconcile_form(gid, key_at(call, 0));
  if (call.parameters.Count() > 1) {
    for (const std::string& uid : keys_in(call.parameters.Item(1))) {
      const auto invoice = call.store.invoice(uid);
      if (!invoice) refuse_key("invoice", "UID", uid);
      refuse_closed(*invoice, fault_codes::kClient);
      append_invoice_line(tree, *invoice);
    }
  }
  call.results.Append(tree);
}

void get_reconcile(SoapCall& call) {
  Document reconcile = need_with_code(call, key_at(call, 0), kNoSuchReconcile);
  refuse_lock_of_another(call, reconcile, kLockedByAnother);
  call.store.documents().lock(kReconcileKind, reconcile, call.user_id);
  call.results.Append(reconcile.tree());
}

void save_reconcile(SoapCall& call) {
  const SoapNode tree = call.parameters.Item(0);
  if (tree.Nodes().Count() == 0) refuse(kNothingToSave, "The order reconcile has no content");
  set_child(tree, "LockedBy", call.user_id);
  call.results.Append(keep_document(call, kReconcileKind, tree).tree());
  if (is_reconciled(tree)) close_invoices(call, tree);
}

void pilfer_reconcile(SoapCall& call) {
  Document reconcile = need(call, kReconcileKind, key_at(call, 0));
  call.store.documents().lock(kReconcileKind, reconcile, call.user_id);
  answer_text(call, call.user_id);
}

void unlock_reconcile(SoapCall& call) {
  Document reconcile = need_unlocked(call, kReconcileKind, key_at(call, 0));
  Documents documents = call.store.documents();
  if (to_boolean(call.parameters.Item(1).Value())) {
    const SoapNode tree = reconcile.tree();
    if (is_reconciled(tree)) {
      refuse(fault_codes::kClient, "The order reconcile '" + reconcile.gid +
                                       "' is reconciled: its invoices are closed and stay in it");
    }
    set_child(tree, "Lines", SoapNode::make("Lines"));
    documents.keep(kReconcileKind, reconcile, tree);
  }
  documents.lock(kReconcileKind, reconcile, "");
  answer_text(call, "Unlocked");
}

void associate(SoapCall& call) {
  const std::string number = key_at(call, 0);
  const auto invoice = call.store.invoice_by_number(number);
  if (!invoice) refuse(kCannotAssociate, "There is no invoice with the number '" + number + "'");
  refuse_closed(*invoice, kCannotAssociate);
  Document reconcile = need_with_code(call, key_at(call, 1), kCannotAssociate);
  refuse_lock_of_another(call, reconcile, kCannotAssociate);
  Documents documents = call.store.documents();
  if (const auto owner = documents.owner_of_line(kReconcileKind, invoice->uid)) {
    refuse(kCannotAssociate, "The invoice '" + number + "' belongs to '" + *owner + "'");
  }
  const SoapNode tree = reconcile.tree();
  if (is_reconciled(tree)) {
    refuse(kCannotAssociate, "The order reconcile '" + reconcile.gid + "' is reconciled already");
  }
  append_invoice_line(tree, *invoice);
  documents.keep(kReconcileKind, reconcile, tree);
  call.results.Append(tree);
}

/// The pay period that the client wants, or else the invoice's own.
std::string pay_period(const SoapCall& call, const Invoice& invoice) {
  const std::string wanted = key_at(call, 2);
  return conversions::format_text(wanted.empty() ? invoice.pay_period_date : wanted, "mm/dd/yyyy");
}

Invoice need_open_invoice(SoapCall& call, const std::string& uid) {
  auto invoice = call.store.invoice(uid);
  if (!invoice) refuse(kCannotReconcile, "There is no invoice with the UID '" + uid + "'");
  refuse_closed(*invoice, kCannotReconcile);
  return std::move(*invoice);
}

/// Reconciles an invoice where it is, or in a reconcile of its own, and closes it with all others
/// there.
SoapNode reconcile_invoice(SoapCall& call, const Invoice& invoice) {
  const std::string& uid = invoice.uid;
  Documents documents = call.store.documents();
  Document reconcile;
  SoapNode tree;
  if (const auto owner = documents.owner_of_line(kReconcileKind, uid)) {
    reconcile = *documents.find(*owner);
    refuse_lock_of_another(call, reconcile, kCannotReconcile);
    tree = reconcile.tree();
  } else {
    reconcile.gid = documents.fresh_gid(kReconcileKind);
    tree = reconcile_form(reconcile.gid, key_at(call, 1));
    append_invoice_line(tree, invoice);
  }
  set_child(tree, "Status", kReconciled);
  set_child(tree, "PayPeriodDate", pay_period(call, invoice));
  documents.keep(kReconcileKind, reconcile, tree);
  close_invoices(call, tree);
  return tree;
}

void auto_reconcile_single(SoapCall& call) {
  call.results.Append(reconcile_invoice(call, need_open_invoice(call, key_at(call, 0))));
}

void auto_reconcile_multiple(SoapCall& call) {
  // All of them are looked at first: one that belongs with another is closed by its turn.
  std::vector<Invoice> invoices;
  for (const std::string& uid : keys_in(call.parameters.Item(0))) {
    invoices.push_back(need_open_invoice(call, uid));
  }
  SoapNodes answer = begin_answer(call);
  for (const Invoice& each : invoices) answer.Append(reconcile_invoice(call, each));
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
