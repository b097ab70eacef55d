#include "answer_printer.h"

#include <array>
#include <utility>
#include <variant>
#include <vector>

#include "bvconn/core/session_state.h"
#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/soap/xml_document.h"
#include "call_answer.h"
#include "json_text.h"
#include "line_output.h"
#include "nearest_names.h"
#include "node_tree.h"

namespace bvconn::tool {
namespace {

using automation::Member;
using automation::Value;

const Variant* node_in(const Value& value) {
  const auto* variant = std::get_if<Variant>(&value);
  return variant != nullptr && variant->is(Variant::Type::kNode) ? variant : nullptr;
}

}  // namespace

OutputForm output_form(const std::string& name) {
  constexpr std::array<std::pair<std::string_view, OutputForm>, 4> kForms{
      {{"tree", OutputForm::kTree},
       {"json", OutputForm::kJson},
       {"xml", OutputForm::kXml},
       {"raw", OutputForm::kRaw}}};
  std::vector<std::string> names;
  for (const auto& [known, form] : kForms) {
    if (known == name) return form;
    names.emplace_back(known);
  }
  throw UsageError("--output: tree, json, xml or raw is expected, not " + name +
                   did_you_mean(name, names));
}

void AnswerPrinter::event(const std::string& name) const {
  if (form_ == OutputForm::kJson) {
    streams_.out << "{\"event\":" << json_string(name) << ",\"id\":null}\n";
  } else {
    streams_.err << "bvconn: event " << name << '\n';
  }
}

void AnswerPrinter::result(const Member& member, const CallArguments& arguments,
                           const Value& value) const {
  switch (form_) {
    case OutputForm::kJson:
      print_line(
          [&](JsonOutput& line) { CallAnswer(member, arguments).write_result(line, value); });
      return;
    case OutputForm::kRaw:
      print_raw();
      report_unreadable(value);
      return;
    case OutputForm::kXml:
      print_xml(value);
      report_unreadable(value);
      break;
    case OutputForm::kTree:
      print_value(value);
      break;
  }
  print_documents(member, arguments);
}

void AnswerPrinter::error(const Member& member, const CallArguments& arguments,
                          const std::string& error_json) const {
  if (form_ == OutputForm::kJson) {
    print_line(
        [&](JsonOutput& line) { CallAnswer(member, arguments).write_error(line, error_json); });
  } else if (form_ == OutputForm::kRaw) {
    print_raw();
  }
}

void AnswerPrinter::usage(const std::string& text) const {
  if (form_ != OutputForm::kJson) return;
  print_line([&](JsonOutput& line) { line.raw(R"("usage":)").string(text); });
}

void AnswerPrinter::print_value(const Value& value) const {
  const auto* variant = std::get_if<Variant>(&value);
  if (std::holds_alternative<std::monostate>(value)) return;
  if (node_in(value) != nullptr) {
    if (variant->node()) streams_.out << node_tree(variant->node(), streams_.out_terminal);
  } else if (variant != nullptr && variant->is(Variant::Type::kString)) {
    streams_.out << variant->string() << '\n';
  } else if (variant != nullptr && variant->is(Variant::Type::kDate)) {
    streams_.out << conversions::iso_date_text(variant->date()) << '\n';
  } else {
    streams_.out << json_value(value) << '\n';
  }
}

void AnswerPrinter::print_xml(const Value& value) const {
  const Variant* node = node_in(value);
  if (node == nullptr) {
    print_value(value);
  } else if (node->node()) {
    streams_.out << node_to_xml(node->node()) << '\n';
  }
}

void AnswerPrinter::print_raw() const {
  if (reply_ != nullptr && reply_->came) {
    streams_.out << reply_->text;
  } else if (const auto exchange = session().LastExchange(Secrets::kShown)) {
    // A page that is no answer goes to nobody, and the record has its beginning.
    streams_.out << exchange->reply.text;
    if (exchange->reply.cut()) {
      streams_.err << "bvconn: the page is longer: these are its first "
                   << exchange->reply.text.size() << " bytes\n";
    }
  }
}

/// A tree and JSON say it where the field stands; these two forms have no room for it.
void AnswerPrinter::report_unreadable(const Value& value) const {
  const Variant* node = node_in(value);
  if (node == nullptr || !node->node()) return;
  for (const std::string& line : unreadable_lines(node->node())) {
    streams_.err << "bvconn: " << streams_.err_terminal.red("unreadable:") << ' ' << line << '\n';
  }
}

void AnswerPrinter::print_documents(const Member& member, const CallArguments& arguments) const {
  for (std::size_t index = 0; index < member.arguments.size(); ++index) {
    const auto* document = std::get_if<XMLDocument*>(&arguments.values[index]);
    if (document != nullptr && *document != nullptr) streams_.out << (*document)->xml() << '\n';
  }
}

/// The answer as a batch gives it to a request without an id.
void AnswerPrinter::print_line(const std::function<void(JsonOutput&)>& write_answer) const {
  if (is_cut_) return;
  StreamLines lines(streams_.out);
  JsonLine line(lines);
  line.raw(R"({"id":null,)");
  try {
    write_answer(line);
  } catch (...) {
    is_cut_ = line.has_left();
    throw;
  }
  line.raw('}');
  line.end_line();
}

}  // namespace bvconn::tool
