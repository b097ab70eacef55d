#pragma once

#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"

namespace bvconn {

/// Printing: what can be printed, the printout settings in force, stored printouts, and what a
/// printout needs from other services. Service "urn:PrintingService", but for the three operations
/// with a small first letter, whose argument lists also end with `aServerURL`, `aSessionID` instead
/// of beginning with them.
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`; a server fault as
/// 0x80044201, on the SOAP route with the server's text. Results are the reply's first parameter.
class BVCONN_EXPORT BVPrintConnector {
 public:
  /// What can be printed. Route: data access layer, else SOAP `getPrintInfos`.
  SoapNode GetPrintInfos(std::string_view aServerURL, std::string_view aSessionID);
  /// The templates that there are. Route: data access layer, else SOAP `getPrintTemplates`.
  SoapNode GetPrintTemplates(std::string_view aServerURL, std::string_view aSessionID);

  // The whole set of printout settings for one kind of printout. `getUserDefaults` is always sent:
  // true asks for the user's own settings. Route: data access layer, else SOAP under the
  // operation's name with a small first letter.
  SoapNode GetQuotePrintoutDefaults(std::string_view aServerURL, std::string_view aSessionID,
                                    bool getUserDefaults);
  /// Its failures are logged under `GetQuotePrintoutDefaults`.
  SoapNode GetOrderPrintoutDefaults(std::string_view aServerURL, std::string_view aSessionID,
                                    bool getUserDefaults);
  SoapNode GetProjectPrintoutDefaults(std::string_view aServerURL, std::string_view aSessionID,
                                      bool getUserDefaults);
  SoapNode GetRFQPrintoutDefaults(std::string_view aServerURL, std::string_view aSessionID,
                                  bool getUserDefaults);
  SoapNode GetSAPPrintoutDefaults(std::string_view aServerURL, std::string_view aSessionID,
                                  bool getUserDefaults);

  // Stored printouts. A printout to save is sent as it is, under its own name, and stays the
  // caller's; an empty reference fails with 91.
  /// Route: data access layer, else SOAP `getQuotePrint`.
  SoapNode GetQuotePrintout(std::string_view aServerURL, std::string_view aSessionID,
                            std::string_view aUID);
  /// Always by SOAP `saveQuotePrint`.
  SoapNode SaveQuotePrintout(std::string_view aServerURL, std::string_view aSessionID,
                             const SoapNode& aQuotePrintoutNode);
  /// Always by SOAP `getOrderPrint`.
  SoapNode GetOrderPrintout(std::string_view aServerURL, std::string_view aSessionID,
                            std::string_view aUID);
  /// Always by SOAP `saveOrderPrint`.
  SoapNode SaveOrderPrintout(std::string_view aServerURL, std::string_view aSessionID,
                             const SoapNode& aOrderPrintoutNode);

  /// The comments that a proposal can bear. Writes no log line of its own, not even on failure, and
  /// errors keep all their five values.
  /// Route: data access layer, which ignores `aAgentID`, else SOAP `searchForProposalComments` of
  /// "urn:SearchService".
  SoapNode getProposalComments(std::string_view aAgentID, std::string_view aServerURL,
                               std::string_view aSessionID);
  /// What an RFQ needs of a quote. Route: data access layer, else SOAP `getRFQAuxiliaryInfo` of
  /// "urn:QuoteService", under the SOAPAction "urn:SearchService".
  SoapNode getRFQAuxiliaryInfo(std::string_view aQuoteGID, std::string_view aManufacturerGID,
                               std::string_view aServerURL, std::string_view aSessionID);
  /// What an RFQ needs of a project. Route: data access layer, else SOAP `getRFQFromProjAuxInfo` of
  /// "urn:ProjectService", under the SOAPAction "urn:SearchService".
  SoapNode getRFQFromProjAuxInfo(std::string_view aProjectGID, std::string_view aManufacturerGID,
                                 std::string_view aServerURL, std::string_view aSessionID);

  /// Always by SOAP `getRFQPrint`.
  SoapNode GetRFQPrintout(std::string_view aServerURL, std::string_view aSessionID,
                          std::string_view aUID);
  /// Always by SOAP `saveRFQPrint`.
  SoapNode SaveRFQPrintout(std::string_view aServerURL, std::string_view aSessionID,
                           const SoapNode& aRFQPrintoutNode);
};

}  // namespace bvconn
