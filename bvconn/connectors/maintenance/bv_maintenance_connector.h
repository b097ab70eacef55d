#pragma once

#include <string>
#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"
#include "bvconn/platform/soap/variant.h"

namespace bvconn {

/// The user's own: paragraphs and remarks, logo, password, profile, and which printout is taken
/// where none was chosen. Service "urn:MaintenanceService". Keys and texts go out as they stand, ""
/// too; nothing looks into a node.
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`; a server fault as
/// 0x80044201, on the SOAP route with the server's text. Node results are the reply's first
/// parameter, text results its value, "" for an empty one; an array or a node in place of a text
/// fails with error 13. A reply without a parameter fails with 0x80044204.
class BVCONN_EXPORT BVMaintenanceConnector {
 public:
  // The paragraphs that the user has stored. All that has to do with them runs with the default
  // time-out and writes no line with the time that it took.
  /// All of them. The request has no parameter. Route: SOAP `getAllParagraphs`.
  SoapNode GetAllParagraphs(std::string_view aSessionID, std::string_view aServerURL);
  /// What the server made of a new one. `aSoapNode` is sent as it is, under its own name; an empty
  /// reference fails with error 91. Route: SOAP `createParagraph`.
  SoapNode CreateParagraph(std::string_view aSessionID, const SoapNode& aSoapNode,
                           std::string_view aServerURL);
  /// What the server says to a changed one, as text, unlike `CreateParagraph`. `aSoapNode` as
  /// there; an empty reference fails with error 91. Route: SOAP `updateParagraph`.
  std::string UpdateParagraph(std::string_view aSessionID, const SoapNode& aSoapNode,
                              std::string_view aServerURL);
  /// What the server says to the deletion of the one with this key. Route: SOAP `deleteParagraph`.
  std::string DeleteParagraph(std::string_view aSessionID, std::string_view aParagraphUID,
                              std::string_view aServerURL);
  /// What the server says to a new order of them. Route: SOAP `orderParagraphs`.
  /// @param aParagraphUID  Their keys, as a rule an array of strings; sent as one value, whatever
  ///                       it holds, an array of one as an array.
  std::string OrderParagraphs(std::string_view aSessionID, const Variant& aParagraphUID,
                              std::string_view aServerURL);

  // The same for remarks.
  /// Route: SOAP `getAllRemarks`.
  SoapNode GetAllRemarks(std::string_view aSessionID, std::string_view aServerURL);
  /// An empty reference fails with error 91. Route: SOAP `createRemark`.
  SoapNode CreateRemark(std::string_view aSessionID, const SoapNode& aSoapNode,
                        std::string_view aServerURL);
  /// An empty reference fails with error 91. Route: SOAP `updateRemark`.
  std::string UpdateRemark(std::string_view aSessionID, const SoapNode& aSoapNode,
                           std::string_view aServerURL);
  /// Route: SOAP `deleteRemark`.
  std::string DeleteRemark(std::string_view aSessionID, std::string_view aRemarkUID,
                           std::string_view aServerURL);
  /// Route: SOAP `orderRemarks`.
  std::string OrderRemarks(std::string_view aSessionID, const Variant& aRemarkUID,
                           std::string_view aServerURL);

  /// The user's logo, as text. Route: DAL `MaintenanceService.GetUserLogo`, else SOAP
  /// `getUserLogo`.
  std::string GetUserLogo(std::string_view aSessionID, std::string_view aServerURL);
  /// The logos to choose from. Route: DAL `MaintenanceService.GetUserLogoList`, else SOAP
  /// `getUserLogoList`.
  SoapNode GetUserLogoList(std::string_view aSessionID, std::string_view aServerURL);
  /// What the server says to the user's new logo, a text whose form is the server's.
  /// Route: DAL `MaintenanceService.SetUserLogo`, else SOAP `setUserLogo`.
  std::string SetUserLogo(std::string_view aSessionID, std::string_view aLogo,
                          std::string_view aServerURL);
  /// What the server says to the user's new password, which is sent as it was given, neither hashed
  /// nor masked. Route: SOAP `updatePassword`.
  SoapNode UpdatePassword(std::string_view aSessionID, std::string_view aPassword,
                          std::string_view aServerURL);

  // Which printout is taken where none was chosen, by kind: what the server says to a document's
  // new default. The node is sent as it is, under its own name; an empty reference fails with error
  // 91. (The other kinds follow further down.)
  // Route: DAL `MaintenanceService.Save…PrintoutDefault` with the request's text, else SOAP
  // `save…PrintoutDefault`.
  SoapNode SaveQuotePrintoutDefault(std::string_view aSessionID, std::string_view aServerURL,
                                    const SoapNode& aQuotePrintoutNode);

  // What the server says to the agent's new default of a kind, which is the key of a print info.
  // Route: SOAP `saveAgent…PrintoutDefault`.
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

  // The agent's default of a kind: the key of a print info as the server has it; may be "".
  // Route: SOAP `getAgent…PrintoutDefault`.
  std::string GetAgentQuotePrintoutDefault(std::string_view aSessionID,
                                           std::string_view aServerURL);
  std::string GetAgentOrderPrintoutDefault(std::string_view aSessionID,
                                           std::string_view aServerURL);
  std::string GetAgentSAPPrintoutDefault(std::string_view aSessionID, std::string_view aServerURL);
  std::string GetAgentProjectPrintoutDefault(std::string_view aSessionID,
                                             std::string_view aServerURL);
  /// Its exit line bears the name `GetAgentQuotePrintoutDefault`: deliberate [submit-exit-name].
  std::string GetAgentOrderSubmitPrintoutDefault(std::string_view aSessionID,
                                                 std::string_view aServerURL);
  std::string GetAgentRFQPrintoutDefault(std::string_view aSessionID, std::string_view aServerURL);

  /// What the server says to the user's new profile: each child of `theNode` is sent as a parameter
  /// with its name and its value; one that has children of its own, or is an array of such, goes
  /// out as nil. Without children the request has no parameter. An empty reference fails with error
  /// 91, more than 32768 children with error 6, before anything is sent.
  /// Route: DAL `MaintenanceService.SetUserProfile` with the request's text, unless
  /// `setUserQuotePrintoutDefault` is disabled there (not the operation's own name,
  /// deliberate [profile-route]), else SOAP `updateUserProfile`.
  SoapNode SetUserProfile(std::string_view aSessionID, std::string_view aServerURL,
                          const SoapNode& theNode);

  // What the server says to the user's new default of a kind, which is the key of a print info.
  // Route: DAL `MaintenanceService.SetUser…PrintoutDefault`, else SOAP `setUser…PrintoutDefault`.
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

  // The user's default of a kind: the key of a print info as the server has it; may be "".
  // Route: DAL `MaintenanceService.GetUser…PrintoutDefault`, else SOAP `getUser…PrintoutDefault`.
  std::string GetUserQuotePrintoutDefault(std::string_view aSessionID, std::string_view aServerURL);

  // The other kinds of `SaveQuotePrintoutDefault`; an empty reference fails with error 91.
  // Route: DAL `MaintenanceService.Save…PrintoutDefault` with the request's text, else SOAP
  // `save…PrintoutDefault`.
  SoapNode SaveOrderPrintoutDefault(std::string_view aSessionID, std::string_view aServerURL,
                                    const SoapNode& aOrderPrintoutNode);
  SoapNode SaveSAPPrintoutDefault(std::string_view aSessionID, std::string_view aServerURL,
                                  const SoapNode& aSAPPrintoutNode);
  SoapNode SaveProjectPrintoutDefault(std::string_view aSessionID, std::string_view aServerURL,
                                      const SoapNode& aProjectPrintoutNode);
  SoapNode SaveRFQPrintoutDefault(std::string_view aSessionID, std::string_view aServerURL,
                                  const SoapNode& aRFQPrintoutNode);

  // The other kinds of `GetUserQuotePrintoutDefault`.
  // Route: DAL `MaintenanceService.GetUser…PrintoutDefault`, else SOAP `getUser…PrintoutDefault`.
  std::string GetUserOrderPrintoutDefault(std::string_view aSessionID, std::string_view aServerURL);
  std::string GetUserOrderSubmitPrintoutDefault(std::string_view aSessionID,
                                                std::string_view aServerURL);
  std::string GetUserRFQPrintoutDefault(std::string_view aSessionID, std::string_view aServerURL);
  std::string GetUserSAPPrintoutDefault(std::string_view aSessionID, std::string_view aServerURL);
  std::string GetUserProjectPrintoutDefault(std::string_view aSessionID,
                                            std::string_view aServerURL);

  /// Whether the server has the type-ahead file; where it has none, it begins to make one. Nothing
  /// is read or written on this machine. An answer that is no boolean, by the rules of text and
  /// number, or nil fails with error 13.
  /// Route: SOAP `checkTypeAheadFileIfItDoesNotExistThenKickOffPrimeTypeAhead`.
  bool CheckTypeAheadFile(std::string_view aSessionID, std::string_view aServerURL);
};

}  // namespace bvconn
