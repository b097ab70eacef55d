#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sandbox/journal/entry_json.h"
#include "sandbox/journal/journal.h"

namespace bvconn::sandbox {

/// Which exchanges of the journal are meant; what is left out is open.
struct JournalFilter {
  std::string operation;  ///< as `Exchange::can_be` takes it
  std::optional<Route> route{};
  std::optional<std::string> session{};
  std::optional<Outcome> outcome{};
  std::optional<Moment> since{};
  std::optional<Moment> until{};
  std::map<std::string, std::string> where{};  ///< arguments by name

  /// The filter as words, "BVInvoiceConnector.GetInvoice with strInvoiceUID=INV-1001".
  std::string text() const;
};

using FilterFields = std::map<std::string, std::string, std::less<>>;

/// The names of the fields that `read_filter` knows.
const std::vector<std::string>& filter_fields();
/// Reads fields as a query or JSON has them. Throws std::invalid_argument, in one clear line, for a
/// value that cannot be: no such operation, argument, route, outcome, or no moment.
JournalFilter read_filter(const FilterFields& fields);
/// Adds "strInvoiceUID=INV-1001". Throws as above.
void add_condition(JournalFilter& filter, std::string_view condition);

bool matches(const JournalFilter& filter, const JournalEntry& entry);

/// All in which an exchange departs from the filter, with the values as they may be shown.
std::vector<Difference> misses(const JournalFilter& filter, const JournalEntry& entry,
                               const JournalEntry& masked);

}  // namespace bvconn::sandbox
