#pragma once

#include <string>
#include <vector>

#include "docs/page.h"

namespace bvconn::test {

/// The C++ blocks as one source: each in a function of its own behind what is given to it, its
/// lines numbered as on its page.
std::string source_of(const std::vector<Block>& fragments);

}  // namespace bvconn::test
