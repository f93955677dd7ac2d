#include "platform/clock.h"

#include <sys/time.h>
#include <time.h>

namespace vgps {
namespace {

DateTime fromCalendar(const tm& calendar, suseconds_t microseconds) {
  return {.year = static_cast<uint16_t>(calendar.tm_year + 1900),
          .month = static_cast<uint16_t>(calendar.tm_mon + 1),
          .dayOfWeek = static_cast<uint16_t>(calendar.tm_wday),
          .day = static_cast<uint16_t>(calendar.tm_mday),
          .hour = static_cast<uint16_t>(calendar.tm_hour),
          .minute = static_cast<uint16_t>(calendar.tm_min),
          .second = static_cast<uint16_t>(calendar.tm_sec),
          .millisecond = static_cast<uint16_t>(microseconds / 1000)};
}

class SystemClock : public Clock {
 public:
  uint32_t tick() const override {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<uint32_t>(static_cast<uint64_t>(now.tv_sec) * 1000 +
                                 static_cast<uint64_t>(now.tv_nsec) / 1000000);
  }

  uint64_t microseconds() const override {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<uint64_t>(now.tv_sec) * 1000000 + static_cast<uint64_t>(now.tv_nsec) / 1000;
  }

  DateTime utc() const override {
    timeval now{};
    gettimeofday(&now, nullptr);
    tm calendar{};
    gmtime_r(&now.tv_sec, &calendar);
    return fromCalendar(calendar, now.tv_usec);
  }

  DateTime local() const override {
    timeval now{};
    gettimeofday(&now, nullptr);
    tm calendar{};
    localtime_r(&now.tv_sec, &calendar);
    return fromCalendar(calendar, now.tv_usec);
  }
};

}  // namespace

const Clock& systemClock() {
  static const SystemClock clock;
  return clock;
}

bool setSystemUtc(const DateTime& utc) {
  tm calendar{};
  calendar.tm_year = utc.year - 1900;
  calendar.tm_mon = utc.month - 1;
  calendar.tm_mday = utc.day;
  calendar.tm_hour = utc.hour;
  calendar.tm_min = utc.minute;
  calendar.tm_sec = utc.second;
  const time_t seconds = timegm(&calendar);
  const timespec time{seconds, long{utc.millisecond} * 1000000};
  return seconds != -1 && clock_settime(CLOCK_REALTIME, &time) == 0;
}

}  // namespace vgps
