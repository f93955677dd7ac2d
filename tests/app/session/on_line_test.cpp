#include "app/session/on_line.h"

#include <gtest/gtest.h>

#include "app/desktop/scene_of.h"
#include "app/session/connection.h"
#include "tests/fakes/app_world.h"
#include "tests/fakes/sample_lines.h"

namespace vgps {
namespace {

TEST(OnLine, TheUserInterfaceGetsACopyOfTheFix) {
  AppWorld world;
  world.receive(kRmcBytes + kGgaBytes + "$GPGSV,1,1,01,05,40,083,46*75\r\n");
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
      {kRecording, 0, kRmcBytes + kGgaBytes, 3},
      {kRecording, 0, kGgaBytes + kRmcBytes, 3},
      {kPlaying, 0, kRmcBytes + kGgaBytes, 3},
      {kIdle, 0, kRmcBytes + kGgaBytes, 0},
      {kPaused, 0, kRmcBytes + kGgaBytes, 0},
      {kRecording, 1, kRmcBytes + kGgaBytes, 3},
      {kRecording, 2, kRmcBytes + kGgaBytes, 3},
      {kRecording, 3, kRmcBytes + kGgaBytes, 3},  // both complete an epoch, and have the same time
      {kRecording, 2, kRmcBytes, 0},
      {kRecording, 0, "$GPRMC,123519,V,4807.038,N,01131.000,E,,,,,\r\n", 0},
      {kRecording, 0, "$GPGSA,A,3,01\r\n", 0},
  };
  for (const auto& row : rows) {
    AppWorld world;
    world.app.recorder.track.state = row.state;
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
    world.receive(kRmcBytes);
    world.clock.now += 100;
  }
  EXPECT_EQ(painted, (std::vector<uint32_t>{0, 800, 1600, 2400}));
}

// The second half of a burst comes too soon to be drawn, and then nothing for a while.
TEST(OnLine, WhatCameTooSoonIsDrawnAsSoonAsItMayBe) {
  AppWorld world;
  world.clock.now += 1000;
  world.receive(kRmcBytes);
  world.clock.now += 400;
  world.receive(kGgaBytes);
  const int before = world.window.repaints;
  EXPECT_FALSE(refreshDisplays(world.app));
  world.clock.now += 400;
  EXPECT_TRUE(refreshDisplays(world.app));
  EXPECT_EQ(world.window.repaints, before + 1);
  world.clock.now += 1000;
  EXPECT_FALSE(refreshDisplays(world.app)) << "once";
}

// RMC only says that the fix is valid, and comes last in many bursts.
TEST(OnLine, TheQualityOfTheFixIsThatOfTheSentenceThatKnowsIt) {
  AppWorld world;
  std::string better = kGgaBytes.substr(0, kGgaBytes.find('*')) + "\r\n";
  better.replace(better.find("E,1,"), 4, "E,2,");
  world.receive(better + kRmcBytes);
  EXPECT_EQ(makeScene(world.app).fix.fixStatus, 2);
  EXPECT_EQ(world.app.shown.fix.fixStatus, 1);
  world.clock.now += 6000;
  world.receive(kRmcBytes);
  EXPECT_EQ(makeScene(world.app).fix.fixStatus, 1) << "nobody says so any more";
}

TEST(OnLine, BytesThatNobodyUnderstandsAreNotSilence) {
  AppWorld world;
  world.app.fix.running = true;
  world.receive("\x01\x02 noise at another speed \x03\r\n");
  const Scene scene = makeScene(world.app);
  EXPECT_EQ(scene.state, ReceiverState::noData);
  EXPECT_EQ(scene.notice, "Data, but not NMEA. Probably a different baud rate");
  world.clock.now += 6000;
  EXPECT_EQ(makeScene(world.app).notice, "");
  world.app.fix.running = false;
}

TEST(OnLine, ARepaintThatTheParserAsksForShowsTheFixOfTheMoment) {
  AppWorld world;
  world.app.repaints.reset(world.clock.now);
  int32_t status = -1;
  world.window.onRepaint = [&] { status = world.app.shown.fix.fixStatus; };
  world.receive(kGgaBytes);  // "fix gained" paints before the new quality is stored
  EXPECT_EQ(world.sounds.played, std::vector<std::string>{"OK"});
  EXPECT_EQ(status, 0);
  EXPECT_EQ(world.window.repaints, 1);
}

const std::string kMessage("\xA0\xA2\x00\x02\x29\x00\x00\x29\xB0\xB3", 10);

TEST(OnLine, BinaryMessagesAndSensorReadingsAreShownAsText) {
  AppWorld world;
  world.app.currentScreen = Screen::rawLog;
  world.app.fix.running = true;
  const auto shown = [&] { return makeScene(world.app).message; };
  world.receive(kMessage);
  EXPECT_EQ(shown(), "Sirf msg (29): 2 bytes");
  world.uiThread.post({.event = UiEvent::sensor, .x = 11.51666, .y = 48.1173});
  EXPECT_EQ(shown(), "SENS msg: 11.517,48.117");
  ASSERT_EQ(world.app.rawLog.size(), 2U);
  EXPECT_EQ(world.app.rawLog.view(1)[0].text, "SENS msg: 11.517,48.117");
  for (int line = 0; line < 9; ++line) world.receive(kRmcBytes);
  EXPECT_NE(shown(), "");
  world.receive(kRmcBytes);
  EXPECT_EQ(shown(), "") << "text for a while: the receiver has changed its language";
  world.receive(kMessage);
  ++world.app.gps.readers.generation;
  EXPECT_EQ(shown(), "") << "another source";
  world.app.fix.running = false;
}

TEST(OnLine, SkippedMessagesDoNothingForTheDisplays) {
  for (const auto& [skip, handled] :
       {std::pair{0, "111111"}, {1, "111111"}, {2, "010101"}, {3, "001001"}, {-1, "111111"}}) {
    AppWorld world;
    AppState& app = world.app;
    app.currentScreen = Screen::rawLog;
    app.frameSkip = skip;
    std::string shown;
    for (int i = 0; i < 6; ++i) {
      world.clock.now += 1000;
      app.rawLog.clear();
      app.pendingDisplay.messageCountdown = app.pendingDisplay.maximumCountdown = 5;
      world.window.repaints = 0;
      world.receive(kRmcBytes);
      shown += app.rawLog.empty() ? '0' : '1';
      const bool isShown = shown.back() == '1';
      EXPECT_EQ(world.window.repaints, isShown ? 1 : 0);
      EXPECT_EQ(app.pendingDisplay.messageCountdown, isShown ? 4 : 5);
      EXPECT_EQ(
          app.pendingDisplay.maximumCountdown < 5 || app.pendingDisplay.maximumCountdown == 10,
          isShown);
    }
    EXPECT_EQ(shown, handled) << skip;
  }
}

TEST(OnLine, AFrameSkipThatWasChangedActsAtOnce) {
  AppWorld world;
  world.app.currentScreen = Screen::rawLog;
  world.app.frameSkip = 10;
  world.receive(kRmcBytes);
  world.app.frameSkip = 2;
  for (int i = 0; i < 2; ++i) world.receive(kRmcBytes);
  EXPECT_EQ(world.app.rawLog.size(), 1U);
}

// They are shown in the current unit and belong to one receiver.
TEST(OnLine, MaximaFollowTheUnitAndStartAnewWithATripAndASource) {
  AppWorld world;
  AppState& app = world.app;
  const auto shownMaximum = [&] { return std::lround(makeScene(app).maxSpeed * 100); };
  world.receive(kRmcBytes);
  EXPECT_EQ(shownMaximum(), 4148);
  app.gps.options.speedUnit = kKnots;
  EXPECT_EQ(shownMaximum(), 2240);
  EXPECT_NEAR(app.gps.maxSpeed, 41.48, 0.01) << "the parser's is kept as it was";
  resetTrip(app);
  EXPECT_EQ(shownMaximum(), 0);
  world.receive(kRmcBytes);
  EXPECT_EQ(shownMaximum(), 2240);
  app.gps.simulation.paceMs = 600000;
  connectReceiver(app, {.simulate = true});
  EXPECT_EQ(shownMaximum(), 0);
  EXPECT_TRUE(app.fix.stopReaders(10000));
}

TEST(OnLine, EachValueIsAsOldAsTheSentenceThatGaveIt) {
  const std::string noFix = "$GPRMC,123520,V,4807.038,N,01131.000,E,,,230394,,\r\n";
  const std::string noTime = "$GPGGA,000000,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,\r\n";
  const struct {
    std::string line;
    const char* fresh;  // position, motion, altitude, time, used, view, dilution
  } rows[] = {
      {kRmcBytes, "1101000"},
      {kGgaBytes, "1011100"},
      {noFix, "0001000"},
      {noTime, "1010100"},
      {"$GPRMCX,101010.000,A,23.7,37.9,100,90,36\r\n", "1110000"},
      {"$GPGSA,A,3,01,,,,,,,,,,,,2.5,1.3,2.1\r\n", "0000001"},
      {"$GPGSV,1,1,01,05,40,083,46*75\r\n", "0000010"},
      {"$GPGLL,4807.038,N,01131.000,E,123519,A\r\n", "0000000"},
  };
  for (const auto& row : rows) {
    AppWorld world;
    world.receive(kRmcBytes + kGgaBytes + rows[5].line + rows[6].line);
    world.clock.now += 7000;
    world.receive(row.line);
    const ValueAges ages = makeScene(world.app).ages;
    std::string fresh;
    for (const uint32_t age : {ages.position, ages.motion, ages.altitude, ages.time, ages.used,
                               ages.view, ages.dilution}) {
      fresh += age == 0 ? '1' : '0';
    }
    EXPECT_EQ(fresh, row.fresh) << row.line;
  }
  AppWorld world;
  world.receive(noFix);
  EXPECT_EQ(freshnessOf(makeScene(world.app).ages.position), Freshness::stale)
      << "nothing vouches for it";
}

TEST(OnLine, WhatAnEarlierSourceStillSaysIsNotHeard) {
  AppWorld world;
  AppState& app = world.app;
  app.currentScreen = Screen::rawLog;
  app.recorder.track.state = kRecording;
  app.gps.readers.generation = 2;
  for (const auto& [speaking, heard] : {std::pair{1U, false}, {2U, true}}) {
    app.gps.readers.deliveringGeneration = speaking;
    world.receive(kRmcBytes + kGgaBytes + "noise\r\n");
    EXPECT_EQ(app.shown.dataSeen, heard);
    EXPECT_EQ(app.rawLog.size(), heard ? 3U : 0U);
    EXPECT_EQ(app.epochsOffered > 0, heard);
    EXPECT_EQ(world.window.repaints > 0, heard);
  }
}

TEST(OnLine, AFailingLogIsTold) {
  AppWorld world;
  world.app.gps.log.path = "/no/such/folder/gps.log";
  world.app.gps.options.logNmea = true;
  world.receive(kRmcBytes);
  EXPECT_EQ(world.window.errors,
            std::vector<std::string>{"Cannot write the log: /no/such/folder/gps.log"});
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
