#include "sandbox/contract/difference.h"

#include <algorithm>

#include "sandbox/contract/words.h"

namespace bvconn::sandbox {

std::string Difference::text() const {
  return (at.empty() ? "" : at + " ") + found + ", expected " + expected;
}

std::string complaint_text(std::string_view subject, const std::vector<Difference>& differences) {
  const auto own = std::count_if(differences.begin(), differences.end(),
                                 [](const Difference& each) { return !each.is_detail; });
  const auto more = static_cast<std::size_t>(std::max<std::ptrdiff_t>(own - 1, 0));
  const std::string rest = more == 0 ? "" : "; " + counted(more, "more difference");
  const std::string first =
      (subject.empty() ? std::string() : std::string(subject) + ": ") + differences.front().text();
  return shortened(first, kMostComplaintBytes - rest.size()) + rest;
}

}  // namespace bvconn::sandbox
