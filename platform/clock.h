#pragma once

#include <cstdint>

#include "base/date_time.h"

// The interface to time: a replay reads the time from the log, a test sets it.
namespace vgps {

class Clock {
 public:
  virtual ~Clock() = default;
  // Milliseconds since an arbitrary start. Wraps after 49.7 days, so only differences are
  // meaningful.
  virtual uint32_t tick() const = 0;
  // Microseconds since an arbitrary start, for precise measurements.
  virtual uint64_t microseconds() const { return uint64_t{tick()} * 1000; }
  virtual DateTime utc() const = 0;
  virtual DateTime local() const = 0;
};

const Clock& systemClock();

// The current offset of local time from UTC, in minutes.
inline int32_t utcOffsetMinutes(const Clock& clock) {
  const DateTime utc = clock.utc();
  const DateTime local = clock.local();
  if (!isCalendarTime(utc) || !isCalendarTime(local)) return 0;
  constexpr int64_t kHalfMinute = 30;  // the two clocks are not read at the same moment
  const int64_t seconds = secondsOf(local) - secondsOf(utc);
  return static_cast<int32_t>((seconds + (seconds < 0 ? -kHalfMinute : kHalfMinute)) / 60);
}

// Converts local time to UTC with the current offset, whatever the date, like the file-time
// functions of Windows: a date in the other half of the year is off by the daylight saving time.
inline DateTime utcFromLocal(const DateTime& local, int32_t offsetMinutes) {
  return plusMinutes(local, -int64_t{offsetMinutes});
}
inline DateTime localFromUtc(const DateTime& utc, int32_t offsetMinutes) {
  return plusMinutes(utc, offsetMinutes);
}

// Sets the computer's clock. Returns false if the user lacks the right. Only the desktop program's
// platform provides this function, so that a test never sets the clock.
bool setSystemUtc(const DateTime& utc);

}  // namespace vgps
