#include "bvconn/dal/bv_connector_object.h"

#include "bvconn/core/logging.h"
#include "bvconn/core/recording.h"
#include "bvconn/core/session_state.h"
#include "bvconn/dal/dal_switch.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/live_error.h"

namespace bvconn {
namespace {

// The plain getters and setters have no tail, but texts and objects take memory.
void set_text(std::string SessionState::*field, std::string_view value) {
  only_errors([&] { session().*field = value; });
}
std::string text_of(std::string SessionState::*field) {
  return only_errors([&] { return session().*field; });
}

// deliberate [one-country-code]: the one sales organisation of the other country, to the letter.
constexpr std::string_view kCanadianSalesOrg = "2200";

void make_service_objects(SessionState& state) {
  const auto& make = platform::current().service_object;
#define BVCONN_SERVICE_OBJECT(name, ...) state.name = make(#name);
#include "bvconn/platform/torvexlib/service_object_rows.inc"
}

// What a getter gives: its field as it stands.
// deliberate [search-getter]: the search getter does not look at its own field, but gives the heart
// beat object where that offers the interface.
std::shared_ptr<ServiceObject> gotten(std::shared_ptr<ServiceObject> SessionState::*field) {
  if (field != &SessionState::SearchService) return session().*field;
  return only_errors([] {
    const auto& object = session().HeartBeatService;
    if (object && !object->offers("SearchService")) {
      throw Error(error_numbers::kTypeMismatch, "BVConn",
                  "the heart beat service object does not offer the interface SearchService");
    }
    return object;
  });
}

}  // namespace

std::shared_ptr<HTTPTransport> BVConnectorObject::HTTPTransportObject() const {
  return only_errors([] { return session().Transport(); });
}

void BVConnectorObject::UsingTorvexDAL(bool value) {
  session().UsingTorvexDAL = value;
}
bool BVConnectorObject::UsingTorvexDAL() const {
  return session().UsingTorvexDAL;
}

void BVConnectorObject::AllowDisabledDALMethods(bool value) {
  session().AllowDisabledDALMethods = value;
}
bool BVConnectorObject::AllowDisabledDALMethods() const {
  return session().AllowDisabledDALMethods;
}

void BVConnectorObject::UseDALSave(bool value) {
  session().UseDALSave = value;
}
bool BVConnectorObject::UseDALSave() const {
  return session().UseDALSave;
}

bool BVConnectorObject::SendDALMessageToLog(std::string_view evalMethod,
                                            std::string_view evalMessage) const {
  return only_errors([&] { return Global::DALMessageToLog(evalMethod, evalMessage); });
}

bool BVConnectorObject::IsDALDisabled(std::string_view evalMethod,
                                      std::string_view evalService) const {
  return Global::isDALMethodDisabled(evalMethod, evalService);
}

void BVConnectorObject::GetDisabledDALServices(std::string_view value) {
  set_text(&SessionState::DisabledDALServices, value);
}
std::string BVConnectorObject::GetDisabledDALServices() const {
  return text_of(&SessionState::DisabledDALServices);
}

void BVConnectorObject::DALUrl(std::string_view value) {
  set_text(&SessionState::DALUrl, value);
}
std::string BVConnectorObject::DALUrl() const {
  return text_of(&SessionState::DALUrl);
}

void BVConnectorObject::UserName(std::string_view value) {
  set_text(&SessionState::UserName, value);
}
void BVConnectorObject::Password(std::string_view value) {
  set_text(&SessionState::Password, value);
}
void BVConnectorObject::AppVer(std::string_view value) {
  set_text(&SessionState::AppVer, value);
}
void BVConnectorObject::SalesOrg(std::string_view value) {
  set_text(&SessionState::SalesOrg, value);
}

#define BVCONN_SERVICE_OBJECT(name, ...)                           \
  std::shared_ptr<ServiceObject> BVConnectorObject::name() const { \
    return gotten(&SessionState::name);                            \
  }
#include "bvconn/platform/torvexlib/service_object_rows.inc"

void BVConnectorObject::InitTorvexDAL(std::string_view dal_server_url) {
  RecordedCall record("BVConnectorObject", "InitTorvexDAL", dal_server_url);
  record.takes_dal();
  try {
    auto& state = session();
    state.DALUrl = dal_server_url;
    make_service_objects(state);
    const dal::AuthenticationService authentication(state.AuthenticationService);
    authentication.SetServerUrl(state.DALUrl);
    const std::string_view country = state.SalesOrg == kCanadianSalesOrg ? "CAN" : "US";
    authentication.Login(state.UserName, state.Password, state.AppVer, country);
    GetDisabledDALServices(authentication.GetDisabledServices());
  } catch (...) {
    // deliberate [init-silent]: the application goes on by SOAP, and nothing is reported to it. The
    // record has the words.
    Error error = live_error();
    record.failed(error);
  }
}

void BVConnectorObject::UseTorvexDAL() {
  try {
    session().UsingTorvexDAL = true;
    session().UseDALSave = true;
    // deliberate [on-twice]: once more, through the property.
    UsingTorvexDAL(true);
  } catch (...) {
    only_errors([error = live_error()] {
      // deliberate [message-box]: shown to the user, and the caller goes on.
      platform::current().message_box()->show("Init Torvex DAL",
                                              "UseTorvexDAL error:" + error.description);
    });
  }
}

}  // namespace bvconn
