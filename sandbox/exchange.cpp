#include "sandbox/exchange.h"

#include <algorithm>
#include <iterator>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/soap/xml_document.h"

namespace bvconn::sandbox {
namespace {

using conversions::equal_ignoring_case;

std::string text_of(const Variant& value) {
  switch (value.type()) {
    case Variant::Type::kBoolean:
      return value.boolean() ? "true" : "false";
    case Variant::Type::kMissing:
      return {};
    case Variant::Type::kArray: {
      std::string text;
      for (const Variant& item : value.array().items()) {
        if (&item != &value.array().items().front()) text.push_back(';');
        text.append(text_of(item));
      }
      return text;
    }
    case Variant::Type::kNode:
      return node_to_xml(value.node());
    default:
      return to_text(value);
  }
}

std::string text_of(const SoapNode& node) {
  try {
    return text_of(node.Value());
  } catch (const Error&) {
    // A text that is not of the type that it claims.
    return node_to_xml(node);
  }
}

bool is_array(const SoapNode& node) {
  try {
    return node.Value().is(Variant::Type::kArray);
  } catch (const Error&) {
    return false;
  }
}

bool holds_constants(const Exchange& exchange, const OperationForm& form) {
  const std::size_t count = std::min(form.places.size(), exchange.values.size());
  for (std::size_t i = 0; i < count; ++i) {
    // A truth value is "True" as a constant.
    const OperationForm::Place& place = form.places[i];
    if (place.is_constant && !equal_ignoring_case(exchange.values[i].text(), place.constant)) {
      return false;
    }
  }
  return true;
}

}  // namespace

bool is_operation(std::string_view name, std::string_view wanted) {
  if (wanted == "*") return true;
  if (!wanted.ends_with(".*")) return name == wanted;
  wanted.remove_suffix(1);
  return name.starts_with(wanted);
}

std::string_view route_text(Route route) {
  switch (route) {
    case Route::kSoap:
      return "soap";
    case Route::kDal:
      return "dal";
    case Route::kNone:
      break;
  }
  return {};
}

std::string_view outcome_text(Outcome outcome) {
  switch (outcome) {
    case Outcome::kAnswered:
      break;
    case Outcome::kWarned:
      return "warned";
    case Outcome::kFault:
      return "fault";
    case Outcome::kRefused:
      return "refused";
    case Outcome::kFailed:
      return "failed";
    case Outcome::kInjected:
      return "injected";
  }
  return "answered";
}

bool PlaceValue::is_document() const {
  const auto* const node = std::get_if<SoapNode>(&value_);
  return node != nullptr && node->Nodes().Count() > 0 && !is_array(*node);
}

std::string PlaceValue::text() const {
  return std::visit([](const auto& value) { return text_of(value); }, value_);
}

bool Exchange::can_be(std::string_view operation) const {
  return std::any_of(forms.begin(), forms.end(), [&](const OperationForm* form) {
    return is_operation(form->name, operation);
  });
}

std::optional<std::string> Exchange::argument(std::string_view name) const {
  for (const OperationForm* form : forms) {
    if (!name.empty() && form->session_argument == name) return session;
    const auto place = form->place_of(name);
    if (place && *place < values.size()) return values[*place].text();
  }
  return std::nullopt;
}

void narrow_by_constants(Exchange& exchange) {
  if (exchange.forms.size() < 2) return;
  std::vector<const OperationForm*> left;
  std::copy_if(exchange.forms.begin(), exchange.forms.end(), std::back_inserter(left),
               [&](const OperationForm* form) { return holds_constants(exchange, *form); });
  if (!left.empty()) exchange.forms = std::move(left);
}

}  // namespace bvconn::sandbox
