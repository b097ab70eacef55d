#include "bvconn/automation/class_builder.h"
#include "bvconn/automation/classes/declared_classes.h"
#include "bvconn/connectors/session/bv_config_connector.h"
#include "bvconn/connectors/session/bv_document_connector.h"
#include "bvconn/connectors/session/bv_export_connector.h"
#include "bvconn/connectors/session/bv_generic_connector.h"
#include "bvconn/connectors/session/bv_heart_beat_connector.h"
#include "bvconn/connectors/session/bv_postal_connector.h"
#include "bvconn/connectors/session/bv_summary_connector.h"

namespace bvconn::automation {

const ClassInfo& generic_connector_class() {
  using C = BVGenericConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVGenericConnector")
          .BVCONN_OPERATION(Send, "aService", "aMethod", "aRootNodeName", "aSoapNode", "aServerURL",
                            "aTimeout?", {"aSessionID?", "NOTHING"})
          .BVCONN_READ_ONLY(SoapEnvelope)
          .take();
  return info;
}

const ClassInfo& heart_beat_connector_class() {
  using C = BVHeartBeatConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVHeartBeatConnector")
          .BVCONN_OPERATION(sendHeartBeat, "aServerURL", "aSessionID", "isBrimvale?")
          .BVCONN_OPERATION(UpdateHeartBeatTime)
          .BVCONN_EVENT(HeartBeatError)
          .take();
  return info;
}

const ClassInfo& summary_connector_class() {
  using C = BVSummaryConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVSummaryConnector")
          .BVCONN_OPERATION(GetUserSummary, "numProjects", "numQuotes", "numOrders", "aServerURL",
                            "aSessionID")
          .BVCONN_OPERATION(GetUserSummaryByGIDs, "projectGIDs", "quoteGIDs", "orderGIDs",
                            "aServerURL", "aSessionID")
          .BVCONN_OPERATION(getProjectSummary, "ProjectGID", "aServerURL", "aSessionID")
          .BVCONN_OPERATION(getQuoteSummary, "QuoteGID", "aServerURL", "aSessionID")
          .BVCONN_OPERATION(getProposalsForQuote, "QuoteGID", "aServerURL", "aSessionID")
          .BVCONN_OPERATION(getOrdersForQuote, "QuoteGID", "aServerURL", "aSessionID")
          .BVCONN_OPERATION(getQuotesForProject, "ProjectGID", "aServerURL", "aSessionID")
          .BVCONN_OPERATION(getOrderSummary, "orderGID", "aServerURL", "aSessionID")
          .take();
  return info;
}

const ClassInfo& postal_connector_class() {
  using C = BVPostalConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVPostalConnector")
          .BVCONN_OPERATION(GetCountries, "aServerURL", "aSessionID", "aLazyLoad")
          .take();
  return info;
}

const ClassInfo& export_connector_class() {
  using C = BVExportConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVExportConnector")
          .BVCONN_OPERATION(SetExportComplete, "aServerURL", "aSessionID", "aOrderGID")
          .take();
  return info;
}

const ClassInfo& document_connector_class() {
  using C = BVDocumentConnector;
  static const ClassInfo info = ClassBuilder<C>("BVDocumentConnector")
                                    .BVCONN_OPERATION(GetDocuments, "aServerURL", "aGID")
                                    .take();
  return info;
}

const ClassInfo& config_connector_class() {
  using C = BVConfigConnector;
  static const ClassInfo info =
      ClassBuilder<C>("BVConfigConnector")
          .BVCONN_OPERATION(GetConfiguredProduct, "aServerURL", "aSalesInstrumentGID")
          .take();
  return info;
}

}  // namespace bvconn::automation
