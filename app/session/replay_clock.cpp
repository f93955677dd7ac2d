#include "app/session/replay_clock.h"

#include "base/date_time.h"
#include "base/number.h"
#include "gps/sentence.h"

namespace vgps {
namespace {

// Real receivers may send an RMC after the GGA of the next second; anything further back comes from
// another run of the receiver.
constexpr int32_t kDisorderMs = 5 * kSecondMs;
// If a time continues the run before a jump, the jump was damage.
constexpr int32_t kReturnMs = kMinuteMs;
// Between the last time of one run and the first of the next, as between two epochs.
constexpr uint32_t kNewRunMs = 1000;

// hhmmss[.decimals] in milliseconds since midnight; -1 if invalid.
int32_t timeOfDay(std::string_view field) {
  constexpr int32_t kUnits[] = {10 * kHourMs, kHourMs,        10 * kMinuteMs,
                                kMinuteMs,    10 * kSecondMs, kSecondMs};
  if (field.size() < 6) return -1;
  int32_t time = 0;
  for (size_t i = 0; i < 6; ++i) {
    if (!isDigit(field[i])) return -1;
    time += (field[i] - '0') * kUnits[i];
  }
  int32_t unit = 100;
  const bool hasDecimals = field.size() > 6 && field[6] == '.';
  for (size_t i = 7; hasDecimals && i < field.size() && isDigit(field[i]); ++i, unit /= 10) {
    time += (field[i] - '0') * unit;
  }
  return time < kDayMs ? time : -1;
}

}  // namespace

int32_t timeOfDayIn(std::string_view line) {
  const SentenceName name = nameOf(line);
  if (!name.whole || !name.isPosition()) return -1;
  line.remove_prefix(SentenceName::kLength + 1);
  return timeOfDay(line.substr(0, line.find(',')));
}

int32_t shortestStep(int32_t from, int32_t to) {
  const int32_t step = to - from;
  if (step > kDayMs / 2) return step - kDayMs;
  return step <= -kDayMs / 2 ? step + kDayMs : step;
}

void ReplayClock::advanceTo(std::string_view line) {
  const int32_t time = timeOfDayIn(line);
  if (time < 0) return;
  if (timeOfDay_ < 0) timeOfDay_ = time;
  int32_t step = shortestStep(timeOfDay_, time);
  const bool jumps = step < -kDisorderMs || step > kDisorderMs;
  if (jumps && beforeJump_ >= 0) {
    const int32_t since = shortestStep(beforeJump_, time);
    if (since >= -kDisorderMs && since <= kReturnMs) {
      timeOfDay_ = beforeJump_;
      step = since;
    }
  }
  if (step < -kDisorderMs) {
    beforeJump_ = timeOfDay_;
    tick_ += kNewRunMs;
  } else if (step > 0) {
    tick_ += static_cast<uint32_t>(step);
  } else {
    return;
  }
  timeOfDay_ = time;
}

DateTime ReplayClock::utc() const {
  const int32_t time = timeOfDay_ < 0 ? 0 : timeOfDay_;
  DateTime utc;
  utc.hour = static_cast<uint16_t>(time / kHourMs);
  utc.minute = static_cast<uint16_t>(time / kMinuteMs % 60);
  utc.second = static_cast<uint16_t>(time / kSecondMs % 60);
  utc.millisecond = static_cast<uint16_t>(time % kSecondMs);
  return utc;
}

DateTime ReplayClock::local() const { return timeOfDayMinusMinutes(utc(), utcOffsetMinutes_); }

}  // namespace vgps
