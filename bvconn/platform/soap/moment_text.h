#pragma once

#include <optional>
#include <string_view>

#include "bvconn/platform/conversions/date.h"

/// Moments and days as XML Schema writes them. Nothing for text that is none.
namespace bvconn::detail {

/// `xsd:dateTime`. A moment with a zone becomes local time.
std::optional<Date> date_time_of(std::string_view text);
/// `xsd:date`. A day stays the day that it names, whatever its zone.
std::optional<Date> day_of(std::string_view text);

}  // namespace bvconn::detail
