// The user's logo, password and profile.

#include <algorithm>
#include <limits>

#include "bvconn/connectors/maintenance/bv_maintenance_connector.h"
#include "bvconn/operation/method_frame.h"
#include "bvconn/platform/error_numbers.h"

namespace bvconn {
namespace {

constexpr std::string_view kClass = "BVMaintenanceConnector";

constexpr Operation kGetUserLogo{
    .log = {.cls = kClass, .method = "GetUserLogo", .form = LogForm::kTextLines},
    .method = &BVMethods::GetUserLogo,
    .service = &BVServices::Maintenance,
};
constexpr Operation kGetUserLogoList{
    .log = {.cls = kClass, .method = "GetUserLogoList", .form = LogForm::kTextLines},
    .method = &BVMethods::GetUserLogoList,
    .service = &BVServices::Maintenance,
};
constexpr Operation kSetUserLogo{
    .log = {.cls = kClass, .method = "SetUserLogo", .form = LogForm::kTextLines},
    .method = &BVMethods::SetUserLogo,
    .service = &BVServices::Maintenance,
};
constexpr Operation kUpdatePassword{
    // deliberate [password-log-name]: its text lines bear no "()", unlike those of its neighbours.
    .log = {.cls = kClass,
            .method = "UpdatePassword",
            .form = LogForm::kTextLines,
            .enter = "UpdatePassword",
            .exit = "UpdatePassword"},
    .method = &BVMethods::UpdatePassword,
    .service = &BVServices::Maintenance,
};
constexpr Operation kSetUserProfile{
    .log = {.cls = kClass, .method = "SetUserProfile"},
    .method = &BVMethods::UpdateUserProfile,
    .service = &BVServices::Maintenance,
    // deliberate [profile-route]: another operation's entry disables this one; its own does not.
    .route_method = &BVMethods::SetUserQuotePrintoutDefault,
};

bool holds_a_node(const Variant& value) {
  if (value.is(Variant::Type::kNode)) return true;
  if (!value.is(Variant::Type::kArray)) return false;
  const auto& items = value.array().items();
  return std::any_of(items.begin(), items.end(), holds_a_node);
}

// deliberate [profile-flat]: the children go out one by one, each with its name and value. Nothing
// below them does: where the value is a node itself, or an array of nodes, the name is all that is
// left.
void add_flattened(Call& call, const SoapNode& profile) {
  const SoapNodes children = profile.Nodes();
  // deliberate [profile-bound]: they are counted with 16 bits.
  if (children.Count() > std::size_t{std::numeric_limits<std::int16_t>::max()} + 1) {
    throw Error(error_numbers::kOverflow, "BVConn",
                std::to_string(children.Count()) + " nodes are more than can be counted");
  }
  for (const SoapNode& child : children) {
    const Variant value = child.Value();
    call.add(child.Name(), holds_a_node(value) ? Variant() : value);
  }
}

}  // namespace

std::string BVMaintenanceConnector::GetUserLogo(std::string_view aSessionID,
                                                std::string_view aServerURL) {
  return ConnectorMethodFrame(kGetUserLogo, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) return call.text_of(call.dal().MaintenanceService().GetUserLogo());
    return call.getEnvelope().exchange().text();
  });
}

SoapNode BVMaintenanceConnector::GetUserLogoList(std::string_view aSessionID,
                                                 std::string_view aServerURL) {
  return ConnectorMethodFrame(kGetUserLogoList, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) return call.first_of(call.dal().MaintenanceService().GetUserLogoList());
    return call.getEnvelope().exchange().first();
  });
}

std::string BVMaintenanceConnector::SetUserLogo(std::string_view aSessionID, std::string_view aLogo,
                                                std::string_view aServerURL) {
  return ConnectorMethodFrame(kSetUserLogo, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) return call.text_of(call.dal().MaintenanceService().SetUserLogo(aLogo));
    return call.getEnvelope().params(aLogo).exchange().text();
  });
}

SoapNode BVMaintenanceConnector::UpdatePassword(std::string_view aSessionID,
                                                std::string_view aPassword,
                                                std::string_view aServerURL) {
  return ConnectorMethodFrame(kUpdatePassword, {aServerURL, aSessionID}, [&](Call& call) {
    return call.getEnvelope().params(aPassword).exchange().first();
  });
}

SoapNode BVMaintenanceConnector::SetUserProfile(std::string_view aSessionID,
                                                std::string_view aServerURL,
                                                const SoapNode& theNode) {
  return ConnectorMethodFrame(kSetUserProfile, {aServerURL, aSessionID}, [&](Call& call) {
    add_flattened(call.getEnvelope(), theNode);
    if (call.takes_dal())
      return call.first_of(call.dal().MaintenanceService().SetUserProfile(call.request_text()));
    return call.send().first();
  });
}

}  // namespace bvconn
