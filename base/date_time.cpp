#include "base/date_time.h"

#include <chrono>
#include <cstdio>

#include "base/number.h"

namespace vgps {

bool isCalendarTime(const DateTime& time) {
  const std::chrono::year_month_day date{
      std::chrono::year(time.year), std::chrono::month(time.month), std::chrono::day(time.day)};
  return date.ok() && time.year > 0 && time.hour < 24 && time.minute < 60 && time.second < 60;
}

int64_t secondsOf(const DateTime& time) {
  const std::chrono::year_month_day date{
      std::chrono::year(time.year), std::chrono::month(time.month), std::chrono::day(time.day)};
  const int64_t days = std::chrono::sys_days(date).time_since_epoch().count();
  return ((days * 24 + time.hour) * 60 + time.minute) * 60 + time.second;
}

DateTime dateTimeOf(int64_t seconds) {
  constexpr int64_t kFirst = -62135596800;  // 0001-01-01
  constexpr int64_t kLast = 253402300799;   // 9999-12-31 23:59:59
  if (seconds < kFirst || seconds > kLast) return {};
  constexpr int64_t kDay = 24 * 60 * 60;
  const int64_t ofDay = (seconds % kDay + kDay) % kDay;
  const std::chrono::sys_days days{std::chrono::days((seconds - ofDay) / kDay)};
  const std::chrono::year_month_day date(days);
  return {.year = static_cast<uint16_t>(static_cast<int>(date.year())),
          .month = static_cast<uint16_t>(static_cast<unsigned>(date.month())),
          .dayOfWeek = static_cast<uint16_t>(std::chrono::weekday(days).c_encoding()),
          .day = static_cast<uint16_t>(static_cast<unsigned>(date.day())),
          .hour = static_cast<uint16_t>(ofDay / 3600),
          .minute = static_cast<uint16_t>(ofDay / 60 % 60),
          .second = static_cast<uint16_t>(ofDay % 60)};
}

DateTime plusMinutes(const DateTime& time, int64_t minutes) {
  if (!isCalendarTime(time) || minutes == 0) return time;
  DateTime moved = dateTimeOf(secondsOf(time) + minutes * 60);
  moved.millisecond = time.millisecond;
  return moved;
}

bool readDateTime(std::string_view text, std::string_view form, DateTime& out) {
  if (text.size() != form.size()) return false;
  DateTime read;
  for (size_t i = 0; i < form.size(); ++i) {
    uint16_t* field = nullptr;
    switch (form[i]) {
      case 'Y': field = &read.year; break;
      case 'M': field = &read.month; break;
      case 'D': field = &read.day; break;
      case 'h': field = &read.hour; break;
      case 'm': field = &read.minute; break;
      case 's': field = &read.second; break;
      default: break;
    }
    if (field == nullptr ? text[i] != form[i] : !isDigit(text[i])) return false;
    if (field != nullptr) *field = static_cast<uint16_t>(*field * 10 + (text[i] - '0'));
  }
  out = read;
  return true;
}

std::optional<int64_t> millisecondsOf(const DateTime& time) {
  const std::chrono::year_month_day date{
      std::chrono::year(time.year), std::chrono::month(time.month), std::chrono::day(time.day)};
  if (time.year == 0 || !date.ok()) return std::nullopt;
  const int64_t days = std::chrono::sys_days(date).time_since_epoch().count();
  const int64_t minutes = (days * 24 + time.hour) * 60 + time.minute;
  return (minutes * 60 + time.second) * kSecondMs + time.millisecond;
}

std::string isoUtcText(int64_t milliseconds) {
  namespace ch = std::chrono;
  const ch::sys_time<ch::milliseconds> moment{ch::milliseconds(milliseconds)};
  const auto day = ch::floor<ch::days>(moment);
  const ch::year_month_day date(day);
  const ch::hh_mm_ss time(moment - day);
  char text[64];
  const int length = std::snprintf(
      text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d", static_cast<int>(date.year()),
      static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
      static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
      static_cast<int>(time.seconds().count()));
  std::string iso(text, static_cast<size_t>(length));
  if (time.subseconds().count() != 0) {
    std::snprintf(text, sizeof text, ".%03d", static_cast<int>(time.subseconds().count()));
    iso += text;
  }
  return iso + "Z";
}

bool readIsoUtc(std::string_view text, int64_t& milliseconds) {
  constexpr std::string_view kSeconds = "YYYY-MM-DDThh:mm:ss";
  DateTime time;
  if (!readDateTime(text.substr(0, kSeconds.size()), kSeconds, time)) return false;
  std::string_view rest = text.substr(kSeconds.size());
  if (rest.size() == 5 && rest[0] == '.') {
    for (const char c : rest.substr(1, 3)) {
      if (!isDigit(c)) return false;
      time.millisecond = static_cast<uint16_t>(time.millisecond * 10 + (c - '0'));
    }
    rest.remove_prefix(4);
  }
  const std::optional<int64_t> moment = millisecondsOf(time);
  if (rest != "Z" || !isCalendarTime(time) || !moment) return false;
  milliseconds = *moment;
  return true;
}

DateTime timeOfDayMinusMinutes(const DateTime& time, int32_t offsetMinutes) {
  constexpr int64_t kDay = 24 * 60;
  DateTime moved = time;
  if (offsetMinutes == 0 && time.hour < 24 && time.minute < 60) return moved;
  const int64_t minutes = (int64_t{time.hour} * 60 + time.minute - offsetMinutes) % kDay;
  const int64_t ofDay = minutes < 0 ? minutes + kDay : minutes;
  moved.hour = static_cast<uint16_t>(ofDay / 60);
  moved.minute = static_cast<uint16_t>(ofDay % 60);
  return moved;
}

}  // namespace vgps
