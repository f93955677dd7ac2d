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

  // Call this before replaying the line. A line without a time of day changes nothing. Around
  // midnight, the shorter way around the clock counts, because lines may be out of order there too.
  // A time up to 5 s before the latest one changes nothing. An earlier one starts a new run of the
  // receiver, 1 s after the previous run; so does a pause of more than half a day, which looks the
  // same. The new run ends when a time continues the previous run.
  void advanceTo(std::string_view line);

  uint32_t tick() const override { return tick_; }
  DateTime utc() const override;    // only the time of day, without a date
  DateTime local() const override;  // only the time of day, without a date

 private:
  int32_t utcOffsetMinutes_;
  uint32_t tick_ = 1000;
  int32_t timeOfDay_ = -1;   // the latest in this run, in milliseconds; -1: none yet
  int32_t beforeJump_ = -1;  // the latest in the previous run
};

}  // namespace vgps
