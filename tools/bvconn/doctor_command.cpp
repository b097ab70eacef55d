#include "doctor_command.h"

#include <algorithm>
#include <string>

#include "batch.h"
#include "bvconn/platform/conversions/text.h"
#include "json_text.h"

namespace bvconn::tool {
namespace {

bool is_failed(const Check& check) {
  return check.state == CheckState::kFailed;
}

std::string_view json_state(CheckState state) {
  return state == CheckState::kOk ? "ok" : state == CheckState::kFailed ? "failed" : "skipped";
}

Json check_json(const Check& check) {
  Json json{{"check", check.name}, {"state", json_state(check.state)}, {"text", check.text}};
  if (!check.advice.empty()) json["advice"] = check.advice;
  return json;
}

std::string padded(std::string_view text, std::size_t width) {
  return std::string(text) + std::string(width - std::min(text.size(), width), ' ');
}

}  // namespace

void print_checks(const std::vector<Check>& checks, std::ostream& out) {
  constexpr std::size_t kStateWidth = 9;
  constexpr std::size_t kNameWidth = 12;
  for (const Check& check : checks) {
    std::string found;
    detail::append_escaped(found, check.text);
    out << padded(state_text(check.state), kStateWidth) << padded(check.name, kNameWidth) << found;
    if (!check.advice.empty()) out << (found.ends_with('.') ? " " : ". ") << check.advice;
    out << '\n';
  }
}

int run_doctor(const Connection& connection, bool json, std::ostream& out) {
  const std::vector<Check> checks = examine(connection);
  const bool good = std::none_of(checks.begin(), checks.end(), is_failed);
  if (json) {
    Json lines = Json::array();
    for (const Check& check : checks) lines.push_back(check_json(check));
    const Json report{{"ok", good}, {"checks", std::move(lines)}};
    out << report.dump(-1, ' ', false, Json::error_handler_t::replace) << '\n';
  } else {
    print_checks(checks, out);
  }
  out.flush();
  return good && out ? kDone : kFailed;
}

}  // namespace bvconn::tool
