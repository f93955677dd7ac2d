#include "app/session/log_clock.h"

#include <algorithm>
#include <chrono>

#include "base/date_time.h"
#include "base/number.h"
#include "gps/sentence.h"

namespace vgps {
namespace {

std::string_view fieldOf(const Sentence& sentence, size_t number) {
  const std::string_view field = sentence.fields.orEmpty(number);
  return field.substr(0, field.find('*'));
}

// The date (ddmmyy) of an RMC with a valid position, in days since 1970. Before the first fix,
// receivers report their date of manufacture.
std::optional<int64_t> dayIn(std::string_view line) {
  namespace ch = std::chrono;
  const Sentence sentence(line);
  if (sentence.name.type != SentenceType::rmc || fieldOf(sentence, 2) != "A") return std::nullopt;
  const std::string_view text = fieldOf(sentence, 9);
  if (text.size() != 6 || !std::all_of(text.begin(), text.end(), isDigit)) return std::nullopt;
  const auto part = [text](size_t at) { return leadingInt(text.substr(at, 2)); };
  const ch::year_month_day date(ch::year(2000 + part(4)), ch::month(static_cast<unsigned>(part(2))),
                                ch::day(static_cast<unsigned>(part(0))));
  if (!date.ok()) return std::nullopt;
  return ch::sys_days(date).time_since_epoch().count();
}

}  // namespace

void LogClock::advanceTo(std::string_view line) {
  ticks_.advanceTo(line);
  const int32_t time = timeOfDayIn(line);
  if (time < 0) return;
  if (timeOfDay_ >= 0) {
    const int64_t at = int64_t{timeOfDay_} + shortestStep(timeOfDay_, time);
    const int64_t passed = at < 0 ? -1 : at / kDayMs;
    midnights_ += passed;
    if (day_) *day_ += passed;
  }
  timeOfDay_ = time;
  if (const std::optional<int64_t> told = dayIn(line)) day_ = told;
}

std::optional<int64_t> LogClock::firstDay() const {
  if (!day_) return std::nullopt;
  return *day_ - midnights_;
}

DateTime LogClock::utc() const { return atOffset(0); }

DateTime LogClock::local() const { return atOffset(utcOffsetMinutes_); }

DateTime LogClock::atOffset(int32_t minutes) const {
  namespace ch = std::chrono;
  int64_t ms = std::max(timeOfDay_, 0) - minutes * kMinuteMs;
  const int64_t shifted = ms < 0 ? -1 : ms / kDayMs;
  ms -= shifted * kDayMs;
  DateTime time;
  const auto part = [](int64_t value) { return static_cast<uint16_t>(value); };
  time.hour = part(ms / (60 * kMinuteMs));
  time.minute = part(ms / kMinuteMs % 60);
  time.second = part(ms / 1000 % 60);
  time.millisecond = part(ms % 1000);
  if (!day_) return time;
  const ch::sys_days days{ch::days(*day_ + shifted)};
  const ch::year_month_day date(days);
  time.year = part(int{date.year()});
  time.month = part(unsigned{date.month()});
  time.day = part(unsigned{date.day()});
  time.dayOfWeek = part(ch::weekday(days).c_encoding());
  return time;
}

}  // namespace vgps
