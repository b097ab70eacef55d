#include "bvconn/connectors/documents/bv_project_connector.h"

#include <string>

#include "bvconn/core/session_state.h"
#include "bvconn/core/timing.h"
#include "bvconn/operation/method_frame.h"

namespace bvconn {
namespace {

// Names in log lines begin with small letters where the operation's do not.
constexpr LogBlock log_as(std::string_view method) {
  return {.cls = "BVProjectConnector", .method = method, .brackets = true};
}

constexpr Operation kCopyProject{
    .log = log_as("copyProject"),
    .method = &BVMethods::CopyProject,
    .service = &BVServices::Project,
};
constexpr Operation kGenerateQuotes{
    .log = log_as("generateQuotes"),
    .method = &BVMethods::generateQuotes,
    .service = &BVServices::Project,
};
constexpr Operation kGetNewProject{
    .log = log_as("getNewProject"),
    .method = &BVMethods::NewProject,
    .service = &BVServices::Project,
};
constexpr Operation kGetExistingProject{
    .log = log_as("getExistingProject"),
    .method = &BVMethods::Project,
    .service = &BVServices::Project,
};
constexpr Operation kGetRevertedProject{
    .log = log_as("getRevertedProject"),
    .method = &BVMethods::RevertSalesInstrument,
    .service = &BVServices::Project,
};
constexpr Operation kSetStatusToNegotiating{
    .log = log_as("setStatusToNegotiating"),
    .method = &BVMethods::NegotiatingProject,
    .service = &BVServices::Project,
};
constexpr Operation kSetStatusToLostOpportunity{
    .log = log_as("setStatusToLostOpportunity"),
    .method = &BVMethods::LostOpportunityProject,
    .service = &BVServices::Project,
};
constexpr Operation kSaveProject{
    .log = log_as("saveProject"),
    .method = &BVMethods::SaveProject,
    .service = &BVServices::Project,
};
constexpr Operation kRequestReview{
    .log = log_as("requestReview"),
    .method = &BVMethods::RequestReview,
    .service = &BVServices::Project,
};
constexpr Operation kReturnToAgent{
    .log = log_as("returnToAgent"),
    .method = &BVMethods::ReturnToAgent,
    .service = &BVServices::Project,
};
constexpr Operation kCheckSingleSaveStatus{
    .log = {.cls = "BVProjectConnector", .method = "CheckSingleSaveStatus"},
    .method = &BVMethods::CheckSaveStatus,
    .service = &BVServices::Project,
};

// The SOAP route of the reads: a key in the one parameter "GID".
SoapNode send_key(Call& call, std::string_view aServerURL, std::string_view aSessionID,
                  std::string_view aGID) {
  call.envelope(aSessionID, kSoapEncoding).Create("GID", aGID, "", "", "");
  return call.send(aServerURL).first();
}

}  // namespace

SoapNode BVProjectConnector::CopyProject(std::string_view aServerURL, std::string_view aSessionID,
                                         std::string_view aGID) {
  return ConnectorMethodFrame(kCopyProject, [&](Call& call) {
    session().UseDALSave = false;
    if (call.takes_dal()) {
      session().UseDALSave = true;
      return call.parse(call.dal().ProjectService().CopyProject(aGID)).first();
    }
    return send_key(call, aServerURL, aSessionID, aGID);
  });
}

SoapNode BVProjectConnector::generateQuotes(std::string_view aServerURL,
                                            std::string_view aSessionID,
                                            const SoapNode& aGenQuoteContainer,
                                            std::string_view aProjectGID,
                                            const SoapNode& aProject) {
  return ConnectorMethodFrame(kGenerateQuotes, [&](Call& call) {
    const WholeSecondTimer timer;
    auto& parameters = call.envelope(aSessionID, kSoapEncoding);
    // One name for either the key or the whole project; with neither, the server has its say.
    if (aProjectGID.empty()) {
      parameters.Create("Project", aProject, "", "", "");
    } else {
      parameters.Create("Project", aProjectGID, "", "", "");
    }
    parameters.Append(aGenQuoteContainer);
    if (call.takes_dal()) {
      Global::DALMessageToLog("generateQuotes", call.request_text());
      call.parse(call.dal().ProjectService().generateQuotes(call.request_text()));
    } else {
      call.send(aServerURL);
    }
    SoapNode result = call.first();
    timer.log_total("BVProjectConnector", "generateQuotes()");
    return result;
  });
}

SoapNode BVProjectConnector::getNewProject(std::string_view aServerURL,
                                           std::string_view aSessionID) {
  session().UseDALSave = false;
  return ConnectorMethodFrame(kGetNewProject, [&](Call& call) {
    if (call.takes_dal()) {
      session().UseDALSave = true;
      return call.parse(call.dal().ProjectService().getNewProject()).first();
    }
    call.envelope(aSessionID, kSoapEncoding);
    return call.send(aServerURL).first();
  });
}

SoapNode BVProjectConnector::getExistingProject(std::string_view aServerURL,
                                                std::string_view aSessionID,
                                                std::string_view aGID) {
  return ConnectorMethodFrame(kGetExistingProject, [&](Call& call) {
    if (call.takes_dal()) {
      return call.parse(call.dal().ProjectService().getExistingProject(aGID)).first();
    }
    return send_key(call, aServerURL, aSessionID, aGID);
  });
}

SoapNode BVProjectConnector::getRevertedProject(std::string_view aServerURL,
                                                std::string_view aSessionID,
                                                std::string_view aGID) {
  return ConnectorMethodFrame(kGetRevertedProject, [&](Call& call) {
    if (call.takes_dal()) {
      return call.parse(call.dal().ProjectService().getRevertedProject(aGID)).first();
    }
    return send_key(call, aServerURL, aSessionID, aGID);
  });
}

// The next two prepare a request and stop. It is deliberate: nothing is to be sent.

SoapNode BVProjectConnector::setStatusToNegotiating(std::string_view /*aServerURL*/,
                                                    std::string_view aSessionID,
                                                    std::string_view /*aGID*/) {
  return ConnectorMethodFrame(kSetStatusToNegotiating, [&](Call& call) {
    call.envelope(aSessionID, kSoapEncoding);
    return SoapNode();
  });
}

SoapNode BVProjectConnector::setStatusToLostOpportunity(std::string_view /*aServerURL*/,
                                                        std::string_view aSessionID,
                                                        std::string_view /*aGID*/,
                                                        std::string_view /*aMessage*/) {
  return ConnectorMethodFrame(kSetStatusToLostOpportunity, [&](Call& call) {
    call.envelope(aSessionID, kSoapEncoding);
    return SoapNode();
  });
}

SoapNode BVProjectConnector::SaveProject(std::string_view aServerURL, std::string_view aSessionID,
                                         const SoapNode& aProject) {
  return ConnectorMethodFrame(kSaveProject, [&](Call& call) {
    call.envelope(aSessionID, kSoapEncoding).Append(aProject);
    if (call.takes_dal(session().UseDALSave)) {
      Global::DALMessageToLog("SaveProject", call.request_text());
      return call.parse(call.dal().ProjectService().SaveProject(call.request_text())).first();
    }
    return call.send(aServerURL).first();
  });
}

SoapNode BVProjectConnector::RequestReview(std::string_view aServerURL, std::string_view aSessionID,
                                           const SoapNode& aProject) {
  return ConnectorMethodFrame(kRequestReview, [&](Call& call) {
    call.envelope(aSessionID, kSoapEncoding).Append(aProject);
    if (call.takes_dal()) {
      return call.parse(call.dal().ProjectService().RequestReview(call.request_text())).first();
    }
    return call.send(aServerURL).first();
  });
}

SoapNode BVProjectConnector::ReturnToAgent(std::string_view aServerURL, std::string_view aSessionID,
                                           const SoapNode& aProject) {
  return ConnectorMethodFrame(kReturnToAgent, [&](Call& call) {
    call.envelope(aSessionID, kSoapEncoding).Append(aProject);
    if (call.takes_dal()) {
      return call.parse(call.dal().ProjectService().ReturnToAgent(call.request_text())).first();
    }
    return call.send(aServerURL).first();
  });
}

SoapNode BVProjectConnector::CheckSingleSaveStatus(std::string_view aServerURL,
                                                   std::string_view aSessionID,
                                                   std::string_view aGID) {
  return ConnectorMethodFrame(kCheckSingleSaveStatus, [&](Call& call) {
    if (call.takes_dal()) {
      session().UseDALSave = true;
      return call.parse(call.dal().ProjectService().CheckSingleSaveStatus(aGID)).first();
    }
    return send_key(call, aServerURL, aSessionID, aGID);
  });
}

}  // namespace bvconn
