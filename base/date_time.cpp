#include "base/date_time.h"

namespace vgps {

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
