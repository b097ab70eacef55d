#include "bvconn/connectors/session/bv_document_connector.h"

#include "bvconn/operation/method_frame.h"

namespace bvconn {
namespace {

constexpr Operation kGetDocuments{
    // deliberate [documents-log-name]: the lines bear another class's name; only the entering one
    // has brackets.
    // deliberate [documents-swallow]: a failure is logged, and the caller gets nothing.
    .log = {.cls = "BVOrderConnector", .method = "getDocuments", .enter = "getDocuments()"},
    .cls = "BVDocumentConnector",
    .name = "GetDocuments",
    .method = &BVMethods::GetDocuments,
    .service = &BVServices::TorvexService,
    .tail = Tail::kSwallow,
};

}  // namespace

SoapNode BVDocumentConnector::GetDocuments(std::string_view aServerURL, std::string_view aGID) {
  return ConnectorMethodFrame(kGetDocuments, {.url = aServerURL}, [&](Call& call) {
    // deliberate [no-session]: no `userID`.
    call.request_without_session().add("arg0", aGID).send().or_raise();
    SoapNode documents = SoapNode::make();
    for (const SoapNode& document : call.parameters()) documents.Nodes().Append(document);
    return documents;
  });
}

}  // namespace bvconn
