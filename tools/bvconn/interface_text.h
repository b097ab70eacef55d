#pragma once

#include <string>

#include "bvconn/automation/interface.h"
#include "json_text.h"

/// The interface in the forms of `list` and `describe`.
namespace bvconn::tool {

/// A default in the form in which a batch takes the argument.
std::string default_json(const automation::Argument& argument);
/// An argument with its type, whether it is optional, and its default.
std::string argument_json(const automation::Argument& argument);
/// A member for people: "SoapNode GetInvoice(string aServerURL, …)".
std::string signature(const automation::Member& member);

/// A JSON array of what `text_of` makes of each item.
template <class Items, class Text>
std::string json_list(const Items& items, const Text& text_of) {
  std::string text = "[";
  for (const auto& item : items) {
    text.append(text.size() > 1 ? "," : "").append(text_of(item));
  }
  return text.append("]");
}

}  // namespace bvconn::tool
