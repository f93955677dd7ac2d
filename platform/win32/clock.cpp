#include "platform/clock.h"

#include <windows.h>

namespace vgps {
namespace {

DateTime fromSystemTime(const SYSTEMTIME& time) {
  return {.year = time.wYear,
          .month = time.wMonth,
          .dayOfWeek = time.wDayOfWeek,
          .day = time.wDay,
          .hour = time.wHour,
          .minute = time.wMinute,
          .second = time.wSecond,
          .millisecond = time.wMilliseconds};
}

class SystemClock : public Clock {
 public:
  uint32_t tick() const override { return GetTickCount(); }

  uint64_t microseconds() const override {
    LARGE_INTEGER count;
    LARGE_INTEGER perSecond;
    QueryPerformanceCounter(&count);
    QueryPerformanceFrequency(&perSecond);
    const auto ticks = static_cast<uint64_t>(count.QuadPart);
    const auto rate = static_cast<uint64_t>(perSecond.QuadPart);
    return ticks / rate * 1000000 + ticks % rate * 1000000 / rate;
  }

  DateTime utc() const override {
    SYSTEMTIME time;
    GetSystemTime(&time);
    return fromSystemTime(time);
  }

  DateTime local() const override {
    SYSTEMTIME time;
    GetLocalTime(&time);
    return fromSystemTime(time);
  }
};

}  // namespace

const Clock& systemClock() {
  static const SystemClock clock;
  return clock;
}

bool setSystemUtc(const DateTime& utc) {
  SYSTEMTIME time{};
  time.wYear = utc.year;
  time.wMonth = utc.month;
  time.wDay = utc.day;
  time.wHour = utc.hour;
  time.wMinute = utc.minute;
  time.wSecond = utc.second;
  time.wMilliseconds = utc.millisecond;
  return SetSystemTime(&time) != 0;
}

}  // namespace vgps
