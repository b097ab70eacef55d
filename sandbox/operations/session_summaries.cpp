#include <algorithm>
#include <cstdint>
#include <string>

#include "bvconn/platform/soap/variant.h"
#include "sandbox/operations/documents.h"
#include "sandbox/operations/keys.h"
#include "sandbox/store/documents_tree.h"

namespace bvconn::sandbox {
namespace {

constexpr const char* kService = "urn:SummaryService";
/// The first key of a list that is to have none.
constexpr const char* kNoKey = "nogid";

void append_summary(SoapNodes fields, const Document& document) {
  const SoapNode tree = document.tree();
  fields.Create("GID", document.gid);
  fields.Create("Number", document.number);
  fields.Create("Name", child_text(tree, "Name"));
  fields.Create("Status", document.status);
  fields.Create("CustomerName", find_text(child(tree, "Customer"), {"Name"}));
  fields.Create("LineCount", static_cast<std::int32_t>(lines_of(tree).size()));
  fields.Create("Revision", static_cast<std::int32_t>(document.revision));
}

std::vector<std::string> split(const std::string& text) {
  std::vector<std::string> keys;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find(';', start), text.size());
    keys.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return keys;
}

/// The documents that a parameter asks for: by a number the latest, else those with its keys; the
/// data access layer has them as one text.
std::vector<std::string> wanted(SoapCall& call, const DocumentKind& kind, std::size_t place) {
  const SoapNode parameter = call.parameters.Item(place);
  const Variant value = parameter.Value();
  if (value.is(Variant::Type::kInt16) || value.is(Variant::Type::kInt32)) {
    return call.store.latest(kind, to_int32(value));
  }
  if (value.is(Variant::Type::kString)) return split(value.string());
  auto keys = keys_in(parameter);
  if (!keys.empty() && keys.front() == kNoKey) keys.clear();
  return keys;
}

void get_user_summary(SoapCall& call) {
  struct Group {
    const char *list, *item;
    const DocumentKind& kind;
  };
  const Group groups[] = {{"Projects", "Project", kProjectKind},
                          {"Quotes", "Quote", kQuoteKind},
                          {"Orders", "Order", kOrderKind}};
  SoapNodes answer = begin_answer(call);
  std::size_t place = 0;
  for (const Group& group : groups) {
    SoapNodes list = append_group(answer, group.list).Nodes();
    for (const std::string& gid : wanted(call, group.kind, place++)) {
      append_summary(append_group(list, group.item).Nodes(), need(call, group.kind, gid));
    }
  }
}

template <const DocumentKind& kKind>
void get_summary(SoapCall& call) {
  const Document document = need(call, kKind, key_at(call, 0));
  append_summary(begin_answer(call), document);
}

template <const DocumentKind& kOwner, const DocumentKind& kKind>
void get_children(SoapCall& call) {
  const Document owner = need(call, kOwner, key_at(call, 0));
  SoapNodes answer = begin_answer(call);
  for (const Document& each : call.store.documents().children(kKind, owner.gid)) {
    append_summary(append_group(answer, &kKind == &kOrderKind ? "Order" : "Quote").Nodes(), each);
  }
}

/// A quote has been proposed once for each revision of it.
void get_proposals(SoapCall& call) {
  const Document quote = need(call, kQuoteKind, key_at(call, 0));
  SoapNodes answer = begin_answer(call);
  for (std::int64_t revision = 1; revision <= quote.revision; ++revision) {
    SoapNodes fields = append_group(answer, "Proposal").Nodes();
    fields.Create("ProposalNumber", quote.number + "-" + std::to_string(revision));
    fields.Create("QuoteGID", quote.gid);
    fields.Create("Current", revision == quote.revision);
  }
}

}  // namespace

void add_summaries(Operations& operations) {
  add_method(operations, kService, "getUserSummary", get_user_summary);
  add_method(operations, kService, "getProjectSummary", get_summary<kProjectKind>);
  add_method(operations, kService, "getQuoteSummary", get_summary<kQuoteKind>);
  add_method(operations, kService, "getOrderSummary", get_summary<kOrderKind>);
  add_method(operations, kService, "getProposalsForQuote", get_proposals);
  add_method(operations, kService, "getOrdersForQuote", get_children<kQuoteKind, kOrderKind>);
  add_method(operations, kService, "getQuotesForProject", get_children<kProjectKind, kQuoteKind>);
}

}  // namespace bvconn::sandbox
