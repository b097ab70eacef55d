#pragma once

#include <string>
#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"
#include "bvconn/platform/soap/variant.h"

namespace bvconn {

/// Submittals of projects and quotes. Service "urn:SubmittalService". Every argument list begins
/// with `aSessionID` and ends with `aServerURL`. Keys go out as they stand, "" too.
///
/// Making and destroying an object writes log lines. A logger that fails there is logged and fails
/// nothing; one that fails at that error line too makes the constructor fail, never the destructor.
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`; a server fault as
/// 0x80044201, on the SOAP route with the server's text. Node results are the reply's first
/// parameter, text results its value; a reply without one fails with 0x80044204.
class BVCONN_EXPORT BVSubmittalConnector {
 public:
  BVSubmittalConnector();
  ~BVSubmittalConnector();
  BVSubmittalConnector(const BVSubmittalConnector&) = delete;
  BVSubmittalConnector& operator=(const BVSubmittalConnector&) = delete;

  /// The paragraphs that a submittal can hold. Route: SOAP `getAllParagraphs`.
  SoapNode GetAllParagraphs(std::string_view aSessionID, std::string_view aServerURL);
  /// The remarks that a submittal can hold. Writes no exit line: deliberate [remarks-exit].
  /// Route: SOAP `getAllRemarks`.
  SoapNode GetAllRemarks(std::string_view aSessionID, std::string_view aServerURL);
  /// The submittal with this key. Route: SOAP `getSubmittal`.
  SoapNode GetSubmittal(std::string_view aSessionID, std::string_view aSubmittalUID,
                        std::string_view aServerURL);
  /// The criteria of the submittal with this key. Route: SOAP `getSubmittalCriteria`.
  SoapNode GetSubmittalCriteria(std::string_view aSessionID, std::string_view aSubmittalUID,
                                std::string_view aServerURL);

  // The submittal comments of one line item, or of several. The four share one server method, which
  // learns from a flag whether the items are a project's or a quote's. `aLineItemGIDs` is a list of
  // keys and goes out as it stands: an array as one array, an empty one too.
  // Route: SOAP `getSubmittalCommentsForLineItem`.
  SoapNode GetSubmittalCommentsForProjectLineItem(std::string_view aSessionID,
                                                  std::string_view aLineItemGID,
                                                  std::string_view aServerURL);
  SoapNode GetSubmittalCommentsForProjectLineItems(std::string_view aSessionID,
                                                   const Variant& aLineItemGIDs,
                                                   std::string_view aServerURL);
  SoapNode GetSubmittalCommentsForQuoteLineItem(std::string_view aSessionID,
                                                std::string_view aLineItemGID,
                                                std::string_view aServerURL);
  SoapNode GetSubmittalCommentsForQuoteLineItems(std::string_view aSessionID,
                                                 const Variant& aLineItemGIDs,
                                                 std::string_view aServerURL);

  // What the server says to a submittal, as text; an array or a node fails with error 13.
  // `aSoapNode` is sent as the content of "Submittal", an empty reference as nil.
  /// A new one. Writes no log line of its own, not even on failure:
  /// deliberate [create-submittal-lines].
  /// Route: SOAP `createSubmittal`.
  std::string CreateSubmittal(std::string_view aSessionID, const SoapNode& aSoapNode,
                              std::string_view aServerURL);
  /// A new revision of one. Route: SOAP `reviseSubmittal`.
  std::string ReviseSubmittal(std::string_view aSessionID, const SoapNode& aSoapNode,
                              std::string_view aServerURL);
  /// One that is there already. Route: SOAP `updateSubmittal`.
  std::string UpdateSubmittal(std::string_view aSessionID, const SoapNode& aSoapNode,
                              std::string_view aServerURL);

  // The submittals of a project, by its key, or of a quote, by its number: all of them, or those
  // that can still be updated.
  /// Route: DAL `SubmittalService.GetAllSubmittalsForProject`, else SOAP
  /// `getAllSubmittalsForProject`.
  SoapNode GetAllSubmittalsForProject(std::string_view aSessionID, std::string_view aProjectGID,
                                      std::string_view aServerURL);
  /// Route: DAL `SubmittalService.GetAllSubmittalsForQuote`, else SOAP `getAllSubmittalsForQuote`.
  SoapNode GetAllSubmittalsForQuote(std::string_view aSessionID, std::string_view aQuoteNbr,
                                    std::string_view aServerURL);
  /// Route: DAL `SubmittalService.GetUpdatableSubmittalsForProject`, else SOAP
  /// `getUpdatableSubmittalsForProject`.
  SoapNode GetUpdatableSubmittalsForProject(std::string_view aSessionID,
                                            std::string_view aProjectGID,
                                            std::string_view aServerURL);
  /// Route: DAL `SubmittalService.GetUpdatableSubmittalsForQuote`, else SOAP
  /// `getUpdatableSubmittalsForQuote`.
  SoapNode GetUpdatableSubmittalsForQuote(std::string_view aSessionID, std::string_view aQuoteNbr,
                                          std::string_view aServerURL);
};

}  // namespace bvconn
