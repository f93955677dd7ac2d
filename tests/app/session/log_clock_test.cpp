#include "app/session/log_clock.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace vgps {
namespace {

std::string dateAndTime(const DateTime& time) {
  char text[64];
  std::snprintf(text, sizeof text, "%04u-%02u-%02u %02u:%02u:%02u.%03u", unsigned{time.year},
                unsigned{time.month}, unsigned{time.day}, unsigned{time.hour},
                unsigned{time.minute}, unsigned{time.second}, unsigned{time.millisecond});
  return text;
}

std::string rmc(const std::string& time, const std::string& date, const char* status = "A") {
  return "$GPRMC," + time + "," + status + ",4807,N,01131,E,022.4,084.4," + date + ",,*00";
}

TEST(LogClock, DateAndTimeOfTheLog) {
  const struct {
    const char* what;
    std::vector<std::string> lines;
    const char* utc;
  } rows[] = {
      {"nothing yet", {"noise", "$GPGSA,A,3"}, "0000-00-00 00:00:00.000"},
      {"a time without a date", {"$GPGGA,101500.25,4807"}, "0000-00-00 10:15:00.250"},
      {"both", {rmc("101500", "230324")}, "2024-03-23 10:15:00.000"},
      {"midnight comes before its date",
       {rmc("235959", "311224"), "$GNGGA,000000.5,4807"},
       "2025-01-01 00:00:00.500"},
      {"and is not counted twice",
       {rmc("235959", "311224"), "$GPGGA,000000,4807", rmc("000000", "010125")},
       "2025-01-01 00:00:00.000"},
      {"back over midnight",
       {rmc("000000", "010125"), "$GPGGA,235959,4807"},
       "2024-12-31 23:59:59.000"},
      {"a receiver without a fix knows no date",
       {rmc("101500", "230324"), rmc("101501", "060106", "V")},
       "2024-03-23 10:15:01.000"},
      {"no date in its field",
       {rmc("101500", "230324"), rmc("101501", "2208-1"), rmc("101502", "310224")},
       "2024-03-23 10:15:02.000"},
      {"a time that lies behind",
       {rmc("101500", "230324"), "$GPGGA,101459,48"},
       "2024-03-23 10:14:59.000"},
  };
  for (const auto& row : rows) {
    LogClock clock(0);
    for (const std::string& line : row.lines) clock.advanceTo(line);
    EXPECT_EQ(dateAndTime(clock.utc()), row.utc) << row.what;
  }
}

TEST(LogClock, LocalTimeOnAnotherDay) {
  LogClock clock(-120);  // two hours ahead
  clock.advanceTo(rmc("233000", "280224"));
  EXPECT_EQ(dateAndTime(clock.local()), "2024-02-29 01:30:00.000");
  EXPECT_EQ(clock.local().dayOfWeek, 4);
  LogClock behind(300);
  behind.advanceTo(rmc("023000", "010324"));
  EXPECT_EQ(dateAndTime(behind.local()), "2024-02-29 21:30:00.000");
}

TEST(LogClock, TheFirstDayIsKnownFromALaterDate) {
  LogClock first(0);
  first.advanceTo("$GPGGA,235958,4807");
  EXPECT_FALSE(first.firstDay());
  first.advanceTo("$GPGGA,000001,4807");
  first.advanceTo(rmc("000001", "010125"));
  LogClock second(0, first.firstDay());
  second.advanceTo("$GPGGA,235958,4807");
  EXPECT_EQ(dateAndTime(second.utc()), "2024-12-31 23:59:58.000");
}

}  // namespace
}  // namespace vgps
