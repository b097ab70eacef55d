#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "docs/page.h"

namespace bvconn::test {

/// What a linker, asked to warn of what it does not find, says of this library's own names.
std::vector<std::string> missing_from_library(std::string_view messages);

/// The C++ blocks as one source: each in a function of its own behind what is given to it, its
/// lines numbered as on its page.
std::string source_of(const std::vector<Block>& fragments);

}  // namespace bvconn::test
