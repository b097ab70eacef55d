#include "bvconn/testing/world_state.h"

#include <algorithm>
#include <utility>

#include "bvconn/platform/conversions/nearest_names.h"
#include "bvconn/platform/error_numbers.h"

namespace bvconn::test::detail {
namespace {

constexpr std::string_view kSource = "TestWorld";

std::string count_of(std::size_t count) {
  return std::to_string(count) + (count == 1 ? " answer" : " answers");
}

}  // namespace

bool Rule::fits(const SeenCall& call) const {
  if (answers.empty() || (!name.empty() && !call.is(name))) return false;
  if (texts.empty()) return true;
  const std::vector<std::string> asked = call.texts();
  return std::all_of(texts.begin(), texts.end(), [&](const std::string& text) {
    return std::find(asked.begin(), asked.end(), text) != asked.end();
  });
}

std::string Rule::shown() const {
  std::string line = name.empty() ? "any request" : name;
  if (!texts.empty()) line += " with";
  for (const std::string& text : texts) line += " " + in_quotes(text);
  if (stays) return line + " (as often as it is asked)";
  return line + " (" + (answers.empty() ? "used up" : count_of(answers.size()) + " left") + ")";
}

void WorldState::note(std::vector<std::string> Record::*list, const std::string& line) {
  {
    const std::scoped_lock lock(mutex);
    (record.*list).push_back(line);
  }
  note(line);
}

void WorldState::note(const std::string& line) {
  {
    const std::scoped_lock lock(mutex);
    record.all.push_back(line);
  }
  if (on_line) on_line(line);
}

ScriptedAnswer WorldState::answer(const SeenCall& call) {
  std::optional<ScriptedAnswer> found;
  {
    const std::scoped_lock lock(mutex);
    if (is_over) {
      throw Error(error_numbers::kFailed, kSource,
                  "The test's world of this thread is gone: end the thread before it");
    }
    calls.push_back(call);
    found = take(call, false);
  }
  if (!found && answer_otherwise) found = answer_otherwise(call);
  // A login works unless the test is about it.
  if (!found && call.object == "AuthenticationService") found = ScriptedAnswer::bytes("");
  if (!found) {
    const std::scoped_lock lock(mutex);
    found = take(call, true);
  }
  if (found) return found->to(call);
  std::string problem;
  {
    const std::scoped_lock lock(mutex);
    problem = unasked(call);
  }
  add_problem(problem);
  throw Error(error_numbers::kFailed, kSource, problem);
}

std::optional<ScriptedAnswer> WorldState::take(const SeenCall& call, bool of_any_name) {
  for (Rule& rule : rules) {
    if (rule.name.empty() != of_any_name || !rule.fits(call)) continue;
    ScriptedAnswer answer = rule.answers.front();
    if (!rule.stays || rule.answers.size() > 1) rule.answers.pop_front();
    return answer;
  }
  return std::nullopt;
}

std::string WorldState::unasked(const SeenCall& call) const {
  std::string text = "nobody scripted an answer for " + call.name();
  text += "\n  asked:    " + call.shown();
  const Rule* nearest = nullptr;
  for (const Rule& rule : rules) {
    text += (&rule == &rules.front() ? "\n  scripted: " : "\n            ") + rule.shown();
    if (rule.name.empty()) continue;
    if (nearest == nullptr ||
        slips_between(rule.name, call.name()) < slips_between(nearest->name, call.name())) {
      nearest = &rule;
    }
  }
  if (rules.empty()) text += "\n  scripted: nothing";
  if (nearest != nullptr) text += "\n  nearest:  " + nearest->shown();
  return text;
}

void WorldState::add_problem(const std::string& problem) {
  {
    const std::scoped_lock lock(mutex);
    problems.push_back(problem);
    if (report) problems_seen = problems.size();
  }
  if (report) report(problem);
}

void WorldState::conclude() {
  std::vector<std::string> unused;
  {
    const std::scoped_lock lock(mutex);
    for (Rule& rule : rules) {
      if (!rule.stays && !rule.answers.empty()) {
        unused.push_back("a scripted answer was never asked for: " + rule.shown());
      }
      rule.answers.clear();
    }
  }
  for (const std::string& problem : unused) add_problem(problem);
}

std::string in_quotes(std::string_view text) {
  return std::string("\"").append(text).append("\"");
}

std::string small_letters(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

}  // namespace bvconn::test::detail
