#include "bvconn/connectors/documents/bv_project_connector.h"

#include <string>

#include "bvconn/core/session_state.h"
#include "bvconn/core/timing.h"
#include "bvconn/operation/method_frame.h"

namespace bvconn {
namespace {

// Names in log lines begin with small letters, also where the operation's do not.
constexpr LogBlock with_brackets(std::string_view method) {
  return {.cls = "BVProjectConnector", .method = method, .brackets = true};
}

constexpr Operation kCopyProject{
    .log = with_brackets("copyProject"),
    .name = "CopyProject",
    .method = &BVMethods::CopyProject,
    .service = &BVServices::Project,
};
constexpr Operation kGenerateQuotes{
    .log = with_brackets("generateQuotes"),
    .method = &BVMethods::generateQuotes,
    .service = &BVServices::Project,
};
constexpr Operation kGetNewProject{
    .log = with_brackets("getNewProject"),
    .method = &BVMethods::NewProject,
    .service = &BVServices::Project,
};
constexpr Operation kGetExistingProject{
    .log = with_brackets("getExistingProject"),
    .method = &BVMethods::Project,
    .service = &BVServices::Project,
};
constexpr Operation kGetRevertedProject{
    .log = with_brackets("getRevertedProject"),
    .method = &BVMethods::RevertSalesInstrument,
    .service = &BVServices::Project,
};
constexpr Operation kSetStatusToNegotiating{
    .log = with_brackets("setStatusToNegotiating"),
    .method = &BVMethods::NegotiatingProject,
    .service = &BVServices::Project,
};
constexpr Operation kSetStatusToLostOpportunity{
    .log = with_brackets("setStatusToLostOpportunity"),
    .method = &BVMethods::LostOpportunityProject,
    .service = &BVServices::Project,
};
constexpr Operation kSaveProject{
    .log = with_brackets("saveProject"),
    .name = "SaveProject",
    .method = &BVMethods::SaveProject,
    .service = &BVServices::Project,
};
constexpr Operation kRequestReview{
    .log = with_brackets("requestReview"),
    .name = "RequestReview",
    .method = &BVMethods::RequestReview,
    .service = &BVServices::Project,
};
constexpr Operation kReturnToAgent{
    .log = with_brackets("returnToAgent"),
    .name = "ReturnToAgent",
    .method = &BVMethods::ReturnToAgent,
    .service = &BVServices::Project,
};
constexpr Operation kCheckSingleSaveStatus{
    .log = {.cls = "BVProjectConnector", .method = "CheckSingleSaveStatus"},
    .method = &BVMethods::CheckSaveStatus,
    .service = &BVServices::Project,
};

}  // namespace

SoapNode BVProjectConnector::CopyProject(std::string_view aServerURL, std::string_view aSessionID,
                                         std::string_view aGID) {
  return ConnectorMethodFrame(kCopyProject, {aServerURL, aSessionID}, [&](Call& call) {
    session().UseDALSave = false;
    if (call.takes_dal()) {
      session().UseDALSave = true;
      return call.first_of(call.dal().ProjectService().CopyProject(aGID));
    }
    return call.request(kSoapEncoding).add("GID", aGID).send().first();
  });
}

SoapNode BVProjectConnector::generateQuotes(std::string_view aServerURL,
                                            std::string_view aSessionID,
                                            const SoapNode& aGenQuoteContainer,
                                            std::string_view aProjectGID,
                                            const SoapNode& aProject) {
  return ConnectorMethodFrame(kGenerateQuotes, {aServerURL, aSessionID}, [&](Call& call) {
    const WholeSecondTimer timer;
    call.request(kSoapEncoding);
    // One name for either the key or the whole project; with neither, the server has its say.
    if (aProjectGID.empty()) {
      call.add("Project", aProject);
    } else {
      call.add("Project", aProjectGID);
    }
    call.append(aGenQuoteContainer);
    if (call.takes_dal()) {
      // Deliberate: made into text twice, for the log and for the call.
      Global::DALMessageToLog("generateQuotes", call.request_text());
      call.parse(call.dal().ProjectService().generateQuotes(call.request_text()));
    } else {
      call.send();
    }
    SoapNode result = call.first();
    timer.log_total("BVProjectConnector", "generateQuotes()");
    return result;
  });
}

SoapNode BVProjectConnector::getNewProject(std::string_view aServerURL,
                                           std::string_view aSessionID) {
  session().UseDALSave = false;
  return ConnectorMethodFrame(kGetNewProject, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) {
      session().UseDALSave = true;
      return call.first_of(call.dal().ProjectService().getNewProject());
    }
    return call.request(kSoapEncoding).send().first();
  });
}

SoapNode BVProjectConnector::getExistingProject(std::string_view aServerURL,
                                                std::string_view aSessionID,
                                                std::string_view aGID) {
  return ConnectorMethodFrame(kGetExistingProject, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal())
      return call.first_of(call.dal().ProjectService().getExistingProject(aGID));
    return call.request(kSoapEncoding).add("GID", aGID).send().first();
  });
}

SoapNode BVProjectConnector::getRevertedProject(std::string_view aServerURL,
                                                std::string_view aSessionID,
                                                std::string_view aGID) {
  return ConnectorMethodFrame(kGetRevertedProject, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal())
      return call.first_of(call.dal().ProjectService().getRevertedProject(aGID));
    return call.request(kSoapEncoding).add("GID", aGID).send().first();
  });
}

// The next two prepare a request and stop. It is deliberate: nothing is to be sent.

SoapNode BVProjectConnector::setStatusToNegotiating(std::string_view /*aServerURL*/,
                                                    std::string_view aSessionID,
                                                    std::string_view /*aGID*/) {
  return ConnectorMethodFrame(kSetStatusToNegotiating, {.session_id = aSessionID}, [&](Call& call) {
    call.request(kSoapEncoding);
    return SoapNode();
  });
}

SoapNode BVProjectConnector::setStatusToLostOpportunity(std::string_view /*aServerURL*/,
                                                        std::string_view aSessionID,
                                                        std::string_view /*aGID*/,
                                                        std::string_view /*aMessage*/) {
  return ConnectorMethodFrame(kSetStatusToLostOpportunity, {.session_id = aSessionID},
                              [&](Call& call) {
                                call.request(kSoapEncoding);
                                return SoapNode();
                              });
}

SoapNode BVProjectConnector::SaveProject(std::string_view aServerURL, std::string_view aSessionID,
                                         const SoapNode& aProject) {
  return ConnectorMethodFrame(kSaveProject, {aServerURL, aSessionID}, [&](Call& call) {
    call.request(kSoapEncoding).append(aProject);
    if (call.takes_dal(session().UseDALSave)) {
      // Made into text twice, as in generateQuotes.
      Global::DALMessageToLog("SaveProject", call.request_text());
      return call.first_of(call.dal().ProjectService().SaveProject(call.request_text()));
    }
    return call.send().first();
  });
}

SoapNode BVProjectConnector::RequestReview(std::string_view aServerURL, std::string_view aSessionID,
                                           const SoapNode& aProject) {
  return ConnectorMethodFrame(kRequestReview, {aServerURL, aSessionID}, [&](Call& call) {
    call.request(kSoapEncoding).append(aProject);
    if (call.takes_dal())
      return call.first_of(call.dal().ProjectService().RequestReview(call.request_text()));
    return call.send().first();
  });
}

SoapNode BVProjectConnector::ReturnToAgent(std::string_view aServerURL, std::string_view aSessionID,
                                           const SoapNode& aProject) {
  return ConnectorMethodFrame(kReturnToAgent, {aServerURL, aSessionID}, [&](Call& call) {
    call.request(kSoapEncoding).append(aProject);
    if (call.takes_dal())
      return call.first_of(call.dal().ProjectService().ReturnToAgent(call.request_text()));
    return call.send().first();
  });
}

SoapNode BVProjectConnector::CheckSingleSaveStatus(std::string_view aServerURL,
                                                   std::string_view aSessionID,
                                                   std::string_view aGID) {
  return ConnectorMethodFrame(kCheckSingleSaveStatus, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) {
      session().UseDALSave = true;
      return call.first_of(call.dal().ProjectService().CheckSingleSaveStatus(aGID));
    }
    return call.request(kSoapEncoding).add("GID", aGID).send().first();
  });
}

}  // namespace bvconn
