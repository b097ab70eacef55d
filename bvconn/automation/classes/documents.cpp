#include "bvconn/automation/class_builder.h"
#include "bvconn/automation/classes/groups.h"
#include "bvconn/connectors/documents/bv_acknowledgement_connector.h"
#include "bvconn/connectors/documents/bv_order_connector.h"
#include "bvconn/connectors/documents/bv_project_connector.h"
#include "bvconn/connectors/documents/bv_quote_connector.h"
#include "bvconn/connectors/documents/bv_request_for_quote_connector.h"
#include "bvconn/connectors/documents/bv_rma_connector.h"
#include "bvconn/connectors/documents/bv_sales_instrument_connector.h"
#include "bvconn/connectors/documents/bv_submittal_connector.h"

namespace bvconn::automation {

// clang-format off
const ClassInfo& project_connector_class() {
  using C = BVProjectConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVProjectConnector")
          .operation<&C::CopyProject>("CopyProject", {"aServerURL", "aSessionID", "aGID"})
          .operation<&C::generateQuotes>("generateQuotes", {"aServerURL", "aSessionID", "aGenQuoteContainer", "aProjectGID?", "aProject?"})
          .operation<&C::getNewProject>("getNewProject", {"aServerURL", "aSessionID"})
          .operation<&C::getExistingProject>("getExistingProject", {"aServerURL", "aSessionID", "aGID"})
          .operation<&C::getRevertedProject>("getRevertedProject", {"aServerURL", "aSessionID", "aGID"})
          .operation<&C::setStatusToNegotiating>("setStatusToNegotiating", {"aServerURL", "aSessionID", "aGID"})
          .operation<&C::setStatusToLostOpportunity>("setStatusToLostOpportunity", {"aServerURL", "aSessionID", "aGID", "aMessage"})
          .operation<&C::SaveProject>("SaveProject", {"aServerURL", "aSessionID", "aProject"})
          .operation<&C::RequestReview>("RequestReview", {"aServerURL", "aSessionID", "aProject"})
          .operation<&C::ReturnToAgent>("ReturnToAgent", {"aServerURL", "aSessionID", "aProject"})
          .operation<&C::CheckSingleSaveStatus>("CheckSingleSaveStatus", {"aServerURL", "aSessionID", "aGID"})
          .take();
  return info;
}

const ClassInfo& quote_connector_class() {
  using C = BVQuoteConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVQuoteConnector")
          .operation<&C::getExistingQuote>("getExistingQuote", {"aServerURL", "aSessionID", "aGID"})
          .operation<&C::SetQuoteStatusToQuoted>("SetQuoteStatusToQuoted", {"aServerURL", "aSessionID", "aGID"})
          .operation<&C::canExpirationBeOveridden>("canExpirationBeOveridden", {"aServerURL", "aSessionID", "aQuoteGID"})
          .operation<&C::getNewPriceExpirationDate>("getNewPriceExpirationDate", {"aServerURL", "aSessionID", "aQuoteGID"})
          .take();
  return info;
}

const ClassInfo& order_connector_class() {
  using C = BVOrderConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVOrderConnector")
          .operation<&C::getSAPOrderView>("getSAPOrderView", {"aSessionID", "aServerURL", "aOrderGID", "aIncludePrice"})
          .operation<&C::getSAPInfo>("getSAPInfo", {"aSessionID", "aServerURL", "aOrderGID", "aAgentGID", "aCustomerGID"})
          .take();
  return info;
}

const ClassInfo& request_for_quote_connector_class() {
  using C = BVRequestForQuoteConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVRequestForQuoteConnector")
          .operation<&C::updateRFQ>("updateRFQ", {"RFQGID", "mfrQuoteNumber", "aServerURL", "aSessionID"})
          .operation<&C::getRFQs>("getRFQs", {"QuoteGID", "aServerURL", "aSessionID"})
          .take();
  return info;
}

const ClassInfo& sales_instrument_connector_class() {
  using C = BVSalesInstrumentConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVSalesInstrumentConnector")
          .operation<&C::GetProductApprovals>("GetProductApprovals", {"aServerURL", "aSessionID", "aAgentGID", "aLineItemsNode"})
          .operation<&C::GetHeaderComments>("GetHeaderComments", {"aSalesInstrumentGID", "aCommentTypeCode", "aServerURL", "aSessionID"})
          .operation<&C::GetLineComments>("GetLineComments", {"aSalesInstrumentGID", "aLineItemGID", "aServerURL", "aSessionID"})
          .operation<&C::UpdateHeaderComments>("UpdateHeaderComments", {"aSessionID", "aSoapNode", "aServerURL"})
          .operation<&C::SetLineComments>("SetLineComments", {"aSalseInstrType", "aCommentXML", "aServerURL", "aSessionID"})
          .operation<&C::getPreviousSalesInstrumentColumnPrices>("getPreviousSalesInstrumentColumnPrices", {"astrSIGid", "astrSIType", "aServerURL", "aSessionID"})
          .operation<&C::pilferSalesInstrument>("pilferSalesInstrument", {"SIGID", "doc", "SIType", "aServerURL", "aSessionID"})
          .operation<&C::UpdateCommSalesPeople>("UpdateCommSalesPeople", {"aSessionID", "aServerURL", "aGID", "aNode"})
          .operation<&C::GetProductCost>("GetProductCost", {"aSessionID", "aServerURL", "aAgentGID", "aCustomerGID", "aNationalAccountGID", "aLineItemsNode"})
          .operation<&C::GetOrderHeaderComments>("GetOrderHeaderComments", {"aOrderGID", "aCommentType", "aSessionID", "aServerURL"})
          .operation<&C::GetQuoteHeaderComments>("GetQuoteHeaderComments", {"aQuoteGID", "aCommentType", "aSessionID", "aServerURL"})
          .operation<&C::getHeaderCommentsForCopyToOrder>("getHeaderCommentsForCopyToOrder", {"aQuoteGID", "aCommentType", "aSessionID", "aServerURL"})
          .operation<&C::GetProjectHeaderComments>("GetProjectHeaderComments", {"aProjectGID", "aCommentType", "aSessionID", "aServerURL"})
          .operation<&C::UpdateOrderHeaderComments>("UpdateOrderHeaderComments", {"aNode", "aSessionID", "aServerURL"})
          .operation<&C::UpdateQuoteHeaderComments>("UpdateQuoteHeaderComments", {"aNode", "aSessionID", "aServerURL"})
          .operation<&C::UpdateProjectHeaderComments>("UpdateProjectHeaderComments", {"aNode", "aSessionID", "aServerURL"})
          .take();
  return info;
}

const ClassInfo& acknowledgement_connector_class() {
  using C = BVAcknowledgementConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVAcknowledgementConnector")
          .operation<&C::getOverview>("getOverview", {"orderGID", "aServerURL", "aSessionID"})
          .operation<&C::GetExistingAcknowledgement>("GetExistingAcknowledgement", {"ackGID", "aServerURL", "aSessionID"})
          .operation<&C::getNewAcknowledgment>("getNewAcknowledgment", {"serializedAckObject", "aServerURL", "aSessionID"})
          .take();
  return info;
}

const ClassInfo& submittal_connector_class() {
  using C = BVSubmittalConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVSubmittalConnector")
          .operation<&C::GetAllParagraphs>("GetAllParagraphs", {"aSessionID", "aServerURL"})
          .operation<&C::GetAllRemarks>("GetAllRemarks", {"aSessionID", "aServerURL"})
          .operation<&C::GetSubmittal>("GetSubmittal", {"aSessionID", "aSubmittalUID", "aServerURL"})
          .operation<&C::GetSubmittalCriteria>("GetSubmittalCriteria", {"aSessionID", "aSubmittalUID", "aServerURL"})
          .operation<&C::GetSubmittalCommentsForProjectLineItem>("GetSubmittalCommentsForProjectLineItem", {"aSessionID", "aLineItemGID", "aServerURL"})
          .operation<&C::GetSubmittalCommentsForProjectLineItems>("GetSubmittalCommentsForProjectLineItems", {"aSessionID", "aLineItemGIDs", "aServerURL"})
          .operation<&C::GetSubmittalCommentsForQuoteLineItem>("GetSubmittalCommentsForQuoteLineItem", {"aSessionID", "aLineItemGID", "aServerURL"})
          .operation<&C::GetSubmittalCommentsForQuoteLineItems>("GetSubmittalCommentsForQuoteLineItems", {"aSessionID", "aLineItemGIDs", "aServerURL"})
          .operation<&C::CreateSubmittal>("CreateSubmittal", {"aSessionID", "aSoapNode", "aServerURL"})
          .operation<&C::ReviseSubmittal>("ReviseSubmittal", {"aSessionID", "aSoapNode", "aServerURL"})
          .operation<&C::UpdateSubmittal>("UpdateSubmittal", {"aSessionID", "aSoapNode", "aServerURL"})
          .operation<&C::GetAllSubmittalsForProject>("GetAllSubmittalsForProject", {"aSessionID", "aProjectGID", "aServerURL"})
          .operation<&C::GetAllSubmittalsForQuote>("GetAllSubmittalsForQuote", {"aSessionID", "aQuoteNbr", "aServerURL"})
          .operation<&C::GetUpdatableSubmittalsForProject>("GetUpdatableSubmittalsForProject", {"aSessionID", "aProjectGID", "aServerURL"})
          .operation<&C::GetUpdatableSubmittalsForQuote>("GetUpdatableSubmittalsForQuote", {"aSessionID", "aQuoteNbr", "aServerURL"})
          .take();
  return info;
}

const ClassInfo& rma_connector_class() {
  using C = BVRMAConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVRMAConnector")
          .operation<&C::GetNewRMA>("GetNewRMA", {"aManufacturerGID", "aServerURL", "aSessionID"})
          .operation<&C::GetExistingRMA>("GetExistingRMA", {"aServerURL", "aSessionID", "aUID"})
          .operation<&C::SaveRMA>("SaveRMA", {"aServerURL", "aSessionID", "aSerializedRMA"})
          .operation<&C::SubmitRMA>("SubmitRMA", {"aServerURL", "aSessionID", "aSerializedRMA"})
          .operation<&C::openRMA>("openRMA", {"aServerURL", "aSessionID", "aUID"})
          .operation<&C::GetInvoiceInfo>("GetInvoiceInfo", {"aServerURL", "aSessionID", "aInvoiceNumber"})
          .take();
  return info;
}
// clang-format on

}  // namespace bvconn::automation
