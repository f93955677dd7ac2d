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

// Sets the computer's clock. Returns false if the user lacks the right. Only the desktop program's
// platform provides this function, so that a test never sets the clock.
bool setSystemUtc(const DateTime& utc);

}  // namespace vgps
