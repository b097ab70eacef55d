#include "bvconn/connectors/documents/bv_submittal_connector.h"

#include "bvconn/operation/method_frame.h"

namespace bvconn {
namespace {

constexpr LogBlock log_as(std::string_view method) {
  return {.cls = "BVSubmittalConnector", .method = method, .form = LogForm::kTextLines};
}

constexpr Operation kInitialize{.log = log_as("Class_Initialize"), .tail = Tail::kSwallow};
// What fails here is logged; a destructor can't raise it again.
constexpr Operation kTerminate{.log = log_as("Class_Terminate"), .tail = Tail::kSwallow};

constexpr Operation kGetAllParagraphs{
    .log = log_as("GetAllParagraphs"),
    .method = &BVMethods::GetAllParagraphs,
    .service = &BVServices::Submittal,
};
// A successful call leaves an entering line without a matching exit line.
constexpr Operation kGetAllRemarks{
    .log = {.cls = "BVSubmittalConnector",
            .method = "GetAllRemarks",
            .form = LogForm::kTextLines,
            .exits = false},
    .method = &BVMethods::GetAllRemarks,
    .service = &BVServices::Submittal,
};
constexpr Operation kGetSubmittal{
    .log = log_as("GetSubmittal"),
    .method = &BVMethods::GetSubmittal,
    .service = &BVServices::Submittal,
};
constexpr Operation kGetSubmittalCriteria{
    .log = log_as("GetSubmittalCriteria"),
    .method = &BVMethods::GetSubmittalCriteria,
    .service = &BVServices::Submittal,
};
constexpr Operation kGetSubmittalCommentsForProjectLineItem{
    .log = log_as("GetSubmittalCommentsForProjectLineItem"),
    .method = &BVMethods::GetSubmittalCommentsForLineItem,
    .service = &BVServices::Submittal,
};
constexpr Operation kGetSubmittalCommentsForProjectLineItems{
    .log = log_as("GetSubmittalCommentsForProjectLineItems"),
    .method = &BVMethods::GetSubmittalCommentsForLineItem,
    .service = &BVServices::Submittal,
};
constexpr Operation kGetSubmittalCommentsForQuoteLineItem{
    .log = log_as("GetSubmittalCommentsForQuoteLineItem"),
    .method = &BVMethods::GetSubmittalCommentsForLineItem,
    .service = &BVServices::Submittal,
};
constexpr Operation kGetSubmittalCommentsForQuoteLineItems{
    .log = log_as("GetSubmittalCommentsForQuoteLineItems"),
    .method = &BVMethods::GetSubmittalCommentsForLineItem,
    .service = &BVServices::Submittal,
};
constexpr Operation kCreateSubmittal{
    .log = {.cls = "BVSubmittalConnector", .method = "CreateSubmittal", .form = LogForm::kNone},
    .method = &BVMethods::CreateSubmittal,
    .service = &BVServices::Submittal,
    .tail = Tail::kPlainUnlogged,
};
constexpr Operation kReviseSubmittal{
    .log = log_as("ReviseSubmittal"),
    .method = &BVMethods::ReviseSubmittal,
    .service = &BVServices::Submittal,
};
constexpr Operation kUpdateSubmittal{
    .log = log_as("UpdateSubmittal"),
    .method = &BVMethods::UpdateSubmittal,
    .service = &BVServices::Submittal,
};
constexpr Operation kGetAllSubmittalsForProject{
    .log = log_as("GetAllSubmittalsForProject"),
    .method = &BVMethods::GetAllSubmittalsForProject,
    .service = &BVServices::Submittal,
};
constexpr Operation kGetAllSubmittalsForQuote{
    .log = log_as("GetAllSubmittalsForQuote"),
    .method = &BVMethods::GetAllSubmittalsForQuote,
    .service = &BVServices::Submittal,
};
constexpr Operation kGetUpdatableSubmittalsForProject{
    .log = log_as("GetUpdatableSubmittalsForProject"),
    .method = &BVMethods::GetUpdatableSubmittalsForProject,
    .service = &BVServices::Submittal,
};
constexpr Operation kGetUpdatableSubmittalsForQuote{
    .log = log_as("GetUpdatableSubmittalsForQuote"),
    .method = &BVMethods::GetUpdatableSubmittalsForQuote,
    .service = &BVServices::Submittal,
};

SoapNode send_key(Call& call, std::string_view aSessionID, std::string_view key,
                  std::string_view aServerURL) {
  call.envelope(aSessionID).Create("param", key, "", "", "");
  return call.send(aServerURL).first();
}

// `of_project` tells the server whose line items they are: a project's or a quote's.
SoapNode send_line_items(Call& call, std::string_view aSessionID, const Variant& line_items,
                         bool of_project, std::string_view aServerURL) {
  auto& parameters = call.envelope(aSessionID);
  parameters.Create("param", line_items, "", "", "");
  parameters.Create("param_bool", of_project, "", "", "");
  return call.send(aServerURL).first();
}

std::string send_submittal(Call& call, std::string_view aSessionID, const SoapNode& aSoapNode,
                           std::string_view aServerURL) {
  call.envelope(aSessionID).Create("Submittal", aSoapNode, "", "", "");
  return call.send(aServerURL).text();
}

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
}

SoapNode BVSubmittalConnector::GetAllParagraphs(std::string_view aSessionID,
                                                std::string_view aServerURL) {
  return ConnectorMethodFrame(kGetAllParagraphs, catalogues_, [&](Call& call) {
    call.envelope(aSessionID);
    return call.send(aServerURL).first();
  });
}

SoapNode BVSubmittalConnector::GetAllRemarks(std::string_view aSessionID,
                                             std::string_view aServerURL) {
  return ConnectorMethodFrame(kGetAllRemarks, catalogues_, [&](Call& call) {
    call.envelope(aSessionID);
    return call.send(aServerURL).first();
  });
}

SoapNode BVSubmittalConnector::GetSubmittal(std::string_view aSessionID,
                                            std::string_view aSubmittalUID,
                                            std::string_view aServerURL) {
  return ConnectorMethodFrame(kGetSubmittal, catalogues_, [&](Call& call) {
    return send_key(call, aSessionID, aSubmittalUID, aServerURL);
  });
}

SoapNode BVSubmittalConnector::GetSubmittalCriteria(std::string_view aSessionID,
                                                    std::string_view aSubmittalUID,
                                                    std::string_view aServerURL) {
  return ConnectorMethodFrame(kGetSubmittalCriteria, catalogues_, [&](Call& call) {
    return send_key(call, aSessionID, aSubmittalUID, aServerURL);
  });
}

SoapNode BVSubmittalConnector::GetSubmittalCommentsForProjectLineItem(std::string_view aSessionID,
                                                                      std::string_view aLineItemGID,
                                                                      std::string_view aServerURL) {
  return ConnectorMethodFrame(
      kGetSubmittalCommentsForProjectLineItem, catalogues_, [&](Call& call) {
        return send_line_items(call, aSessionID, aLineItemGID, true, aServerURL);
      });
}

SoapNode BVSubmittalConnector::GetSubmittalCommentsForProjectLineItems(
    std::string_view aSessionID, const Variant& aLineItemGIDs, std::string_view aServerURL) {
  return ConnectorMethodFrame(
      kGetSubmittalCommentsForProjectLineItems, catalogues_, [&](Call& call) {
        return send_line_items(call, aSessionID, aLineItemGIDs, true, aServerURL);
      });
}

SoapNode BVSubmittalConnector::GetSubmittalCommentsForQuoteLineItem(std::string_view aSessionID,
                                                                    std::string_view aLineItemGID,
                                                                    std::string_view aServerURL) {
  return ConnectorMethodFrame(kGetSubmittalCommentsForQuoteLineItem, catalogues_, [&](Call& call) {
    return send_line_items(call, aSessionID, aLineItemGID, false, aServerURL);
  });
}

SoapNode BVSubmittalConnector::GetSubmittalCommentsForQuoteLineItems(std::string_view aSessionID,
                                                                     const Variant& aLineItemGIDs,
                                                                     std::string_view aServerURL) {
  return ConnectorMethodFrame(kGetSubmittalCommentsForQuoteLineItems, catalogues_, [&](Call& call) {
    return send_line_items(call, aSessionID, aLineItemGIDs, false, aServerURL);
  });
}

std::string BVSubmittalConnector::CreateSubmittal(std::string_view aSessionID,
                                                  const SoapNode& aSoapNode,
                                                  std::string_view aServerURL) {
  return ConnectorMethodFrame(kCreateSubmittal, catalogues_, [&](Call& call) {
    return send_submittal(call, aSessionID, aSoapNode, aServerURL);
  });
}

std::string BVSubmittalConnector::ReviseSubmittal(std::string_view aSessionID,
                                                  const SoapNode& aSoapNode,
                                                  std::string_view aServerURL) {
  return ConnectorMethodFrame(kReviseSubmittal, catalogues_, [&](Call& call) {
    return send_submittal(call, aSessionID, aSoapNode, aServerURL);
  });
}

std::string BVSubmittalConnector::UpdateSubmittal(std::string_view aSessionID,
                                                  const SoapNode& aSoapNode,
                                                  std::string_view aServerURL) {
  return ConnectorMethodFrame(kUpdateSubmittal, catalogues_, [&](Call& call) {
    return send_submittal(call, aSessionID, aSoapNode, aServerURL);
  });
}

SoapNode BVSubmittalConnector::GetAllSubmittalsForProject(std::string_view aSessionID,
                                                          std::string_view aProjectGID,
                                                          std::string_view aServerURL) {
  return ConnectorMethodFrame(kGetAllSubmittalsForProject, catalogues_, [&](Call& call) {
    if (call.takes_dal()) {
      return call.parse(call.dal().SubmittalService().GetAllSubmittalsForProject(aProjectGID))
          .first();
    }
    return send_key(call, aSessionID, aProjectGID, aServerURL);
  });
}

SoapNode BVSubmittalConnector::GetAllSubmittalsForQuote(std::string_view aSessionID,
                                                        std::string_view aQuoteNbr,
                                                        std::string_view aServerURL) {
  return ConnectorMethodFrame(kGetAllSubmittalsForQuote, catalogues_, [&](Call& call) {
    if (call.takes_dal()) {
      return call.parse(call.dal().SubmittalService().GetAllSubmittalsForQuote(aQuoteNbr)).first();
    }
    return send_key(call, aSessionID, aQuoteNbr, aServerURL);
  });
}

SoapNode BVSubmittalConnector::GetUpdatableSubmittalsForProject(std::string_view aSessionID,
                                                                std::string_view aProjectGID,
                                                                std::string_view aServerURL) {
  return ConnectorMethodFrame(kGetUpdatableSubmittalsForProject, catalogues_, [&](Call& call) {
    if (call.takes_dal()) {
      return call.parse(call.dal().SubmittalService().GetUpdatableSubmittalsForProject(aProjectGID))
          .first();
    }
    return send_key(call, aSessionID, aProjectGID, aServerURL);
  });
}

SoapNode BVSubmittalConnector::GetUpdatableSubmittalsForQuote(std::string_view aSessionID,
                                                              std::string_view aQuoteNbr,
                                                              std::string_view aServerURL) {
  return ConnectorMethodFrame(kGetUpdatableSubmittalsForQuote, catalogues_, [&](Call& call) {
    if (call.takes_dal()) {
      return call.parse(call.dal().SubmittalService().GetUpdatableSubmittalsForQuote(aQuoteNbr))
          .first();
    }
    return send_key(call, aSessionID, aQuoteNbr, aServerURL);
  });
}

}  // namespace bvconn
