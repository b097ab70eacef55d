#include <algorithm>
#include <charconv>
#include <iterator>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "bvconn/platform/conversions/nearest_names.h"
#include "sandbox/admin/admin.h"
#include "sandbox/journal/journal_filter.h"
#include "sandbox/journal/mask_entry.h"
#include "sandbox/journal/verify.h"

namespace bvconn::sandbox {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::uint64_t kUsualLimit = 100;
constexpr std::uint64_t kMostLimit = 10'000;
/// An answer ends behind the exchange that fills so much.
constexpr std::size_t kMostAnswerBytes = 16U * 1024 * 1024;

std::uint64_t number_of(const std::string& name, const std::string& text, std::uint64_t most) {
  std::uint64_t number = 0;
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  if (text.empty() || read.ec != std::errc() || read.ptr != end || number > most) {
    throw AdminRefusal{400, name + " is '" + text + "', expected a whole number from 0 to " +
                                std::to_string(most)};
  }
  return number;
}

std::uint64_t number_field(const AdminCall& call, const std::string& name, std::uint64_t usual,
                           std::uint64_t most) {
  const auto found = call.query.find(name);
  return found == call.query.end() ? usual : number_of(name, found->second, most);
}

/// Runs something whose std::invalid_argument is a refusal.
template <class Body>
auto refusing(const Body& body) {
  try {
    return body();
  } catch (const std::invalid_argument& error) {
    throw AdminRefusal{400, error.what()};
  }
}

/// A value of JSON as a field of a query would have it.
std::string field_text(const std::string& name, const nlohmann::json& value) {
  if (value.is_string()) return value.get<std::string>();
  throw AdminRefusal{400, name + " is no text"};
}

std::size_t count_of(const std::string& name, const nlohmann::json& value) {
  if (value.is_number_unsigned()) return value.get<std::size_t>();
  throw AdminRefusal{400, name + " is not a whole number from 0 on"};
}

void add_conditions(const nlohmann::json& where, JournalFilter& filter) {
  if (!where.is_object()) throw AdminRefusal{400, "where is not an object of arguments"};
  for (const auto& [name, value] : where.items()) {
    add_condition(filter, name + "=" + field_text("where." + name, value));
  }
}

void set_counts(const nlohmann::json& asked, Expectation& expectation) {
  const bool is_exact = asked.contains("count");
  if (is_exact && (asked.contains("atLeast") || asked.contains("atMost"))) {
    throw AdminRefusal{400, "count says it all; leave atLeast and atMost out"};
  }
  if (is_exact) {
    expectation.at_least = count_of("count", asked["count"]);
    expectation.at_most = expectation.at_least;
  }
  if (asked.contains("atMost")) {
    expectation.at_most = count_of("atMost", asked["atMost"]);
    expectation.at_least = 0;
  }
  if (asked.contains("atLeast")) expectation.at_least = count_of("atLeast", asked["atLeast"]);
  if (expectation.at_most && *expectation.at_most < expectation.at_least) {
    throw AdminRefusal{400, "atMost is less than atLeast"};
  }
}

Expectation read_expectation(const std::string& body) {
  const auto asked = nlohmann::json::parse(body, nullptr, /*allow_exceptions=*/false);
  if (!asked.is_object()) throw AdminRefusal{400, "The body is no object of JSON"};
  std::vector<std::string> known = filter_fields();
  const std::size_t plain = known.size();
  known.insert(known.end(), {"count", "atLeast", "atMost"});
  FilterFields fields;
  for (const auto& [name, value] : asked.items()) {
    const auto place = std::find(known.begin(), known.end(), name) - known.begin();
    if (place == std::ssize(known)) {
      throw AdminRefusal{400, "There is no field '" + name + "' here" + did_you_mean(name, known)};
    }
    // The counts are numbers, and the conditions an object.
    const bool is_text = static_cast<std::size_t>(place) < plain && name != "where";
    if (is_text) fields.emplace(name, field_text(name, value));
  }
  return refusing([&] {
    Expectation expectation{.filter = read_filter(fields)};
    if (asked.contains("where")) add_conditions(asked["where"], expectation.filter);
    set_counts(asked, expectation);
    return expectation;
  });
}

}  // namespace

std::shared_ptr<Journal> journal_of(const AdminCall& call) {
  if (call.sandbox.journal) return call.sandbox.journal;
  throw AdminRefusal{404, "This sandbox keeps no journal: it was started with --journal-count 0"};
}

JournalFilter filter_of(const AdminCall& call) {
  return refusing([&] {
    JournalFilter filter = read_filter(call.query);
    for (const auto& [name, value] : call.fields) {
      if (name == "where") add_condition(filter, value);
    }
    return filter;
  });
}

Reply get_journal(AdminCall& call) {
  std::vector<std::string> known = filter_fields();
  known.insert(known.end(), {"after", "limit"});
  expect_query(call, known);
  const JournalFilter filter = filter_of(call);
  const std::uint64_t limit = number_field(call, "limit", kUsualLimit, kMostLimit);
  const std::uint64_t after = number_field(call, "after", 0, ~std::uint64_t{0});
  const auto journal = journal_of(call);
  auto entries = journal->after(after);
  const std::size_t kept = entries.size();
  std::erase_if(entries, [&](const EntryPointer& each) { return !matches(filter, *each); });
  // The latest are taken, and shown in their order.
  std::vector<std::string> shown;
  std::size_t bytes = 0;
  for (auto each = entries.rbegin(); each != entries.rend(); ++each) {
    if (shown.size() >= limit || bytes > kMostAnswerBytes) break;
    shown.push_back(json_text(entry_json(masked(**each))));
    bytes += shown.back().size();
  }
  std::string body = "{\"kept\":" + std::to_string(kept) +
                     ",\"dropped\":" + std::to_string(journal->dropped()) +
                     ",\"lost\":" + std::to_string(journal->lost()) +
                     ",\"matched\":" + std::to_string(entries.size()) + ",\"exchanges\":[";
  for (auto each = shown.rbegin(); each != shown.rend(); ++each) {
    if (each != shown.rbegin()) body.push_back(',');
    body.append(*each);
  }
  return json_reply(200, body + "]}\n");
}

Reply get_journal_entry(AdminCall& call) {
  expect_query(call, {});
  const std::uint64_t id = number_of("The number", call.below, ~std::uint64_t{0} - 1);
  const auto entries = journal_of(call)->after(id == 0 ? 0 : id - 1, 1);
  if (id == 0 || entries.empty() || entries.front()->id != id) {
    throw AdminRefusal{404, "The journal has no exchange " + std::to_string(id)};
  }
  return json_reply(200, json_text(entry_json(masked(*entries.front()))) + "\n");
}

Reply clear_journal(AdminCall& call) {
  expect_query(call, {});
  journal_of(call)->clear();
  return json_reply(200, "{\"cleared\":true}\n");
}

Reply post_verify(AdminCall& call) {
  expect_query(call, {});
  const Expectation expectation = read_expectation(call.request.body);
  const Verification verification = verify(expectation, *journal_of(call));
  return json_reply(200, json_text(verification_json(expectation, verification)) + "\n");
}

}  // namespace bvconn::sandbox
