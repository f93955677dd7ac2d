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

}  // namespace vgps
