#pragma once

#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"

namespace bvconn {

/// Printing: what can be printed, the printout settings in force, stored printouts, and what a
/// printout needs from other services. Service "urn:PrintingService", but for the three operations
/// with a small first letter, whose argument lists also end with `aServerURL`, `aSessionID` instead
/// of beginning with them. Keys go out as they stand, "" too; nothing looks into a printout.
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`; a server fault as
/// 0x80044201, on the SOAP route with the server's text. Results are the reply's first parameter;
/// a reply without one fails with 0x80044204.
class BVCONN_EXPORT BVPrintConnector {
 public:
  /// What can be printed. Route: DAL `PrintingService.GetPrintInfos`, else SOAP `getPrintInfos`.
  SoapNode GetPrintInfos(std::string_view aServerURL, std::string_view aSessionID);
  /// The templates that there are.
  /// Route: DAL `PrintingService.GetPrintTemplates`, else SOAP `getPrintTemplates`.
  SoapNode GetPrintTemplates(std::string_view aServerURL, std::string_view aSessionID);

  // The whole set of printout settings for one kind of printout. `getUserDefaults` is always sent:
  // true asks for the user's own settings.
  // Route: DAL `PrintingService.Get…PrintoutDefaults`, else SOAP `get…PrintoutDefaults`.
  SoapNode GetQuotePrintoutDefaults(std::string_view aServerURL, std::string_view aSessionID,
                                    bool getUserDefaults);
  /// Its failures are logged under `GetQuotePrintoutDefaults`,
  /// deliberate [order-defaults-log-name].
  SoapNode GetOrderPrintoutDefaults(std::string_view aServerURL, std::string_view aSessionID,
                                    bool getUserDefaults);
  SoapNode GetProjectPrintoutDefaults(std::string_view aServerURL, std::string_view aSessionID,
                                      bool getUserDefaults);
  SoapNode GetRFQPrintoutDefaults(std::string_view aServerURL, std::string_view aSessionID,
                                  bool getUserDefaults);
  SoapNode GetSAPPrintoutDefaults(std::string_view aServerURL, std::string_view aSessionID,
                                  bool getUserDefaults);

  /// The stored printout of a quote with this key, the one kind that the data access layer reads.
  /// Route: DAL `PrintingService.GetQuotePrintout`, else SOAP `getQuotePrint`.
  SoapNode GetQuotePrintout(std::string_view aServerURL, std::string_view aSessionID,
                            std::string_view aUID);
  /// What the server says to a quote's printout that it stores. The printout is sent as it is,
  /// under its own name, and stays the caller's; an empty reference fails with error 91.
  /// Route: SOAP `saveQuotePrint`.
  SoapNode SaveQuotePrintout(std::string_view aServerURL, std::string_view aSessionID,
                             const SoapNode& aQuotePrintoutNode);
  /// The stored printout of an order with this key. Route: SOAP `getOrderPrint`.
  SoapNode GetOrderPrintout(std::string_view aServerURL, std::string_view aSessionID,
                            std::string_view aUID);
  /// As `SaveQuotePrintout`, for an order; an empty reference fails with error 91.
  /// Route: SOAP `saveOrderPrint`.
  SoapNode SaveOrderPrintout(std::string_view aServerURL, std::string_view aSessionID,
                             const SoapNode& aOrderPrintoutNode);

  /// The comments that a proposal can bear. Writes no log line of its own, not even on failure, and
  /// errors keep all their five values. The DAL route ignores `aAgentID`.
  /// Route: DAL `SearchService.getProposalComments`, else SOAP `searchForProposalComments` of
  /// "urn:SearchService".
  SoapNode getProposalComments(std::string_view aAgentID, std::string_view aServerURL,
                               std::string_view aSessionID);
  /// What an RFQ to a manufacturer needs of a quote. The SOAPAction is another service's:
  /// deliberate [rfq-info-action].
  /// Route: DAL `QuoteService.getRFQAuxiliaryInfo`, else SOAP `getRFQAuxiliaryInfo` of
  /// "urn:QuoteService" under the SOAPAction "urn:SearchService".
  SoapNode getRFQAuxiliaryInfo(std::string_view aQuoteGID, std::string_view aManufacturerGID,
                               std::string_view aServerURL, std::string_view aSessionID);
  /// What an RFQ to a manufacturer needs of a project. The SOAPAction is another service's:
  /// deliberate [rfq-info-action].
  /// Route: DAL `ProjectService.getRFQFromProjAuxInfo`, else SOAP `getRFQFromProjAuxInfo` of
  /// "urn:ProjectService" under the SOAPAction "urn:SearchService".
  SoapNode getRFQFromProjAuxInfo(std::string_view aProjectGID, std::string_view aManufacturerGID,
                                 std::string_view aServerURL, std::string_view aSessionID);

  /// The stored printout of an RFQ with this key. Route: SOAP `getRFQPrint`.
  SoapNode GetRFQPrintout(std::string_view aServerURL, std::string_view aSessionID,
                          std::string_view aUID);
  /// As `SaveQuotePrintout`, for an RFQ; an empty reference fails with error 91.
  /// Route: SOAP `saveRFQPrint`.
  SoapNode SaveRFQPrintout(std::string_view aServerURL, std::string_view aSessionID,
                           const SoapNode& aRFQPrintoutNode);
};

}  // namespace bvconn
