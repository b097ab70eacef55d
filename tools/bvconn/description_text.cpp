#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "bvconn/platform/error.h"
#include "description.h"
#include "interface_text.h"
#include "json_text.h"

namespace bvconn::tool {
namespace {

using automation::Argument;
using automation::ObservedCondition;
using automation::ObservedDalCall;
using automation::ObservedFailures;
using automation::ObservedParameter;
using automation::ObservedRequest;
using automation::Origin;
using automation::Sightings;

constexpr std::size_t kWidth = 98;

std::string joined(const std::vector<std::string>& words, std::string_view between) {
  std::string text;
  for (const std::string& word : words) text.append(text.empty() ? "" : between).append(word);
  return text;
}

/// Columns as wide as their cells need, but for the last one, which is wrapped.
class Table {
 public:
  explicit Table(std::size_t indent) : indent_(indent) {}

  void row(std::vector<std::string> cells) {
    if (widths_.size() < cells.size()) widths_.resize(cells.size());
    for (std::size_t i = 0; i < cells.size(); ++i) {
      widths_[i] = std::max(widths_[i], cells[i].size());
    }
    rows_.push_back(std::move(cells));
  }

  std::string text() const {
    std::string text;
    for (const auto& cells : rows_) {
      std::string line(indent_, ' ');
      for (std::size_t i = 0; i + 1 < cells.size(); ++i) {
        line.append(cells[i]).append(widths_[i] - cells[i].size() + 2, ' ');
      }
      append_wrapped(text, line, cells.back());
    }
    return text;
  }

  static void append_wrapped(std::string& text, std::string line, std::string_view words) {
    const std::size_t hang = line.size();
    while (line.size() + words.size() > kWidth) {
      std::size_t space = words.rfind(' ', line.size() < kWidth ? kWidth - line.size() : 0);
      if (space == std::string_view::npos) space = words.find(' ');
      if (space == std::string_view::npos) break;
      text.append(line).append(words.substr(0, space)).append("\n");
      words.remove_prefix(space + 1);
      line.assign(hang, ' ');
    }
    line.append(words);
    line.erase(line.find_last_not_of(' ') + 1);
    text.append(line).append("\n");
  }

 private:
  std::size_t indent_;
  std::vector<std::size_t> widths_;
  std::vector<std::vector<std::string>> rows_;
};

void sentence(std::string& text, std::string_view words) {
  Table::append_wrapped(text, "  ", words);
}

std::string origin_text(const Origin& origin) {
  if (!origin.arguments.empty()) return "<- " + joined(origin.arguments, ", ");
  return origin.constant.empty() ? "always empty" : "always " + json_string(origin.constant);
}

std::string type_text(const ObservedParameter& parameter) {
  if (parameter.any_content) return "any content";
  std::vector<std::string> types = parameter.types;
  std::replace(types.begin(), types.end(), std::string(), std::string("untyped"));
  if (parameter.may_be_nil) types.emplace_back("nil");
  return joined(types, " or ");
}

std::string arguments_part(const automation::Member& member) {
  if (member.arguments.empty()) return "";
  Table table(2);
  for (const Argument& each : member.arguments) {
    table.row({each.name, std::string(automation::type_name(each.type)),
               each.optional ? "optional, default " + default_json(each) : ""});
  }
  return "\nArguments\n" + table.text();
}

/// "By SOAP, form 2 of 3 (aType=QUOTE)"
template <class Form>
std::string form_title(std::string_view route, const std::vector<Form>& forms, std::size_t place) {
  std::string title = "\n" + std::string(route);
  if (forms.size() > 1) {
    title.append(", form ").append(std::to_string(place + 1));
    title.append(" of ").append(std::to_string(forms.size()));
  }
  const auto& cases = forms[place].cases;
  if (!cases.empty()) title.append(" (").append(joined(cases, ", ")).append(")");
  return title.append("\n");
}

std::string timeout_text(const ObservedRequest& request) {
  if (!request.timeout_ms) return "as the caller says";
  constexpr std::int32_t kWithoutSettings_ms = 300'000;
  std::string text = std::to_string(*request.timeout_ms) + " ms";
  if (request.timeout_ms == kWithoutSettings_ms) text.append(" unless defaultTimeOut is set");
  return text;
}

std::string request_part(const ObservedRequest& request) {
  const bool named = !request.method.empty();
  Table table(2);
  table.row({"posts to", joined(request.url.arguments, ", ")});
  table.row({"method", named ? request.method + " of " + request.service : "the caller's"});
  table.row({"SOAPAction", !named                ? "the caller's"
                           : request.soap_action ? *request.soap_action
                                                 : "as the request before left it"});
  table.row({"time-out", timeout_text(request)});
  for (std::size_t i = 0; i < request.headers.size(); ++i) {
    table.row({"header", request.headers[i] + " " + origin_text(request.header_origins[i])});
  }
  if (request.headers.empty()) table.row({"header", "none"});
  const bool empty = request.parameters.empty() && !request.open_ended;
  table.row({"body", empty ? "empty" : "in this order:"});
  Table body(4);
  for (std::size_t i = 0; i < request.parameters.size(); ++i) {
    const ObservedParameter& each = request.parameters[i];
    std::string name = each.name.empty() ? "(the caller's name)" : each.name;
    if (!each.name_space.empty()) name.append(" {").append(each.name_space).append("}");
    body.row({std::to_string(i + 1), name, type_text(each), origin_text(each.origin)});
  }
  std::string text = table.text() + body.text();
  if (request.open_ended) text.append("    …  and what else the document holds, node by node\n");
  return text;
}

std::string argument_type(const ObservedDalCall::Argument& argument) {
  if (argument.request_text) return "the request's text";
  return argument.any_type ? "any type" : joined(argument.types, " or ");
}

std::string dal_part(const ObservedDalCall& call) {
  std::string text = "  calls  " + call.object + "." + call.operation;
  text.append(call.arguments.empty() ? " without arguments" : " with, in this order:");
  text.append(call.by_name ? " (by name)\n" : "\n");
  Table table(4);
  for (std::size_t i = 0; i < call.arguments.size(); ++i) {
    const auto& each = call.arguments[i];
    Origin origin = each.origin;
    if (each.request_text) origin.constant.clear();
    const bool shows = !each.request_text || !origin.arguments.empty();
    table.row({std::to_string(i + 1), argument_type(each), shows ? origin_text(origin) : ""});
  }
  return text + table.text();
}

std::string condition_text(const ObservedCondition& condition) {
  std::vector<std::string> parts;
  if (condition.needs_route) parts.emplace_back("UsingTorvexDAL is true");
  if (condition.needs_save) parts.emplace_back("UseDALSave is true");
  if (!condition.disabled_by.empty()) {
    parts.push_back("the method is not disabled there (" + joined(condition.disabled_by, ", ") +
                    ")");
  }
  return parts.empty() ? "always" : "when " + joined(parts, " and ");
}

std::string kept_text(const ObservedFailures::Kept& kept) {
  if (kept.help) return "with all its values";
  std::vector<std::string> values;
  if (kept.number) values.emplace_back("number");
  if (kept.source) values.emplace_back("source");
  if (kept.description) values.emplace_back("description");
  if (values.empty()) return "as another one";
  const std::string last = values.back();
  values.pop_back();
  return "with its " + (values.empty() ? last : joined(values, ", ") + " and " + last) + " alone";
}

std::string failure_part(std::string_view route, const ObservedFailures& failures) {
  std::string text;
  std::string words = "An error " + std::string(route) + " is ";
  std::vector<std::string> names;
  for (const auto& line : failures.log) names.push_back(line.cls + "." + line.method);
  words.append(names.empty() ? "not logged" : "logged under " + joined(names, ", "));
  words.append(names.empty() == failures.broken.has_value() ? " but " : " and ");
  if (failures.broken) {
    words.append("raised ").append(kept_text(*failures.broken));
  } else {
    words.append("not raised");
  }
  sentence(text, words + ".");
  if (failures.fault) {
    words = "A fault leaves as " + hex_number(failures.fault->number);
    words.append(failures.fault->server_text ? " with" : " without").append(" the server's text");
    for (const auto& [code, number] : failures.codes) {
      words.append("; the fault code ").append(std::to_string(code)).append(" leaves as ");
      words.append(hex_number(number));
    }
    sentence(text, words + ".");
  }
  return text;
}

std::string log_part(const std::vector<Sightings::LogLine>& lines) {
  if (lines.empty()) return "";
  Table table(2);
  for (const auto& line : lines) {
    const bool has_level = line.action.ends_with("Method") || line.action == "LogAtLevel";
    std::string more = has_level ? "level " + std::to_string(line.level) : "";
    if (!line.text.empty()) more.append(more.empty() ? "" : " ").append(json_string(line.text));
    table.row({line.action, line.cls, line.method, more});
  }
  return "\nLog lines of its own\n" + table.text();
}

}  // namespace

std::string description_text(const Description& description) {
  const auto& [target, observed, conduct] = description;
  std::string text = target.path() + "\n  gives " +
                     std::string(automation::type_name(target.member->result)) + "\n" +
                     arguments_part(*target.member);
  for (std::size_t i = 0; i < observed.requests.size(); ++i) {
    text.append(form_title("By SOAP", observed.requests, i));
    text.append(request_part(observed.requests[i]));
  }
  for (std::size_t i = 0; i < observed.dal_calls.size(); ++i) {
    text.append(form_title("By the data access layer", observed.dal_calls, i));
    if (conduct.condition) sentence(text, condition_text(*conduct.condition));
    text.append(dal_part(observed.dal_calls[i]));
  }
  if (observed.requests.empty() && observed.dal_calls.empty()) text.append("\nSends nothing.\n");
  if (conduct.soap || conduct.dal) text.append("\nFailures\n");
  if (conduct.soap) text.append(failure_part("by SOAP", *conduct.soap));
  if (conduct.dal) text.append(failure_part("of the data access layer", *conduct.dal));
  return text.append(log_part(conduct.log));
}

}  // namespace bvconn::tool
