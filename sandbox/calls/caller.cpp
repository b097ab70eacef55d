#include "sandbox/calls/caller.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <thread>

#include "bvconn/platform/conversions/nearest_names.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/explain.h"
#include "bvconn/platform/outcome.h"
#include "bvconn/platform/soap/xml_document.h"
#include "bvconn/platform/timeout_scope.h"
#include "bvconn/platform/tls_files.h"
#include "sandbox/calls/values.h"

namespace bvconn::sandbox {
namespace {

using automation::Argument;
using automation::Member;
using automation::MemberKind;
using automation::Value;
using automation::ValueType;
using nlohmann::json;
using Json = nlohmann::ordered_json;

constexpr int kMostCalls = 2;
/// Nobody looks longer at a form that does not answer.
constexpr std::chrono::seconds kTimeout{30};

/// A call that is ready to be made.
struct Call {
  const CallForm* form = nullptr;
  OwnAddress address;
  bool by_dal = false;
  std::string user, password;
  std::vector<Value> values{};
  /// Those that the operation fills, by the names of the arguments.
  std::map<std::string, std::unique_ptr<XMLDocument>> documents{};
};

std::string text_field(const json& asked, const char* name, const std::string& usual = "") {
  const auto found = asked.find(name);
  if (found == asked.end()) return usual;
  if (found->is_string()) return found->get<std::string>();
  throw BadCall(std::string(name) + " is no text");
}

const CallForm& form_named(const std::vector<CallForm>& forms, const std::string& name) {
  std::vector<std::string> names;
  for (const CallForm& each : forms) {
    if (each.name == name) return each;
    names.push_back(each.name);
  }
  throw BadCall("There is no operation '" + name + "'" + did_you_mean(name, names));
}

void expect_fields(const json& asked) {
  if (!asked.is_object()) throw BadCall("The body is no object of JSON");
  const std::vector<std::string> known{"operation", "arguments", "route", "user", "password"};
  for (const auto& [name, value] : asked.items()) {
    if (std::find(known.begin(), known.end(), name) != known.end()) continue;
    throw BadCall("There is no field '" + name + "' here" + did_you_mean(name, known));
  }
}

void expect_arguments(const Member& member, const json& given) {
  if (!given.is_object()) throw BadCall("arguments is not an object of values by their names");
  std::vector<std::string> names;
  for (const Argument& each : member.arguments) names.push_back(each.name);
  for (const auto& [name, value] : given.items()) {
    if (name == kServerArgument) throw BadCall("aServerURL is this sandbox's own");
    if (member.find_argument(name) != nullptr) continue;
    throw BadCall("There is no argument '" + name + "'" + did_you_mean(name, names));
  }
}

Value value_of_argument(const Argument& argument, const json& given, Call& call) {
  if (argument.name == kServerArgument) return Variant(call.address.url + "/soap");
  if (argument.type == ValueType::kXMLDocument) {
    auto& document = call.documents[argument.name];
    document = std::make_unique<XMLDocument>();
    return document.get();
  }
  const auto found = given.find(argument.name);
  if (found == given.end()) {
    if (argument.optional) return {};
    throw BadCall("The argument " + argument.name + " is missing");
  }
  try {
    return value_of(*found, argument.type);
  } catch (const BadCall& error) {
    throw BadCall(argument.name + ": " + error.what());
  }
}

Call call_of(const std::vector<CallForm>& forms, const OwnAddress& address, const json& asked) {
  expect_fields(asked);
  Call call{.form = &form_named(forms, text_field(asked, "operation")),
            .address = address,
            .user = text_field(asked, "user"),
            .password = text_field(asked, "password")};
  const std::string route = text_field(asked, "route", call.form->by_soap ? "soap" : "dal");
  call.by_dal = route == "dal";
  if (call.by_dal ? !call.form->by_dal : route != "soap" || !call.form->by_soap) {
    throw BadCall(call.form->name + " does not go by the route '" + route + "'");
  }
  const Member& member = *call.form->member;
  const json given = asked.value("arguments", json::object());
  expect_arguments(member, given);
  for (const Argument& each : member.arguments) {
    call.values.push_back(value_of_argument(each, given, call));
  }
  return call;
}

Json error_json(const Error& error) {
  return {{"number", error.number},
          {"hex", hex_number(error.number)},
          {"source", error.source},
          {"description", error.description},
          {"outcome", outcome_text(error.outcome)},
          {"advice", explain(error)}};
}

/// Turns the data access layer on for this thread. Of a login that is refused the call tells.
void log_in(const Call& call) {
  const automation::ClassInfo& info = *automation::find_class("BVConnectorObject");
  const auto object = info.make();
  const auto set = [&](std::string_view property, const std::string& text) {
    info.find(property)->set(object.get(), Variant(text));
  };
  set("SalesOrg", "1000");
  set("UserName", call.user);
  set("Password", call.password);
  set("AppVer", "1.0");
  info.find("InitTorvexDAL")
      ->invoke(object.get(), std::vector<Value>{Variant(call.address.url + "/dal")});
  info.find("UseTorvexDAL")->invoke(object.get(), {});
}

void invoke(Call& call, Json& answer) {
  const auto object = call.form->info->make();
  Json events = Json::array();
  for (const Member& each : call.form->info->members) {
    if (each.kind != MemberKind::kEvent) continue;
    each.connect(object.get(), [&events, &each] { events.push_back(each.name); });
  }
  try {
    const Value result = call.form->member->invoke(object.get(), call.values);
    answer["result"] = value_json(result, call.form->member->result);
  } catch (const Error& error) {
    answer["error"] = error_json(error);
  }
  for (const auto& [name, document] : call.documents) {
    answer["documents"][name] = document->xml();
  }
  if (!events.empty()) answer["events"] = std::move(events);
}

void run(Call& call, Json& answer) {
  const TimeoutScope limit(kTimeout);
  use_tls_files({.ca_file = call.address.ca_file});
  try {
    if (call.by_dal) log_in(call);
    invoke(call, answer);
  } catch (const Error& error) {
    answer["error"] = error_json(error);
  } catch (const std::exception& error) {
    answer["error"] = {{"source", "bvsandbox"}, {"description", error.what()}};
  }
}

/// Counts a call while it is under way.
class Turn {
 public:
  explicit Turn(std::atomic<int>& under_way) : under_way_(under_way) {
    if (under_way_.fetch_add(1) < kMostCalls) return;
    under_way_.fetch_sub(1);
    throw TooManyCalls();
  }
  ~Turn() { under_way_.fetch_sub(1); }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

 private:
  std::atomic<int>& under_way_;
};

}  // namespace

Json Caller::call(const json& asked) {
  const Turn turn(under_way_);
  Call call = call_of(forms_, address_(), asked);
  Json answer{{"operation", call.form->name}, {"route", call.by_dal ? "dal" : "soap"}};
  const auto begun = std::chrono::steady_clock::now();
  // A session is its thread's, and the next call begins with a new one.
  std::thread([&] { run(call, answer); }).join();
  const auto time = std::chrono::steady_clock::now() - begun;
  answer["micros"] = std::chrono::duration_cast<std::chrono::microseconds>(time).count();
  return answer;
}

}  // namespace bvconn::sandbox
