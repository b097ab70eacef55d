#include "bvconn/platform/soap/variant.h"
#include "sandbox/operations/documents.h"
#include "sandbox/operations/locks.h"
#include "sandbox/operations/searches.h"
#include "sandbox/operations/today.h"
#include "sandbox/store/documents_forms.h"
#include "sandbox/store/documents_tree.h"

namespace bvconn::sandbox {
namespace {

constexpr const char* kProjects = "urn:ProjectService";
constexpr const char* kOrders = "urn:OrderService";
constexpr const char* kInstruments = "urn:SalesInstrumentService";
constexpr const char* kZelt = "urn:ZeltViewService";

void convert_to_template(SoapCall& call) {
  Document project = need_unlocked(call, kProjectKind, key_at(call, 0));
  const SoapNode tree = project.tree();
  set_child(tree, "Template", true);
  call.store.documents().keep(kProjectKind, project, tree);
  answer_state(call, kProjectKind, project);
}

/// Any project can serve as a template. What is made is kept at once.
void copy_project_from_template(SoapCall& call) {
  const SoapNode tree = need(call, kProjectKind, key_at(call, 0)).tree();
  Documents documents = call.store.documents();
  Document project;
  project.gid = documents.fresh_gid(kProjectKind);
  const SoapNode fresh = empty_instrument("Project", kProjectKind, project.gid);
  set_child(tree, "GID", project.gid);
  set_child(tree, "ProjectNumber", child_text(fresh, "ProjectNumber"));
  set_child(tree, "Status", "NEW");
  set_child(tree, "LockedBy", "");
  set_child(tree, "Template", false);
  set_child(tree, "Active", true);
  number_lines(tree, project.gid);
  documents.keep(kProjectKind, project, tree);
  call.results.Append(tree);
}

void create_order_from_template(SoapCall& call) {
  const SoapNode project = need(call, kProjectKind, key_at(call, 0)).tree();
  Documents documents = call.store.documents();
  Document order;
  order.gid = documents.fresh_gid(kOrderKind);
  const SoapNode tree = order_form(order.gid, project);
  set_child(tree, "QuoteGID", "");
  set_child(tree, "ProjectGID", key_at(call, 0));
  if (const std::string name = key_at(call, 1); !name.empty()) set_child(tree, "Name", name);
  set_child(tree, "City", key_at(call, 2));
  set_child(tree, "State", key_at(call, 3));
  set_child(tree, "CreateDate", today());
  documents.keep(kOrderKind, order, tree);
  call.results.Append(tree);
}

void deactivate(SoapCall& call) {
  Document document = need_instrument_unlocked(call, key_at(call, 0));
  const SoapNode tree = document.tree();
  set_child(tree, "Active", false);
  const DocumentKind& kind = kind_of(document);
  call.store.documents().keep(kind, document, tree);
  answer_state(call, kind, document);
}

void get_carrier_tracking_url(SoapCall& call) {
  answer_text(call, "http://carriers.example/" + key_at(call, 0) + "/" + key_at(call, 1));
}

}  // namespace

void add_templates(Operations& operations) {
  add_method(operations, kProjects, "convertToTemplate", convert_to_template);
  add_method(operations, kProjects, "copyProjectFromTemplate", copy_project_from_template);
  add_method(operations, kOrders, "createOrderFromTemplate", create_order_from_template);
  add_method(operations, kInstruments, "deactivate", deactivate);
  add_method(operations, kZelt, "getCarrierTrackingURL", get_carrier_tracking_url);
}

}  // namespace bvconn::sandbox
