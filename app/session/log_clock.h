#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "app/session/replay_clock.h"

namespace vgps {

// The computer's clock while a log is recorded: the UTC that the log itself tells, with its date,
// so that the points stand where they stood and the same log gives the same file every time.
//
// The time of day is that of the latest RMC or GGA; the date is that of the latest RMC with a valid
// position, and goes on by itself where the time of day passes midnight before an RMC says so.
// Until an RMC has told a date there is none.
class LogClock : public Clock {
 public:
  // `firstDay` is that of the first line, in days since 1970: of an earlier reading of the same
  // log.
  explicit LogClock(int32_t utcOffsetMinutes, std::optional<int64_t> firstDay = std::nullopt)
      : utcOffsetMinutes_(utcOffsetMinutes), ticks_(utcOffsetMinutes), day_(firstDay) {}

  // To be called before the line is replayed.
  void advanceTo(std::string_view line);

  uint32_t tick() const override { return ticks_.tick(); }
  DateTime utc() const override;
  DateTime local() const override;

  // The day on which the log began, as soon as a date has come.
  std::optional<int64_t> firstDay() const;

 private:
  DateTime atOffset(int32_t minutes) const;

  int32_t utcOffsetMinutes_;
  ReplayClock ticks_;
  int32_t timeOfDay_ = -1;      // milliseconds
  int64_t midnights_ = 0;       // passed since the first line
  std::optional<int64_t> day_;  // of timeOfDay_
};

}  // namespace vgps
