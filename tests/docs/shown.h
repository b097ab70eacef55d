#pragma once

#include <string>
#include <vector>

namespace bvconn::test {

/// What differs between the output that a page shows and the one that was printed; "" for nothing.
/// "…" in a shown line stands for any text, and alone on a line for any lines. Times, durations and
/// the numbers of threads and processes may be others.
std::string difference(const std::vector<std::string>& shown,
                       const std::vector<std::string>& printed);

}  // namespace bvconn::test
