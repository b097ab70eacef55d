#include "bvconn/platform/conversions/nearest_names.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace bvconn {
namespace {

constexpr std::size_t kMostNames = 3;
/// One letter in so many may be wrong, but never more than the second number.
constexpr std::size_t kLettersForOneSlip = 4;
constexpr std::size_t kMostSlips = 2;

std::string folded(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

std::size_t distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> before_last;
  std::vector<std::size_t> last(b.size() + 1);
  std::iota(last.begin(), last.end(), std::size_t{0});
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::vector<std::size_t> row(b.size() + 1, i);
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t change = last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      row[j] = std::min({change, last[j] + 1, row[j - 1] + 1});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
        row[j] = std::min(row[j], before_last[j - 2] + 1);
      }
    }
    before_last = std::exchange(last, std::move(row));
  }
  return last.back();
}

}  // namespace

std::size_t slips_between(std::string_view a, std::string_view b) {
  return distance(folded(a), folded(b));
}

std::vector<std::string> nearest_names(std::string_view name,
                                       const std::vector<std::string>& known) {
  const std::string wanted = folded(name);
  std::size_t best =
      std::min(kMostSlips, std::max<std::size_t>(name.size() / kLettersForOneSlip, 1));
  // A name of one or two letters is near to anything.
  if (name.size() <= 2) best = 0;
  std::vector<std::string> found;
  for (const std::string& each : known) {
    const std::size_t slips = distance(wanted, folded(each));
    if (slips > best) continue;
    if (slips < best) found.clear();
    best = slips;
    found.push_back(each);
  }
  return found;
}

std::string did_you_mean(std::string_view name, const std::vector<std::string>& known) {
  const std::vector<std::string> names = nearest_names(name, known);
  if (names.empty() || names.size() > kMostNames) return "";
  std::string text = "; did you mean ";
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) text.append(i + 1 == names.size() ? " or " : ", ");
    text.append(names[i]);
  }
  return text.append("?");
}

}  // namespace bvconn
