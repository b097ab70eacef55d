#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/soap/xml_document.h"
#include "sandbox/operations/documents.h"
#include "sandbox/operations/locks.h"
#include "sandbox/store/documents_tree.h"

namespace bvconn::sandbox {
namespace {

constexpr const char* kProjects = "urn:ProjectService";
constexpr const char* kQuotes = "urn:QuoteService";
constexpr const char* kOrders = "urn:OrderService";
constexpr const char* kInstruments = "urn:SalesInstrumentService";

/// Where comments, under their own kind's name or a common one, name their document.
std::string document_named_in(const SoapNode& comments) {
  return find_text(comments, {"ProjectGID", "QuoteGID", "OrderGID", "SalesInstrumentGID", "GID"});
}

void answer_comment(SoapCall& call, const Document& document, const std::string& line,
                    const std::string& type) {
  const auto comment = call.store.documents().comment(document.gid, line, type);
  if (comment) {
    call.results.Append(node_from_xml(*comment));
    return;
  }
  SoapNodes fields = begin_answer(call);
  fields.Create("GID", document.gid);
  fields.Create(line.empty() ? "CommentType" : "LineItemGID", line.empty() ? type : line);
}

void keep_header(SoapCall& call, const Document& document, const SoapNode& comments) {
  const std::string type = find_text(comments, {"CommentType", "CommentTypeCode"});
  call.store.documents().keep_comment(document.gid, "", type, node_to_xml(comments));
  answer_text(call, "Updated");
}

std::string need_name(const SoapNode& comments) {
  std::string gid = document_named_in(comments);
  if (gid.empty()) {
    refuse("'" + comments.Name() + "' names no document: there is no GID in it");
  }
  return gid;
}

template <const DocumentKind& kKind>
void get_header(SoapCall& call) {
  answer_comment(call, need(call, kKind, key_at(call, 0)), "", key_at(call, 1));
}

void get_header_of_any(SoapCall& call) {
  answer_comment(call, need_instrument(call, key_at(call, 0)), "", key_at(call, 1));
}

template <const DocumentKind& kKind>
void update_header(SoapCall& call) {
  const SoapNode comments = call.parameters.Item(0);
  keep_header(call, need_unlocked(call, kKind, need_name(comments)), comments);
}

void update_header_of_any(SoapCall& call) {
  const SoapNode comments = call.parameters.Item(0);
  keep_header(call, need_instrument_unlocked(call, need_name(comments)), comments);
}

void get_line(SoapCall& call) {
  const Document document = need_instrument(call, key_at(call, 0));
  const std::string line = key_at(call, 1);
  Documents documents = call.store.documents();
  if (!documents.has_line(document.gid, line)) {
    refuse_key("line in " + document.gid, "LineItemGID", line);
  }
  answer_comment(call, document, line, "");
}

/// The XML that was pasted into the request: the one element of it, or all that is there.
SoapNode pasted(const SoapNode& encoding) {
  return encoding.Nodes().Count() == 1 ? encoding.Nodes().Item(0) : encoding;
}

template <const DocumentKind& kKind>
void update_line(SoapCall& call) {
  const SoapNode encoding = call.parameters.Item(0);
  const std::string line = find_text(encoding, {"LineItemGID"});
  if (line.empty()) refuse("The comments name no line: there is no LineItemGID in them");
  Documents documents = call.store.documents();
  std::string gid = document_named_in(encoding);
  if (gid.empty()) gid = documents.owner_of_line(kKind, line).value_or("");
  if (gid.empty() || !documents.has_line(need_unlocked(call, kKind, gid).gid, line)) {
    refuse_key("line of a " + std::string(kKind.name), "LineItemGID", line);
  }
  documents.keep_comment(gid, line, "", node_to_xml(pasted(encoding)));
  answer_text(call, "Updated");
}

}  // namespace

std::vector<DocumentRow> comment_rows() {
  return {{kProjects, "getHeaderComments", get_header<kProjectKind>},
          {kQuotes, "getHeaderComments", get_header<kQuoteKind>},
          {kQuotes, "getHeaderCommentsForCopyToOrder", get_header<kQuoteKind>},
          {kOrders, "getHeaderComments", get_header<kOrderKind>},
          {kInstruments, "getHeaderComments", get_header_of_any},
          {kProjects, "updateHeaderComments", update_header<kProjectKind>},
          {kQuotes, "updateHeaderComments", update_header<kQuoteKind>},
          {kOrders, "updateHeaderComments", update_header<kOrderKind>},
          {kInstruments, "updateHeaderComments", update_header_of_any},
          {kInstruments, "getLineItemComments", get_line},
          {kProjects, "updateLineItemComments", update_line<kProjectKind>},
          {kQuotes, "updateLineItemComments", update_line<kQuoteKind>},
          {kOrders, "updateLineItemComments", update_line<kOrderKind>}};
}

}  // namespace bvconn::sandbox
