#include "docs/shown.h"

#include <regex>
#include <string_view>

namespace bvconn::test {
namespace {

constexpr std::string_view kAnything = "…";

/// A line without what differs from one run to the next.
std::string essence(std::string line) {
  static const std::regex kTime(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d(\.\d+)?([+-]\d{4}|Z)?)");
  static const std::regex kDuration(R"(\d+(\.\d+)? ms\b)");
  static const std::regex kSteps(R"(^( *times \(ms\) ).*)");  // One that took no time is left out.
  static const std::regex kThread(R"(\[\d+\])");
  static const std::regex kBlanksBehind(" +$");
  line = std::regex_replace(line, kTime, "TIME");
  line = std::regex_replace(line, kDuration, "N ms");
  line = std::regex_replace(line, kSteps, "$1");
  line = std::regex_replace(line, kThread, "[N]");
  return std::regex_replace(line, kBlanksBehind, "");
}

/// Whether the line is the shown one, piece by piece between what may be anything.
bool fits(std::string_view shown, std::string_view line) {
  bool at_begin = true;
  while (true) {
    const std::size_t end = shown.find(kAnything);
    const std::string_view piece = shown.substr(0, end);
    if (end == std::string_view::npos) return at_begin ? line == piece : line.ends_with(piece);
    const std::size_t at = at_begin ? (line.starts_with(piece) ? 0 : line.npos) : line.find(piece);
    if (at == line.npos) return false;
    line.remove_prefix(at + piece.size());
    shown.remove_prefix(end + kAnything.size());
    at_begin = false;
  }
}

bool stands_for_lines(const std::string& shown) {
  const std::size_t begin = shown.find_first_not_of(' ');
  return begin != std::string::npos && std::string_view(shown).substr(begin) == kAnything;
}

}  // namespace

std::string difference(const std::vector<std::string>& shown,
                       const std::vector<std::string>& printed) {
  std::size_t at = 0;
  for (std::size_t row = 0; row < shown.size(); ++row) {
    if (stands_for_lines(shown[row])) {
      if (row + 1 == shown.size()) return "";
      while (at < printed.size() && !fits(essence(shown[row + 1]), essence(printed[at]))) ++at;
    } else if (at == printed.size()) {
      return "nothing is printed for:\n  " + shown[row];
    } else if (!fits(essence(shown[row]), essence(printed[at]))) {
      return "shown is:\n  " + shown[row] + "\nand printed:\n  " + printed[at];
    } else {
      ++at;
    }
  }
  if (at < printed.size()) return "printed is, and not shown:\n  " + printed[at];
  return "";
}

}  // namespace bvconn::test
