#pragma once

#include <string>
#include <vector>

#include "docs/page.h"
#include "docs/reader.h"

namespace bvconn::test {

/// What came of following a page.
struct PageRun {
  std::vector<std::string> complaints;  ///< each with its place
  std::vector<std::string> missing;     ///< blocks that need a program that is not here
};

/// Does with each block, in their order, what its language and its notes say.
PageRun follow(const std::vector<Block>& blocks);

}  // namespace bvconn::test
