#include <string>

#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/soap/xml_document.h"
#include "sandbox/operations/defaults.h"
#include "sandbox/operations/documents.h"
#include "sandbox/store/documents_tree.h"

namespace bvconn::sandbox {
namespace {

constexpr const char* kService = "urn:MaintenanceService";

constexpr std::string_view kLogo = "user logo";
constexpr std::string_view kProfile = "user profile";
constexpr std::string_view kHouseDefault = "printout default";
constexpr std::string_view kAgentDefault = "agent printout default";
constexpr std::string_view kUserDefault = "user printout default";
/// The agent of those whose profile names none.
constexpr const char* kFirstAgent = "100";

void get_logo(SoapCall& call) {
  const auto own = call.store.entries().find(kLogo, call.user_id, "");
  answer_text(call, own.value_or("standard"));
}

void get_logo_list(SoapCall& call) {
  SoapNodes answer = begin_answer(call);
  for (const Entry& each : call.store.entries().all("logo", "")) {
    answer.Create("Logo", each.body);
  }
}

// A logo need not be one of the list: it may be a client's own.
void set_logo(SoapCall& call) {
  const std::string logo = key_at(call, 0);
  call.store.entries().keep(kLogo, call.user_id, "", logo);
  answer_text(call, logo);
}

void update_password(SoapCall& call) {
  const std::string password = key_at(call, 0);
  if (password.empty()) refuse("The password is empty");
  if (!call.store.change_password(call.user_id, password)) {
    refuse_key("user", "name", call.user_id);
  }
  answer_text(call, "Updated");
}

SoapNode profile_of(SoapCall& call) {
  const auto known = call.store.entries().find(kProfile, call.user_id, "");
  return known ? node_from_xml(*known) : SoapNode::make("UserProfile");
}

/// What a request does not name stays as it was.
void update_profile(SoapCall& call) {
  const SoapNode profile = profile_of(call);
  for (const SoapNode& each : call.parameters) set_child(profile, each.Name(), each.Value());
  call.store.entries().keep(kProfile, call.user_id, "", node_to_xml(profile));
  call.results.Append(profile);
}

// The first call finds no file and begins to make it.
void check_type_ahead(SoapCall& call) {
  Entries entries = call.store.entries();
  const bool there = entries.find("type-ahead file", "", "").has_value();
  if (!there) entries.keep("type-ahead file", "", "", "primed");
  call.results.Create("return", there);
}

/// The key of a print info, or "" for none.
std::string print_info_at(SoapCall& call) {
  std::string uid = key_at(call, 0);
  if (!uid.empty() && !call.store.entries().find("print info", "", uid)) {
    refuse_key("print info", "UID", uid);
  }
  return uid;
}

void save_house_default(SoapCall& call, const std::string& kind) {
  const SoapNode printout = call.parameters.Item(0);
  if (printout.Nodes().Count() == 0) {
    refuse("'" + printout.Name() + "' has no content, expected a printout");
  }
  call.store.entries().keep(kHouseDefault, "", kind, node_to_xml(printout));
  call.results.Append(printout);
}

void save_agent_default(SoapCall& call, const std::string& kind) {
  const std::string uid = print_info_at(call);
  const std::string agent = agent_of(call);
  call.store.entries().keep(kAgentDefault, agent, kind, uid);
  SoapNodes fields = begin_answer(call);
  fields.Create("AgentID", agent);
  fields.Create("PrintInfoUID", uid);
}

void set_user_default(SoapCall& call, const std::string& kind) {
  const std::string uid = print_info_at(call);
  call.store.entries().keep(kUserDefault, call.user_id, kind, uid);
  answer_text(call, uid);
}

using DefaultMethod = void (*)(SoapCall&, const std::string&);

void add_default(Operations& operations, const std::string& method, const std::string& kind,
                 DefaultMethod run) {
  add_method(operations, kService, method, [run, kind](SoapCall& call) { run(call, kind); });
}

void add_defaults(Operations& operations, const std::string& kind) {
  const std::string name = kind + "PrintoutDefault";
  add_default(operations, "saveAgent" + name, kind, save_agent_default);
  add_default(operations, "getAgent" + name, kind, [](SoapCall& call, const std::string& each) {
    answer_text(call, agent_default(call, each));
  });
  add_default(operations, "setUser" + name, kind, set_user_default);
  add_default(operations, "getUser" + name, kind, [](SoapCall& call, const std::string& each) {
    answer_text(call, user_default(call, each));
  });
  // A submitted order has no printout of its own.
  if (kind == "OrderSubmit") return;
  add_default(operations, "save" + name, kind, save_house_default);
}

}  // namespace

std::string agent_of(SoapCall& call) {
  const std::string agent = child_text(profile_of(call), "AgentID");
  return agent.empty() ? kFirstAgent : agent;
}

std::string agent_default(SoapCall& call, std::string_view kind) {
  return call.store.entries().find(kAgentDefault, agent_of(call), kind).value_or("");
}

std::string user_default(SoapCall& call, std::string_view kind) {
  return call.store.entries().find(kUserDefault, call.user_id, kind).value_or("");
}

SoapNode house_default(SoapCall& call, std::string_view kind) {
  const auto known = call.store.entries().find(kHouseDefault, "", kind);
  return known ? node_from_xml(*known) : SoapNode::make("Printout");
}

void add_maintenance(Operations& operations) {
  add_method(operations, kService, "getUserLogo", get_logo);
  add_method(operations, kService, "getUserLogoList", get_logo_list);
  add_method(operations, kService, "setUserLogo", set_logo);
  add_method(operations, kService, "updatePassword", update_password);
  add_method(operations, kService, "updateUserProfile", update_profile);
  add_method(operations, kService, "checkTypeAheadFileIfItDoesNotExistThenKickOffPrimeTypeAhead",
             check_type_ahead);
  for (const char* kind : {"Quote", "Order", "OrderSubmit", "SAP", "Project", "RFQ"}) {
    add_defaults(operations, kind);
  }
}

}  // namespace bvconn::sandbox
