#include "sandbox/operations/documents.h"

#include "bvconn/platform/soap/variant.h"
#include "sandbox/operations/locks.h"
#include "sandbox/store/documents_tree.h"

namespace bvconn::sandbox {

void refuse_key(std::string_view what, std::string_view field, std::string_view key) {
  const std::string text = "There is no " + std::string(what) + " with the " + std::string(field) +
                           " '" + std::string(key) + "'";
  throw Fault{.code = fault_codes::kClient,
              .text = text,
              .detail = {{std::string(field), std::string(key)}}};
}

std::string key_at(const SoapCall& call, std::size_t index) {
  return to_text(call.parameters.Item(index).Value());
}

SoapNode document_at(const SoapCall& call, std::size_t index) {
  const SoapNode tree = call.parameters.Item(index);
  if (tree.nil()) refuse("'" + tree.Name() + "' is nil, expected a document");
  if (tree.Nodes().Count() == 0 && !to_text(tree.Value()).empty()) {
    refuse("'" + tree.Name() + "' holds a text, expected a document with elements");
  }
  return tree;
}

Document need(SoapCall& call, const DocumentKind& kind, std::string_view key) {
  auto document = call.store.documents().find(key);
  if (!document || document->kind != kind.name) refuse_key(kind.name, kind.key_field, key);
  return std::move(*document);
}

Document need_instrument(SoapCall& call, std::string_view key) {
  auto document = call.store.documents().find(key);
  if (document) {
    for (const DocumentKind* kind : {&kProjectKind, &kQuoteKind, &kOrderKind}) {
      if (document->kind == kind->name) return std::move(*document);
    }
  }
  refuse_key("project, quote or order", "GID", key);
}

const DocumentKind& kind_of(const Document& document) {
  for (const DocumentKind* kind : {&kProjectKind, &kQuoteKind, &kOrderKind, &kRfqKind,
                                   &kAcknowledgementKind, &kSubmittalKind}) {
    if (document.kind == kind->name) return *kind;
  }
  return kRmaKind;
}

SoapNodes begin_answer(SoapCall& call) {
  return append_group(call.results, "return").Nodes();
}

void answer_text(SoapCall& call, std::string_view text) {
  call.results.Create("return", text);
}

Document keep_document(SoapCall& call, const DocumentKind& kind, const SoapNode& tree,
                       std::string_view parent, std::string_view status) {
  Documents documents = call.store.documents();
  Document document;
  document.gid = child_text(tree, kind.key_field);
  if (document.gid.empty()) {
    document.gid = documents.fresh_gid(kind);
    set_child(tree, kind.key_field, document.gid);
  } else if (auto known = documents.find(document.gid)) {
    if (known->kind != kind.name) {
      refuse("'" + document.gid + "' is the key of a document of the kind '" + known->kind +
             "', not '" + std::string(kind.name) + "'");
    }
    document = std::move(*known);
    refuse_lock_of_another(call, document);
  }
  settle_lock(call, kind, document, tree);
  if (!parent.empty()) document.parent = parent;
  if (!status.empty()) set_child(tree, "Status", status);
  documents.keep(kind, document, tree);
  return document;
}

void keep_status(SoapCall& call, const DocumentKind& kind, Document& document,
                 std::string_view status) {
  const SoapNode tree = document.tree();
  set_child(tree, "Status", status);
  call.store.documents().keep(kind, document, tree);
}

void answer_state(SoapCall& call, const DocumentKind& kind, const Document& document) {
  SoapNodes fields = begin_answer(call);
  fields.Create(kind.key_field, document.gid);
  fields.Create("Status", document.status);
  fields.Create("Revision", static_cast<std::int32_t>(document.revision));
}

void add_documents(Operations& operations) {
  for (const auto rows : {project_rows, quote_rows, order_rows, comment_rows, instrument_rows,
                          submittal_rows, rma_rows}) {
    for (const DocumentRow& row : rows()) add_method(operations, row.service, row.method, row.run);
  }
}

}  // namespace bvconn::sandbox
