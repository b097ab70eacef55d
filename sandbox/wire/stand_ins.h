#pragma once

#include <string>
#include <string_view>
#include <vector>

/// What a line of a wire file cannot hold as it is stands there in braces: {line} and {return} for
/// the ends of lines, {blank} for a blank at a line's beginning or end, {byte 1F} for one that is
/// no text, and {brace} for a brace that would begin one of these.
namespace bvconn::wire {

/// The text that a line stands for.
std::string without_stand_ins(std::string_view line);

/// The lines that stand for a text when nothing is put between them. Long ones are broken in front
/// of tags. One empty line for an empty text.
std::vector<std::string> lines_with_stand_ins(std::string_view text);

}  // namespace bvconn::wire
