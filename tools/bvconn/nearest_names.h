#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "bvconn/automation/interface.h"

namespace bvconn::tool {

/// The names that a mistyped one most likely means, the best ones only: those that differ in the
/// case of letters alone, else those with the fewest letters to change. Empty where none is near.
std::vector<std::string> nearest_names(std::string_view name,
                                       const std::vector<std::string>& known);

/// "; did you mean GetInvoice?", or "" where no name is near.
std::string did_you_mean(std::string_view name, const std::vector<std::string>& known);

std::vector<std::string> class_names();
std::vector<std::string> member_names(const automation::ClassInfo& info);
std::vector<std::string> argument_names(const automation::Member& member);

}  // namespace bvconn::tool
