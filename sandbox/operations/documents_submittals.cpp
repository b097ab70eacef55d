#include <array>

#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/soap/xml_document.h"
#include "sandbox/operations/documents.h"
#include "sandbox/store/documents_tree.h"

namespace bvconn::sandbox {
namespace {

constexpr const char* kService = "urn:SubmittalService";
constexpr std::string_view kSuperseded = "SUPERSEDED";
constexpr std::string_view kSubmitted = "SUBMITTED";

struct StockText {
  std::string_view code, text;
};

constexpr std::array kParagraphs{
    StockText{"P10", "All dimensions are to be checked on site before ordering."},
    StockText{"P20", "Products are supplied as listed; substitutes need approval in writing."},
    StockText{"P30", "Colours in print may differ from those of the products."},
    StockText{"P40", "Lead times count from the approval of the drawings."},
};
constexpr std::array kRemarks{
    StockText{"R1", "For approval"},
    StockText{"R2", "For your records"},
    StockText{"R3", "As requested"},
};

void append_texts(SoapCall& call, std::string_view name, const auto& texts) {
  SoapNodes answer = begin_answer(call);
  for (const StockText& each : texts) {
    SoapNodes fields = append_group(answer, name).Nodes();
    fields.Create("Code", each.code);
    fields.Create("Text", each.text);
  }
}

void get_all_paragraphs(SoapCall& call) {
  append_texts(call, "Paragraph", kParagraphs);
}

void get_all_remarks(SoapCall& call) {
  append_texts(call, "Remark", kRemarks);
}

void get_submittal(SoapCall& call) {
  call.results.Append(need(call, kSubmittalKind, key_at(call, 0)).tree());
}

void get_criteria(SoapCall& call) {
  const Document submittal = need(call, kSubmittalKind, key_at(call, 0));
  SoapNodes answer = begin_answer(call);
  answer.Create("UID", submittal.gid);
  if (const SoapNode criteria = child(submittal.tree(), "Criteria")) answer.Append(criteria);
}

/// The keys of one line item or of a list of them.
std::vector<std::string> line_keys(const SoapNode& parameter) {
  const Variant value = parameter.Value();
  if (!value.is(Variant::Type::kArray)) return {to_text(value)};
  std::vector<std::string> keys;
  for (const Variant& each : value.array().items()) keys.push_back(to_text(each));
  return keys;
}

void get_line_comments(SoapCall& call) {
  const bool of_project = to_boolean(call.parameters.Item(1).Value());
  const DocumentKind& kind = of_project ? kProjectKind : kQuoteKind;
  const auto keys = line_keys(call.parameters.Item(0));
  Documents documents = call.store.documents();
  SoapNodes answer = begin_answer(call);
  for (const std::string& key : keys) {
    if (!documents.owner_of_line(kind, key)) {
      refuse_key("line of a " + std::string(kind.name), "LineItemGID", key);
    }
    SoapNodes fields = append_group(answer, "LineItem").Nodes();
    fields.Create("LineItemGID", key);
    for (const std::string& body : documents.submittal_comments(kind, key)) {
      fields.Append(node_from_xml(body));
    }
  }
}

/// The project or quote that a submittal belongs to; "" for one that names none.
std::string owner_named_in(SoapCall& call, const SoapNode& tree) {
  for (const char* name : {"OwnerGID", "ProjectGID", "QuoteGID"}) {
    const std::string gid = child_text(tree, name);
    if (!gid.empty()) return need_instrument(call, gid).gid;
  }
  const std::string number = child_text(tree, "QuoteNumber");
  if (number.empty()) return {};
  const auto quote = call.store.documents().find_by_number(kQuoteKind, number);
  if (!quote) refuse_key("quote", "QuoteNumber", number);
  return quote->gid;
}

Document keep_submittal(SoapCall& call, const SoapNode& tree, const std::string& owner) {
  Document submittal = keep_document(call, kSubmittalKind, tree, owner);
  Documents documents = call.store.documents();
  for (const SoapNode& line : lines_of(tree)) {
    const std::string key = line_key(line);
    if (!key.empty()) documents.keep_comment(submittal.gid, key, "", node_to_xml(line));
  }
  return submittal;
}

void create_submittal(SoapCall& call) {
  const SoapNode tree = document_at(call, 0);
  const std::string uid = child_text(tree, "UID");
  if (!uid.empty() && call.store.documents().find(uid)) {
    refuse("There is a submittal with the UID '" + uid + "' already");
  }
  if (child_text(tree, "Status").empty()) set_child(tree, "Status", "DRAFT");
  answer_text(call, keep_submittal(call, tree, owner_named_in(call, tree)).gid);
}

void update_submittal(SoapCall& call) {
  const SoapNode tree = document_at(call, 0);
  const Document present = need(call, kSubmittalKind, child_text(tree, "UID"));
  std::string owner = owner_named_in(call, tree);
  if (owner.empty()) owner = present.parent;
  answer_text(call, keep_submittal(call, tree, owner).gid);
}

/// A revision is a submittal of its own; the one that it takes the place of is closed.
void revise_submittal(SoapCall& call) {
  const SoapNode tree = document_at(call, 0);
  Document present = need(call, kSubmittalKind, child_text(tree, "UID"));
  std::string owner = owner_named_in(call, tree);
  if (owner.empty()) owner = present.parent;
  keep_status(call, kSubmittalKind, present, kSuperseded);
  set_child(tree, "UID", call.store.documents().fresh_gid(kSubmittalKind));
  set_child(tree, "Status", "DRAFT");
  set_child(tree, "RevisionOf", present.gid);
  answer_text(call, keep_submittal(call, tree, owner).gid);
}

void answer_list(SoapCall& call, const Document& owner, bool only_updatable) {
  SoapNodes answer = begin_answer(call);
  Documents documents = call.store.documents();
  for (const Document& each : documents.children(kSubmittalKind, owner.gid)) {
    const bool closed = each.status == kSuperseded || each.status == kSubmitted;
    if (only_updatable && closed) continue;
    SoapNodes fields = append_group(answer, "Submittal").Nodes();
    fields.Create("UID", each.gid);
    fields.Create("Title", child_text(each.tree(), "Title"));
    fields.Create("Status", each.status);
  }
}

Document need_quote_by_number(SoapCall& call) {
  const std::string number = key_at(call, 0);
  auto quote = call.store.documents().find_by_number(kQuoteKind, number);
  if (!quote) refuse_key("quote", "QuoteNumber", number);
  return std::move(*quote);
}

template <bool kOnlyUpdatable>
void list_for_project(SoapCall& call) {
  answer_list(call, need(call, kProjectKind, key_at(call, 0)), kOnlyUpdatable);
}

template <bool kOnlyUpdatable>
void list_for_quote(SoapCall& call) {
  answer_list(call, need_quote_by_number(call), kOnlyUpdatable);
}

}  // namespace

std::vector<DocumentRow> submittal_rows() {
  return {{kService, "getAllParagraphs", get_all_paragraphs},
          {kService, "getAllRemarks", get_all_remarks},
          {kService, "getSubmittal", get_submittal},
          {kService, "getSubmittalCriteria", get_criteria},
          {kService, "getSubmittalCommentsForLineItem", get_line_comments},
          {kService, "createSubmittal", create_submittal},
          {kService, "reviseSubmittal", revise_submittal},
          {kService, "updateSubmittal", update_submittal},
          {kService, "getAllSubmittalsForProject", list_for_project<false>},
          {kService, "getAllSubmittalsForQuote", list_for_quote<false>},
          {kService, "getUpdatableSubmittalsForProject", list_for_project<true>},
          {kService, "getUpdatableSubmittalsForQuote", list_for_quote<true>}};
}

}  // namespace bvconn::sandbox
