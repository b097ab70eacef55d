#pragma once

#include <cstddef>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

#include "sandbox/journal/journal_filter.h"

namespace bvconn::sandbox {

/// What somebody says was asked of the sandbox.
struct Expectation {
  JournalFilter filter;
  std::size_t at_least = 1;
  std::optional<std::size_t> at_most{};

  bool holds(std::size_t count) const {
    return count >= at_least && (!at_most || count <= *at_most);
  }
  /// "2", "at least 1", "at most 3", "1 to 3".
  std::string count_text() const;
};

/// An exchange that is not what was looked for, and why.
struct NearMiss {
  JournalEntry entry;  ///< masked
  std::vector<Difference> differences;
};

struct Verification {
  bool holds = false;
  std::vector<std::uint64_t> matched;
  /// Of an expectation that does not hold, the nearest first: three at most.
  std::vector<NearMiss> nearest;
  std::size_t kept = 0;       ///< exchanges that were looked through
  std::uint64_t dropped = 0;  ///< exchanges that nobody can look through any more
};

/// Counts the exchanges that are meant. Those that were refused are none, unless the filter asks
/// for that outcome: they show among the near misses.
Verification verify(const Expectation& expectation, const Journal& journal);

nlohmann::ordered_json verification_json(const Expectation& expectation,
                                         const Verification& verification);

}  // namespace bvconn::sandbox
