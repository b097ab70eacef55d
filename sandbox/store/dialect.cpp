#include "sandbox/store/dialect.h"

#include <array>
#include <cctype>
#include <charconv>
#include <cstddef>
#include <utility>

namespace bvconn::sandbox {
namespace {

constexpr std::string_view kByBytes = " COLLATE \"C\"";

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

bool is_of_word(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

/// Where the quoted text that begins here ends, behind its quote.
std::size_t quoted_end(std::string_view sql, std::size_t begin) {
  const auto end = sql.find(sql[begin], begin + 1);
  return end == std::string_view::npos ? sql.size() : end + 1;
}

std::string_view word_for(std::string_view word) {
  constexpr std::array<std::pair<std::string_view, std::string_view>, 2> kTypes{
      {{"TEXT", "TEXT COLLATE \"C\""}, {"INTEGER", "BIGINT"}}};
  for (const auto& [ours, theirs] : kTypes) {
    if (word == ours) return theirs;
  }
  return word;
}

}  // namespace

std::string with_numbered_parameters(std::string_view sql, std::string_view types) {
  std::string result;
  std::size_t last = 0;
  for (std::size_t at = 0; at < sql.size();) {
    std::size_t end = at + 1;
    if (sql[at] == '\'' || sql[at] == '"') end = quoted_end(sql, at);
    if (sql[at] != '?') {
      result.append(sql.substr(at, end - at));
      at = end;
      continue;
    }
    while (end < sql.size() && is_digit(sql[end])) ++end;
    std::size_t number = last + 1;
    std::from_chars(sql.data() + at + 1, sql.data() + end, number);
    last = number;
    result.append("$").append(std::to_string(number));
    if (number <= types.size() && types[number - 1] == 't') result.append(kByBytes);
    at = end;
  }
  return result;
}

std::string tables_for_postgresql(std::string_view sql) {
  constexpr std::string_view kKind = " STRICT, WITHOUT ROWID";
  std::string result;
  for (std::size_t at = 0; at < sql.size();) {
    if (sql.substr(at).starts_with(kKind)) {
      at += kKind.size();
    } else if (is_of_word(sql[at])) {
      std::size_t end = at;
      while (end < sql.size() && is_of_word(sql[end])) ++end;
      result.append(word_for(sql.substr(at, end - at)));
      at = end;
    } else {
      result.push_back(sql[at++]);
    }
  }
  return result;
}

}  // namespace bvconn::sandbox
