#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>

#include "bvconn/automation/interface.h"

/// Which error numbers leave an operation. Nothing of it is written down: each operation is called
/// on both routes with arguments and answers that can go wrong, and what it raises is noted.
namespace bvconn::test {

struct RaisedNumbers {
  /// All that left it in any call.
  std::set<std::int32_t> all;
  /// What a fault leaves as whose code means nothing to the operation; nothing where it raises
  /// none.
  std::optional<std::int32_t> fault;
  /// The fault codes that leave as another number than `fault`.
  std::map<std::int32_t, std::int32_t> mapped;
  /// Whether such a fault leaves with the server's text, by SOAP and on the data access layer;
  /// nothing where it raises none.
  std::optional<bool> has_text_by_soap;
  std::optional<bool> has_text_by_dal;
};

/// The process's platform is replaced while it runs: no other thread may be inside the library.
RaisedNumbers raised_numbers(const automation::ClassInfo& info,
                             const automation::Member& operation);

}  // namespace bvconn::test
