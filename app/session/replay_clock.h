#pragma once

#include <cstdint>
#include <string_view>

#include "platform/clock.h"

namespace vgps {

// The UTC time of day in an RMC or GGA sentence of any talker, in milliseconds; -1 if the line has
// none.
int32_t timeOfDayIn(std::string_view line);

// The time from one time of day to another without knowing the date, in milliseconds: more than -12
// h, at most +12 h.
int32_t shortestStep(int32_t from, int32_t to);

// A clock that takes its time from the log, so that a replay always gives the same result. The tick
// starts at 1,000 and advances by the differences between the UTC times of day in RMC and GGA
// sentences of any talker.
class ReplayClock : public Clock {
 public:
  explicit ReplayClock(int32_t utcOffsetMinutes) : utcOffsetMinutes_(utcOffsetMinutes) {}

  // To be called before the line is replayed. Without a time of day nothing changes. Of the two
  // ways round the day the shorter one is meant: lines near midnight come in disorder like any
  // others. A time that lies up to 5 s behind the latest one moves nothing. One that lies further
  // back, and a pause of more than half a day, which cannot be told from it, begins a new run of
  // the receiver 1 s after the one before; it ends where a time fits that one again.
  void advanceTo(std::string_view line);

  uint32_t tick() const override { return tick_; }
  DateTime utc() const override;    // only the time of day, without a date
  DateTime local() const override;  // only the time of day, without a date

 private:
  int32_t utcOffsetMinutes_;
  uint32_t tick_ = 1000;
  int32_t timeOfDay_ = -1;   // the latest of this run, in milliseconds; -1: none yet
  int32_t beforeJump_ = -1;  // the latest of the run before
};

}  // namespace vgps
