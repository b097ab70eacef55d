#include "bvconn/connectors/documents/bv_submittal_connector.h"

#include "bvconn/core/late_session.h"
#include "bvconn/core/session_state.h"
#include "bvconn/operation/method_frame.h"

namespace bvconn {
namespace {

constexpr LogBlock text_lines(std::string_view method) {
  return {.cls = "BVSubmittalConnector", .method = method, .form = LogForm::kTextLines};
}

// deliberate [object-lines]: making and ending an object write lines under names of their own, and
// a failure there is logged alone.
constexpr Operation kInitialize{.log = text_lines("Class_Initialize"), .tail = Tail::kSwallow};
// What fails here is logged; a destructor can't raise it again.
constexpr Operation kTerminate{.log = text_lines("Class_Terminate"), .tail = Tail::kSwallow};

constexpr Operation kGetAllParagraphs{
    .log = text_lines("GetAllParagraphs"),
    .method = &BVMethods::GetAllParagraphs,
    .service = &BVServices::Submittal,
};
// deliberate [remarks-exit]: a successful call leaves an entering line without a matching exit
// line.
constexpr Operation kGetAllRemarks{
    .log = {.cls = "BVSubmittalConnector",
            .method = "GetAllRemarks",
            .form = LogForm::kTextLines,
            .exits = false},
    .method = &BVMethods::GetAllRemarks,
    .service = &BVServices::Submittal,
};
constexpr Operation kGetSubmittal{
    .log = text_lines("GetSubmittal"),
    .method = &BVMethods::GetSubmittal,
    .service = &BVServices::Submittal,
};
constexpr Operation kGetSubmittalCriteria{
    .log = text_lines("GetSubmittalCriteria"),
    .method = &BVMethods::GetSubmittalCriteria,
    .service = &BVServices::Submittal,
};
constexpr Operation kGetSubmittalCommentsForProjectLineItem{
    .log = text_lines("GetSubmittalCommentsForProjectLineItem"),
    .method = &BVMethods::GetSubmittalCommentsForLineItem,
    .service = &BVServices::Submittal,
};
constexpr Operation kGetSubmittalCommentsForProjectLineItems{
    .log = text_lines("GetSubmittalCommentsForProjectLineItems"),
    .method = &BVMethods::GetSubmittalCommentsForLineItem,
    .service = &BVServices::Submittal,
};
constexpr Operation kGetSubmittalCommentsForQuoteLineItem{
    .log = text_lines("GetSubmittalCommentsForQuoteLineItem"),
    .method = &BVMethods::GetSubmittalCommentsForLineItem,
    .service = &BVServices::Submittal,
};
constexpr Operation kGetSubmittalCommentsForQuoteLineItems{
    .log = text_lines("GetSubmittalCommentsForQuoteLineItems"),
    .method = &BVMethods::GetSubmittalCommentsForLineItem,
    .service = &BVServices::Submittal,
};
// deliberate [create-submittal-lines]: no line at all, not even on failure.
constexpr Operation kCreateSubmittal{
    .log = {.cls = "BVSubmittalConnector", .method = "CreateSubmittal", .form = LogForm::kNone},
    .method = &BVMethods::CreateSubmittal,
    .service = &BVServices::Submittal,
    .tail = Tail::kThreeValues,
};
constexpr Operation kReviseSubmittal{
    .log = text_lines("ReviseSubmittal"),
    .method = &BVMethods::ReviseSubmittal,
    .service = &BVServices::Submittal,
};
constexpr Operation kUpdateSubmittal{
    .log = text_lines("UpdateSubmittal"),
    .method = &BVMethods::UpdateSubmittal,
    .service = &BVServices::Submittal,
};
constexpr Operation kGetAllSubmittalsForProject{
    .log = text_lines("GetAllSubmittalsForProject"),
    .method = &BVMethods::GetAllSubmittalsForProject,
    .service = &BVServices::Submittal,
};
constexpr Operation kGetAllSubmittalsForQuote{
    .log = text_lines("GetAllSubmittalsForQuote"),
    .method = &BVMethods::GetAllSubmittalsForQuote,
    .service = &BVServices::Submittal,
};
constexpr Operation kGetUpdatableSubmittalsForProject{
    .log = text_lines("GetUpdatableSubmittalsForProject"),
    .method = &BVMethods::GetUpdatableSubmittalsForProject,
    .service = &BVServices::Submittal,
};
constexpr Operation kGetUpdatableSubmittalsForQuote{
    .log = text_lines("GetUpdatableSubmittalsForQuote"),
    .method = &BVMethods::GetUpdatableSubmittalsForQuote,
    .service = &BVServices::Submittal,
};

// Tells the server whose line items they are.
constexpr bool kOfProject = true;
constexpr bool kOfQuote = false;

}  // namespace

BVSubmittalConnector::BVSubmittalConnector() {
  ConnectorMethodFrame(kInitialize, [](Call&) {});
}

BVSubmittalConnector::~BVSubmittalConnector() {
  try {
    ConnectorMethodFrame(kTerminate, [](Call&) {});
  } catch (...) {
    // The logger failed at the error line too: there is nobody left to tell.
  }
  // An object of static lifetime gets here when the thread's session is gone; what its lines needed
  // goes with it.
  release_late_session();
}

SoapNode BVSubmittalConnector::GetAllParagraphs(std::string_view aSessionID,
                                                std::string_view aServerURL) {
  return ConnectorMethodFrame(kGetAllParagraphs, {aServerURL, aSessionID},
                              [&](Call& call) { return call.request().send().first(); });
}

SoapNode BVSubmittalConnector::GetAllRemarks(std::string_view aSessionID,
                                             std::string_view aServerURL) {
  return ConnectorMethodFrame(kGetAllRemarks, {aServerURL, aSessionID},
                              [&](Call& call) { return call.request().send().first(); });
}

SoapNode BVSubmittalConnector::GetSubmittal(std::string_view aSessionID,
                                            std::string_view aSubmittalUID,
                                            std::string_view aServerURL) {
  return ConnectorMethodFrame(kGetSubmittal, {aServerURL, aSessionID}, [&](Call& call) {
    return call.request().params(aSubmittalUID).send().first();
  });
}

SoapNode BVSubmittalConnector::GetSubmittalCriteria(std::string_view aSessionID,
                                                    std::string_view aSubmittalUID,
                                                    std::string_view aServerURL) {
  return ConnectorMethodFrame(kGetSubmittalCriteria, {aServerURL, aSessionID}, [&](Call& call) {
    return call.request().params(aSubmittalUID).send().first();
  });
}

SoapNode BVSubmittalConnector::GetSubmittalCommentsForProjectLineItem(std::string_view aSessionID,
                                                                      std::string_view aLineItemGID,
                                                                      std::string_view aServerURL) {
  return ConnectorMethodFrame(
      kGetSubmittalCommentsForProjectLineItem, {aServerURL, aSessionID},
      [&](Call& call) { return call.request().params(aLineItemGID, kOfProject).send().first(); });
}

SoapNode BVSubmittalConnector::GetSubmittalCommentsForProjectLineItems(
    std::string_view aSessionID, const Variant& aLineItemGIDs, std::string_view aServerURL) {
  return ConnectorMethodFrame(
      kGetSubmittalCommentsForProjectLineItems, {aServerURL, aSessionID},
      [&](Call& call) { return call.request().params(aLineItemGIDs, kOfProject).send().first(); });
}

SoapNode BVSubmittalConnector::GetSubmittalCommentsForQuoteLineItem(std::string_view aSessionID,
                                                                    std::string_view aLineItemGID,
                                                                    std::string_view aServerURL) {
  return ConnectorMethodFrame(
      kGetSubmittalCommentsForQuoteLineItem, {aServerURL, aSessionID},
      [&](Call& call) { return call.request().params(aLineItemGID, kOfQuote).send().first(); });
}

SoapNode BVSubmittalConnector::GetSubmittalCommentsForQuoteLineItems(std::string_view aSessionID,
                                                                     const Variant& aLineItemGIDs,
                                                                     std::string_view aServerURL) {
  return ConnectorMethodFrame(
      kGetSubmittalCommentsForQuoteLineItems, {aServerURL, aSessionID},
      [&](Call& call) { return call.request().params(aLineItemGIDs, kOfQuote).send().first(); });
}

std::string BVSubmittalConnector::CreateSubmittal(std::string_view aSessionID,
                                                  const SoapNode& aSoapNode,
                                                  std::string_view aServerURL) {
  return ConnectorMethodFrame(kCreateSubmittal, {aServerURL, aSessionID}, [&](Call& call) {
    return call.request().add("Submittal", aSoapNode).send().text();
  });
}

std::string BVSubmittalConnector::ReviseSubmittal(std::string_view aSessionID,
                                                  const SoapNode& aSoapNode,
                                                  std::string_view aServerURL) {
  return ConnectorMethodFrame(kReviseSubmittal, {aServerURL, aSessionID}, [&](Call& call) {
    return call.request().add("Submittal", aSoapNode).send().text();
  });
}

std::string BVSubmittalConnector::UpdateSubmittal(std::string_view aSessionID,
                                                  const SoapNode& aSoapNode,
                                                  std::string_view aServerURL) {
  return ConnectorMethodFrame(kUpdateSubmittal, {aServerURL, aSessionID}, [&](Call& call) {
    return call.request().add("Submittal", aSoapNode).send().text();
  });
}

SoapNode BVSubmittalConnector::GetAllSubmittalsForProject(std::string_view aSessionID,
                                                          std::string_view aProjectGID,
                                                          std::string_view aServerURL) {
  return ConnectorMethodFrame(
      kGetAllSubmittalsForProject, {aServerURL, aSessionID}, [&](Call& call) {
        if (call.takes_dal()) {
          return call.first_of(
              call.dal().SubmittalService().GetAllSubmittalsForProject(aProjectGID));
        }
        return call.request().params(aProjectGID).send().first();
      });
}

SoapNode BVSubmittalConnector::GetAllSubmittalsForQuote(std::string_view aSessionID,
                                                        std::string_view aQuoteNbr,
                                                        std::string_view aServerURL) {
  return ConnectorMethodFrame(kGetAllSubmittalsForQuote, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal())
      return call.first_of(call.dal().SubmittalService().GetAllSubmittalsForQuote(aQuoteNbr));
    return call.request().params(aQuoteNbr).send().first();
  });
}

SoapNode BVSubmittalConnector::GetUpdatableSubmittalsForProject(std::string_view aSessionID,
                                                                std::string_view aProjectGID,
                                                                std::string_view aServerURL) {
  return ConnectorMethodFrame(
      kGetUpdatableSubmittalsForProject, {aServerURL, aSessionID}, [&](Call& call) {
        if (call.takes_dal()) {
          return call.first_of(
              call.dal().SubmittalService().GetUpdatableSubmittalsForProject(aProjectGID));
        }
        return call.request().params(aProjectGID).send().first();
      });
}

SoapNode BVSubmittalConnector::GetUpdatableSubmittalsForQuote(std::string_view aSessionID,
                                                              std::string_view aQuoteNbr,
                                                              std::string_view aServerURL) {
  return ConnectorMethodFrame(
      kGetUpdatableSubmittalsForQuote, {aServerURL, aSessionID}, [&](Call& call) {
        if (call.takes_dal()) {
          return call.first_of(
              call.dal().SubmittalService().GetUpdatableSubmittalsForQuote(aQuoteNbr));
        }
        return call.request().params(aQuoteNbr).send().first();
      });
}

}  // namespace bvconn
