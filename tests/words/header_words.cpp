#include "words/header_words.h"

#include <cctype>
#include <regex>
#include <utility>

namespace bvconn::test {
namespace {

using Iterator = std::regex_iterator<std::string_view::const_iterator>;
using Match = std::match_results<std::string_view::const_iterator>;

constexpr std::string_view kEllipsis = "…";

std::vector<Match> all_matches(std::string_view text, const std::regex& expression) {
  return {Iterator(text.begin(), text.end(), expression), Iterator()};
}

std::string_view trimmed(std::string_view line) {
  while (!line.empty() && line.front() == ' ') line.remove_prefix(1);
  while (!line.empty() && line.back() == ' ') line.remove_suffix(1);
  return line;
}

std::vector<std::string_view> lines_of(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    lines.push_back(trimmed(text.substr(0, end)));
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
  return lines;
}

void add_line(std::string& text, std::string_view comment) {
  while (!comment.empty() && comment.front() == '/') comment.remove_prefix(1);
  comment = trimmed(comment);
  if (!text.empty() && !comment.empty()) text += ' ';
  text += comment;
}

/// The name that a declaration declares: the one before its arguments, or before its end.
std::string declared_name(std::string_view code) {
  // The arguments of a template, as in `std::function<void()>`, are no arguments.
  std::string plain;
  int depth = 0;
  for (const char c : code) {
    if (c == '<') ++depth;
    if (depth == 0) plain += c;
    if (c == '>') --depth;
  }
  std::size_t end = plain.find_first_of("(;{=");
  if (end == std::string::npos) end = plain.size();
  while (end > 0 && plain[end - 1] == ' ') --end;
  std::size_t begin = end;
  while (begin > 0 && (std::isalnum(static_cast<unsigned char>(plain[begin - 1])) != 0 ||
                       plain[begin - 1] == '_' || plain[begin - 1] == '~')) {
    --begin;
  }
  return plain.substr(begin, end - begin);
}

/// The names that a header declares by the rows of the service objects.
std::vector<std::string> service_objects() {
  std::vector<std::string> names;
#define BVCONN_SERVICE_OBJECT(name, ...) names.emplace_back(#name);
#include "bvconn/platform/torvexlib/service_object_rows.inc"
  return names;
}

/// Reads the body of a class, line by line.
class BodyReader {
 public:
  explicit BodyReader(ClassWords& words) : words_(words) {}

  /// False when there is no more to read: what is private is nobody's business.
  bool read(std::string_view line) {
    if (line == "};" || line == "private:") {
      end_group();
      return false;
    }
    if (line.starts_with("#")) {
      if (line.starts_with("#define BVCONN_SERVICE_OBJECT(")) read_service_objects();
      return true;
    }
    const bool within = !code_.empty();
    if (within || !(line.empty() || line.starts_with("//") || line.ends_with(":"))) {
      read_code(line);
    } else if (line.empty()) {
      end_group();
    } else if (line.starts_with("///")) {
      add_line(own_, line);
    } else if (line.starts_with("//")) {
      if (served_ > 0) end_group();
      add_line(group_, line);
    }
    return true;
  }

 private:
  void end_group() {
    if (!group_.empty() && served_ == 0) words_.stray.push_back(group_);
    group_.clear();
    served_ = 0;
  }

  void read_service_objects() {
    for (std::string& name : service_objects()) {
      words_.declarations.push_back({std::move(name), own_, group_});
      ++served_;
    }
    own_.clear();
  }

  void read_code(std::string_view line) {
    code_ += ' ';
    code_ += line;
    if (!line.ends_with(";") && !line.ends_with("}")) return;
    words_.declarations.push_back({declared_name(code_), std::exchange(own_, ""), group_});
    ++served_;
    code_.clear();
  }

  ClassWords& words_;
  std::string own_;
  std::string group_;
  std::string code_;
  int served_ = 0;
};

std::int32_t number_of(const std::string& text) {
  return static_cast<std::int32_t>(std::stoul(text, nullptr, 0));
}

}  // namespace

std::optional<ClassWords> class_words(std::string_view header, std::string_view class_name) {
  const std::string opening = "class BVCONN_EXPORT " + std::string(class_name) + " {";
  ClassWords words;
  std::optional<BodyReader> body;
  for (const std::string_view line : lines_of(header)) {
    if (body) {
      if (!body->read(line)) return words;
    } else if (line == opening) {
      body.emplace(words);
    } else if (line.starts_with("///")) {
      add_line(words.comment, line);
    } else {
      words.comment.clear();
    }
  }
  return std::nullopt;
}

std::vector<std::string> routes_in(std::string_view text) {
  // A sentence ends with a full stop outside of names.
  static const std::regex expression("Route: (?:`[^`]*`|\"[^\"]*\"|[^.`\"])*\\.");
  std::vector<std::string> routes;
  for (const Match& match : all_matches(text, expression)) routes.push_back(match.str());
  return routes;
}

std::vector<std::string> names_after(std::string_view word, std::string_view text) {
  const std::regex expression(std::string(word) + " `([^`]+)`((?: or `[^`]+`)*)");
  static const std::regex further("`([^`]+)`");
  std::vector<std::string> names;
  for (const Match& match : all_matches(text, expression)) {
    names.push_back(match.str(1));
    const std::string rest = match.str(2);
    for (const Match& each : all_matches(rest, further)) names.push_back(each.str(1));
  }
  return names;
}

std::vector<std::string> services_in(std::string_view text) {
  static const std::regex expression("(SOAPAction )?(?:\"(urn:[^\"]+)\"|`(BVServices\\.[^`]+)`)");
  std::vector<std::string> services;
  for (const Match& match : all_matches(text, expression)) {
    if (match[1].matched) continue;
    services.push_back(match[2].matched ? match.str(2) : match.str(3));
  }
  return services;
}

std::optional<std::string> soap_action_in(std::string_view text) {
  static const std::regex expression("SOAPAction \"([^\"]+)\"");
  const auto matches = all_matches(text, expression);
  if (matches.empty()) return std::nullopt;
  return matches.front().str(1);
}

std::set<std::int32_t> numbers_in(std::string_view text) {
  static const std::regex expression("\\b(0x[0-9A-F]{8})\\b|\\berror (6|9|13|91)\\b");
  std::set<std::int32_t> numbers;
  for (const Match& match : all_matches(text, expression)) {
    numbers.insert(number_of(match[1].matched ? match.str(1) : match.str(2)));
  }
  return numbers;
}

std::map<std::int32_t, std::int32_t> mapped_codes_in(std::string_view text) {
  static const std::regex expression(
      "\\b(0x[0-9A-F]{8}) for the fault codes? (\\d+)(?: and (\\d+))?");
  std::map<std::int32_t, std::int32_t> codes;
  for (const Match& match : all_matches(text, expression)) {
    codes[number_of(match.str(2))] = number_of(match.str(1));
    if (match[3].matched) codes[number_of(match.str(3))] = number_of(match.str(1));
  }
  return codes;
}

std::vector<std::string> loose_numbers_in(std::string_view text) {
  static const std::regex expression("(error )?\\b(6|9|13|91)\\b(?!\")");
  std::vector<std::string> loose;
  for (const Match& match : all_matches(text, expression)) {
    if (!match[1].matched) loose.push_back(match.str());
  }
  return loose;
}

bool can_mean(std::string_view pattern, std::string_view name, std::string_view operation) {
  if (pattern.find(kEllipsis) == std::string_view::npos) return pattern == name;
  for (std::size_t begin = 0; begin < operation.size(); ++begin) {
    for (std::size_t size = 1; size <= operation.size() - begin; ++size) {
      std::string filled(pattern);
      for (std::size_t at = filled.find(kEllipsis); at != std::string::npos;
           at = filled.find(kEllipsis, at)) {
        filled.replace(at, kEllipsis.size(), operation.substr(begin, size));
      }
      if (filled == name) return true;
    }
  }
  return false;
}

}  // namespace bvconn::test
