#include "sandbox/stubs/shared_stub_book.h"

#include <cstddef>
#include <nlohmann/json.hpp>
#include <utility>

#include "sandbox/stubs/stub_forms.h"

namespace bvconn::sandbox {
namespace {

/// The rule as it was written, without the name and the count that it has here.
std::string text_of(const Stub& stub) {
  auto object = to_json(stub);
  object.erase("id");
  object.erase("answered");
  return object.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace

SharedStubBook::SharedStubBook(const std::string& where, std::vector<const OperationForm*> forms)
    : forms_(std::move(forms)),
      rules_(where, "stub"),
      read_([this](const SharedRule& rule) { return read(rule); }) {}

std::shared_ptr<Stub> SharedStubBook::read(const SharedRule& rule) const {
  try {
    auto rules = stubs_from_text(rule.text, forms_);
    if (rules.size() != 1) return nullptr;
    auto stub = std::make_shared<Stub>(rule.name, std::move(rules.front()));
    stub->answered = rule.hit;
    return stub;
  } catch (const BadStub&) {
    return nullptr;
  }
}

StubBook::Stubs SharedStubBook::add(std::vector<StubRule> rules) {
  Stubs added;
  rules_.change([&](SharedRules::Change& change) {
    std::size_t bytes = 0;
    for (const SharedRule& each : change.present()) bytes += each.text.size();
    for (const StubRule& each : rules) bytes += each.answer.size();
    expect_room_for_stubs(change.present().size() + rules.size(), bytes);
    for (StubRule& each : rules) {
      added.push_back(
          std::make_shared<Stub>(std::to_string(change.last_number() + 1), std::move(each)));
      change.add(added.back()->id, text_of(*added.back()));
    }
  });
  return added;
}

StubBook::Stubs SharedStubBook::all() const {
  Stubs stubs;
  for (const SharedRule& each : rules_.all()) {
    if (auto stub = read(each)) stubs.push_back(std::move(stub));
  }
  return stubs;
}

bool SharedStubBook::remove(std::string_view id) {
  bool is_found = false;
  rules_.change([&](SharedRules::Change& change) {
    for (const SharedRule& each : change.present()) {
      if (each.name != id) continue;
      change.remove(each.number);
      is_found = true;
    }
  });
  return is_found;
}

void SharedStubBook::clear() {
  rules_.change([](SharedRules::Change& change) {
    for (const SharedRule& each : change.present()) change.remove(each.number);
  });
}

std::shared_ptr<const Stub> SharedStubBook::take(const Exchange& exchange) {
  if (rules_.is_empty()) return nullptr;
  std::vector<std::int64_t> numbers;
  std::vector<std::shared_ptr<const Stub>> fitting;
  const auto known = read_.of(rules_.known());
  for (auto each = known->rbegin(); each != known->rend(); ++each) {
    if (!each->second->rule.fits(exchange)) continue;
    numbers.push_back(each->first);
    fitting.push_back(each->second);
  }
  if (numbers.empty()) return nullptr;
  const auto found = rules_.count(numbers, [&](std::size_t which, SharedRule& counted) {
    const auto& times = fitting[which]->rule.times;
    if (times && counted.hit >= *times) return false;
    ++counted.seen;
    ++counted.hit;
    return true;
  });
  return found ? fitting[*found] : nullptr;
}

}  // namespace bvconn::sandbox
