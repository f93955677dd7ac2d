#include "app/session/replay_clock.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vgps {
namespace {

std::string rmc(const std::string& time) { return "$GPRMC," + time + ",A,4807.038,N"; }

TEST(ReplayClock, GoesOnByTheTimesOfTheLog) {
  const struct {
    const char* about;
    std::vector<std::string> lines;
    uint32_t passed;
  } rows[] = {
      {"no line", {}, 0},
      {"one time", {rmc("123519")}, 0},
      {"a second", {rmc("123519"), rmc("123520")}, 1000},
      {"an hour, a minute, a second", {rmc("000000"), rmc("010101")}, 3661000},
      {".5 is half a second", {rmc("123519.5"), rmc("123520")}, 500},
      {"two and four decimals", {rmc("123519.25"), rmc("123519.7509")}, 500},
      {"GGA of any talker", {rmc("123519"), "$GNGGA,123521,x", "$QZGGA,123522,x"}, 3000},
      {"other sentences have no say", {rmc("123519"), "$GPGLL,,,,,123559,A", "$GPZDA,123559"}, 0},
      {"nor has RMCX", {rmc("123519"), "$GPRMCX,123529.000,A"}, 0},
      {"no time, no step", {rmc("123519"), rmc(""), rmc("1235"), "$GPRMC", rmc("123520")}, 1000},
      {"no time of day", {rmc("123519"), rmc("250000"), rmc("12x520"), rmc("123520")}, 1000},
      {"a small step back stands still", {rmc("123519"), rmc("123514"), rmc("123515")}, 0},
      {"a larger one begins a new run",
       {rmc("123519"), rmc("123500"), rmc("123501"), rmc("123502")},
       3000},
      {"one that is damage ends again", {rmc("123519"), rmc("063519"), rmc("123520")}, 2000},
      {"a run that overlaps the one before",
       {rmc("000000"), rmc("000010"), rmc("000000"), rmc("000004"), rmc("000008"), rmc("000012")},
       10000 + 1000 + 12000},
      {"a step back and forth counts once", {rmc("000010"), rmc("000005"), rmc("000011")}, 1000},
      {"midnight", {rmc("235959.75"), rmc("000000.25")}, 500},
      {"disorder around midnight",
       {rmc("235959"), rmc("000000"), rmc("235959"), rmc("000000"), rmc("000001")},
       2000},
      {"half a day back is tomorrow", {rmc("130000"), rmc("010000")}, 12 * 3600000},
      {"a little less is a new run", {rmc("130000"), rmc("010001")}, 1000},
      {"a pause of half a day", {rmc("010000"), rmc("130000")}, 12 * 3600000},
      {"a long pause cannot be told from a new run", {rmc("010000"), rmc("230000")}, 1000},
  };
  for (const auto& row : rows) {
    ReplayClock clock(0);
    for (const std::string& line : row.lines) clock.advanceTo(line);
    EXPECT_EQ(clock.tick(), 1000 + row.passed) << row.about;
  }
}

TEST(ReplayClock, TellsTheTimeOfTheLog) {
  ReplayClock clock(-90);
  clock.advanceTo(rmc("233015.25"));
  const DateTime utc = clock.utc();
  EXPECT_EQ(utc, (DateTime{.hour = 23, .minute = 30, .second = 15, .millisecond = 250}));
  EXPECT_EQ(clock.local(), (DateTime{.hour = 1, .minute = 0, .second = 15, .millisecond = 250}));
}

}  // namespace
}  // namespace vgps
