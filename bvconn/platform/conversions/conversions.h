#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "bvconn/platform/conversions/date.h"
#include "bvconn/platform/export.h"

/// Conversions between text and values with the platform's rules. None looks at the host's locale.
/// What does not convert fails with `Error` 13 (type mismatch) or 6 (overflow), source "BVConn",
/// and a description that shows the text.
namespace bvconn::conversions {

// Text to values. Blanks (space, tab, CR, LF) around a number or a word are allowed.

/// The words True and False in any case, or a number (0 is false); all else, "" too, fails with 13.
BVCONN_EXPORT bool text_to_boolean(std::string_view text);
/// A decimal number, with sign and exponent allowed; "INF", "-INF", "NaN" too. Fails with 13, or
/// with 6 beyond the range of a 64-bit float.
BVCONN_EXPORT double text_to_double(std::string_view text);
/// A number, rounded half to even; fails with 13 for text that is none and with 6 out of range.
BVCONN_EXPORT std::int16_t text_to_int16(std::string_view text);
BVCONN_EXPORT std::int32_t text_to_int32(std::string_view text);
/// The number that text reads as, or nothing: the test "is numeric".
BVCONN_EXPORT std::optional<double> number_of(std::string_view text);
/// A date: month first ("1/31/2007", also with "-" and two-digit years), ISO 8601, or with a
/// month's English name; a time of day may follow or stand alone. Nothing when it reads as none.
///
/// A first number that can be no month is taken as the day ("31/1/2007"). Two-digit years from 30
/// on lie in the 1900s, the others in the 2000s. An ISO zone is passed over: the fields stand as
/// they are written. A time alone lies on day 0. Years go from 100 to 9999. A day without a year, a
/// month without a day and a bare number are no dates.
BVCONN_EXPORT std::optional<Date> date_of(std::string_view text);
BVCONN_EXPORT Date text_to_date(std::string_view text);

// Numbers to numbers, rounded half to even; 6 out of range (also for NaN and infinities).
BVCONN_EXPORT std::int16_t double_to_int16(double value);
BVCONN_EXPORT std::int32_t double_to_int32(double value);
/// Rounded to so many decimal places, halves to the even digit.
BVCONN_EXPORT double round_half_even(double value, int places);

// Values to text, for people and for string arguments; XML values have forms of their own.

/// The fewest digits that read back as the same number: plain from 0.0001 up to below 1e15
/// ("4500000000", "0.25"), else "1.5E+15", "1E-05" with two digits of exponent at least. Zero has
/// no sign. "INF", "-INF" and "NaN" for what is no number.
BVCONN_EXPORT std::string float_text(float value);
BVCONN_EXPORT std::string double_text(double value);
BVCONN_EXPORT std::string integer_text(std::int64_t value);
/// "True" or "False".
BVCONN_EXPORT std::string boolean_text(bool value);
/// "1/5/2007 1:04:09 PM", without its empty half: at midnight the day alone, on the zero day
/// (12/30/1899) the time alone.
BVCONN_EXPORT std::string date_text(Date value);
/// xsd:dateTime without a zone: "2007-01-05T00:00:00", milliseconds only where there are some.
BVCONN_EXPORT std::string iso_date_text(Date value);

/// The value formatter, for the patterns that the operations use: "000" (text that reads as a
/// number becomes a whole number of at least three digits), "0.00" (two decimals), "mm/dd/yyyy" and
/// "m/d/yyyy" (text that reads as a date, or as a number, which is a serial day). Text that reads
/// as neither passes unchanged; so does "". Halves are rounded away from zero; there is no "-0".
BVCONN_EXPORT std::string format_text(std::string_view text, std::string_view pattern);
BVCONN_EXPORT std::string format_number(double value, std::string_view pattern);
BVCONN_EXPORT std::string format_date(Date value, std::string_view pattern);

/// Without leading and trailing blanks (spaces only).
BVCONN_EXPORT std::string_view trim_blanks(std::string_view text);
/// ASCII letters in upper case; everything else as it is.
BVCONN_EXPORT std::string upper_case(std::string_view text);
BVCONN_EXPORT bool equal_ignoring_case(std::string_view a, std::string_view b);

}  // namespace bvconn::conversions
