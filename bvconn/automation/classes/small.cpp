#include "bvconn/automation/class_builder.h"
#include "bvconn/automation/classes/groups.h"
#include "bvconn/connectors/session/bv_config_connector.h"
#include "bvconn/connectors/session/bv_document_connector.h"
#include "bvconn/connectors/session/bv_export_connector.h"
#include "bvconn/connectors/session/bv_postal_connector.h"
#include "bvconn/connectors/session/bv_summary_connector.h"

namespace bvconn::automation {

// clang-format off
const ClassInfo& summary_connector_class() {
  using C = BVSummaryConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVSummaryConnector")
          .operation<&C::GetUserSummary>("GetUserSummary", {"numProjects", "numQuotes", "numOrders", "aServerURL", "aSessionID"})
          .operation<&C::GetUserSummaryByGIDs>("GetUserSummaryByGIDs", {"projectGIDs", "quoteGIDs", "orderGIDs", "aServerURL", "aSessionID"})
          .operation<&C::getProjectSummary>("getProjectSummary", {"ProjectGID", "aServerURL", "aSessionID"})
          .operation<&C::getQuoteSummary>("getQuoteSummary", {"QuoteGID", "aServerURL", "aSessionID"})
          .operation<&C::getProposalsForQuote>("getProposalsForQuote", {"QuoteGID", "aServerURL", "aSessionID"})
          .operation<&C::getOrdersForQuote>("getOrdersForQuote", {"QuoteGID", "aServerURL", "aSessionID"})
          .operation<&C::getQuotesForProject>("getQuotesForProject", {"ProjectGID", "aServerURL", "aSessionID"})
          .operation<&C::getOrderSummary>("getOrderSummary", {"orderGID", "aServerURL", "aSessionID"})
          .take();
  return info;
}

const ClassInfo& postal_connector_class() {
  using C = BVPostalConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVPostalConnector")
          .operation<&C::GetCountries>("GetCountries", {"aServerURL", "aSessionID", "aLazyLoad"})
          .take();
  return info;
}

const ClassInfo& export_connector_class() {
  using C = BVExportConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVExportConnector")
          .operation<&C::SetExportComplete>("SetExportComplete", {"aServerURL", "aSessionID", "aOrderGID"})
          .take();
  return info;
}

const ClassInfo& document_connector_class() {
  using C = BVDocumentConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVDocumentConnector")
          .operation<&C::GetDocuments>("GetDocuments", {"aServerURL", "aGID"})
          .take();
  return info;
}

const ClassInfo& config_connector_class() {
  using C = BVConfigConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVConfigConnector")
          .operation<&C::GetConfiguredProduct>("GetConfiguredProduct", {"aServerURL", "aSalesInstrumentGID"})
          .take();
  return info;
}
// clang-format on

}  // namespace bvconn::automation
