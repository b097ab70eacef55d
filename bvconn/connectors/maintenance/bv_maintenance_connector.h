#pragma once

#include <string>
#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"
#include "bvconn/platform/soap/variant.h"

namespace bvconn {

/// The user's own: paragraphs and remarks, logo, password, profile, and which printout is taken
/// where none was chosen. Service "urn:MaintenanceService"; SOAP names are the operations' own with
/// a small first letter unless stated otherwise.
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`; a server fault as
/// 0x80044201, on the SOAP route with the server's text. Node results are the reply's first
/// parameter, text results its value (13 where it has no text).
class BVCONN_EXPORT BVMaintenanceConnector {
 public:
  // Paragraphs and remarks are nodes that the server made or the application fills; nothing here
  // looks into them. Always by SOAP, with the default time-out and without a timing line.

  /// All paragraphs. The request has no parameter.
  SoapNode GetAllParagraphs(std::string_view aSessionID, std::string_view aServerURL);
  /// Makes a paragraph; `aSoapNode` is sent as it is.
  SoapNode CreateParagraph(std::string_view aSessionID, const SoapNode& aSoapNode,
                           std::string_view aServerURL);
  /// Replaces a paragraph; `aSoapNode` is sent as it is.
  std::string UpdateParagraph(std::string_view aSessionID, const SoapNode& aSoapNode,
                              std::string_view aServerURL);
  /// Deletes the paragraph with this key.
  std::string DeleteParagraph(std::string_view aSessionID, std::string_view aParagraphUID,
                              std::string_view aServerURL);
  /// Puts paragraphs in an order.
  /// @param aParagraphUID  Their keys, as a rule an array of strings; sent as one value, whatever
  ///                       it holds.
  std::string OrderParagraphs(std::string_view aSessionID, const Variant& aParagraphUID,
                              std::string_view aServerURL);
  // The same for remarks.
  SoapNode GetAllRemarks(std::string_view aSessionID, std::string_view aServerURL);
  SoapNode CreateRemark(std::string_view aSessionID, const SoapNode& aSoapNode,
                        std::string_view aServerURL);
  std::string UpdateRemark(std::string_view aSessionID, const SoapNode& aSoapNode,
                           std::string_view aServerURL);
  std::string DeleteRemark(std::string_view aSessionID, std::string_view aRemarkUID,
                           std::string_view aServerURL);
  std::string OrderRemarks(std::string_view aSessionID, const Variant& aRemarkUID,
                           std::string_view aServerURL);

  /// The user's logo. Route: data access layer, else SOAP.
  std::string GetUserLogo(std::string_view aSessionID, std::string_view aServerURL);
  /// The logos to choose from. Route: data access layer, else SOAP.
  SoapNode GetUserLogoList(std::string_view aSessionID, std::string_view aServerURL);
  /// Sets the user's logo. Route: data access layer with `aLogo`, else SOAP.
  std::string SetUserLogo(std::string_view aSessionID, std::string_view aLogo,
                          std::string_view aServerURL);
  /// Sets the user's password, which is sent as it was given. Always by SOAP.
  SoapNode UpdatePassword(std::string_view aSessionID, std::string_view aPassword,
                          std::string_view aServerURL);

  // Which printout is taken where none was chosen, by kind.

  // The default of a document: `…PrintoutNode` is sent as it is. Route: data access layer with the
  // request's text, else SOAP. (Those of the other kinds follow further down.)
  SoapNode SaveQuotePrintoutDefault(std::string_view aSessionID, std::string_view aServerURL,
                                    const SoapNode& aQuotePrintoutNode);

  // The agent's default, by the key of a print info. Always by SOAP.
  SoapNode SaveAgentQuotePrintoutDefault(std::string_view aSessionID, std::string_view aServerURL,
                                         std::string_view aPrintInfoUID);
  SoapNode SaveAgentOrderPrintoutDefault(std::string_view aSessionID, std::string_view aServerURL,
                                         std::string_view aPrintInfoUID);
  SoapNode SaveAgentProjectPrintoutDefault(std::string_view aSessionID, std::string_view aServerURL,
                                           std::string_view aPrintInfoUID);
  SoapNode SaveAgentSAPPrintoutDefault(std::string_view aSessionID, std::string_view aServerURL,
                                       std::string_view aPrintInfoUID);
  SoapNode SaveAgentOrderSubmitPrintoutDefault(std::string_view aSessionID,
                                               std::string_view aServerURL,
                                               std::string_view aPrintInfoUID);
  SoapNode SaveAgentRFQPrintoutDefault(std::string_view aSessionID, std::string_view aServerURL,
                                       std::string_view aPrintInfoUID);
  // The key as the server has it; may be "". Always by SOAP.
  std::string GetAgentQuotePrintoutDefault(std::string_view aSessionID,
                                           std::string_view aServerURL);
  std::string GetAgentOrderPrintoutDefault(std::string_view aSessionID,
                                           std::string_view aServerURL);
  std::string GetAgentSAPPrintoutDefault(std::string_view aSessionID, std::string_view aServerURL);
  std::string GetAgentProjectPrintoutDefault(std::string_view aSessionID,
                                             std::string_view aServerURL);
  std::string GetAgentOrderSubmitPrintoutDefault(std::string_view aSessionID,
                                                 std::string_view aServerURL);
  std::string GetAgentRFQPrintoutDefault(std::string_view aSessionID, std::string_view aServerURL);

  /// Replaces the user's profile: each child of `theNode` is sent as a parameter with its name and
  /// its value; one that has children of its own, or is an array of such, goes out as nil. More
  /// than 32768 children fail with 6 before anything is sent.
  /// Route: data access layer with the request's text unless `setUserQuotePrintoutDefault` is
  /// disabled there (not the operation's own wire name), else SOAP `updateUserProfile`.
  SoapNode SetUserProfile(std::string_view aSessionID, std::string_view aServerURL,
                          const SoapNode& theNode);

  // The user's default, by the key of a print info. Route: data access layer with the key, else
  // SOAP.
  std::string SetUserQuotePrintoutDefault(std::string_view aSessionID, std::string_view aServerURL,
                                          std::string_view aPrintInfoUID);
  std::string SetUserOrderPrintoutDefault(std::string_view aSessionID, std::string_view aServerURL,
                                          std::string_view aPrintInfoUID);
  std::string SetUserOrderSubmitPrintoutDefault(std::string_view aSessionID,
                                                std::string_view aServerURL,
                                                std::string_view aPrintInfoUID);
  std::string SetUserSAPPrintoutDefault(std::string_view aSessionID, std::string_view aServerURL,
                                        std::string_view aPrintInfoUID);
  std::string SetUserProjectPrintoutDefault(std::string_view aSessionID,
                                            std::string_view aServerURL,
                                            std::string_view aPrintInfoUID);
  std::string SetUserRFQPrintoutDefault(std::string_view aSessionID, std::string_view aServerURL,
                                        std::string_view aPrintInfoUID);
  // The key as the server has it; may be "". Route: data access layer, else SOAP.
  std::string GetUserQuotePrintoutDefault(std::string_view aSessionID, std::string_view aServerURL);
  // The other kinds of `SaveQuotePrintoutDefault`.
  SoapNode SaveOrderPrintoutDefault(std::string_view aSessionID, std::string_view aServerURL,
                                    const SoapNode& aOrderPrintoutNode);
  SoapNode SaveSAPPrintoutDefault(std::string_view aSessionID, std::string_view aServerURL,
                                  const SoapNode& aSAPPrintoutNode);
  SoapNode SaveProjectPrintoutDefault(std::string_view aSessionID, std::string_view aServerURL,
                                      const SoapNode& aProjectPrintoutNode);
  SoapNode SaveRFQPrintoutDefault(std::string_view aSessionID, std::string_view aServerURL,
                                  const SoapNode& aRFQPrintoutNode);
  // The other kinds of `GetUserQuotePrintoutDefault`.
  std::string GetUserOrderPrintoutDefault(std::string_view aSessionID, std::string_view aServerURL);
  std::string GetUserOrderSubmitPrintoutDefault(std::string_view aSessionID,
                                                std::string_view aServerURL);
  std::string GetUserRFQPrintoutDefault(std::string_view aSessionID, std::string_view aServerURL);
  std::string GetUserSAPPrintoutDefault(std::string_view aSessionID, std::string_view aServerURL);
  std::string GetUserProjectPrintoutDefault(std::string_view aSessionID,
                                            std::string_view aServerURL);

  /// Asks for the type-ahead file; where the server has none, it begins to make one. Always by SOAP
  /// `checkTypeAheadFileIfItDoesNotExistThenKickOffPrimeTypeAhead`. An answer that is no boolean,
  /// or nil, fails with 13.
  bool CheckTypeAheadFile(std::string_view aSessionID, std::string_view aServerURL);
};

}  // namespace bvconn
