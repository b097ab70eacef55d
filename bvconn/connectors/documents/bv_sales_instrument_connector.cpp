#include "bvconn/connectors/documents/bv_sales_instrument_connector.h"

#include "bvconn/core/envelope.h"
#include "bvconn/core/session_state.h"
#include "bvconn/operation/method_frame.h"
#include "bvconn/platform/conversions/conversions.h"

namespace bvconn {
namespace {

constexpr std::string_view kClass = "BVSalesInstrumentConnector";

// deliberate [instrument-lines]: the first seven operations write a line on failure alone.
constexpr LogBlock only_errors(std::string_view method) {
  return {.cls = kClass, .method = method, .form = LogForm::kNone};
}
constexpr LogBlock with_brackets(std::string_view method) {
  return {.cls = kClass, .method = method, .brackets = true};
}

constexpr Operation kGetProductApprovals{
    .log = only_errors("GetProductApprovals"),
    .method = &BVMethods::GetProductApprovals,
    .service = &BVServices::ProductService,
};
constexpr Operation kGetHeaderComments{
    .log = only_errors("GetHeaderComments"),
    .method = &BVMethods::GetHeaderComments,
    .service = &BVServices::SalesInstrumentService,
};
constexpr Operation kGetLineComments{
    .log = only_errors("GetLineComments"),
    .method = &BVMethods::GetLineComments,
    .service = &BVServices::SalesInstrumentService,
};
constexpr Operation kUpdateHeaderComments{
    .log = only_errors("UpdateHeaderComments"),
    .method = &BVMethods::UpdateHeaderComments,
    .service = &BVServices::SalesInstrumentService,
};
// The service of the next two follows from the instrument's type.
constexpr Operation kSetLineComments{
    .log = only_errors("SetLineComments"),
    .method = &BVMethods::UpdateLineItemComments,
};
constexpr Operation kGetPreviousSalesInstrumentColumnPrices{
    .log = only_errors("getPreviousSalesInstrumentColumnPrices"),
    .method = &BVMethods::GetDefaultColumnValues,
};
constexpr Operation kPilferSalesInstrument{
    .log = only_errors("pilferSalesInstrument"),
    .method = &BVMethods::PilferSalesInstr,
    .service = &BVServices::SalesInstrumentService,
};
constexpr Operation kUpdateCommSalesPeople{
    .log = with_brackets("UpdateCommSalesPeople"),
    .method = &BVMethods::UpdateCommSalesPeople,
    .service = &BVServices::Order,
};
constexpr Operation kGetProductCost{
    .log = {.cls = kClass, .method = "GetProductCost"},
    .method = &BVMethods::GetProductCost,
    .service = &BVServices::ProductService,
};
constexpr Operation kGetOrderHeaderComments{
    .log = with_brackets("GetOrderHeaderComments"),
    .method = &BVMethods::GetHeaderComments,
    .service = &BVServices::Order,
};
// deliberate [quote-comments-action]: the next two bear the quote's URN in the envelope and the
// order's as SOAPAction; the server is used to it.
constexpr Operation kGetQuoteHeaderComments{
    .log = with_brackets("GetQuoteHeaderComments"),
    .method = &BVMethods::GetHeaderComments,
    .service = &BVServices::Quote,
    .soap_action = &BVServices::Order,
};
// deliberate [quote-comments-action]: as above.
constexpr Operation kGetHeaderCommentsForCopyToOrder{
    .log = with_brackets("getHeaderCommentsForCopyToOrder"),
    .method = &BVMethods::getHeaderCommentsForCopyToOrder,
    .service = &BVServices::Quote,
    .soap_action = &BVServices::Order,
};
constexpr Operation kGetProjectHeaderComments{
    .log = with_brackets("GetProjectHeaderComments"),
    .method = &BVMethods::GetHeaderComments,
    .service = &BVServices::Project,
};
constexpr Operation kUpdateOrderHeaderComments{
    .log = with_brackets("UpdateOrderHeaderComments"),
    .method = &BVMethods::UpdateHeaderComments,
    .service = &BVServices::Order,
};
constexpr Operation kUpdateQuoteHeaderComments{
    .log = with_brackets("UpdateQuoteHeaderComments"),
    .method = &BVMethods::UpdateHeaderComments,
    .service = &BVServices::Quote,
};
constexpr Operation kUpdateProjectHeaderComments{
    .log = with_brackets("UpdateProjectHeaderComments"),
    .method = &BVMethods::UpdateHeaderComments,
    .service = &BVServices::Project,
};

// The URN of an instrument's type in capitals.
// deliberate [unknown-type]: "" for a type that has none; the call goes on with it.
std::string service_of_comments(std::string_view type) {
  if (type == "PROJECT") return session().Services().Project();
  if (type == "QUOTE") return session().Services().Quote();
  if (type == "ORDER") return session().Services().Order();
  return "";
}

// deliberate [prices-without-projects]: there is no branch for projects here.
std::string service_of_prices(std::string_view type) {
  if (type == "QUOTE") return session().Services().Quote();
  if (type == "ORDER") return session().Services().Order();
  return "";
}

// The text is "" where no object serves the type; reading it fails then.
std::string previous_prices(const dal::Services& services, std::string_view type,
                            std::string_view gid) {
  if (type == "QUOTE") return services.QuoteService().getPreviousSalesInstrumentColumnPrices(gid);
  if (type == "ORDER") return services.OrderService().getPreviousSalesInstrumentColumnPrices(gid);
  return "";
}

}  // namespace

SoapNode BVSalesInstrumentConnector::GetProductApprovals(std::string_view aServerURL,
                                                         std::string_view aSessionID,
                                                         std::string_view aAgentGID,
                                                         const SoapNode& aLineItemsNode) {
  return ConnectorMethodFrame(kGetProductApprovals, {aServerURL, aSessionID}, [&](Call& call) {
    call.request(kSoapEncoding).params(aAgentGID).append(aLineItemsNode);
    // deliberate [approvals-object]: the search object, though the service is the products'.
    if (call.takes_dal())
      return call.first_of(call.dal().SearchService().GetProductApprovals(call.request_text()));
    return call.send().first();
  });
}

SoapNode BVSalesInstrumentConnector::GetHeaderComments(std::string_view aSalesInstrumentGID,
                                                       std::string_view aCommentTypeCode,
                                                       std::string_view aServerURL,
                                                       std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetHeaderComments, {aServerURL, aSessionID}, [&](Call& call) {
    return call.request().params(aSalesInstrumentGID, aCommentTypeCode).send().first();
  });
}

SoapNode BVSalesInstrumentConnector::GetLineComments(std::string_view aSalesInstrumentGID,
                                                     std::string_view aLineItemGID,
                                                     std::string_view aServerURL,
                                                     std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetLineComments, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal(session().UseDALSave)) {
      return call.first_of(
          call.dal().SalesInstrumentService().GetLineComments(aSalesInstrumentGID, aLineItemGID));
    }
    return call.request().params(aSalesInstrumentGID, aLineItemGID).send().first();
  });
}

std::string BVSalesInstrumentConnector::UpdateHeaderComments(std::string_view aSessionID,
                                                             const SoapNode& aSoapNode,
                                                             std::string_view aServerURL) {
  return ConnectorMethodFrame(kUpdateHeaderComments, {aServerURL, aSessionID}, [&](Call& call) {
    return call.request().add("HeaderComments", aSoapNode).send().text();
  });
}

std::string BVSalesInstrumentConnector::SetLineComments(std::string_view aSalseInstrType,
                                                        std::string_view aCommentXML,
                                                        std::string_view aServerURL,
                                                        std::string_view aSessionID) {
  return ConnectorMethodFrame(kSetLineComments, {aServerURL, aSessionID}, [&](Call& call) {
    call.service(service_of_comments(conversions::upper_case(aSalseInstrType)));
    const std::string text = call.literal_request(aCommentXML);
    if (call.takes_dal(session().UseDALSave)) {
      // deliberate [line-comments-object]: to the order object, whatever the instrument's type.
      return call.text_of(call.dal().OrderService().SetLineComments(text));
    }
    const auto transport = Global::getHTTPTransport(call.service());
    return call.exchange_text(*transport, text).text();
  });
}

SoapNode BVSalesInstrumentConnector::getPreviousSalesInstrumentColumnPrices(
    std::string_view astrSIGid, std::string_view astrSIType, std::string_view aServerURL,
    std::string_view aSessionID) {
  return ConnectorMethodFrame(
      kGetPreviousSalesInstrumentColumnPrices, {aServerURL, aSessionID}, [&](Call& call) {
        const std::string type = conversions::upper_case(astrSIType);
        call.service(service_of_prices(type));
        if (call.takes_dal()) return call.first_of(previous_prices(call.dal(), type, astrSIGid));
        return call.request().params(astrSIGid).send().first();
      });
}

void BVSalesInstrumentConnector::pilferSalesInstrument(std::string_view SIGID, XMLDocument* doc,
                                                       std::string_view /*SIType*/,
                                                       std::string_view aServerURL,
                                                       std::string_view aSessionID) {
  ConnectorMethodFrame(kPilferSalesInstrument, {aServerURL, aSessionID}, [&](Call& call) {
    // deliberate [pilfer-type]: the type of the instrument plays no part.
    // deliberate [pilfer-fault]: a fault is a document like any other.
    call.request().params(SIGID);
    Global::sendXMLAndLoadDoc(doc, call.service(), call.request_text(), aServerURL);
  });
}

SoapNode BVSalesInstrumentConnector::UpdateCommSalesPeople(std::string_view aSessionID,
                                                           std::string_view aServerURL,
                                                           std::string_view aGID, SoapNode aNode) {
  return ConnectorMethodFrame(kUpdateCommSalesPeople, {aServerURL, aSessionID}, [&](Call& call) {
    call.request(kSoapEncoding);
    // deliberate [renamed-node]: the caller's own node, which keeps the name.
    aNode.Name("CommissionableSalesPeople");
    return call.append(aNode).add("GID", aGID).send().first();
  });
}

SoapNode BVSalesInstrumentConnector::GetProductCost(std::string_view aSessionID,
                                                    std::string_view aServerURL,
                                                    std::string_view aAgentGID,
                                                    std::string_view aCustomerGID,
                                                    std::string_view aNationalAccountGID,
                                                    const SoapNode& aLineItemsNode) {
  return ConnectorMethodFrame(kGetProductCost, {aServerURL, aSessionID}, [&](Call& call) {
    call.request(kSoapEncoding)
        .params(aAgentGID, aCustomerGID, aNationalAccountGID)
        .add("LineItemsLite", aLineItemsNode);
    if (call.takes_dal())
      return call.first_of(call.dal().SalesInstrumentService().GetProductCost(call.request_text()));
    return call.send().first();
  });
}

SoapNode BVSalesInstrumentConnector::GetOrderHeaderComments(std::string_view aOrderGID,
                                                            std::string_view aCommentType,
                                                            std::string_view aSessionID,
                                                            std::string_view aServerURL) {
  return ConnectorMethodFrame(kGetOrderHeaderComments, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) {
      return call.first_of(
          call.dal().OrderService().GetOrderHeaderComments(aOrderGID, aCommentType));
    }
    call.request(kSoapEncoding).add("OrderGID", aOrderGID).add("CommentType", aCommentType);
    return call.send().first();
  });
}

SoapNode BVSalesInstrumentConnector::GetQuoteHeaderComments(std::string_view aQuoteGID,
                                                            std::string_view aCommentType,
                                                            std::string_view aSessionID,
                                                            std::string_view aServerURL) {
  return ConnectorMethodFrame(kGetQuoteHeaderComments, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) {
      return call.first_of(
          call.dal().QuoteService().GetQuoteHeaderComments(aQuoteGID, aCommentType));
    }
    call.request(kSoapEncoding).add("QuoteGID", aQuoteGID).add("CommentType", aCommentType);
    return call.send().first();
  });
}

SoapNode BVSalesInstrumentConnector::getHeaderCommentsForCopyToOrder(std::string_view aQuoteGID,
                                                                     std::string_view aCommentType,
                                                                     std::string_view aSessionID,
                                                                     std::string_view aServerURL) {
  return ConnectorMethodFrame(
      kGetHeaderCommentsForCopyToOrder, {aServerURL, aSessionID}, [&](Call& call) {
        if (call.takes_dal()) {
          // deliberate [copy-comments-object]: the same call as for the quote's own comments.
          return call.first_of(
              call.dal().QuoteService().GetQuoteHeaderComments(aQuoteGID, aCommentType));
        }
        call.request(kSoapEncoding).add("QuoteGID", aQuoteGID).add("CommentType", aCommentType);
        return call.send().first();
      });
}

SoapNode BVSalesInstrumentConnector::GetProjectHeaderComments(std::string_view aProjectGID,
                                                              std::string_view aCommentType,
                                                              std::string_view aSessionID,
                                                              std::string_view aServerURL) {
  return ConnectorMethodFrame(kGetProjectHeaderComments, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) {
      return call.first_of(
          call.dal().ProjectService().GetProjectHeaderComments(aProjectGID, aCommentType));
    }
    call.request(kSoapEncoding).add("ProjectGID", aProjectGID).add("CommentType", aCommentType);
    return call.send().first();
  });
}

SoapNode BVSalesInstrumentConnector::UpdateOrderHeaderComments(const SoapNode& aNode,
                                                               std::string_view aSessionID,
                                                               std::string_view aServerURL) {
  return ConnectorMethodFrame(
      kUpdateOrderHeaderComments, {aServerURL, aSessionID}, [&](Call& call) {
        call.request(kSoapEncoding).add("BVOrderComments", aNode);
        if (call.takes_dal()) {
          return call.first_of(
              call.dal().OrderService().UpdateOrderHeaderComments(call.request_text()));
        }
        return call.send().first();
      });
}

SoapNode BVSalesInstrumentConnector::UpdateQuoteHeaderComments(const SoapNode& aNode,
                                                               std::string_view aSessionID,
                                                               std::string_view aServerURL) {
  return ConnectorMethodFrame(
      kUpdateQuoteHeaderComments, {aServerURL, aSessionID}, [&](Call& call) {
        call.request(kSoapEncoding).add("BVQuoteComments", aNode);
        if (call.takes_dal()) {
          return call.first_of(
              call.dal().QuoteService().UpdateQuoteHeaderComments(call.request_text()));
        }
        return call.send().first();
      });
}

SoapNode BVSalesInstrumentConnector::UpdateProjectHeaderComments(const SoapNode& aNode,
                                                                 std::string_view aSessionID,
                                                                 std::string_view aServerURL) {
  return ConnectorMethodFrame(
      kUpdateProjectHeaderComments, {aServerURL, aSessionID}, [&](Call& call) {
        call.request(kSoapEncoding).add("BVProjectComments", aNode);
        if (call.takes_dal()) {
          return call.first_of(
              call.dal().ProjectService().UpdateProjectHeaderComments(call.request_text()));
        }
        return call.send().first();
      });
}

}  // namespace bvconn
