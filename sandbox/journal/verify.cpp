#include "sandbox/journal/verify.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "sandbox/journal/mask_entry.h"

namespace bvconn::sandbox {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kMostNearMisses = 3;
constexpr std::size_t kMostMatched = 100;

bool was_refused(const JournalFilter& filter, const JournalEntry& entry) {
  return !filter.outcome && entry.outcome == Outcome::kRefused;
}

std::vector<Difference> all_misses(const JournalFilter& filter, const JournalEntry& entry,
                                   const JournalEntry& shown) {
  std::vector<Difference> all = misses(filter, entry, shown);
  if (!was_refused(filter, entry)) return all;
  all.push_back({"the request", "was refused", "one that is answered"});
  if (shown.differences.empty()) {
    all.back().found += " (" + shown.remark + ")";
  }
  all.insert(all.end(), shown.differences.begin(), shown.differences.end());
  return all;
}

/// How far an exchange is from what is looked for; nothing for one that has nothing of it.
std::optional<std::size_t> distance(const JournalFilter& filter, const JournalEntry& entry) {
  // Another operation is farther than any other argument.
  constexpr std::size_t kOtherOperation = 100;
  const auto wrong = misses(filter, entry, entry);
  const bool is_other = !wrong.empty() && wrong.front().at == "the operation";
  if (is_other) {
    const auto differ = static_cast<std::size_t>(
        std::count_if(wrong.begin(), wrong.end(),
                      [&](const Difference& each) { return filter.where.contains(each.at); }));
    if (differ == filter.where.size()) return std::nullopt;
  }
  return wrong.size() + (is_other ? kOtherOperation : 0) + (was_refused(filter, entry) ? 1 : 0);
}

std::vector<NearMiss> nearest_misses(const JournalFilter& filter,
                                     const std::vector<EntryPointer>& entries) {
  std::vector<std::pair<std::size_t, EntryPointer>> ranked;
  // Of equals the latest comes first.
  for (auto each = entries.rbegin(); each != entries.rend(); ++each) {
    const auto far = distance(filter, **each);
    if (far && *far > 0) ranked.emplace_back(*far, *each);
  }
  std::stable_sort(ranked.begin(), ranked.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  if (ranked.size() > kMostNearMisses) ranked.resize(kMostNearMisses);
  std::vector<NearMiss> nearest;
  for (const auto& [far, entry] : ranked) {
    JournalEntry shown = masked(*entry);
    auto wrong = all_misses(filter, *entry, shown);
    nearest.push_back({std::move(shown), std::move(wrong)});
  }
  return nearest;
}

}  // namespace

std::string Expectation::count_text() const {
  if (!at_most) return "at least " + std::to_string(at_least);
  if (*at_most == at_least) return std::to_string(at_least);
  if (at_least == 0) return "at most " + std::to_string(*at_most);
  return std::to_string(at_least) + " to " + std::to_string(*at_most);
}

Verification verify(const Expectation& expectation, const Journal& journal) {
  const auto entries = journal.entries();
  Verification result{.holds = false,
                      .matched = {},
                      .nearest = {},
                      .kept = entries.size(),
                      .dropped = journal.dropped()};
  for (const EntryPointer& entry : entries) {
    if (matches(expectation.filter, *entry) && !was_refused(expectation.filter, *entry)) {
      result.matched.push_back(entry->id);
    }
  }
  result.holds = expectation.holds(result.matched.size());
  if (result.matched.size() < expectation.at_least) {
    result.nearest = nearest_misses(expectation.filter, entries);
  }
  return result;
}

Json verification_json(const Expectation& expectation, const Verification& verification) {
  const std::vector<std::uint64_t>& matched = verification.matched;
  const std::size_t shown = std::min(matched.size(), kMostMatched);
  Json json{{"holds", verification.holds},
            {"asked", expectation.filter.text()},
            {"expected", expectation.count_text()},
            {"count", matched.size()},
            {"matched", std::vector<std::uint64_t>(
                            matched.begin(), matched.begin() + static_cast<std::ptrdiff_t>(shown))},
            {"kept", verification.kept},
            {"dropped", verification.dropped},
            {"nearest", Json::array()}};
  for (const NearMiss& each : verification.nearest) {
    Json miss = entry_json(each.entry);
    miss.erase("request");
    miss.erase("reply");
    miss["differences"] = Json::array();
    for (const Difference& difference : each.differences) {
      miss["differences"].push_back(difference_json(difference));
    }
    json["nearest"].push_back(std::move(miss));
  }
  return json;
}

}  // namespace bvconn::sandbox
