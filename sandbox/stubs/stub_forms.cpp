#include "sandbox/stubs/stub_forms.h"

#include <algorithm>

#include "bvconn/platform/conversions/nearest_names.h"
#include "sandbox/stubs/stub_answer.h"

namespace bvconn::sandbox {
namespace {

using nlohmann::json;
using Forms = std::vector<const OperationForm*>;

constexpr std::size_t kMostPatternBytes = 1'000;

std::string shown(const json& value) {
  return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

void expect_keys(const json& object, std::string_view what, const std::vector<std::string>& known) {
  for (const auto& [key, value] : object.items()) {
    if (std::find(known.begin(), known.end(), key) != known.end()) continue;
    const std::string nearest = did_you_mean(key, known);
    std::string all;
    for (const std::string& each : known) all.append(all.empty() ? "" : ", ").append(each);
    throw BadStub(std::string(what) + " has no field '" + key + "'" +
                  (nearest.empty() ? "; there are " + all : nearest));
  }
}

std::string text_at(const json& object, const char* key) {
  const auto found = object.find(key);
  if (found == object.end()) throw BadStub(std::string("A stub needs the field ") + key);
  if (!found->is_string()) {
    throw BadStub(std::string(key) + " is " + shown(*found) + ", expected a text");
  }
  return found->get<std::string>();
}

TextMatch match_of(const std::string& name, const json& value) {
  if (value.is_string()) return {.text = value.get<std::string>()};
  if (value.is_object() && value.size() == 1) {
    const auto only = value.begin();
    const std::string& key = only.key();
    const json& text = only.value();
    if (text.is_string() && text.get_ref<const std::string&>().size() <= kMostPatternBytes) {
      if (key == "exact") return {.text = text};
      if (key == "contains") return {.kind = TextMatch::Kind::kContains, .text = text};
      if (key == "pattern") return {.kind = TextMatch::Kind::kPattern, .text = text};
    }
  }
  throw BadStub(
      name + " is " + shown(value) +
      R"(, expected a text, or {"exact": …}, {"contains": …} or {"pattern": …} with one)");
}

/// The forms of the operations that a stub names. There has to be one.
Forms named_forms(const std::string& operation, const Forms& forms) {
  Exchange any;
  Forms named;
  std::vector<std::string> names;
  for (const OperationForm* form : forms) {
    any.forms = {form};
    if (any.can_be(operation)) named.push_back(form);
    names.push_back(form->name);
  }
  if (named.empty()) {
    throw BadStub("There is no operation '" + operation + "' that asks the server" +
                  did_you_mean(operation, names));
  }
  return named;
}

/// An argument that some form carries.
void expect_argument(const std::string& name, const std::string& operation, const Forms& forms) {
  std::vector<std::string> known;
  for (const OperationForm* form : forms) {
    if (form->place_of(name) || (!name.empty() && form->session_argument == name)) return;
    for (const auto& place : form->places) {
      const bool is_new = std::find(known.begin(), known.end(), place.argument) == known.end();
      if (!place.argument.empty() && is_new) known.push_back(place.argument);
    }
  }
  std::string nearest = did_you_mean(name, known);
  if (nearest.empty()) {
    for (const std::string& each : known) nearest.append(nearest.empty() ? "" : ", ").append(each);
    nearest = nearest.empty() ? "; it carries none" : "; there are " + nearest;
  }
  throw BadStub("A request of " + operation + " carries no argument '" + name + "'" + nearest);
}

std::optional<Route> route_of(const json& object) {
  if (!object.contains("route")) return std::nullopt;
  const std::string text = text_at(object, "route");
  for (const Route each : {Route::kSoap, Route::kDal}) {
    if (text == route_text(each)) return each;
  }
  throw BadStub("route is '" + text + "', expected soap or dal");
}

std::optional<std::int64_t> times_of(const json& object) {
  const auto found = object.find("times");
  if (found == object.end()) return std::nullopt;
  constexpr std::int64_t kMost = 1'000'000'000;
  if (found->is_number_integer()) {
    const auto times = found->get<std::int64_t>();
    if (times >= 1 && times <= kMost) return times;
  }
  throw BadStub("times is " + shown(*found) + ", expected a whole number from 1 to 1000000000");
}

StubRule rule_of(const json& object, const Forms& forms) {
  if (!object.is_object()) throw BadStub("A stub is " + shown(object) + ", expected an object");
  expect_keys(object, "A stub", {"operation", "route", "session", "arguments", "times", "answer"});
  StubRule rule{.operation = text_at(object, "operation"),
                .route = route_of(object),
                .session = std::nullopt,
                .arguments = {},
                .times = times_of(object),
                .answer = text_at(object, "answer"),
                .pieces = {}};
  const Forms named = named_forms(rule.operation, forms);
  if (object.contains("session")) rule.session = match_of("session", object["session"]);
  const json arguments = object.value("arguments", json::object());
  if (!arguments.is_object()) {
    throw BadStub("arguments is " + shown(arguments) + ", expected an object");
  }
  for (const auto& [name, value] : arguments.items()) {
    expect_argument(name, rule.operation, named);
    rule.arguments.emplace_back(name, match_of(name, value));
  }
  read_answer(rule);
  for (const AnswerPiece& piece : rule.pieces) {
    if (!piece.is_hole || piece.text == "session") continue;
    expect_argument(piece.text, rule.operation, named);
  }
  return rule;
}

json to_json(const TextMatch& match) {
  switch (match.kind) {
    case TextMatch::Kind::kContains:
      return {{"contains", match.text}};
    case TextMatch::Kind::kPattern:
      return {{"pattern", match.text}};
    case TextMatch::Kind::kExact:
      break;
  }
  return match.text;
}

}  // namespace

std::vector<StubRule> stubs_from_text(std::string_view text, const Forms& forms) {
  json all = json::parse(text, nullptr, false);
  if (all.is_discarded()) throw BadStub("What was sent is no JSON, expected a stub");
  if (all.is_object() && all.contains("stubs")) {
    expect_keys(all, "A list of stubs", {"stubs"});
    all = json(all["stubs"]);
    if (!all.is_array()) throw BadStub("stubs is " + shown(all) + ", expected an array");
  }
  std::vector<StubRule> rules;
  if (!all.is_array()) return {rule_of(all, forms)};
  for (const json& each : all) rules.push_back(rule_of(each, forms));
  return rules;
}

nlohmann::ordered_json to_json(const Stub& stub) {
  nlohmann::ordered_json object{{"id", stub.id}, {"operation", stub.rule.operation}};
  if (stub.rule.route) object["route"] = route_text(*stub.rule.route);
  if (stub.rule.session) object["session"] = to_json(*stub.rule.session);
  for (const auto& [name, match] : stub.rule.arguments) object["arguments"][name] = to_json(match);
  if (stub.rule.times) object["times"] = *stub.rule.times;
  object["answer"] = stub.rule.answer;
  object["answered"] = stub.answered.load();
  return object;
}

}  // namespace bvconn::sandbox
