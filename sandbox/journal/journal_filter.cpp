#include "sandbox/journal/journal_filter.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "bvconn/automation/interface.h"
#include "bvconn/platform/conversions/nearest_names.h"
#include "sandbox/contract/words.h"

namespace bvconn::sandbox {
namespace {

using automation::ClassInfo;
using automation::Member;
using Names = std::vector<std::string>;

constexpr std::array kRoutes{Route::kSoap, Route::kDal};
constexpr std::array kOutcomes{Outcome::kAnswered, Outcome::kWarned, Outcome::kFault,
                               Outcome::kRefused,  Outcome::kFailed, Outcome::kInjected};

std::string in_quotes(const std::string& text) {
  return "'" + text + "'";
}

[[noreturn]] void refuse_name(const std::string& what, const std::string& name,
                              const Names& known) {
  throw std::invalid_argument("There is no " + what + " " + in_quotes(name) +
                              did_you_mean(name, known));
}

/// One of a few values by its text.
template <class Values, class Text>
auto one_of(const Values& values, Text text_of, const std::string& what, const std::string& text) {
  const auto found =
      std::find_if(values.begin(), values.end(), [&](auto each) { return text_of(each) == text; });
  if (found != values.end()) return *found;
  throw std::invalid_argument(
      "There is no " + what + " " + in_quotes(text) + ", but " +
      listed(values, ", ", [&](auto each) { return std::string(text_of(each)); }));
}

const ClassInfo& class_of(const std::string& operation) {
  const std::string name = operation.substr(0, operation.find('.'));
  if (const ClassInfo* info = automation::find_class(name)) return *info;
  Names known;
  for (const ClassInfo* each : automation::classes()) known.push_back(each->name);
  refuse_name("class", name, known);
}

const Member& member_of(const ClassInfo& info, const std::string& operation) {
  const std::string name = operation.substr(info.name.size() + 1);
  const Member* const member = info.find(name);
  if (member && member->kind == automation::MemberKind::kOperation) return *member;
  Names known;
  for (const Member& each : info.members) {
    if (each.kind == automation::MemberKind::kOperation) known.push_back(each.name);
  }
  refuse_name("operation of " + info.name, name, known);
}

/// The one operation that is named; null for "*", all of a class, or none.
const Member* operation_of(const std::string& operation) {
  if (operation.empty() || operation == "*") return nullptr;
  if (operation.find('.') == std::string::npos) {
    throw std::invalid_argument("An operation is named as BVInvoiceConnector.GetInvoice, not " +
                                in_quotes(operation));
  }
  const ClassInfo& info = class_of(operation);
  return operation.ends_with(".*") ? nullptr : &member_of(info, operation);
}

Moment moment_field(const std::string& name, const std::string& text) {
  if (const auto moment = moment_of(text)) return *moment;
  throw std::invalid_argument(name + " is " + in_quotes(text) +
                              ", expected a moment as 2026-01-31T12:00:00Z");
}

bool can_be(const JournalEntry& entry, const std::string& operation) {
  if (operation.empty()) return true;
  return std::any_of(entry.operations.begin(), entry.operations.end(),
                     [&](const std::string& name) { return is_operation(name, operation); });
}

std::string operations_text(const JournalEntry& entry) {
  if (entry.operations.empty()) return "no operation of the library";
  return listed(entry.operations, " or ", [](const std::string& each) { return each; });
}

std::optional<Difference> miss_of_argument(const JournalEntry& entry, const JournalEntry& masked,
                                           const std::string& name, const std::string& wanted) {
  const std::string* const found = entry.argument(name);
  if (found && *found == wanted) return std::nullopt;
  const std::string* const shown = masked.argument(name);
  return Difference{name, found && shown ? "is " + in_quotes(shortened(*shown)) : "is not there",
                    in_quotes(wanted)};
}

}  // namespace

std::string JournalFilter::text() const {
  std::string words = operation.empty() ? "any operation" : operation;
  for (const auto& [name, value] : where) {
    words.append(name == where.begin()->first ? " with " : " and ");
    words.append(name).append("=").append(value);
  }
  if (session) words.append(" in the session asked for");
  if (route) words.append(" by ").append(route_text(*route));
  if (outcome) words.append(", ").append(outcome_text(*outcome));
  if (since) words.append(" since ").append(moment_text(*since));
  if (until) words.append(" until ").append(moment_text(*until));
  return words;
}

const std::vector<std::string>& filter_fields() {
  static const Names names{"operation", "route", "session", "outcome", "since", "until", "where"};
  return names;
}

JournalFilter read_filter(const FilterFields& fields) {
  JournalFilter filter;
  const auto field = [&](std::string_view name) -> const std::string* {
    const auto found = fields.find(name);
    return found == fields.end() ? nullptr : &found->second;
  };
  if (const auto* text = field("operation")) filter.operation = *text;
  operation_of(filter.operation);
  if (const auto* text = field("route")) filter.route = one_of(kRoutes, route_text, "route", *text);
  if (const auto* text = field("session")) filter.session = *text;
  if (const auto* text = field("outcome")) {
    filter.outcome = one_of(kOutcomes, outcome_text, "outcome", *text);
  }
  if (const auto* text = field("since")) filter.since = moment_field("since", *text);
  if (const auto* text = field("until")) filter.until = moment_field("until", *text);
  if (const auto* text = field("where")) add_condition(filter, *text);
  return filter;
}

void add_condition(JournalFilter& filter, std::string_view condition) {
  const std::size_t equals = condition.find('=');
  if (equals == std::string_view::npos || equals == 0) {
    throw std::invalid_argument("A condition is written as strInvoiceUID=INV-1001, not " +
                                in_quotes(std::string(condition)));
  }
  const std::string name(condition.substr(0, equals));
  const Member* const operation = operation_of(filter.operation);
  if (operation && operation->find_argument(name) == nullptr) {
    Names known;
    for (const auto& each : operation->arguments) known.push_back(each.name);
    refuse_name("argument of " + filter.operation, name, known);
  }
  filter.where[name] = condition.substr(equals + 1);
}

bool matches(const JournalFilter& filter, const JournalEntry& entry) {
  if (filter.since && entry.at < *filter.since) return false;
  if (filter.until && entry.at > *filter.until) return false;
  if (filter.route && entry.route != *filter.route) return false;
  if (filter.session && entry.session != *filter.session) return false;
  if (filter.outcome && entry.outcome != *filter.outcome) return false;
  if (!can_be(entry, filter.operation)) return false;
  return std::all_of(filter.where.begin(), filter.where.end(), [&](const auto& condition) {
    const std::string* const found = entry.argument(condition.first);
    return found && *found == condition.second;
  });
}

std::vector<Difference> misses(const JournalFilter& filter, const JournalEntry& entry,
                               const JournalEntry& masked) {
  std::vector<Difference> all;
  if (!can_be(entry, filter.operation)) {
    all.push_back({"the operation", "is " + operations_text(entry), filter.operation});
  }
  for (const auto& [name, wanted] : filter.where) {
    auto miss = miss_of_argument(entry, masked, name, wanted);
    if (miss) all.push_back(std::move(*miss));
  }
  if (filter.session && entry.session != *filter.session) {
    all.push_back({"the session", "is another one", "the one asked for"});
  }
  if (filter.route && entry.route != *filter.route) {
    all.push_back({"the route", "is " + std::string(route_text(entry.route)),
                   std::string(route_text(*filter.route))});
  }
  if (filter.outcome && entry.outcome != *filter.outcome) {
    all.push_back({"the outcome", "is " + std::string(outcome_text(entry.outcome)),
                   std::string(outcome_text(*filter.outcome))});
  }
  if (filter.since && entry.at < *filter.since) {
    all.push_back(
        {"the moment", "is " + moment_text(entry.at), "not before " + moment_text(*filter.since)});
  }
  if (filter.until && entry.at > *filter.until) {
    all.push_back(
        {"the moment", "is " + moment_text(entry.at), "not after " + moment_text(*filter.until)});
  }
  return all;
}

}  // namespace bvconn::sandbox
