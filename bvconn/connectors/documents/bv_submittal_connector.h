#pragma once

#include <string>
#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"
#include "bvconn/platform/soap/variant.h"

namespace bvconn {

/// Submittals of projects and quotes. Service "urn:SubmittalService". Every argument list begins
/// with `aSessionID` and ends with `aServerURL`.
///
/// Making and destroying an object writes log lines. A logger that fails there is logged and fails
/// nothing; one that fails at that error line too makes the constructor fail, never the destructor.
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`. Node results are the
/// reply's first parameter, text results its value.
class BVCONN_EXPORT BVSubmittalConnector {
 public:
  BVSubmittalConnector();
  ~BVSubmittalConnector();
  BVSubmittalConnector(const BVSubmittalConnector&) = delete;
  BVSubmittalConnector& operator=(const BVSubmittalConnector&) = delete;

  /// The paragraphs that a submittal can hold. SOAP `getAllParagraphs`.
  SoapNode GetAllParagraphs(std::string_view aSessionID, std::string_view aServerURL);
  /// The remarks that a submittal can hold. SOAP `getAllRemarks`. Writes no exit line.
  SoapNode GetAllRemarks(std::string_view aSessionID, std::string_view aServerURL);
  /// The submittal with this key. SOAP `getSubmittal`.
  SoapNode GetSubmittal(std::string_view aSessionID, std::string_view aSubmittalUID,
                        std::string_view aServerURL);
  /// The criteria of a submittal. SOAP `getSubmittalCriteria`.
  SoapNode GetSubmittalCriteria(std::string_view aSessionID, std::string_view aSubmittalUID,
                                std::string_view aServerURL);

  // Comments of line items: one server method, which learns whether the items are a project's.
  // `aLineItemGIDs` goes out as it stands: an array stays one array.
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

  // A submittal is sent as the content of "Submittal"; the answer is a text.
  /// SOAP `createSubmittal`. Writes no log line, not even on failure.
  std::string CreateSubmittal(std::string_view aSessionID, const SoapNode& aSoapNode,
                              std::string_view aServerURL);
  /// SOAP `reviseSubmittal`.
  std::string ReviseSubmittal(std::string_view aSessionID, const SoapNode& aSoapNode,
                              std::string_view aServerURL);
  /// SOAP `updateSubmittal`.
  std::string UpdateSubmittal(std::string_view aSessionID, const SoapNode& aSoapNode,
                              std::string_view aServerURL);

  // Lists: of a project by its key, of a quote by its number. Route: data access layer, else SOAP.
  SoapNode GetAllSubmittalsForProject(std::string_view aSessionID, std::string_view aProjectGID,
                                      std::string_view aServerURL);
  SoapNode GetAllSubmittalsForQuote(std::string_view aSessionID, std::string_view aQuoteNbr,
                                    std::string_view aServerURL);
  SoapNode GetUpdatableSubmittalsForProject(std::string_view aSessionID,
                                            std::string_view aProjectGID,
                                            std::string_view aServerURL);
  SoapNode GetUpdatableSubmittalsForQuote(std::string_view aSessionID, std::string_view aQuoteNbr,
                                          std::string_view aServerURL);
};

}  // namespace bvconn
