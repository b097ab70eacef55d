#include <string>

#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/soap/xml_document.h"
#include "sandbox/operations/defaults.h"
#include "sandbox/operations/documents.h"
#include "sandbox/store/documents_tree.h"

namespace bvconn::sandbox {
namespace {

constexpr const char* kService = "urn:PrintingService";

constexpr DocumentKind kPrintouts{"printout", "PRN-", 11'001, "UID", "UID"};

Method list_of(const char* kind) {
  return [kind](SoapCall& call) {
    SoapNodes answer = begin_answer(call);
    for (const Entry& each : call.store.entries().all(kind, "")) {
      answer.Append(node_from_xml(each.body));
    }
  };
}

/// The first that there is: the user's, where it is asked for, the agent's, the house's.
std::string print_info_in_force(SoapCall& call, const std::string& kind, bool of_user,
                                const SoapNode& printout) {
  std::string uid;
  if (of_user) uid = user_default(call, kind);
  if (uid.empty()) uid = agent_default(call, kind);
  return uid.empty() ? child_text(printout, "PrintInfoUID") : uid;
}

void get_defaults(SoapCall& call, const std::string& kind) {
  const bool of_user = to_boolean(call.parameters.Item(0).Value());
  const SoapNode printout = house_default(call, kind);
  SoapNodes fields = begin_answer(call);
  fields.Create("Kind", kind);
  fields.Create("Owner", of_user ? "USER" : "AGENT");
  fields.Create("PrintInfoUID", print_info_in_force(call, kind, of_user, printout));
  fields.Append(printout);
}

/// A printout that was saved, or for the key of a document what would be printed of it.
void get_printout(SoapCall& call, const std::string& root, const DocumentKind& document_kind) {
  const std::string uid = key_at(call, 0);
  const auto saved = call.store.entries().find(root, "", uid);
  if (saved) {
    call.results.Append(node_from_xml(*saved));
    return;
  }
  const auto document = call.store.documents().find(uid);
  if (!document || document->kind != document_kind.name) refuse_key("printout", "UID", uid);
  SoapNode printout = SoapNode::make(root);
  printout.Nodes().Create("UID", uid);
  printout.Nodes().Append(document->tree());
  call.results.Append(printout);
}

void save_printout(SoapCall& call, const std::string& root) {
  const SoapNode tree = call.parameters.Item(0);
  if (tree.Nodes().Count() == 0) {
    refuse("'" + tree.Name() + "' has no content, expected a printout");
  }
  Entries entries = call.store.entries();
  std::string uid = child_text(tree, "UID");
  if (uid.empty()) {
    do {
      uid = call.store.documents().fresh_gid(kPrintouts);
    } while (entries.find(root, "", uid));
    set_child(tree, "UID", uid);
  }
  entries.keep(root, "", uid, node_to_xml(tree));
  call.results.Append(tree);
}

void add_printouts(Operations& operations, const std::string& name, const DocumentKind& kind) {
  const std::string root = name + "Printout";
  add_method(operations, kService, "get" + name + "Print",
             [root, &kind](SoapCall& call) { get_printout(call, root, kind); });
  add_method(operations, kService, "save" + name + "Print",
             [root](SoapCall& call) { save_printout(call, root); });
}

/// What a request to a manufacturer needs of a quote or a project: his lines.
template <const DocumentKind& kKind>
void get_rfq_info(SoapCall& call) {
  const Document document = need(call, kKind, key_at(call, 0));
  const std::string manufacturer = key_at(call, 1);
  const auto name = call.store.documents().manufacturer_name(manufacturer);
  if (!name) refuse_key("manufacturer", "GID", manufacturer);
  const SoapNode tree = document.tree();
  SoapNodes fields = begin_answer(call);
  fields.Create("GID", document.gid);
  fields.Create("Name", child_text(tree, "Name"));
  fields.Create("ManufacturerGID", manufacturer);
  fields.Create("ManufacturerName", *name);
  SoapNodes lines = append_group(fields, "Lines").Nodes();
  for (const SoapNode& line : lines_of(tree)) {
    if (child_text(line, "Manufacturer") == *name) lines.Append(line);
  }
}

}  // namespace

void add_printing(Operations& operations) {
  add_method(operations, kService, "getPrintInfos", list_of("print info"));
  add_method(operations, kService, "getPrintTemplates", list_of("print template"));
  for (const std::string kind : {"Quote", "Order", "Project", "RFQ", "SAP"}) {
    const std::string name = kind + "PrintoutDefaults";
    add_method(operations, kService, "get" + name,
               [kind](SoapCall& call) { get_defaults(call, kind); });
  }
  add_printouts(operations, "Quote", kQuoteKind);
  add_printouts(operations, "Order", kOrderKind);
  add_printouts(operations, "RFQ", kRfqKind);

  add_method(operations, "urn:SearchService", "searchForProposalComments",
             list_of("proposal comment"));
  add_method(operations, "urn:QuoteService", "getRFQAuxiliaryInfo", get_rfq_info<kQuoteKind>);
  add_method(operations, "urn:ProjectService", "getRFQFromProjAuxInfo", get_rfq_info<kProjectKind>);
}

}  // namespace bvconn::sandbox
