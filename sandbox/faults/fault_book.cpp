#include "sandbox/faults/fault_book.h"

#include <algorithm>
#include <set>
#include <utility>

#include "bvconn/platform/conversions/conversions.h"
#include "sandbox/faults/fault_forms.h"

namespace bvconn::sandbox {
namespace {

/// "X-Test" asks for the header, "X-Test: value" for its value too.
bool has_header(const Request& request, std::string_view wanted) {
  const auto colon = wanted.find(':');
  const auto value = request.header(wanted.substr(0, colon));
  if (!value || colon == std::string_view::npos) return value.has_value();
  return *value == conversions::trim_blanks(wanted.substr(colon + 1));
}

/// A number from 0 to below 1 for the nth request, the same on every machine.
double share(std::int64_t seed, std::int64_t n) {
  constexpr double kUnit = 1.0 / 9007199254740992.0;  // 2 to the power of -53
  auto mixed =
      static_cast<std::uint64_t>(seed) + static_cast<std::uint64_t>(n) * 0x9E3779B97F4A7C15U;
  mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9U;
  mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBU;
  mixed ^= mixed >> 31U;
  return static_cast<double>(mixed >> 11U) * kUnit;
}

}  // namespace

bool matches(const FaultRule& rule, const Exchange& exchange, const Request& request) {
  return (!rule.route || *rule.route == route_text(exchange.route)) &&
         (!rule.session || *rule.session == exchange.session) &&
         (!rule.operation || exchange.can_be(*rule.operation)) &&
         (!rule.header || has_header(request, *rule.header));
}

bool counts_as_hit(FaultInForce& fault) {
  const FaultRule& rule = *fault.rule;
  if (++fault.seen <= rule.skip.value_or(0)) return false;
  if (rule.count && fault.hit >= *rule.count) return false;
  constexpr std::int64_t kOwnSeed = 1;
  if (rule.probability && share(rule.seed.value_or(kOwnSeed), fault.seen) >= *rule.probability) {
    return false;
  }
  ++fault.hit;
  return true;
}

void name_faults(std::vector<FaultRule>& rules, std::set<std::string> taken,
                 std::int64_t& last_number) {
  if (taken.size() + rules.size() > FaultBook::kMost) {
    throw BadFault("There may be " + std::to_string(FaultBook::kMost) + " faults at most");
  }
  for (const FaultRule& each : rules) {
    if (each.name && !taken.insert(*each.name).second) {
      throw BadFault("There is a fault with the name '" + *each.name + "' already");
    }
  }
  for (FaultRule& each : rules) {
    while (!each.name) {
      std::string name = "fault-" + std::to_string(++last_number);
      if (taken.insert(name).second) each.name = std::move(name);
    }
  }
}

std::string FaultBook::keep_answer(Route route, const std::string& answer) {
  constexpr std::size_t kLargest = std::size_t{1} << 20;
  if (answer.size() > kLargest || !wants_answers()) return {};
  return exchange_answer(route, answer);
}

std::vector<std::string> MemoryFaultBook::add(std::vector<FaultRule> rules) {
  const std::lock_guard lock(mutex_);
  std::set<std::string> taken;
  for (const FaultInForce& each : faults_) taken.insert(*each.rule->name);
  name_faults(rules, std::move(taken), named_);
  std::vector<std::string> names;
  for (FaultRule& each : rules) {
    names.push_back(*each.name);
    faults_.push_back({.rule = std::make_shared<const FaultRule>(std::move(each))});
  }
  is_empty_ = faults_.empty();
  return names;
}

bool MemoryFaultBook::remove(std::string_view name) {
  const std::lock_guard lock(mutex_);
  const auto removed =
      std::erase_if(faults_, [name](const FaultInForce& each) { return *each.rule->name == name; });
  is_empty_ = faults_.empty();
  return removed > 0;
}

std::size_t MemoryFaultBook::clear() {
  {
    const std::lock_guard lock(answers_mutex_);
    for (std::string& each : answers_) each.clear();
  }
  const std::lock_guard lock(mutex_);
  is_empty_ = true;
  return std::exchange(faults_, {}).size();
}

std::vector<FaultInForce> MemoryFaultBook::list() const {
  const std::lock_guard lock(mutex_);
  return faults_;
}

std::shared_ptr<const FaultRule> MemoryFaultBook::next(const Exchange& exchange,
                                                       const Request& request) {
  if (is_empty_) return nullptr;
  const std::lock_guard lock(mutex_);
  for (FaultInForce& each : faults_) {
    if (matches(*each.rule, exchange, request) && counts_as_hit(each)) return each.rule;
  }
  return nullptr;
}

bool MemoryFaultBook::wants_answers() const {
  if (is_empty_) return false;
  const std::lock_guard lock(mutex_);
  return std::any_of(faults_.begin(), faults_.end(), [](const FaultInForce& each) {
    return each.rule->kind == Misconduct::kOtherAnswer;
  });
}

std::string MemoryFaultBook::exchange_answer(Route route, const std::string& answer) {
  const std::lock_guard lock(answers_mutex_);
  return std::exchange(answers_[route == Route::kSoap ? 0 : 1], answer);
}

}  // namespace bvconn::sandbox
