#pragma once

#include <string>
#include <vector>

#include "bvconn/automation/interface.h"

namespace bvconn::tool {

/// One node of an answer.
struct AnswerLine {
  std::string path;   ///< "return/Lines/Line[2]"; "" for an answer that is no node
  std::string value;  ///< as JSON, "nil" for nil; "" for a node that holds nodes alone
};

/// A place where two answers are not the same.
struct AnswerDifference {
  std::string path;
  std::string first;  ///< "(absent)" where only the second answer has it
  std::string second;
};

/// An answer node by node, in order.
std::vector<AnswerLine> answer_lines(const automation::Value& answer);

/// Values and nodes that differ, by path; where there are none, the first path at which the same
/// nodes stand in another order.
std::vector<AnswerDifference> differences(const std::vector<AnswerLine>& first,
                                          const std::vector<AnswerLine>& second);

}  // namespace bvconn::tool
