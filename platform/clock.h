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
  virtual DateTime utc() const = 0;
  virtual DateTime local() const = 0;
};

const Clock& systemClock();

}  // namespace vgps
