#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "app/session/replay_clock.h"

namespace vgps {

// The clock used while recording from a log: the UTC date and time in the log itself, so that
// points get their original times and the same log always produces the same file.
//
// The time of day comes from the latest RMC or GGA. The date comes from the latest RMC with a valid
// position, and advances when the time of day passes midnight before the next RMC. There is no date
// before the first such RMC.
class LogClock : public Clock {
 public:
  // `firstDay` is the date of the first line in days since 1970, known from an earlier pass over
  // the same log.
  explicit LogClock(int32_t utcOffsetMinutes, std::optional<int64_t> firstDay = std::nullopt)
      : utcOffsetMinutes_(utcOffsetMinutes), ticks_(utcOffsetMinutes), day_(firstDay) {}

  // Call this before replaying the line.
  void advanceTo(std::string_view line);

  uint32_t tick() const override { return ticks_.tick(); }
  DateTime utc() const override;
  DateTime local() const override;

  // The date on which the log starts, once an RMC has reported a date.
  std::optional<int64_t> firstDay() const;

 private:
  DateTime atOffset(int32_t minutes) const;

  int32_t utcOffsetMinutes_;
  ReplayClock ticks_;
  int32_t timeOfDay_ = -1;      // milliseconds
  int64_t midnights_ = 0;       // passed since the first line
  std::optional<int64_t> day_;  // the date that belongs to timeOfDay_
};

}  // namespace vgps
