#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/automation/interface.h"

/// Arguments that can be recognised again where they turn up. Every mark is also a name that XML
/// allows, since some arguments become one.
namespace bvconn::automation::detail {

/// What texts and variants are marked with. Some operations take only texts that read as numbers,
/// or variants that hold arrays.
enum class MarkForm { kText, kNumber, kArray };

/// The text that stands for an argument.
std::string mark(const Argument& argument);
/// Whether a name is, or begins with, the mark of some argument.
bool is_mark(std::string_view name);
/// Whether a name is that of a child in a marked document.
bool is_mark_of_child(std::string_view name);

/// The arguments of one call, and how it differs from the call that it varies.
struct MarkedCall {
  std::vector<Value> values;
  /// The argument that was changed or left out; nothing in the first call of a form.
  std::optional<std::size_t> varied;
  /// Keeps what the values point to.
  std::vector<std::shared_ptr<XMLDocument>> documents;
};

/// A fixed text for one argument, where it decides what the operation does.
struct FixedText {
  std::string_view argument;
  std::string_view text;
};

/// The cases that an operation has to be observed in: one without a fixed text, as a rule.
std::vector<std::optional<FixedText>> cases_of(const Member& operation);
/// All arguments given, marked.
MarkedCall marked_call(const Member& operation, MarkForm form,
                       const std::optional<FixedText>& fixed);
/// Calls that differ from `marked_call` in one argument each, and one without all optional ones.
std::vector<MarkedCall> variations(const Member& operation, MarkForm form,
                                   const std::optional<FixedText>& fixed);

/// Whether a marked argument turns up in a text.
bool turns_up(const Member& operation, std::size_t index, MarkForm form, std::string_view text);

}  // namespace bvconn::automation::detail
