#include <string>

#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/soap/xml_document.h"
#include "sandbox/operations/documents.h"
#include "sandbox/operations/keys.h"
#include "sandbox/store/documents_tree.h"

namespace bvconn::sandbox {
namespace {

constexpr const char* kService = "urn:MaintenanceService";

/// Paragraphs or remarks. All users share them.
using TextKind = DocumentKind;
constexpr TextKind kParagraphs{"paragraph", "PAR-", 501, "UID", "UID"};
constexpr TextKind kRemarks{"remark", "RMK-", 601, "UID", "UID"};

void refuse_what_is_no_text(const SoapNode& tree) {
  if (tree.Nodes().Count() != 0) return;
  refuse("'" + tree.Name() + "' has no content, expected elements");
}

void need_text(SoapCall& call, const TextKind& kind, const std::string& uid) {
  if (!call.store.entries().find(kind.name, "", uid)) {
    refuse_key(kind.name, kind.key_field, uid);
  }
}

void get_all(SoapCall& call, const TextKind& kind) {
  SoapNodes answer = begin_answer(call);
  for (const Entry& each : call.store.entries().all(kind.name, "")) {
    answer.Append(node_from_xml(each.body));
  }
}

void create(SoapCall& call, const TextKind& kind) {
  const SoapNode tree = call.parameters.Item(0);
  refuse_what_is_no_text(tree);
  Entries entries = call.store.entries();
  std::string uid = child_text(tree, kind.key_field);
  if (!uid.empty() && entries.find(kind.name, "", uid)) {
    refuse("There is a " + std::string(kind.name) + " with the UID '" + uid + "' already");
  }
  // Clients may have made texts under keys of their own choice.
  while (uid.empty() || entries.find(kind.name, "", uid)) {
    uid = call.store.documents().fresh_gid(kind);
  }
  set_child(tree, kind.key_field, uid);
  entries.keep(kind.name, "", uid, node_to_xml(tree));
  call.results.Append(tree);
}

void update(SoapCall& call, const TextKind& kind) {
  const SoapNode tree = call.parameters.Item(0);
  refuse_what_is_no_text(tree);
  const std::string uid = child_text(tree, kind.key_field);
  need_text(call, kind, uid);
  call.store.entries().keep(kind.name, "", uid, node_to_xml(tree));
  answer_text(call, "Updated");
}

void remove(SoapCall& call, const TextKind& kind) {
  const std::string uid = key_at(call, 0);
  need_text(call, kind, uid);
  call.store.entries().remove(kind.name, "", uid);
  answer_text(call, "Deleted");
}

void order(SoapCall& call, const TextKind& kind) {
  const auto uids = keys_in(call.parameters.Item(0));
  for (const std::string& uid : uids) need_text(call, kind, uid);
  call.store.entries().order(kind.name, "", uids);
  answer_text(call, "Ordered");
}

void add_kind(Operations& operations, const TextKind& kind, const std::string& name) {
  using Run = void (*)(SoapCall&, const TextKind&);
  const auto add = [&](const std::string& method, Run run) {
    add_method(operations, kService, method, [run, &kind](SoapCall& call) { run(call, kind); });
  };
  add("getAll" + name + "s", get_all);
  add("create" + name, create);
  add("update" + name, update);
  add("delete" + name, remove);
  add("order" + name + "s", order);
}

}  // namespace

void add_texts(Operations& operations) {
  add_kind(operations, kParagraphs, "Paragraph");
  add_kind(operations, kRemarks, "Remark");
}

}  // namespace bvconn::sandbox
