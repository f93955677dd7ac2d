#include "cli/monitor_view.h"

#include <gtest/gtest.h>

#include "cli/state_text.h"

namespace vgps {
namespace {

TEST(MonitorView, SaysHowItStandsTheWorstFirst) {
  MonitorStatus good;
  good.source = "/dev/ttyUSB0";
  good.speed = 9600;
  good.dataSeen = good.fixSeen = true;
  good.silentMs = 300;
  good.fixAgeMs = 340;
  UiFix fix;
  fix.fix.fixStatus = 1;
  const UiFix noFix;
  UiFix binary;
  binary.inputProtocol = kSirfBinary;
  UiFix binaryFix = fix;
  binaryFix.inputProtocol = kSirfBinary;
  const auto with = [&](auto change) {
    MonitorStatus status = good;
    change(status);
    return status;
  };
  const struct {
    MonitorStatus status;
    const UiFix& shown;
    const char* text;
  } rows[] = {
      {good, fix, "GPS fix, 0.3 s old"},
      {good, noFix, "no fix for 0 s"},
      {with([](auto& s) { s.fixSeen = false; }), noFix, "no fix yet"},
      {good, binary, "no fix: the receiver is sending SiRF binary, which is not decoded"},
      {good, binaryFix, "GPS fix, 0.3 s old"},
      {with([](auto& s) { s.fixAgeMs = 2500; }), binaryFix,
       "no fix: the receiver is sending SiRF binary, which is not decoded"},
      {with([](auto& s) { s.fixAgeMs = 9000; }), fix, "GPS fix, 9.0 s old"},
      {with([](auto& s) { s.dataSeen = false; }), noFix,
       "connected to /dev/ttyUSB0, waiting for data"},
      {with([](auto& s) { s.silentMs = 7900; }), fix, "no data from /dev/ttyUSB0 for 7 s"},
      {with([](auto& s) { s.silentMs = 7900, s.noiseSeen = true; }), noFix,
       "data is arriving from /dev/ttyUSB0, but no NMEA sentences; is 9600 baud correct?"},
      {with([](auto& s) { s.line = MonitorStatus::Line::failed, s.error = PortError::busy; }), fix,
       "not connected: /dev/ttyUSB0 is in use by another program"},
      {with([](auto& s) { s.line = MonitorStatus::Line::failed, s.error = PortError::notFound; }),
       fix, "not connected: /dev/ttyUSB0 was not found"},
      {with([](auto& s) {
         s.line = MonitorStatus::Line::failed, s.error = PortError::noPermission;
       }),
       fix, "not connected: /dev/ttyUSB0 cannot be opened: permission denied"},
      {with([](auto& s) { s.line = MonitorStatus::Line::gone; }), fix,
       "not connected: /dev/ttyUSB0 was unplugged"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(statusText(row.status, row.shown), row.text);
    const std::string line = monitorLine(row.status, row.shown);
    EXPECT_TRUE(line.ends_with(std::string(row.text) + "\n")) << line;
    EXPECT_EQ(std::count(line.begin(), line.end(), '\n'), 1);
  }
}

TEST(MonitorView, ABlockIsWrittenOverTheOneBefore) {
  int rows = 0;
  EXPECT_EQ(monitorBlock("long row\nb\n", {6, 24}, rows), "long r\x1b[K\nb\x1b[K\n\x1b[J");
  EXPECT_EQ(rows, 2);
  EXPECT_EQ(monitorBlock("a\n\nc\nd\n", {80, 4}, rows), "\x1b[2Aa\x1b[K\n\x1b[K\nc\x1b[K\n\x1b[J");
  EXPECT_EQ(rows, 3);
}

TEST(StateText, Positions) {
  const struct {
    double longitude, latitude;
    const char* text;
  } rows[] = {{11.5166666, 48.1173, "48.117300 N  11.516667 E"},
              {-0.5, -33.25, "33.250000 S  0.500000 W"},
              {0, 0, "none"},
              {0.001, -0.001, "none"},
              {0.0011, 0, "0.000000 N  0.001100 E"}};
  for (const auto& row : rows) {
    FixRecord fix;
    fix.longitude = row.longitude;
    fix.latitude = row.latitude;
    EXPECT_EQ(positionText(fix), row.text);
  }
}

}  // namespace
}  // namespace vgps
