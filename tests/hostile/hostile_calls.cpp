#include "hostile/hostile_calls.h"

#include <map>

#include "bvconn/connectors/documents/bv_acknowledgement_connector.h"
#include "bvconn/connectors/documents/bv_sales_instrument_connector.h"
#include "bvconn/connectors/invoice/bv_invoice_connector.h"
#include "bvconn/connectors/print/bv_print_connector.h"
#include "bvconn/connectors/search/bv_search_connector.h"
#include "bvconn/connectors/session/bv_document_connector.h"
#include "bvconn/connectors/session/bv_heart_beat_connector.h"
#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/platform/soap/xml_document.h"

namespace bvconn::test {
namespace {

Given node(SoapNode node) {
  return {.node = std::move(node), .text = std::nullopt};
}

Given text(std::string text) {
  return {.node = SoapNode(), .text = std::move(text)};
}

}  // namespace

HostileCall call_of(std::string_view name) {
  using Url = std::string_view;
  static const std::map<std::string_view, HostileCall> calls{
      // Both routes; the error as it comes.
      {"GetQuotePrintout",
       [](Url url) { return node(BVPrintConnector().GetQuotePrintout(url, "S-1", "U-1")); }},
      // Codes of faults are looked at.
      {"GetInvoice",
       [](Url url) { return node(BVInvoiceConnector().GetInvoice(url, "S-1", "U-1")); }},
      // A fault's words in place of the error's.
      {"SearchForAuthorizations",
       [](Url url) { return node(BVSearchConnector().SearchForAuthorizations("S-1", url)); }},
      // No error reaches the caller.
      {"GetDocuments",
       [](Url url) { return node(BVDocumentConnector().GetDocuments(url, "G-1")); }},
      // The exchange of an operation's own, and a text as the result.
      {"getNewAcknowledgment",
       [](Url url) {
         return text(BVAcknowledgementConnector().getNewAcknowledgment("<a/>", url, "S-1"));
       }},
      // No envelope: the bytes are loaded into a document.
      {"pilferSalesInstrument",
       [](Url url) {
         XMLDocument document;
         BVSalesInstrumentConnector().pilferSalesInstrument("G-1", &document, "order", url, "S-1");
         return text(document.xml());
       }},
      {"sendHeartBeat",
       [](Url url) {
         BVHeartBeatConnector().sendHeartBeat(url, "S-1");
         return text("");
       }},
      {"InitTorvexDAL",
       [](Url url) {
         BVConnectorObject().InitTorvexDAL(url);
         return text("");
       }},
  };
  const auto found = calls.find(name);
  return found == calls.end() ? HostileCall() : found->second;
}

}  // namespace bvconn::test
