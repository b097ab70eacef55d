#include "tree/text_rules.h"

#include <algorithm>
#include <functional>
#include <regex>
#include <string>
#include <string_view>
#include <vector>

namespace bvconn::test {
namespace {

constexpr std::size_t kColumns = 100;
constexpr std::size_t kLines = 350;

void for_each_line(std::string_view text,
                   const std::function<void(std::size_t, std::string_view)>& visit) {
  std::size_t number = 0;
  while (!text.empty()) {
    const auto end = std::min(text.find('\n'), text.size());
    visit(++number, text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

std::string complaint(const SourceFile& file, std::size_t line, std::string_view what) {
  return file.path + ":" + std::to_string(line) + ": " + std::string(what);
}

std::size_t columns(std::string_view line) {
  return static_cast<std::size_t>(std::count_if(line.begin(), line.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  }));
}

struct Pattern {
  /// Plain text of which a match has at least one: regular expressions are slow, and most lines
  /// hold none of it.
  std::vector<std::string_view> signs;
  std::regex regex;
  std::string_view what;
};

bool matches(std::string_view line, const Pattern& pattern) {
  const auto has = [&](std::string_view sign) { return line.find(sign) != std::string_view::npos; };
  return std::any_of(pattern.signs.begin(), pattern.signs.end(), has) &&
         std::regex_search(line.begin(), line.end(), pattern.regex);
}

Complaints check_patterns(const SourceFile& file, const std::vector<Pattern>& patterns) {
  Complaints complaints;
  for_each_line(file.text, [&](std::size_t number, std::string_view line) {
    for (const auto& pattern : patterns) {
      if (matches(line, pattern)) complaints.push_back(complaint(file, number, pattern.what));
    }
  });
  return complaints;
}

}  // namespace

Complaints check_blanks(const SourceFile& file) {
  Complaints complaints;
  for_each_line(file.text, [&](std::size_t number, std::string_view line) {
    if (line.find('\t') != std::string_view::npos) {
      complaints.push_back(complaint(file, number, "tab; indent with spaces, write \\t in text"));
    }
    if (line.ends_with('\r')) {
      complaints.push_back(complaint(file, number, "line ends in CR LF; use LF alone"));
    } else if (line.ends_with(' ') || line.ends_with('\t')) {
      complaints.push_back(complaint(file, number, "blank at the end of the line; remove it"));
    }
  });
  if (!file.text.empty() && (!file.text.ends_with('\n') || file.text.ends_with("\n\n"))) {
    complaints.push_back(file.path + ": end the file with one line feed");
  }
  return complaints;
}

Complaints check_width(const SourceFile& file) {
  Complaints complaints;
  if (!file.is_header() && !file.path.ends_with(".cpp")) return complaints;
  bool formatted = true;
  for_each_line(file.text, [&](std::size_t number, std::string_view line) {
    if (line.find("// clang-format off") != std::string_view::npos) formatted = false;
    if (line.find("// clang-format on") != std::string_view::npos) formatted = true;
    const bool literal = line.find("R\"") != std::string_view::npos;
    if (formatted && !literal && columns(line) > kColumns) {
      complaints.push_back(complaint(file, number, "wider than 100 columns; run ./dev format"));
    }
  });
  return complaints;
}

Complaints check_length(const SourceFile& file) {
  const bool is_data = file.path.ends_with(".inc") || file.path.ends_with("_seed.cpp");
  const bool counts = file.below("bvconn/") || file.below("tools/") || file.below("sandbox/");
  if (!counts || is_data || !file.is_code()) return {};
  const auto lines = static_cast<std::size_t>(std::count(file.text.begin(), file.text.end(), '\n'));
  if (lines <= kLines) return {};
  return {file.path + ": " + std::to_string(lines) + " lines, more than " + std::to_string(kLines) +
          "; find the seam and make two files of it"};
}

Complaints check_guard(const SourceFile& file) {
  if (!file.is_header()) return {};
  bool guarded = false;
  for_each_line(file.text, [&](std::size_t, std::string_view line) {
    guarded = guarded || line == "#pragma once";
  });
  if (guarded) return {};
  return {file.path + ": no guard; begin the header with #pragma once"};
}

// The patterns of the next three are written in pieces, so that this file keeps its own rules.

Complaints check_owners(const SourceFile& file) {
  static const std::vector<Pattern> patterns{{{"TO"
                                               "DO",
                                               "FIX"
                                               "ME",
                                               "X"
                                               "XX"},
                                              std::regex("\\b(TO"
                                                         "DO|FIX"
                                                         "ME|X"
                                                         "XX)\\b(?!\\([A-Za-z][A-Za-z .-]*\\))"),
                                              "a note without an owner; write TO"
                                              "DO(name): what and why, or do it"}};
  return check_patterns(file, patterns);
}

Complaints check_references(const SourceFile& file) {
  static const std::vector<Pattern> patterns{
      {{"he spe"
        "c",
        "he Spe"
        "c",
        "HE SPE"
        "C"},
       std::regex("\\bthe spe"
                  "c(ification)?\\b",
                  std::regex::icase),
       "refers to a document that is not here; name the standard, or give the reason itself"},
      {{"Part"
        " "},
       std::regex("\\bPart"
                  " [0-9]+\\.[0-9]+"),
       "refers to a document that is not here; give the reason itself"},
      {{"ssue ", "SSUE ", "icket ", "ICKET "},
       std::regex("\\b(issue|ticket)"
                  " #?[0-9]",
                  std::regex::icase),
       "refers to a ticket that is not here; give the reason itself"},
      {{"/home"
        "/",
        "/root"
        "/",
        "/work"
        "/",
        "/Users"
        "/"},
       std::regex("(^|[^A-Za-z0-9_.~])/(home|root|work|Users)"
                  "/"),
       "a path of one machine; make it relative, or take it from the environment"}};
  return check_patterns(file, patterns);
}

Complaints check_tests(const SourceFile& file) {
  static const std::vector<Pattern> patterns{
      {{"DIS"
        "ABLED_"},
       std::regex("\\bTEST(_[FP])?\\([^)]*\\bDIS"
                  "ABLED_"),
       "a test that is switched off; mend it or delete it"},
      {{"SUC"
        "CEED",
        "_TRUE("
        "true"},
       std::regex("\\bSUC"
                  "CEED\\(\\)|\\b(EXPECT|ASSERT)_TRUE\\("
                  "true\\)"),
       "passes whatever happens; claim something that can be wrong"}};
  return file.below("tests/") ? check_patterns(file, patterns) : Complaints();
}

}  // namespace bvconn::test
