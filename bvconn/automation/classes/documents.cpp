#include "bvconn/automation/class_builder.h"
#include "bvconn/automation/classes/declared_classes.h"
#include "bvconn/connectors/documents/bv_acknowledgement_connector.h"
#include "bvconn/connectors/documents/bv_order_connector.h"
#include "bvconn/connectors/documents/bv_project_connector.h"
#include "bvconn/connectors/documents/bv_quote_connector.h"
#include "bvconn/connectors/documents/bv_request_for_quote_connector.h"
#include "bvconn/connectors/documents/bv_rma_connector.h"
#include "bvconn/connectors/documents/bv_sales_instrument_connector.h"
#include "bvconn/connectors/documents/bv_submittal_connector.h"

namespace bvconn::automation {

const ClassInfo& project_connector_class() {
  using C = BVProjectConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVProjectConnector")
          .BVCONN_OPERATION(CopyProject, "aServerURL", "aSessionID", "aGID")
          .BVCONN_OPERATION(generateQuotes, "aServerURL", "aSessionID", "aGenQuoteContainer",
                            "aProjectGID?", "aProject?")
          .BVCONN_OPERATION(getNewProject, "aServerURL", "aSessionID")
          .BVCONN_OPERATION(getExistingProject, "aServerURL", "aSessionID", "aGID")
          .BVCONN_OPERATION(getRevertedProject, "aServerURL", "aSessionID", "aGID")
          .BVCONN_OPERATION(setStatusToNegotiating, "aServerURL", "aSessionID", "aGID")
          .BVCONN_OPERATION(setStatusToLostOpportunity, "aServerURL", "aSessionID", "aGID",
                            "aMessage")
          .BVCONN_OPERATION(SaveProject, "aServerURL", "aSessionID", "aProject")
          .BVCONN_OPERATION(RequestReview, "aServerURL", "aSessionID", "aProject")
          .BVCONN_OPERATION(ReturnToAgent, "aServerURL", "aSessionID", "aProject")
          .BVCONN_OPERATION(CheckSingleSaveStatus, "aServerURL", "aSessionID", "aGID")
          .take();
  return info;
}

const ClassInfo& quote_connector_class() {
  using C = BVQuoteConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVQuoteConnector")
          .BVCONN_OPERATION(getExistingQuote, "aServerURL", "aSessionID", "aGID")
          .BVCONN_OPERATION(SetQuoteStatusToQuoted, "aServerURL", "aSessionID", "aGID")
          .BVCONN_OPERATION(canExpirationBeOveridden, "aServerURL", "aSessionID", "aQuoteGID")
          .BVCONN_OPERATION(getNewPriceExpirationDate, "aServerURL", "aSessionID", "aQuoteGID")
          .take();
  return info;
}

const ClassInfo& order_connector_class() {
  using C = BVOrderConnector;
  static const ClassInfo info = ClassBuilder<C>("BVOrderConnector")
                                    .BVCONN_OPERATION(getSAPOrderView, "aSessionID", "aServerURL",
                                                      "aOrderGID", "aIncludePrice")
                                    .BVCONN_OPERATION(getSAPInfo, "aSessionID", "aServerURL",
                                                      "aOrderGID", "aAgentGID", "aCustomerGID")
                                    .take();
  return info;
}

const ClassInfo& request_for_quote_connector_class() {
  using C = BVRequestForQuoteConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVRequestForQuoteConnector")
          .BVCONN_OPERATION(updateRFQ, "RFQGID", "mfrQuoteNumber", "aServerURL", "aSessionID")
          .BVCONN_OPERATION(getRFQs, "QuoteGID", "aServerURL", "aSessionID")
          .take();
  return info;
}

const ClassInfo& sales_instrument_connector_class() {
  using C = BVSalesInstrumentConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVSalesInstrumentConnector")
          .BVCONN_OPERATION(GetProductApprovals, "aServerURL", "aSessionID", "aAgentGID",
                            "aLineItemsNode")
          .BVCONN_OPERATION(GetHeaderComments, "aSalesInstrumentGID", "aCommentTypeCode",
                            "aServerURL", "aSessionID")
          .BVCONN_OPERATION(GetLineComments, "aSalesInstrumentGID", "aLineItemGID", "aServerURL",
                            "aSessionID")
          .BVCONN_OPERATION(UpdateHeaderComments, "aSessionID", "aSoapNode", "aServerURL")
          .BVCONN_OPERATION(SetLineComments, "aSalseInstrType", "aCommentXML", "aServerURL",
                            "aSessionID")
          .BVCONN_OPERATION(getPreviousSalesInstrumentColumnPrices, "astrSIGid", "astrSIType",
                            "aServerURL", "aSessionID")
          .BVCONN_OPERATION(pilferSalesInstrument, "SIGID", "doc", "SIType", "aServerURL",
                            "aSessionID")
          .BVCONN_OPERATION(UpdateCommSalesPeople, "aSessionID", "aServerURL", "aGID", "aNode")
          .BVCONN_OPERATION(GetProductCost, "aSessionID", "aServerURL", "aAgentGID", "aCustomerGID",
                            "aNationalAccountGID", "aLineItemsNode")
          .BVCONN_OPERATION(GetOrderHeaderComments, "aOrderGID", "aCommentType", "aSessionID",
                            "aServerURL")
          .BVCONN_OPERATION(GetQuoteHeaderComments, "aQuoteGID", "aCommentType", "aSessionID",
                            "aServerURL")
          .BVCONN_OPERATION(getHeaderCommentsForCopyToOrder, "aQuoteGID", "aCommentType",
                            "aSessionID", "aServerURL")
          .BVCONN_OPERATION(GetProjectHeaderComments, "aProjectGID", "aCommentType", "aSessionID",
                            "aServerURL")
          .BVCONN_OPERATION(UpdateOrderHeaderComments, "aNode", "aSessionID", "aServerURL")
          .BVCONN_OPERATION(UpdateQuoteHeaderComments, "aNode", "aSessionID", "aServerURL")
          .BVCONN_OPERATION(UpdateProjectHeaderComments, "aNode", "aSessionID", "aServerURL")
          .take();
  return info;
}

const ClassInfo& acknowledgement_connector_class() {
  using C = BVAcknowledgementConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVAcknowledgementConnector")
          .BVCONN_OPERATION(getOverview, "orderGID", "aServerURL", "aSessionID")
          .BVCONN_OPERATION(GetExistingAcknowledgement, "ackGID", "aServerURL", "aSessionID")
          .BVCONN_OPERATION(getNewAcknowledgment, "serializedAckObject", "aServerURL", "aSessionID")
          .take();
  return info;
}

const ClassInfo& submittal_connector_class() {
  using C = BVSubmittalConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVSubmittalConnector")
          .BVCONN_OPERATION(GetAllParagraphs, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(GetAllRemarks, "aSessionID", "aServerURL")
          .BVCONN_OPERATION(GetSubmittal, "aSessionID", "aSubmittalUID", "aServerURL")
          .BVCONN_OPERATION(GetSubmittalCriteria, "aSessionID", "aSubmittalUID", "aServerURL")
          .BVCONN_OPERATION(GetSubmittalCommentsForProjectLineItem, "aSessionID", "aLineItemGID",
                            "aServerURL")
          .BVCONN_OPERATION(GetSubmittalCommentsForProjectLineItems, "aSessionID", "aLineItemGIDs",
                            "aServerURL")
          .BVCONN_OPERATION(GetSubmittalCommentsForQuoteLineItem, "aSessionID", "aLineItemGID",
                            "aServerURL")
          .BVCONN_OPERATION(GetSubmittalCommentsForQuoteLineItems, "aSessionID", "aLineItemGIDs",
                            "aServerURL")
          .BVCONN_OPERATION(CreateSubmittal, "aSessionID", "aSoapNode", "aServerURL")
          .BVCONN_OPERATION(ReviseSubmittal, "aSessionID", "aSoapNode", "aServerURL")
          .BVCONN_OPERATION(UpdateSubmittal, "aSessionID", "aSoapNode", "aServerURL")
          .BVCONN_OPERATION(GetAllSubmittalsForProject, "aSessionID", "aProjectGID", "aServerURL")
          .BVCONN_OPERATION(GetAllSubmittalsForQuote, "aSessionID", "aQuoteNbr", "aServerURL")
          .BVCONN_OPERATION(GetUpdatableSubmittalsForProject, "aSessionID", "aProjectGID",
                            "aServerURL")
          .BVCONN_OPERATION(GetUpdatableSubmittalsForQuote, "aSessionID", "aQuoteNbr", "aServerURL")
          .take();
  return info;
}

const ClassInfo& rma_connector_class() {
  using C = BVRMAConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVRMAConnector")
          .BVCONN_OPERATION(GetNewRMA, "aManufacturerGID", "aServerURL", "aSessionID")
          .BVCONN_OPERATION(GetExistingRMA, "aServerURL", "aSessionID", "aUID")
          .BVCONN_OPERATION(SaveRMA, "aServerURL", "aSessionID", "aSerializedRMA")
          .BVCONN_OPERATION(SubmitRMA, "aServerURL", "aSessionID", "aSerializedRMA")
          .BVCONN_OPERATION(openRMA, "aServerURL", "aSessionID", "aUID")
          .BVCONN_OPERATION(GetInvoiceInfo, "aServerURL", "aSessionID", "aInvoiceNumber")
          .take();
  return info;
}

}  // namespace bvconn::automation
