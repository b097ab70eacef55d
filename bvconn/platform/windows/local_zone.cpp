#include "bvconn/platform/local_zone.h"

#include "bvconn/platform/windows/system.h"

namespace bvconn::detail {
namespace {

constexpr std::int64_t kTicksPerSecond = 10'000'000;  // of 100 ns
constexpr std::int64_t kTicksTo1970 = 116'444'736'000'000'000;

bool fields_of(std::int64_t ticks, SYSTEMTIME& fields) {
  FILETIME time{};
  time.dwLowDateTime = static_cast<DWORD>(ticks & 0xFFFFFFFF);
  time.dwHighDateTime = static_cast<DWORD>(ticks >> 32);
  return ticks >= 0 && ::FileTimeToSystemTime(&time, &fields) != 0;
}

}  // namespace

// By the rules of the moment's own year, which are not always those of today.
LocalZone system_zone(std::int64_t unix_seconds) {
  constexpr std::int64_t kFirst_s = -11'644'473'600;  // 1601
  constexpr std::int64_t kLast_s = 253'402'300'799;   // 9999
  if (unix_seconds < kFirst_s || unix_seconds > kLast_s) return {};
  const std::int64_t ticks = unix_seconds * kTicksPerSecond + kTicksTo1970;
  SYSTEMTIME universal{};
  SYSTEMTIME local{};
  TIME_ZONE_INFORMATION zone{};
  FILETIME wall{};
  if (!fields_of(ticks, universal) ||
      ::GetTimeZoneInformationForYear(universal.wYear, nullptr, &zone) == 0 ||
      ::SystemTimeToTzSpecificLocalTime(&zone, &universal, &local) == 0 ||
      ::SystemTimeToFileTime(&local, &wall) == 0) {
    return {};
  }
  const std::int64_t wall_ticks =
      static_cast<std::int64_t>(wall.dwHighDateTime) << 32 | wall.dwLowDateTime;
  const std::int64_t ahead_s = (wall_ticks - ticks) / kTicksPerSecond;
  return {.ahead_s = ahead_s, .offset_s = ahead_s};
}

// The environment says nothing of the zone here.
void take_up_zone() {}

std::int64_t steady_seconds() {
  return static_cast<std::int64_t>(::GetTickCount64() / 1000);
}

}  // namespace bvconn::detail
