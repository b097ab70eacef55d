#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "bvconn/platform/conversions/nearest_names.h"
#include "bvconn/platform/soap/xml_document.h"
#include "sandbox/admin/admin.h"
#include "sandbox/operations/invoice_tree.h"
#include "sandbox/store/reconciles.h"

namespace bvconn::sandbox {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::int64_t kMostRows = 200;
constexpr std::string_view kInvoice = "invoice";
constexpr std::array<const DocumentKind*, 8> kKinds{
    &kProjectKind,         &kQuoteKind,     &kOrderKind, &kRfqKind,
    &kAcknowledgementKind, &kSubmittalKind, &kRmaKind,   &kReconcileKind};

Json document_json(const Document& document) {
  return {{"key", document.gid},          {"kind", document.kind},
          {"number", document.number},    {"status", document.status},
          {"parent", document.parent},    {"lockedBy", document.locked_by},
          {"revision", document.revision}};
}

Json invoice_json(const Invoice& invoice) {
  return {{"key", invoice.uid},
          {"kind", kInvoice},
          {"number", invoice.invoice_number},
          {"status", invoice.status},
          {"parent", invoice.torvex_order_number},
          {"lockedBy", ""},
          {"revision", 0}};
}

std::string invoice_xml(const Invoice& invoice) {
  const SoapNode tree = node_from_xml("<Invoice/>");
  append_invoice(tree.Nodes(), invoice);
  return node_to_xml(tree);
}

/// How many there are of each kind.
Json kinds_json(Store& store) {
  auto kinds = Json::array();
  for (const DocumentKind* each : kKinds) {
    kinds.push_back({{"kind", each->name}, {"count", store.documents().count(*each)}});
  }
  kinds.push_back({{"kind", kInvoice}, {"count", store.invoices({}).size()}});
  return kinds;
}

const DocumentKind& kind_named(const std::string& name) {
  std::vector<std::string> names{std::string(kInvoice)};
  for (const DocumentKind* each : kKinds) {
    if (each->name == name) return *each;
    names.emplace_back(each->name);
  }
  throw AdminRefusal{
      400, "There are no documents of the kind '" + name + "'" + did_you_mean(name, names)};
}

/// In the order of the keys, from behind one of them on.
Json rows_of(Store& store, const std::string& kind, const std::string& after) {
  auto rows = Json::array();
  if (kind != kInvoice) {
    for (const Document& each : store.documents().list(kind_named(kind), after, kMostRows)) {
      rows.push_back(document_json(each));
    }
    return rows;
  }
  for (const Invoice& each : store.invoices({})) {
    if (each.uid > after && std::ssize(rows) < kMostRows) rows.push_back(invoice_json(each));
  }
  return rows;
}

}  // namespace

Reply list_documents(AdminCall& call) {
  expect_query(call, {"kind", "after"});
  const HeldStore held = call.sandbox.stores.hold(Turn::kNone);
  Store& store = *held;
  auto transaction = store.transaction(Turn::kNone);
  const auto kind = call.query.find("kind");
  Json body = kind == call.query.end()
                  ? Json{{"kinds", kinds_json(store)}}
                  : Json{{"documents", rows_of(store, kind->second, call.query["after"])}};
  transaction.commit();
  return json_reply(200, json_text(body) + "\n");
}

Reply get_document(AdminCall& call) {
  expect_query(call, {});
  const HeldStore held = call.sandbox.stores.hold(Turn::kNone);
  Store& store = *held;
  auto transaction = store.transaction(Turn::kNone);
  Json body;
  if (const auto document = store.documents().find(call.below)) {
    body = document_json(*document);
    body["xml"] = document->body;
  } else if (const auto invoice = store.invoice(call.below)) {
    body = invoice_json(*invoice);
    body["xml"] = invoice_xml(*invoice);
  } else {
    throw AdminRefusal{404, "There is no document with the key '" + call.below + "'"};
  }
  transaction.commit();
  return json_reply(200, json_text(body) + "\n");
}

}  // namespace bvconn::sandbox
