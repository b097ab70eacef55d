#include "bvconn/platform/soap/moment_text.h"

#include <array>
#include <cstddef>
#include <cstdint>

#include "bvconn/platform/local_time.h"

namespace bvconn::detail {

namespace {

/// Reads the parts of a moment from front to back.
class MomentReader {
 public:
  explicit MomentReader(std::string_view text) : rest_(text) {}

  bool at_end() const { return rest_.empty(); }
  bool next_is(char c) const { return !rest_.empty() && rest_.front() == c; }
  bool skip(char c) {
    if (!next_is(c)) return false;
    rest_.remove_prefix(1);
    return true;
  }
  /// A number of so many digits, or failure when there are fewer.
  bool digits(std::size_t count, std::int32_t& value) {
    if (rest_.size() < count) return false;
    value = 0;
    for (const char c : rest_.substr(0, count)) {
      if (c < '0' || c > '9') return false;
      value = value * 10 + (c - '0');
    }
    rest_.remove_prefix(count);
    return true;
  }
  /// Decimal places, of which the first three count.
  bool milliseconds(std::int32_t& value) {
    std::size_t count = 0;
    value = 0;
    while (!rest_.empty() && rest_.front() >= '0' && rest_.front() <= '9') {
      if (count < 3) value = value * 10 + (rest_.front() - '0');
      rest_.remove_prefix(1);
      ++count;
    }
    for (std::size_t place = count; place < 3; ++place) value *= 10;
    return count > 0;
  }

 private:
  std::string_view rest_;
};

std::int32_t days_in_month(std::int32_t year, std::int32_t month) {
  constexpr std::array<std::int32_t, 12> kDays{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return month == 2 && leap ? 29 : kDays[static_cast<std::size_t>(month - 1)];
}

bool read_day(MomentReader& reader, CivilDate& civil) {
  return reader.digits(4, civil.year) && reader.skip('-') && reader.digits(2, civil.month) &&
         reader.skip('-') && reader.digits(2, civil.day) && civil.year >= 1 && civil.month >= 1 &&
         civil.month <= 12 && civil.day >= 1 && civil.day <= days_in_month(civil.year, civil.month);
}

/// The time of day. 24:00:00 is the beginning of the next day, which `next_day` tells.
bool read_time(MomentReader& reader, CivilDate& civil, bool& next_day) {
  if (!reader.digits(2, civil.hour) || !reader.skip(':') || !reader.digits(2, civil.minute) ||
      !reader.skip(':') || !reader.digits(2, civil.second)) {
    return false;
  }
  civil.millisecond = 0;
  if (reader.skip('.') && !reader.milliseconds(civil.millisecond)) return false;
  next_day = civil.hour == 24 && civil.minute == 0 && civil.second == 0 && civil.millisecond == 0;
  if (next_day) civil.hour = 0;
  return civil.hour < 24 && civil.minute < 60 && civil.second < 60;
}

/// The zone at the end, as minutes east of Greenwich; `has_zone` is false where there is none.
bool read_zone(MomentReader& reader, bool& has_zone, std::int32_t& minutes_east) {
  has_zone = !reader.at_end();
  minutes_east = 0;
  if (!has_zone || reader.skip('Z')) return reader.at_end();
  const bool west = reader.next_is('-');
  std::int32_t hours = 0;
  std::int32_t minutes = 0;
  if ((!reader.skip('-') && !reader.skip('+')) || !reader.digits(2, hours) || !reader.skip(':') ||
      !reader.digits(2, minutes) || hours > 14 || minutes > 59) {
    return false;
  }
  minutes_east = (west ? -1 : 1) * (hours * 60 + minutes);
  return reader.at_end();
}

constexpr std::int64_t kMillisecondsPerDay = 86'400'000;

/// The local time at a moment of universal time.
Date to_local(Date universal) {
  const Date epoch = from_civil({.year = 1970, .month = 1, .day = 1});
  const std::int64_t since_epoch = universal.milliseconds - epoch.milliseconds;
  std::int64_t seconds = since_epoch / 1000;
  if (since_epoch % 1000 < 0) --seconds;
  return {universal.milliseconds + zone_on_day_of(seconds).offset_s * 1000};
}

}  // namespace

std::optional<Date> date_time_of(std::string_view text) {
  MomentReader reader(text);
  CivilDate civil;
  bool next_day = false;
  bool has_zone = false;
  std::int32_t minutes_east = 0;
  if (!read_day(reader, civil) || !reader.skip('T') || !read_time(reader, civil, next_day) ||
      !read_zone(reader, has_zone, minutes_east)) {
    return std::nullopt;
  }
  Date moment = from_civil(civil);
  if (next_day) moment.milliseconds += kMillisecondsPerDay;
  if (!has_zone) return moment;
  moment.milliseconds -= std::int64_t{minutes_east} * 60'000;
  return to_local(moment);
}

std::optional<Date> day_of(std::string_view text) {
  MomentReader reader(text);
  CivilDate civil;
  bool has_zone = false;
  std::int32_t minutes_east = 0;
  if (!read_day(reader, civil) || !read_zone(reader, has_zone, minutes_east)) return std::nullopt;
  civil.hour = civil.minute = civil.second = civil.millisecond = 0;
  return from_civil(civil);
}

}  // namespace bvconn::detail
