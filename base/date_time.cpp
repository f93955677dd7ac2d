#include "base/date_time.h"

#include <chrono>

namespace vgps {

bool isCalendarTime(const DateTime& time) {
  const std::chrono::year_month_day date{
      std::chrono::year(time.year), std::chrono::month(time.month), std::chrono::day(time.day)};
  return date.ok() && time.year > 0 && time.hour < 24 && time.minute < 60 && time.second < 60;
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
