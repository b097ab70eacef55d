#include "bvconn/observation/marks.h"

#include <algorithm>
#include <utility>

namespace bvconn::automation::detail {
namespace {

constexpr std::string_view kPrefix = "given.";
constexpr std::string_view kDocument = "document";
constexpr std::string_view kChild = "child-";

// Numbers that occur in nothing else, no year in a namespace for instance, and fit 16 bits.
constexpr std::size_t kFirstNumber = 7'100;
constexpr std::size_t kFirstNumberText = 8'100;
constexpr std::size_t kOtherNumber = 1'500;

std::int16_t number_mark(std::size_t index) {
  return static_cast<std::int16_t>(kFirstNumber + index);
}

std::string number_text(std::size_t index) {
  return std::to_string(kFirstNumberText + index);
}

/// A document with two children, the second with one of its own.
SoapNode marked_node(const std::string& text) {
  SoapNode node = SoapNode::make(text + std::string(kDocument));
  node.Nodes().Create(text + std::string(kChild) + "1", text);
  SoapNode inner = SoapNode::make(text + std::string(kChild) + "2");
  inner.Nodes().Create("inner", text);
  node.Nodes().Append(inner);
  return node;
}

Variant marked_variant(const std::string& text, std::size_t index, MarkForm form) {
  switch (form) {
    case MarkForm::kNumber:
      return static_cast<std::int32_t>(number_mark(index));
    case MarkForm::kArray:
      return Variant(StringArray{text + "1", text + "2"});
    case MarkForm::kText:
      break;
  }
  return text;
}

Value marked_value(const Argument& argument, std::size_t index, MarkForm form, MarkedCall& call) {
  const std::string text = mark(argument);
  switch (argument.type) {
    case ValueType::kString:
      return Variant(form == MarkForm::kNumber ? number_text(index) : text);
    case ValueType::kBoolean:
      return Variant(true);
    case ValueType::kInt16:
      return Variant(number_mark(index));
    case ValueType::kInt32:
      return Variant(static_cast<std::int32_t>(number_mark(index)));
    case ValueType::kVariant:
      return marked_variant(text, index, form);
    case ValueType::kStringArray:
      return StringArray{text + "1", text + "2"};
    case ValueType::kSoapNode:
      return Variant(marked_node(text));
    case ValueType::kXMLDocument:
      call.documents.push_back(std::make_shared<XMLDocument>());
      return call.documents.back().get();
    default:
      return {};
  }
}

/// Another value where a mark cannot be recognised again: what follows it is then seen to change.
std::optional<Value> other_value(const Argument& argument, std::size_t index, MarkForm form) {
  switch (argument.type) {
    case ValueType::kString:
      if (form != MarkForm::kNumber) return std::nullopt;
      return Variant("0");
    case ValueType::kBoolean:
      return Variant(false);
    case ValueType::kInt16:
      return Variant(number_mark(index + kOtherNumber));
    case ValueType::kInt32:
      return Variant(static_cast<std::int32_t>(number_mark(index + kOtherNumber)));
    default:
      return std::nullopt;
  }
}

/// The operations whose requests one marked call cannot show, since a text among their arguments
/// decides what they do. Texts that they do not know are left out: they name no service.
struct Cases {
  std::string_view operation;
  std::string_view argument;
  std::vector<std::string_view> texts;
};

const std::vector<Cases>& operations_with_cases() {
  static const std::vector<Cases> rows{
      {"SetLineComments", "aSalseInstrType", {"PROJECT", "QUOTE", "ORDER"}},
      {"getPreviousSalesInstrumentColumnPrices", "astrSIType", {"QUOTE", "ORDER"}},
  };
  return rows;
}

}  // namespace

std::string mark(const Argument& argument) {
  // The full stop at the end keeps the mark of one argument from being found in that of another
  // whose name begins alike.
  return std::string(kPrefix) + argument.name + ".";
}

bool is_mark(std::string_view name) {
  return name.starts_with(kPrefix);
}

bool is_mark_of_child(std::string_view name) {
  return is_mark(name) && name.find("." + std::string(kChild)) != std::string_view::npos;
}

MarkedCall marked_call(const Member& operation, MarkForm form,
                       const std::optional<FixedText>& fixed) {
  MarkedCall call;
  for (std::size_t i = 0; i < operation.arguments.size(); ++i) {
    const Argument& argument = operation.arguments[i];
    if (fixed && fixed->argument == argument.name) {
      call.values.emplace_back(Variant(fixed->text));
    } else {
      call.values.push_back(marked_value(argument, i, form, call));
    }
  }
  return call;
}

std::vector<std::optional<FixedText>> cases_of(const Member& operation) {
  for (const Cases& row : operations_with_cases()) {
    if (row.operation != operation.name) continue;
    std::vector<std::optional<FixedText>> cases;
    for (const std::string_view text : row.texts) cases.push_back(FixedText{row.argument, text});
    return cases;
  }
  return {std::nullopt};
}

std::vector<MarkedCall> variations(const Member& operation, MarkForm form,
                                   const std::optional<FixedText>& fixed) {
  std::vector<MarkedCall> calls;
  const auto vary = [&](std::size_t index, Value value) {
    calls.push_back(marked_call(operation, form, fixed));
    calls.back().values[index] = std::move(value);
    calls.back().varied = index;
  };
  MarkedCall shortest = marked_call(operation, form, fixed);
  std::size_t left_out = 0;
  for (std::size_t i = 0; i < operation.arguments.size(); ++i) {
    const Argument& argument = operation.arguments[i];
    if (fixed && fixed->argument == argument.name) continue;
    if (auto other = other_value(argument, i, form)) vary(i, std::move(*other));
    if (!argument.optional) continue;
    vary(i, Value());
    shortest.values[i] = Value();
    ++left_out;
  }
  if (left_out > 1) calls.push_back(std::move(shortest));
  return calls;
}

bool turns_up(const Member& operation, std::size_t index, MarkForm form, std::string_view text) {
  const Argument& argument = operation.arguments[index];
  const auto holds = [text](const std::string& part) {
    return text.find(part) != std::string_view::npos;
  };
  switch (argument.type) {
    case ValueType::kInt16:
    case ValueType::kInt32:
      return holds(std::to_string(number_mark(index)));
    case ValueType::kString:
      return holds(form == MarkForm::kNumber ? number_text(index) : mark(argument));
    case ValueType::kVariant:
      return holds(form == MarkForm::kNumber ? std::to_string(number_mark(index)) : mark(argument));
    case ValueType::kStringArray:
    case ValueType::kSoapNode:
      return holds(mark(argument));
    default:
      return false;
  }
}

}  // namespace bvconn::automation::detail
