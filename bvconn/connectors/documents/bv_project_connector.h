#pragma once

#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"

namespace bvconn {

/// Project documents: fetch, copy, revert, save, review, quotes. Service "urn:ProjectService".
///
/// A project is a node that the server made and the application changes; nothing here looks into
/// it, and it stays the caller's. Keys go out as they stand, "" too. `UseDALSave` of the session
/// ties `SaveProject` to the route that the earlier calls took.
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`; a server fault as
/// 0x80044201, on the SOAP route with the server's text. Results are the reply's first parameter;
/// a reply without one fails with 0x80044204.
class BVCONN_EXPORT BVProjectConnector {
 public:
  /// A copy of a project, not saved yet. Clears `UseDALSave` first; the DAL route sets it.
  /// Route: DAL `ProjectService.CopyProject`, else SOAP `copyProject`.
  SoapNode CopyProject(std::string_view aServerURL, std::string_view aSessionID,
                       std::string_view aGID);
  /// The quotes that the server makes from a project. The request is written to the log file on the
  /// DAL route, and the time that the call took to the log on both.
  /// @param aGenQuoteContainer  What to make; sent as it is, under its own name. An empty reference
  ///                            fails with error 91.
  /// @param aProjectGID         Key of the project; when "", `aProject` is sent whole instead.
  /// @param aProject            Sent as the content of "Project"; an empty reference as nil. Not
  ///                            looked at when there is a key. With neither, the server decides.
  /// Route: DAL `ProjectService.generateQuotes` with the request's text, else SOAP
  /// `generateQuotes`.
  SoapNode generateQuotes(std::string_view aServerURL, std::string_view aSessionID,
                          const SoapNode& aGenQuoteContainer, std::string_view aProjectGID = "",
                          const SoapNode& aProject = {});
  /// An empty project to fill. Clears `UseDALSave` first; the DAL route sets it.
  /// Route: DAL `ProjectService.getNewProject`, else SOAP `newProject`.
  SoapNode getNewProject(std::string_view aServerURL, std::string_view aSessionID);
  /// The project with this key. Leaves `UseDALSave` as it is.
  /// Route: DAL `ProjectService.getExistingProject`, else SOAP `getProject`.
  SoapNode getExistingProject(std::string_view aServerURL, std::string_view aSessionID,
                              std::string_view aGID);
  /// The project as it was before its last change. Leaves `UseDALSave` as it is.
  /// Route: DAL `ProjectService.getRevertedProject`, else SOAP `revert`.
  SoapNode getRevertedProject(std::string_view aServerURL, std::string_view aSessionID,
                              std::string_view aGID);
  // An empty reference, always: the request is prepared and not sent, so no argument matters:
  // deliberate [not-sent]. Route: none.
  SoapNode setStatusToNegotiating(std::string_view aServerURL, std::string_view aSessionID,
                                  std::string_view aGID);
  SoapNode setStatusToLostOpportunity(std::string_view aServerURL, std::string_view aSessionID,
                                      std::string_view aGID, std::string_view aMessage);

  /// What the server says to the save of a project, which is sent as it is, under its own name; an
  /// empty reference fails with error 91. On the DAL route the request is written to the log file.
  /// Route: DAL `ProjectService.SaveProject` with the request's text, if `UseDALSave` is true too,
  /// else SOAP `save`.
  SoapNode SaveProject(std::string_view aServerURL, std::string_view aSessionID,
                       const SoapNode& aProject);
  /// What the server says to the wish for a review. `aProject` as in `SaveProject`, but the route
  /// does not ask for `UseDALSave`, deliberate [review-route]; an empty reference fails with error
  /// 91.
  /// Route: DAL `ProjectService.RequestReview` with the request's text, else SOAP `requestReview`.
  SoapNode RequestReview(std::string_view aServerURL, std::string_view aSessionID,
                         const SoapNode& aProject);
  /// What the server says to a project's return to its agent. `aProject` as in `RequestReview`; an
  /// empty reference fails with error 91.
  /// Route: DAL `ProjectService.ReturnToAgent` with the request's text, else SOAP `returnToAgent`.
  SoapNode ReturnToAgent(std::string_view aServerURL, std::string_view aSessionID,
                         const SoapNode& aProject);
  /// How far the save of a project has come. The DAL route sets `UseDALSave`.
  /// Route: DAL `ProjectService.CheckSingleSaveStatus`, else SOAP `checkSaveStatus`.
  SoapNode CheckSingleSaveStatus(std::string_view aServerURL, std::string_view aSessionID,
                                 std::string_view aGID);
};

}  // namespace bvconn
