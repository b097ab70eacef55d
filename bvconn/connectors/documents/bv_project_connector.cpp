#include "bvconn/connectors/documents/bv_project_connector.h"

#include <string>

#include "bvconn/core/session_state.h"
#include "bvconn/core/timing.h"
#include "bvconn/operation/method_frame.h"

namespace bvconn {
namespace {

// deliberate [project-log-names]: names in log lines begin with small letters, also where the
// operation's do not, and end in brackets.
constexpr LogBlock with_brackets(std::string_view method) {
  return {.cls = "BVProjectConnector", .method = method, .brackets = true};
}

constexpr Operation kCopyProject{
    .log = with_brackets("copyProject"),  // deliberate [project-log-names]
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
    .log = with_brackets("saveProject"),  // deliberate [project-log-names]
    .name = "SaveProject",
    .method = &BVMethods::SaveProject,
    .service = &BVServices::Project,
};
constexpr Operation kRequestReview{
    .log = with_brackets("requestReview"),  // deliberate [project-log-names]
    .name = "RequestReview",
    .method = &BVMethods::RequestReview,
    .service = &BVServices::Project,
};
constexpr Operation kReturnToAgent{
    .log = with_brackets("returnToAgent"),  // deliberate [project-log-names]
    .name = "ReturnToAgent",
    .method = &BVMethods::ReturnToAgent,
    .service = &BVServices::Project,
};
// deliberate [project-log-names]: no brackets in this one.
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
    // deliberate [key-or-project]: one name for either the key or the whole project; with neither,
    // the server has its say.
    if (aProjectGID.empty()) {
      call.add("Project", aProject);
    } else {
      call.add("Project", aProjectGID);
    }
    call.append(aGenQuoteContainer);
    if (call.takes_dal()) {
      // deliberate [text-twice]: made into text for the log and again for the call.
      Global::DALMessageToLog("generateQuotes", call.request_text());
      call.parse(call.dal().ProjectService().generateQuotes(call.request_text())).or_raise();
    } else {
      call.send().or_raise();
    }
    SoapNode result = call.first();
    timer.log_total("BVProjectConnector", "generateQuotes()");
    return result;
  });
}

SoapNode BVProjectConnector::getNewProject(std::string_view aServerURL,
                                           std::string_view aSessionID) {
  // deliberate [save-route]: before the enter line, where CopyProject waits for it.
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

// deliberate [not-sent]: the next two prepare a request and stop. Nothing is to be sent.

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
    // deliberate [save-route]: how the project was begun decides how it is saved.
    if (call.takes_dal(session().UseDALSave)) {
      // deliberate [text-twice]: as in generateQuotes.
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
    // deliberate [review-route]: `UseDALSave` is not asked, here and in the next.
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
