#include "base/date_time.h"

#include <chrono>

#include "base/number.h"

namespace vgps {

bool isCalendarTime(const DateTime& time) {
  const std::chrono::year_month_day date{
      std::chrono::year(time.year), std::chrono::month(time.month), std::chrono::day(time.day)};
  return date.ok() && time.year > 0 && time.hour < 24 && time.minute < 60 && time.second < 60;
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
