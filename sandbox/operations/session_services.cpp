#include <cstdint>
#include <string>

#include "bvconn/automation/interface.h"
#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/soap/xml_document.h"
#include "sandbox/operations/documents.h"
#include "sandbox/operations/keys.h"
#include "sandbox/operations/locks.h"
#include "sandbox/store/documents_tree.h"

namespace bvconn::sandbox {
namespace {

constexpr const char* kPostal = "urn:Postal";
constexpr const char* kOrders = "urn:OrderService";

/// With their states, unless a client wants to load those only when it needs them.
void get_countries(SoapCall& call) {
  const bool lazily = to_boolean(call.parameters.Item(0).Value());
  SoapNodes answer = begin_answer(call);
  for (const Entry& each : call.store.entries().all("country", "")) {
    const SoapNode country = node_from_xml(each.body);
    if (!lazily) {
      answer.Append(country);
      continue;
    }
    SoapNodes fields = append_group(answer, "Country").Nodes();
    fields.Create("Code", child_text(country, "Code"));
    fields.Create("Name", child_text(country, "Name"));
  }
}

void export_complete(SoapCall& call) {
  Document order = need_unlocked(call, kOrderKind, key_at(call, 0));
  const SoapNode tree = order.tree();
  set_child(tree, "Exported", true);
  call.store.documents().keep(kOrderKind, order, tree);
  SoapNodes fields = begin_answer(call);
  fields.Create("GID", order.gid);
  fields.Create("Exported", true);
}

void append_file(SoapCall& call, const Document& document) {
  SoapNodes fields = begin_answer(call);
  fields.Create("GID", document.gid);
  fields.Create("Kind", document.kind);
  fields.Create("FileName", document.number + ".pdf");
  fields.Create("Address", "http://torvex.brimvale.example/files/" + document.gid + ".pdf");
}

/// One result for the object itself, and one for each document that hangs on it.
void get_documents(SoapCall& call) {
  const std::string gid = key_at(call, 0);
  Documents documents = call.store.documents();
  const auto object = documents.find(gid);
  if (!object) refuse_key("object", "GID", gid);
  append_file(call, *object);
  for (const DocumentKind* kind :
       {&kQuoteKind, &kOrderKind, &kRfqKind, &kAcknowledgementKind, &kSubmittalKind}) {
    for (const Document& each : documents.children(*kind, gid)) append_file(call, each);
  }
}

void append_configuration(SoapNodes products, const Document& document, const SoapNode& line) {
  SoapNodes fields = append_group(products, "ConfiguredProduct").Nodes();
  fields.Create("SalesInstrumentGID", document.gid);
  fields.Create("LineItemGID", line_key(line));
  fields.Create("CatalogNumber", child_text(line, "CatalogNumber"));
  SoapNodes options = append_group(fields, "Options").Nodes();
  SoapNodes packing = append_group(options, "Option").Nodes();
  packing.Create("Name", "Packed by");
  packing.Create("Value", child_text(line, "Unit"));
}

void get_configuration(SoapCall& call) {
  const auto gids = keys_in(call.parameters.Item(0));
  if (gids.empty()) refuse("'aGuids' has no keys");
  SoapNodes products = append_group(call.results, "GetConfigXMLResult").Nodes();
  for (const std::string& gid : gids) {
    const Document document = need_instrument(call, gid);
    const SoapNode tree = document.tree();
    for (const SoapNode& line : lines_of(tree)) append_configuration(products, document, line);
  }
}

// The namespaces that belong to the deployment are whatever the library was built with.
std::string service(std::string_view row) {
  return automation::find_class("BVServices")->find(row)->constant->string();
}

}  // namespace

void add_session_services(Operations& operations) {
  add_method(operations, kPostal, "getCountries", get_countries);
  add_method(operations, kOrders, "exportComplete", export_complete);
  add_method(operations, service("TorvexService"), "getDocuments", get_documents);
  add_method(operations, service("ConfigService"), "GetConfigXML", get_configuration);
}

}  // namespace bvconn::sandbox
