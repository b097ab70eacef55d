#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "sandbox/wire/wire_file.h"

/// What holds for every operation and so is not repeated in its files: how a lost connection, a
/// fault or a missing result ends, what empty texts look like, when the route is SOAP. A law takes
/// a file's first case, changes one thing of it, and states the outcome for each tail and each form
/// of the log. The outcomes are written out here, without the library's own code.
namespace bvconn::test {

using wire::read_wire_file;
using wire::WireCase;
using wire::WireFile;
using wire::WireStep;

struct Law {
  std::string_view name;   ///< as `not` in a file names it
  std::string_view claim;  ///< as a test's name
};

/// All laws, in the order in which a file's cases of them run.
std::span<const Law> laws();

struct LawCases {
  std::vector<WireCase> cases;
  std::vector<std::string> problems;  ///< what keeps the laws from being applied to this file
};

/// The cases that follow from the first case of `file`. `other` is the file of the same operation's
/// other route, or null where there is none.
LawCases law_cases(const WireFile& file, const WireFile* other);

}  // namespace bvconn::test
