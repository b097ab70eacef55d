#pragma once

#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"

namespace bvconn {

/// Project documents: fetch, copy, revert, save, review, quotes. Service "urn:ProjectService".
///
/// A project is a node that the server made and the application changes; nothing here looks into
/// it. `UseDALSave` of the session ties `SaveProject` to the route that the earlier calls took.
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`; a server fault as
/// 0x80044201, on the SOAP route with the server's text. Results are the reply's first parameter.
class BVCONN_EXPORT BVProjectConnector {
 public:
  /// A copy of a project, not saved yet.
  /// Route: data access layer, which sets `UseDALSave`, else SOAP `copyProject`, which clears it.
  SoapNode CopyProject(std::string_view aServerURL, std::string_view aSessionID,
                       std::string_view aGID);
  /// Makes quotes from a project.
  /// @param aGenQuoteContainer  What to make; sent as it is, under its own name.
  /// @param aProjectGID         Key of the project; when "", `aProject` is sent whole instead.
  /// @param aProject            Sent as the content of "Project"; an empty reference as nil.
  /// Route: data access layer with the request's text, which is logged, else SOAP `generateQuotes`.
  SoapNode generateQuotes(std::string_view aServerURL, std::string_view aSessionID,
                          const SoapNode& aGenQuoteContainer, std::string_view aProjectGID = "",
                          const SoapNode& aProject = {});
  /// An empty project to fill.
  /// Route: data access layer, which sets `UseDALSave`, else SOAP `newProject`, which clears it.
  SoapNode getNewProject(std::string_view aServerURL, std::string_view aSessionID);
  /// The project with this key. Route: data access layer, else SOAP `getProject`.
  SoapNode getExistingProject(std::string_view aServerURL, std::string_view aSessionID,
                              std::string_view aGID);
  /// The project as it was before its last change. Route: data access layer, else SOAP `revert`.
  SoapNode getRevertedProject(std::string_view aServerURL, std::string_view aSessionID,
                              std::string_view aGID);
  /// Prepares a request and sends nothing, on purpose. @return An empty reference.
  SoapNode setStatusToNegotiating(std::string_view aServerURL, std::string_view aSessionID,
                                  std::string_view aGID);
  /// Prepares a request and sends nothing, on purpose. @return An empty reference.
  SoapNode setStatusToLostOpportunity(std::string_view aServerURL, std::string_view aSessionID,
                                      std::string_view aGID, std::string_view aMessage);
  /// Saves a project. `aProject` is sent as it is and stays the caller's.
  /// Route: data access layer with the request's text, which is logged, if `UseDALSave` says so
  /// too; else SOAP `save`.
  SoapNode SaveProject(std::string_view aServerURL, std::string_view aSessionID,
                       const SoapNode& aProject);
  /// Asks for a review. Route: data access layer with the request's text, whatever `UseDALSave`
  /// says, else SOAP `requestReview`.
  SoapNode RequestReview(std::string_view aServerURL, std::string_view aSessionID,
                         const SoapNode& aProject);
  /// Returns a project to its agent. Route: as `RequestReview`, else SOAP `returnToAgent`.
  SoapNode ReturnToAgent(std::string_view aServerURL, std::string_view aSessionID,
                         const SoapNode& aProject);
  /// How far the save of a project has come.
  /// Route: data access layer, which sets `UseDALSave`, else SOAP `checkSaveStatus`.
  SoapNode CheckSingleSaveStatus(std::string_view aServerURL, std::string_view aSessionID,
                                 std::string_view aGID);
};

}  // namespace bvconn
