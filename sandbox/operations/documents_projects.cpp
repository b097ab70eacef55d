#include "bvconn/platform/soap/variant.h"
#include "sandbox/operations/documents.h"
#include "sandbox/operations/locks.h"
#include "sandbox/store/documents_forms.h"
#include "sandbox/store/documents_tree.h"

namespace bvconn::sandbox {
namespace {

constexpr const char* kService = "urn:ProjectService";

void get_project(SoapCall& call) {
  call.results.Append(need(call, kProjectKind, key_at(call, 0)).tree());
}

// What is new is not kept before it is saved; only its key is used up.
void new_project(SoapCall& call) {
  const std::string gid = call.store.documents().fresh_gid(kProjectKind);
  call.results.Append(empty_instrument("Project", kProjectKind, gid));
}

void copy_project(SoapCall& call) {
  const SoapNode copy = need(call, kProjectKind, key_at(call, 0)).tree();
  const std::string gid = call.store.documents().fresh_gid(kProjectKind);
  set_child(copy, "GID", gid);
  set_child(copy, "Status", "NEW");
  set_child(copy, "LockedBy", "");
  const SoapNode fresh = empty_instrument("Project", kProjectKind, gid);
  set_child(copy, "ProjectNumber", child_text(fresh, "ProjectNumber"));
  number_lines(copy, gid);
  call.results.Append(copy);
}

void revert(SoapCall& call) {
  Document project = need_unlocked(call, kProjectKind, key_at(call, 0));
  call.store.documents().revert(kProjectKind, project);
  call.results.Append(project.tree());
}

void save(SoapCall& call) {
  const Document project = keep_document(call, kProjectKind, document_at(call, 0));
  answer_state(call, kProjectKind, project);
}

void request_review(SoapCall& call) {
  const SoapNode tree = document_at(call, 0);
  answer_state(call, kProjectKind, keep_document(call, kProjectKind, tree, {}, "IN REVIEW"));
}

void return_to_agent(SoapCall& call) {
  const SoapNode tree = document_at(call, 0);
  answer_state(call, kProjectKind, keep_document(call, kProjectKind, tree, {}, "RETURNED"));
}

void check_save_status(SoapCall& call) {
  const Document project = need(call, kProjectKind, key_at(call, 0));
  SoapNodes fields = begin_answer(call);
  fields.Create("GID", project.gid);
  fields.Create("SaveStatus", "COMPLETE");
  fields.Create("Revision", static_cast<std::int32_t>(project.revision));
}

/// The project that quotes are asked for: a key, or a whole project, which is saved first.
Document project_of_quotes(SoapCall& call) {
  const SoapNode project = call.parameters.Item(0);
  if (project.nil()) refuse("'Project' is nil, expected a key or a project");
  if (project.Nodes().Count() == 0) return need(call, kProjectKind, to_text(project.Value()));
  return keep_document(call, kProjectKind, project);
}

/// Makes a quote; `wanted`, which may be an empty reference, can name its customer.
Document make_quote(SoapCall& call, const Document& project, const SoapNode& wanted) {
  Documents documents = call.store.documents();
  Document quote;
  quote.gid = documents.fresh_gid(kQuoteKind);
  quote.parent = project.gid;
  const SoapNode tree = quote_form(quote.gid, project.tree(), project.gid);
  const std::string customer = wanted ? child_text(wanted, "CustomerGID") : std::string();
  if (!customer.empty()) {
    const auto name = documents.customer_name(customer);
    if (!name) refuse_key("customer", "CustomerGID", customer);
    set_customer(tree, customer, *name);
  }
  documents.keep(kQuoteKind, quote, tree);
  return quote;
}

void generate_quotes(SoapCall& call) {
  const Document project = project_of_quotes(call);
  std::vector<SoapNode> wanted;
  for (const SoapNode& each : call.parameters.Item(1).Nodes()) wanted.push_back(each);
  if (wanted.empty()) wanted.emplace_back();
  SoapNodes answer = begin_answer(call);
  for (const SoapNode& each : wanted) {
    const Document quote = make_quote(call, project, each);
    SoapNodes fields = append_group(answer, "Quote").Nodes();
    fields.Create("GID", quote.gid);
    fields.Create("QuoteNumber", quote.number);
  }
}

}  // namespace

std::vector<DocumentRow> project_rows() {
  return {{kService, "getProject", get_project},
          {kService, "newProject", new_project},
          {kService, "copyProject", copy_project},
          {kService, "revert", revert},
          {kService, "save", save},
          {kService, "requestReview", request_review},
          {kService, "returnToAgent", return_to_agent},
          {kService, "checkSaveStatus", check_save_status},
          {kService, "generateQuotes", generate_quotes}};
}

}  // namespace bvconn::sandbox
