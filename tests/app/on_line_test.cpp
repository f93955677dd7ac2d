#include "app/on_line.h"

#include <gtest/gtest.h>

#include "app/connection.h"
#include "tests/fakes/app_world.h"

namespace vgps {
namespace {

const std::string kGgaLine =
    "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n";
const std::string kRmcLine =
    "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A\r\n";

TEST(OnLine, TheUserInterfaceGetsACopyOfTheFix) {
  AppWorld world;
  world.receive(kRmcLine + kGgaLine + "$GPGSV,1,1,01,05,40,083,46*75\r\n");
  EXPECT_EQ(world.app.shown.fix.altitude, 545);
  EXPECT_EQ(world.app.shown.satellites.usedCount, 8);
  EXPECT_EQ(world.app.shown.view.size(), 1U);
  EXPECT_EQ(world.app.shown.maxAltitude, 545);
  EXPECT_EQ(world.app.shown.stats.total(), 3U);
  EXPECT_TRUE(world.app.shown.dataSeen);
  world.app.fix.altitude = 1;  // the live fix moves on, the copy stays
  EXPECT_EQ(world.app.shown.fix.altitude, 545);
}

TEST(OnLine, ACompleteFixIsOfferedOncePerBurstWhileRecordingOrPlaying) {
  struct {
    int32_t state, setting;
    std::string burst;
    uint64_t offers;
  } const rows[] = {
      {kRecording, 0, kRmcLine + kGgaLine, 3},
      {kRecording, 0, kGgaLine + kRmcLine, 3},
      {kPlaying, 0, kRmcLine + kGgaLine, 3},
      {kIdle, 0, kRmcLine + kGgaLine, 0},
      {kPaused, 0, kRmcLine + kGgaLine, 0},
      {kRecording, 1, kRmcLine + kGgaLine, 3},
      {kRecording, 2, kRmcLine + kGgaLine, 3},
      {kRecording, 3, kRmcLine + kGgaLine, 6},  // both close
      {kRecording, 2, kRmcLine, 0},
      {kRecording, 0, "$GPRMC,123519,V,4807.038,N,01131.000,E,,,,,\r\n", 0},
      {kRecording, 0, "$GPGSA,A,3,01\r\n", 0},
  };
  for (const auto& row : rows) {
    AppWorld world;
    world.app.track.state = row.state;
    world.app.gps.options.epochSentenceSetting = row.setting;
    world.app.frameSkip = 5;  // skips displays, never offers
    for (int epoch = 0; epoch < 3; ++epoch) {
      world.clock.now += 1000;
      world.receive(row.burst);
    }
    EXPECT_EQ(world.app.epochsOffered, row.offers) << row.state << row.setting << row.burst;
  }
}

TEST(OnLine, RepaintsAreAtLeast800MillisecondsApart) {
  AppWorld world;
  world.app.repaints.reset(world.clock.now);
  std::vector<uint32_t> painted;
  world.window.onRepaint = [&] { painted.push_back(world.clock.now - 1000); };
  for (int i = 0; i < 30; ++i) {  // 10 Hz
    world.receive(kRmcLine);
    world.clock.now += 100;
  }
  EXPECT_EQ(painted, (std::vector<uint32_t>{0, 800, 1600, 2400}));
}

TEST(OnLine, ARepaintThatTheParserAsksForShowsTheFixOfTheMoment) {
  AppWorld world;
  world.app.repaints.reset(world.clock.now);
  int32_t status = -1;
  world.window.onRepaint = [&] { status = world.app.shown.fix.fixStatus; };
  world.receive(kGgaLine);  // "fix gained" paints before the new quality is stored
  EXPECT_EQ(world.sounds.played, std::vector<std::string>{"OK"});
  EXPECT_EQ(status, 0);
  EXPECT_EQ(world.window.repaints, 1);
}

TEST(OnLine, BinaryMessagesAndSensorReadingsAreShownAsText) {
  AppWorld world;
  world.receive(std::string("\xA0\xA2\x00\x02\x29\x00\x00\x29\xB0\xB3", 10));
  EXPECT_EQ(world.app.lastMessageText, "Sirf msg (29): 2 bytes");
  world.door.post({.event = UiEvent::sensor, .x = 11.51666, .y = 48.1173});
  EXPECT_EQ(world.app.lastSensorText, "SENS msg: 11.517,48.117");
}

TEST(OnLine, FrameSkipHandlesOneMessageOfN) {
  const std::string message("\xA0\xA2\x00\x01\x29\x00\x29\xB0\xB3", 9);
  for (const auto& [skip, handled] : {std::pair{0, 6}, {1, 6}, {2, 3}, {3, 2}}) {
    AppWorld world;
    world.app.frameSkip = skip;
    int shown = 0;
    for (int i = 0; i < 6; ++i) {
      world.app.lastMessageText.clear();
      world.receive(message);
      shown += world.app.lastMessageText.empty() ? 0 : 1;
    }
    EXPECT_EQ(shown, handled) << skip;
  }
}

TEST(OnLine, AFailingLogIsTold) {
  AppWorld world;
  world.app.gps.log.path = "/no/such/folder/gps.log";
  world.app.gps.options.logNmea = true;
  world.receive(kRmcLine);
  EXPECT_EQ(world.window.errors,
            std::vector<std::string>{"The log cannot be written: /no/such/folder/gps.log"});
}

TEST(Connect, AFailureIsTold) {
  AppWorld world;
  EXPECT_FALSE(connectReceiver(world.app, {.port = "COM3"}));
  EXPECT_EQ(world.window.errors, std::vector<std::string>{"GPS Opening failed"});
  EXPECT_FALSE(disconnectReceiver(world.app));
}

TEST(Connect, TheUtcOffsetIsTakenInWholeHours) {
  struct {
    uint16_t utcDay, utcHour, localDay, localHour;
    int32_t minutes;
  } const rows[] = {
      {5, 12, 5, 14, -120}, {5, 23, 6, 1, -120},  {6, 1, 5, 23, 120},
      {5, 12, 5, 12, 0},    {31, 23, 1, 1, 2760},  // across the end of a month: right modulo a day
  };
  for (const auto& row : rows) {
    DateTime utc;
    DateTime local;
    utc.day = row.utcDay;
    utc.hour = row.utcHour;
    local.day = row.localDay;
    local.hour = row.localHour;
    local.minute = 30;  // minutes do not count
    EXPECT_EQ(measureUtcOffset(utc, local), row.minutes) << row.utcHour << " " << row.localHour;
  }
}

}  // namespace
}  // namespace vgps
