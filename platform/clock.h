#pragma once

#include <cstdint>

#include "base/date_time.h"

// The seam to time: a replay takes it from the log, a test sets it.
namespace vgps {

class Clock {
 public:
  virtual ~Clock() = default;
  // Milliseconds since some start; wraps after 49.7 days, so only differences mean something.
  virtual uint32_t tick() const = 0;
  // Finer, for measuring; likewise from some start.
  virtual uint64_t microseconds() const { return uint64_t{tick()} * 1000; }
  virtual DateTime utc() const = 0;
  virtual DateTime local() const = 0;
};

const Clock& systemClock();

// Sets the computer's clock. Returns false if the user lacks the right. Only the desktop program's
// platform provides it, so that a test never sets the clock.
bool setSystemUtc(const DateTime& utc);

}  // namespace vgps
