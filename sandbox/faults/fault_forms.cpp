#include "sandbox/faults/fault_forms.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

#include "bvconn/platform/conversions/nearest_names.h"

namespace bvconn::sandbox {
namespace {

using nlohmann::json;

std::string known_kinds() {
  std::string text;
  for (const FaultKind& each : fault_kinds()) {
    text.append(text.empty() ? "" : ", ").append(each.name);
  }
  return text;
}

const FaultKind& named_kind(const json& object) {
  const auto found = object.find("kind");
  if (found == object.end()) throw BadFault("A fault needs a kind: " + known_kinds());
  const std::string name = found->is_string() ? found->get<std::string>() : found->dump();
  std::vector<std::string> names;
  for (const FaultKind& each : fault_kinds()) {
    if (each.name == name) return each;
    names.emplace_back(each.name);
  }
  const std::string nearest = did_you_mean(name, names);
  throw BadFault("There is no kind '" + name + "' of fault" +
                 (nearest.empty() ? "; there are " + known_kinds() : nearest));
}

[[noreturn]] void refuse_field(std::string_view name, const FaultKind& kind) {
  std::vector<std::string> names;
  for (const FaultField& each : fault_fields()) {
    if (each.name == name) {
      throw BadFault("A fault of the kind " + std::string(kind.name) + " takes no " +
                     std::string(name));
    }
    if (takes(kind, each)) names.emplace_back(each.name);
  }
  throw BadFault("A fault has no field '" + std::string(name) + "'" + did_you_mean(name, names));
}

[[noreturn]] void refuse_value(const FaultField& field, const json& value,
                               const std::string& expected) {
  throw BadFault(std::string(field.name) + " is " +
                 value.dump(-1, ' ', false, json::error_handler_t::replace) + ", expected " +
                 expected);
}

std::string range_text(const FaultField& field) {
  return "from " + std::to_string(field.least) + " to " + std::to_string(field.most);
}

void set(const FaultField& field, const json& value, std::optional<std::string>& place) {
  if (!value.is_string()) refuse_value(field, value, "a text");
  place = value.get<std::string>();
}

void set(const FaultField& field, const json& value, std::optional<std::int64_t>& place) {
  const bool fits = value.is_number_integer() &&
                    (!value.is_number_unsigned() ||
                     value.get<std::uint64_t>() <= static_cast<std::uint64_t>(INT64_MAX));
  const std::int64_t number = fits ? value.get<std::int64_t>() : 0;
  if (!fits || number < field.least || number > field.most) {
    refuse_value(field, value, "a whole number " + range_text(field));
  }
  place = number;
}

void set(const FaultField& field, const json& value, std::optional<double>& place) {
  const double number = value.is_number() ? value.get<double>() : NAN;
  if (!(number >= static_cast<double>(field.least) && number <= static_cast<double>(field.most))) {
    refuse_value(field, value, "a number " + range_text(field));
  }
  place = number;
}

void set(const FaultField& field, const json& value, std::optional<bool>& place) {
  if (!value.is_boolean()) refuse_value(field, value, "true or false");
  place = value.get<bool>();
}

void expect_one_of(std::string_view field, const std::optional<std::string>& value,
                   std::initializer_list<std::string_view> known) {
  if (!value || std::find(known.begin(), known.end(), *value) != known.end()) return;
  std::string text;
  for (const std::string_view each : known) text.append(text.empty() ? "" : " or ").append(each);
  throw BadFault(std::string(field) + " is '" + *value + "', expected " + text);
}

void check_operation(const std::string& name, const std::vector<std::string>& operations) {
  if (operations.empty() || name == "*") return;
  const bool whole_class = name.ends_with(".*");
  const std::string_view start = std::string_view(name).substr(0, name.size() - 1);
  const bool known =
      std::any_of(operations.begin(), operations.end(), [&](const std::string& each) {
        return whole_class ? each.starts_with(start) : each == name;
      });
  if (known) return;
  throw BadFault("operation is '" + name + "', which the library does not have" +
                 did_you_mean(name, operations));
}

void check(const FaultRule& rule, const std::vector<std::string>& operations) {
  expect_one_of("route", rule.route, {"soap", "dal"});
  expect_one_of("page", rule.page, {"html", "empty"});
  if (rule.operation) check_operation(*rule.operation, operations);
  if (rule.header && rule.header->substr(0, rule.header->find(':')).empty()) {
    throw BadFault("header is '" + *rule.header + "', expected one such as 'X-Test: value'");
  }
  if (rule.name && (rule.name->empty() || rule.name->find('/') != std::string::npos)) {
    throw BadFault("name is '" + *rule.name + "', expected a word without '/'");
  }
  if (rule.charset && rule.charset->find_first_of("\r\n\"<>&") != std::string::npos) {
    throw BadFault("charset is no name of an encoding");
  }
  if (rule.kind == Misconduct::kWrongLength && rule.by == 0) {
    throw BadFault("by is 0, expected a number that makes the length wrong");
  }
  if (rule.kind == Misconduct::kDelay && !rule.delay_ms) {
    throw BadFault("A fault of the kind delay needs delay_ms");
  }
}

}  // namespace

FaultRule fault_from_json(const json& object, const std::vector<std::string>& operations) {
  if (!object.is_object()) throw BadFault("A fault is an object, such as {\"kind\": \"reset\"}");
  const FaultKind& kind = named_kind(object);
  FaultRule rule;
  rule.kind = kind.kind;
  for (const auto& [key, value] : object.items()) {
    if (key == "kind") continue;
    const std::span<const FaultField> fields = fault_fields();
    const auto field = std::find_if(
        fields.begin(), fields.end(),
        [&, &name = key](const auto& each) { return each.name == name && takes(kind, each); });
    if (field == fields.end()) refuse_field(key, kind);
    std::visit([&, &given = value](auto member) { set(*field, given, rule.*member); },
               field->member);
  }
  check(rule, operations);
  return rule;
}

std::vector<FaultRule> faults_from_text(std::string_view text,
                                        const std::vector<std::string>& operations) {
  json parsed = json::parse(text, nullptr, false);
  if (parsed.is_discarded()) throw BadFault("The faults are not JSON");
  if (parsed.is_object() && parsed.size() == 1 && parsed.contains("faults")) {
    parsed = json(parsed["faults"]);
  }
  std::vector<FaultRule> rules;
  if (!parsed.is_array()) return {fault_from_json(parsed, operations)};
  for (const json& each : parsed) rules.push_back(fault_from_json(each, operations));
  return rules;
}

nlohmann::ordered_json to_json(const FaultRule& rule) {
  nlohmann::ordered_json object;
  for (const FaultField& field : fault_fields()) {
    std::visit(
        [&](auto member) {
          if (rule.*member) object[std::string(field.name)] = *(rule.*member);
        },
        field.member);
    // The name in front, and then what it is.
    if (field.name == "name") object["kind"] = kind_of(rule.kind).name;
  }
  return object;
}

}  // namespace bvconn::sandbox
