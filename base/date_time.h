#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vgps {

// Spans of time in milliseconds.
inline constexpr int32_t kSecondMs = 1000;
inline constexpr int32_t kMinuteMs = 60 * kSecondMs;
inline constexpr int32_t kHourMs = 60 * kMinuteMs;
inline constexpr int32_t kDayMs = 24 * kHourMs;

// A calendar date and time of day, as a receiver or the system clock reports it. The fields are not
// checked: a receiver may report month 13.
struct DateTime {
  uint16_t year = 0;
  uint16_t month = 0;
  uint16_t dayOfWeek = 0;  // 0 Sunday .. 6 Saturday; only set by clocks
  uint16_t day = 0;
  uint16_t hour = 0;
  uint16_t minute = 0;
  uint16_t second = 0;
  uint16_t millisecond = 0;

  bool operator==(const DateTime&) const = default;
};

// Returns true for an existing calendar date (year 1 or later) with a time from 0:00:00 to
// 23:59:59.
bool isCalendarTime(const DateTime& time);

// Seconds since 1970-01-01 00:00:00 on the same clock, without the milliseconds. Requires a valid
// time.
int64_t secondsOf(const DateTime& time);
// The reverse, for the years 1 to 9999; returns an all-zero DateTime for anything else.
DateTime dateTimeOf(int64_t seconds);

// Adds minutes, across days and years. An invalid time is returned unchanged.
DateTime plusMinutes(const DateTime& time, int64_t minutes);

// Reads `text` according to `form`, for example "YYYY-MM-DD hh:mm:ss": Y, M, D, h, m, and s each
// stand for one digit, any other character for itself. Returns false if the text does not match.
// The values are not range-checked.
bool readDateTime(std::string_view text, std::string_view form, DateTime& out);

// Milliseconds since the start of 1970 by the calendar, ignoring time zones and leap seconds; none
// if the date is invalid.
std::optional<int64_t> millisecondsOf(const DateTime& time);

// A UTC time in milliseconds since 1970 in ISO 8601 format: "2010-07-05T07:03:04Z", with
// milliseconds ("07:03:04.250Z") if there are any.
std::string isoUtcText(int64_t milliseconds);
// Returns false, with nothing changed, for any other format.
bool readIsoUtc(std::string_view text, int64_t& milliseconds);

// Subtracts `offsetMinutes` from the time of day, modulo 24 hours; the date stays the same. With
// UTC and a UTC offset (minutes, negative east of Greenwich) the result is the local time.
DateTime timeOfDayMinusMinutes(const DateTime& time, int32_t offsetMinutes);

}  // namespace vgps
