#include <algorithm>
#include <array>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/conversions/decimal.h"

namespace bvconn::conversions {
namespace {

constexpr std::array<std::string_view, 12> kMonths = {
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};

constexpr std::int32_t kFirstYear = 100;
/// Two-digit years from here on lie in the 1900s, those below in the 2000s.
constexpr std::int32_t kFirstYearOf1900s = 30;

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}
bool is_letter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool is_blank(char c) {
  return c == ' ' || c == '\t';
}

/// A run of digits: its value and how many digits wrote it.
struct Number {
  std::int32_t value = 0;
  std::size_t digits = 0;
};

/// The part of a text that is not read yet. What does not fit leaves it as it was.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : rest_(text) {}

  bool done() const { return rest_.empty(); }
  char peek() const { return rest_.empty() ? '\0' : rest_.front(); }

  bool accept(char wanted) {
    if (rest_.empty() || rest_.front() != wanted) {
      return false;
    }
    rest_.remove_prefix(1);
    return true;
  }

  bool blanks() {
    const std::size_t before = rest_.size();
    while (!rest_.empty() && is_blank(rest_.front())) {
      rest_.remove_prefix(1);
    }
    return rest_.size() < before;
  }

  std::optional<Number> number(std::size_t min_digits, std::size_t max_digits) {
    const std::string_view digits = run(is_digit);
    if (digits.size() < min_digits || digits.size() > max_digits) {
      return std::nullopt;
    }
    Number result{.value = 0, .digits = digits.size()};
    for (const char digit : digits) {
      result.value = result.value * 10 + (digit - '0');
    }
    rest_.remove_prefix(digits.size());
    return result;
  }

  std::string_view word() {
    const std::string_view letters = run(is_letter);
    rest_.remove_prefix(letters.size());
    return letters;
  }

  std::string_view digits() {
    const std::string_view found = run(is_digit);
    rest_.remove_prefix(found.size());
    return found;
  }

 private:
  std::string_view run(bool (*belongs)(char)) const {
    const auto end = std::find_if_not(rest_.begin(), rest_.end(), belongs);
    return rest_.substr(0, static_cast<std::size_t>(end - rest_.begin()));
  }

  std::string_view rest_;
};

std::int32_t days_of_month(std::int32_t year, std::int32_t month) {
  constexpr std::array<std::int32_t, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  return month == 2 && leap ? 29 : kDays[static_cast<std::size_t>(month - 1)];
}

bool set_day(CivilDate& date, Number year, std::int32_t month, std::int32_t day) {
  std::int32_t full_year = year.value;
  if (year.digits <= 2) {
    full_year += year.value < kFirstYearOf1900s ? 2000 : 1900;
  }
  if (full_year < kFirstYear || month < 1 || month > 12 || day < 1 ||
      day > days_of_month(full_year, month)) {
    return false;
  }
  date.year = full_year;
  date.month = month;
  date.day = day;
  return true;
}

/// The month that a word names, in full or by its first three letters ("Sept" too); 0 for none.
std::int32_t month_named(std::string_view word) {
  for (std::size_t i = 0; i < kMonths.size(); ++i) {
    if (equal_ignoring_case(word, kMonths[i]) ||
        equal_ignoring_case(word, kMonths[i].substr(0, 3)) ||
        (i == 8 && equal_ignoring_case(word, "Sept"))) {
      return static_cast<std::int32_t>(i + 1);
    }
  }
  return 0;
}

/// "2007-01-31" or "2007/1/31", the year already read.
bool read_year_first(Scanner& scanner, Number year, CivilDate& date) {
  const char separator = scanner.peek();
  if (year.digits != 4 || !(scanner.accept('-') || scanner.accept('/'))) {
    return false;
  }
  const std::optional<Number> month = scanner.number(1, 2);
  if (!month || !scanner.accept(separator)) {
    return false;
  }
  const std::optional<Number> day = scanner.number(1, 2);
  return day && set_day(date, year, month->value, day->value);
}

/// "1/31/2007" or "1-31-07", the first number already read.
bool read_month_first(Scanner& scanner, Number first, CivilDate& date) {
  const char separator = scanner.peek();
  if (first.digits > 2 || !(scanner.accept('-') || scanner.accept('/'))) {
    return false;
  }
  const std::optional<Number> second = scanner.number(1, 2);
  if (!second || !scanner.accept(separator)) {
    return false;
  }
  const std::optional<Number> year = scanner.number(1, 4);
  if (!year) {
    return false;
  }
  // What cannot be a month first may be a day first: "31/1/2007".
  const bool day_first = first.value > 12;
  return day_first ? set_day(date, *year, second->value, first.value)
                   : set_day(date, *year, first.value, second->value);
}

bool skip_separator(Scanner& scanner) {
  bool skipped = scanner.accept('.');
  skipped = scanner.blanks() || skipped;
  skipped = scanner.accept(',') || scanner.accept('-') || skipped;
  return scanner.blanks() || skipped;
}

/// "5 January 2007", "5-Jan-07", the day already read.
bool read_day_and_name(Scanner& scanner, Number day, CivilDate& date) {
  skip_separator(scanner);
  const std::int32_t month = month_named(scanner.word());
  if (month == 0 || !skip_separator(scanner)) {
    return false;
  }
  const std::optional<Number> year = scanner.number(1, 4);
  return year && set_day(date, *year, month, day.value);
}

/// "January 5, 2007", "Jan 5 2007".
bool read_name_and_day(Scanner& scanner, CivilDate& date) {
  const std::int32_t month = month_named(scanner.word());
  if (month == 0 || !skip_separator(scanner)) {
    return false;
  }
  const std::optional<Number> day = scanner.number(1, 2);
  if (!day || !skip_separator(scanner)) {
    return false;
  }
  const std::optional<Number> year = scanner.number(1, 4);
  return year && set_day(date, *year, month, day->value);
}

bool read_day(Scanner& scanner, CivilDate& date) {
  const std::optional<Number> first = scanner.number(1, 4);
  if (!first) {
    return read_name_and_day(scanner, date);
  }
  Scanner ahead = scanner;
  if (read_year_first(ahead, *first, date)) {
    scanner = ahead;
    return true;
  }
  ahead = scanner;
  if (read_month_first(ahead, *first, date)) {
    scanner = ahead;
    return true;
  }
  return first->digits <= 2 && read_day_and_name(scanner, *first, date);
}

/// Digits behind the second's point; what is finer than a millisecond is cut off.
std::int32_t milliseconds_of(std::string_view fraction) {
  std::int32_t value = 0;
  for (std::size_t i = 0; i < 3; ++i) {
    value = value * 10 + (i < fraction.size() ? fraction[i] - '0' : 0);
  }
  return value;
}

/// Minutes, seconds and their fraction, as far as they stand there.
bool read_minutes(Scanner& scanner, CivilDate& date) {
  const std::optional<Number> minute = scanner.number(2, 2);
  if (!minute || minute->value > 59) {
    return false;
  }
  date.minute = minute->value;
  if (!scanner.accept(':')) {
    return true;
  }
  const std::optional<Number> second = scanner.number(2, 2);
  if (!second || second->value > 59) {
    return false;
  }
  date.second = second->value;
  if (scanner.accept('.')) {
    const std::string_view fraction = scanner.digits();
    date.millisecond = milliseconds_of(fraction);
    return !fraction.empty();
  }
  return true;
}

/// "AM" or "PM" behind a time, moved into its hour.
bool apply_half_of_day(std::string_view word, CivilDate& date) {
  const bool afternoon = equal_ignoring_case(word, "PM");
  if (date.hour < 1 || date.hour > 12 || !(afternoon || equal_ignoring_case(word, "AM"))) {
    return false;
  }
  date.hour = date.hour % 12 + (afternoon ? 12 : 0);
  return true;
}

/// "15:04", "3:04:05 PM", "3 PM".
bool read_time(Scanner& scanner, CivilDate& date) {
  const std::optional<Number> hour = scanner.number(1, 2);
  if (!hour || hour->value > 23) {
    return false;
  }
  date.hour = hour->value;
  const bool has_minutes = scanner.accept(':');
  if (has_minutes && !read_minutes(scanner, date)) {
    return false;
  }
  Scanner ahead = scanner;
  ahead.blanks();
  const std::string_view word = ahead.word();
  if (word.empty()) {
    return has_minutes;
  }
  scanner = ahead;
  return apply_half_of_day(word, date);
}

/// "Z" or "+01:00" at the end. It is passed over: the fields stand as they are written.
bool skip_zone(Scanner& scanner) {
  if (scanner.accept('Z')) {
    return true;
  }
  if (!scanner.accept('+') && !scanner.accept('-')) {
    return false;
  }
  const std::optional<Number> hours = scanner.number(2, 2);
  if (!hours || hours->value > 14 || !scanner.accept(':')) {
    return false;
  }
  const std::optional<Number> minutes = scanner.number(2, 2);
  return minutes && minutes->value <= 59;
}

/// "2007-01-31T15:04:05.250+01:00": as XML writes it, with the time or without.
std::optional<CivilDate> read_iso(std::string_view text) {
  Scanner scanner(text);
  CivilDate date;
  const std::optional<Number> year = scanner.number(4, 4);
  if (!year || scanner.peek() != '-' || !read_year_first(scanner, *year, date)) {
    return std::nullopt;
  }
  if (scanner.accept('T')) {
    const std::optional<Number> hour = scanner.number(2, 2);
    if (!hour || hour->value > 23 || !scanner.accept(':') || !read_minutes(scanner, date)) {
      return std::nullopt;
    }
    date.hour = hour->value;
  }
  if (!scanner.done() && !skip_zone(scanner)) {
    return std::nullopt;
  }
  return scanner.done() ? std::optional(date) : std::nullopt;
}

/// A day, with a time behind it or without.
std::optional<CivilDate> read_day_and_time(std::string_view text) {
  Scanner scanner(text);
  CivilDate date;
  if (!read_day(scanner, date)) {
    return std::nullopt;
  }
  if (!scanner.done() && (!scanner.blanks() || !read_time(scanner, date))) {
    return std::nullopt;
  }
  return scanner.done() ? std::optional(date) : std::nullopt;
}

/// A time alone, which lies on day 0.
std::optional<CivilDate> read_time_alone(std::string_view text) {
  Scanner scanner(text);
  CivilDate date;
  return read_time(scanner, date) && scanner.done() ? std::optional(date) : std::nullopt;
}

}  // namespace

std::optional<Date> date_of(std::string_view text) {
  const std::string_view trimmed = detail::trim_white(text);
  for (const auto read : {read_iso, read_day_and_time, read_time_alone}) {
    if (const std::optional<CivilDate> civil = read(trimmed)) {
      return from_civil(*civil);
    }
  }
  return std::nullopt;
}

}  // namespace bvconn::conversions
