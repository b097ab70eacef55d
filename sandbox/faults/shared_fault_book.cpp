#include "sandbox/faults/shared_fault_book.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>
#include <span>
#include <utility>

#include "bvconn/platform/soap/typed_text.h"
#include "sandbox/faults/fault_forms.h"

namespace bvconn::sandbox {
namespace {

using nlohmann::json;

std::string text_of(const FaultRule& rule) {
  return to_json(rule).dump(-1, ' ', false, json::error_handler_t::replace);
}

/// Nothing where a program of another version has written what this one does not know.
std::shared_ptr<const FaultRule> read(const SharedRule& rule) {
  try {
    const json object = json::parse(rule.text, nullptr, /*allow_exceptions=*/false);
    return std::make_shared<const FaultRule>(fault_from_json(object, {}));
  } catch (const BadFault&) {
    return nullptr;
  }
}

std::set<std::string> names_of(const SharedRules::Rules& rules) {
  std::set<std::string> names;
  for (const SharedRule& each : rules) names.insert(each.name);
  return names;
}

std::vector<std::string> add_to(SharedRules::Change& change, std::vector<FaultRule>& rules,
                                std::set<std::string> taken) {
  std::int64_t last_number = change.last_number();
  name_faults(rules, std::move(taken), last_number);
  std::vector<std::string> names;
  for (const FaultRule& each : rules) {
    change.add(*each.name, text_of(each));
    names.push_back(*each.name);
  }
  return names;
}

}  // namespace

SharedFaultBook::SharedFaultBook(const std::string& where) : rules_(where, "fault"), read_(read) {}

std::vector<std::string> SharedFaultBook::add(std::vector<FaultRule> rules) {
  std::vector<std::string> names;
  rules_.change([&](SharedRules::Change& change) {
    names = add_to(change, rules, names_of(change.present()));
  });
  return names;
}

void SharedFaultBook::begin_with(std::vector<FaultRule> rules) {
  if (rules.empty()) return;
  // By their places, so that another process names them in the same way.
  for (std::size_t i = 0; i < rules.size(); ++i) {
    if (!rules[i].name) rules[i].name = "begin-" + std::to_string(i + 1);
  }
  rules_.change([&](SharedRules::Change& change) {
    std::set<std::string> taken = names_of(change.present());
    for (const SharedRule& each : change.present()) {
      const auto same = std::find_if(rules.begin(), rules.end(),
                                     [&](const FaultRule& rule) { return rule.name == each.name; });
      if (same == rules.end()) continue;
      if (text_of(*same) == each.text) {
        rules.erase(same);
      } else {
        change.remove(each.number);
        taken.erase(each.name);
      }
    }
    add_to(change, rules, std::move(taken));
  });
}

bool SharedFaultBook::remove(std::string_view name) {
  bool is_found = false;
  rules_.change([&](SharedRules::Change& change) {
    for (const SharedRule& each : change.present()) {
      if (each.name != name) continue;
      change.remove(each.number);
      is_found = true;
    }
  });
  return is_found;
}

std::size_t SharedFaultBook::clear() {
  std::size_t count = 0;
  rules_.change([&](SharedRules::Change& change) {
    change.forget_answers();
    for (const SharedRule& each : change.present()) change.remove(each.number);
    count = change.present().size();
  });
  return count;
}

std::vector<FaultInForce> SharedFaultBook::list() const {
  std::vector<FaultInForce> all;
  for (const SharedRule& each : rules_.all()) {
    if (auto rule = read(each)) {
      all.push_back({.rule = std::move(rule), .seen = each.seen, .hit = each.hit});
    }
  }
  return all;
}

std::shared_ptr<const FaultRule> SharedFaultBook::next(const Exchange& exchange,
                                                       const Request& request) {
  if (rules_.is_empty()) return nullptr;
  std::vector<std::int64_t> numbers;
  std::vector<std::shared_ptr<const FaultRule>> matching;
  for (const auto& [number, rule] : *read_.of(rules_.known())) {
    if (!matches(*rule, exchange, request)) continue;
    numbers.push_back(number);
    matching.push_back(rule);
  }
  if (numbers.empty()) return nullptr;
  const auto hit = rules_.count(numbers, [&](std::size_t which, SharedRule& counted) {
    FaultInForce fault{.rule = matching[which], .seen = counted.seen, .hit = counted.hit};
    const bool is_hit = counts_as_hit(fault);
    counted.seen = fault.seen;
    counted.hit = fault.hit;
    return is_hit;
  });
  return hit ? matching[*hit] : nullptr;
}

bool SharedFaultBook::wants_answers() const {
  if (rules_.is_empty()) return false;
  const auto all = read_.of(rules_.known());
  return std::any_of(all->begin(), all->end(), [](const auto& each) {
    return each.second->kind == Misconduct::kOtherAnswer;
  });
}

std::string SharedFaultBook::exchange_answer(Route route, const std::string& answer) {
  try {
    const std::string kept = detail::to_base64(std::as_bytes(std::span(answer)));
    const auto before = detail::from_base64(rules_.exchange_answer(route_text(route), kept));
    return before ? std::string(reinterpret_cast<const char*>(before->data()), before->size()) : "";
  } catch (const DatabaseError&) {
    // The fault need not be about this request, and then it waits for no database.
    return {};
  }
}

}  // namespace bvconn::sandbox
