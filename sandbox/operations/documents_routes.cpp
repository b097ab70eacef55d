#include <array>

#include "sandbox/operations/documents.h"
#include "sandbox/operations/routes.h"

namespace bvconn::sandbox {
namespace {

/// A `Route` without memory of its own.
struct Row {
  const char *object, *operation, *service, *method;
  int keys;
};

constexpr std::array kRoutes{
    Row{"ProjectService", "CopyProject", "urn:ProjectService", "copyProject", 1},
    Row{"ProjectService", "getExistingProject", "urn:ProjectService", "getProject", 1},
    Row{"ProjectService", "getRevertedProject", "urn:ProjectService", "revert", 1},
    Row{"ProjectService", "CheckSingleSaveStatus", "urn:ProjectService", "checkSaveStatus", 1},
    Row{"ProjectService", "getNewProject", "urn:ProjectService", "newProject", 0},
    Row{"ProjectService", "generateQuotes", "urn:ProjectService", "generateQuotes", kRequestText},
    Row{"ProjectService", "SaveProject", "urn:ProjectService", "save", kRequestText},
    Row{"ProjectService", "RequestReview", "urn:ProjectService", "requestReview", kRequestText},
    Row{"ProjectService", "ReturnToAgent", "urn:ProjectService", "returnToAgent", kRequestText},
    Row{"ProjectService", "GetProjectHeaderComments", "urn:ProjectService", "getHeaderComments", 2},
    Row{"ProjectService", "UpdateProjectHeaderComments", "urn:ProjectService",
        "updateHeaderComments", kRequestText},
    Row{"QuoteService", "SetQuoteStatusToQuoted", "urn:QuoteService", "setQuoteStatusToQuoted", 1},
    Row{"QuoteService", "updateRFQ", "urn:QuoteService", "updateRFQ", 2},
    Row{"QuoteService", "GetQuoteHeaderComments", "urn:QuoteService", "getHeaderComments", 2},
    Row{"QuoteService", "UpdateQuoteHeaderComments", "urn:QuoteService", "updateHeaderComments",
        kRequestText},
    Row{"QuoteService", "getPreviousSalesInstrumentColumnPrices", "urn:QuoteService",
        "getDefaultColumnValues", 1},
    Row{"OrderService", "getSAPOrderView", "urn:OrderService", "getSAPOrderView", 2},
    Row{"OrderService", "getSAPInfo", "urn:OrderService", "getSAPInfo", kRequestText},
    Row{"OrderService", "GetOrderHeaderComments", "urn:OrderService", "getHeaderComments", 2},
    Row{"OrderService", "UpdateOrderHeaderComments", "urn:OrderService", "updateHeaderComments",
        kRequestText},
    Row{"OrderService", "getPreviousSalesInstrumentColumnPrices", "urn:OrderService",
        "getDefaultColumnValues", 1},
    // Takes the comments of quotes and projects too: the service in the text tells.
    Row{"OrderService", "SetLineComments", "", "updateLineItemComments", kRequestText},
    Row{"SearchService", "GetProductApprovals", "urn:ProductService", "getProductApprovals",
        kRequestText},
    Row{"SalesInstrumentService", "GetLineComments", "urn:SalesInstrumentService",
        "getLineItemComments", 2},
    Row{"SalesInstrumentService", "GetProductCost", "urn:ProductService", "getProductCost",
        kRequestText},
    Row{"SubmittalService", "GetAllSubmittalsForProject", "urn:SubmittalService",
        "getAllSubmittalsForProject", 1},
    Row{"SubmittalService", "GetAllSubmittalsForQuote", "urn:SubmittalService",
        "getAllSubmittalsForQuote", 1},
    Row{"SubmittalService", "GetUpdatableSubmittalsForProject", "urn:SubmittalService",
        "getUpdatableSubmittalsForProject", 1},
    Row{"SubmittalService", "GetUpdatableSubmittalsForQuote", "urn:SubmittalService",
        "getUpdatableSubmittalsForQuote", 1},
    Row{"RMAService", "GetNewRMA", "urn:RMAService", "newRMA", 1},
    Row{"RMAService", "GetExistingRMA", "urn:RMAService", "getRMA", 1},
    Row{"RMAService", "SaveRMA", "urn:RMAService", "saveRMA", kRequestText},
    Row{"RMAService", "SubmitRMA", "urn:RMAService", "submitRMA", kRequestText},
    Row{"RMAService", "GetInvoiceInfo", "urn:RMAService", "getInvoiceInfo", 1},
};

}  // namespace

void add_documents(Operations& operations) {
  for (const auto rows : {project_rows, quote_rows, order_rows, comment_rows, instrument_rows,
                          submittal_rows, rma_rows}) {
    for (const DocumentRow& row : rows()) add_method(operations, row.service, row.method, row.run);
  }
  for (const Row& row : kRoutes) {
    add_route(operations, {row.object, row.operation, row.service, row.method, row.keys});
  }
}

}  // namespace bvconn::sandbox
