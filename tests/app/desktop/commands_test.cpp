#include "app/desktop/commands.h"

#include <gtest/gtest.h>

#include "app/desktop/command_handlers.h"
#include "app/desktop/raw_log_keys.h"
#include "app/desktop/scene_of.h"
#include "app/session/connection.h"
#include "base/texts.h"
#include "tests/fakes/program_world.h"
#include "xml/profile.h"

namespace vgps {
namespace {

constexpr std::string_view kNotAvailable = "Not available yet.";

// With nothing connected, recorded or chosen no command may do more than say so.
TEST(Commands, EveryOneAnswers) {
  for (const CommandRow& row : commandRows()) {
    for (const Command command : {row.command, row.last}) {
      const auto number = static_cast<uint32_t>(command);
      ProgramWorld world;
      EXPECT_TRUE(runCommand(world.app, command)) << number;
      if (row.checked != nullptr) row.checked(world.app, command);
      if (row.enabled != nullptr) row.enabled(world.app, command);
      if (row.handler == notImplemented) {
        EXPECT_EQ(currentNotice(world.app), kNotAvailable) << number;
        EXPECT_GE(world.window.repaints, 1) << number;
      }
    }
  }
  AppWorld world;
  EXPECT_FALSE(runCommand(world.app, Command{100}));
}

TEST(Commands, TheMapKeepsItsProjectionAndBackLeadsBack) {
  AppWorld world;
  for (const Command command : {Command::cartesian3d, Command::viewGps, Command::viewRawLog}) {
    runCommand(world.app, command);
    EXPECT_EQ(world.app.projection, Projection::cartesian3d);
  }
  runCommand(world.app, Command::goBack);
  EXPECT_EQ(world.app.currentScreen, Screen::gps);
  runCommand(world.app, Command::polar2d);
  EXPECT_EQ(world.app.projection, Projection::polar2d);
  EXPECT_EQ(world.app.currentScreen, Screen::gps) << "no other screen for it";
  world.window.dialogsExist = false;
  runCommand(world.app, Command::mapOptions);
  EXPECT_EQ(currentNotice(world.app), kNotAvailable);
}

TEST(Commands, ANoticeStandsForTenSeconds) {
  AppWorld world;
  showNotice(world.app, "hello");
  world.clock.now += 9999;
  EXPECT_EQ(currentNotice(world.app), "hello");
  world.clock.now += 1;
  EXPECT_EQ(currentNotice(world.app), "");
}

TEST(Commands, AHotKeyIsShownAtOnceAndIsKnownAsOne) {
  AppWorld world;
  repaintNow(world.app);
  world.window.repaints = 0;
  bool flag = false;
  world.window.onRepaint = [&] { flag = world.app.commandFromHotKey; };
  EXPECT_TRUE(runHotKey(world.app, Command::nightColors));
  EXPECT_GE(world.window.repaints, 1);
  EXPECT_TRUE(flag);
  EXPECT_FALSE(world.app.commandFromHotKey);
}

TEST(Commands, ConnectReadsTheSettingsAtThatMoment) {
  ProgramWorld world;
  world.load("", "port=\"COM7\" speed=\"4800\"");
  FakeLine& line = world.ports.add(devicePath("COM7"));
  runCommand(world.app, Command::connect);
  EXPECT_TRUE(world.app.fix.running);
  EXPECT_EQ(line.baudRate, 4800U);
  EXPECT_EQ(sourceName(world.app.link.source()), "COM7, 4800 baud");
  EXPECT_FALSE(isDisconnected(world.app, Command::connect));
  runCommand(world.app, Command::disconnect);
  EXPECT_FALSE(world.app.fix.running);
  // Another program has written another one since the start.
  XmlSetString("cfg\\gps", "port", "COM9", world.app.config.path().c_str());
  XmlSetString("cfg\\vgps", "smv", "1", world.app.config.path().c_str());
  runCommand(world.app, Command::connect);
  EXPECT_EQ(world.app.gps.options.speedUnit, 1);
  ASSERT_EQ(world.window.errors.size(), 1U);
  EXPECT_TRUE(world.window.errors[0].starts_with("GPS Opening failed\n\n"));
}

TEST(Commands, TheLogIsSwitchedAndRemembered) {
  ProgramWorld world;
  world.load("");
  for (const bool on : {true, false}) {
    const Command command = on ? Command::logOn : Command::logOff;
    runCommand(world.app, command);
    EXPECT_EQ(world.app.gps.options.logNmea, on);
    EXPECT_EQ(world.app.config.other("cfg\\vgps", "lgn"), on ? "1" : "0");
    EXPECT_TRUE(isLogState(world.app, command));
  }
}

TEST(Commands, SimulationDataComeFromATrackFile) {
  ProgramWorld world;
  world.load("");
  world.window.chosenFile = world.folder / "trip.xml";
  for (const bool whole : {false, true}) {
    const char* const points = whole ? R"(<p x="23.7" y="37.9" z="80" />)" : "";
    world.folder.write("trip.xml", std::string(R"(<t n="Trip">)") + points + "</t>");
    runCommand(world.app, Command::loadSimulation);
    EXPECT_EQ(currentNotice(world.app),
              whole ? "Simulation data loaded from Trip" : "No simulation data found in Trip");
    EXPECT_EQ(world.app.simulationData == SimulationData::loaded, whole);
  }
}

// The year and the milliseconds stay the computer's.
TEST(Commands, GpsTimeToSystem) {
  ProgramWorld world;
  world.load("", "port=\"COM3\"");
  world.ports.add(devicePath("COM3"));
  runCommand(world.app, Command::connect);
  world.clock.utcNow = {2026, 11, 6, 21, 13, 1, 2, 345};
  runCommand(world.app, Command::gpsTimeToSystem);
  EXPECT_TRUE(world.systemTimes.empty()) << "without a fix";
  world.receive("$GPRMC,093015.5,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A\r\n");
  runCommand(world.app, Command::gpsTimeToSystem);
  ASSERT_EQ(world.systemTimes.size(), 1U);
  DateTime expected{2026, 3, 0, 23, 9, 30, 15, 345};
  expected.dayOfWeek = world.systemTimes[0].dayOfWeek;
  EXPECT_EQ(world.systemTimes[0], expected);
  EXPECT_EQ(currentNotice(world.app), "The computer's clock was set from the receiver.");
  world.app.shown.fix.utcTime.day = 0;
  runCommand(world.app, Command::gpsTimeToSystem);
  EXPECT_EQ(world.systemTimes.size(), 1U) << "GGA alone gives no date";
  EXPECT_NE(currentNotice(world.app).find("not sent a date"), std::string_view::npos);
  world.app.shown.fix.utcTime.day = 23;
  world.clockCanBeSet = false;
  runCommand(world.app, Command::gpsTimeToSystem);
  EXPECT_NE(currentNotice(world.app).find("administrator"), std::string_view::npos);
}

// A view that is scrolled or paused stays on its rows; a filter hides, and loses nothing.
TEST(Commands, TheAltitudeAndItsMaximumHaveTheSameDecimals) {
  AppWorld world;
  world.receive("$GPGGA,120001,4801.000,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,\r\n");
  for (const bool decimals : {false, true}) {
    world.app.settings.altitudeDecimals = decimals;
    const Scene scene = makeScene(world.app);
    EXPECT_EQ(scene.fix.altitude, decimals ? 545.4 : 545);
    EXPECT_EQ(scene.maxAltitude, scene.fix.altitude);
  }
}

TEST(Commands, TheRawLogPausesScrollsFiltersAndIsCopied) {
  AppWorld world;
  Desktop& app = world.app;
  const auto lastRow = [&] { return makeScene(app).rawLog.rows.back().text; };
  world.clock.localNow.hour = 12;
  world.clock.localNow.millisecond = 40;
  world.receive("$GPGSA,A\r\n");
  EXPECT_TRUE(app.rawLog.empty()) << "another screen shows";
  EXPECT_FALSE(onRawLogTyped(app, U'g'));
  runCommand(app, Command::viewRawLog);
  world.receive("$GPGSA,B\r\n");
  world.receive("noise\r\n");
  EXPECT_EQ(app.rawLog.text(), "12:00:00.040  $GPGSA,B\r\n12:00:00.040  noise\r\n");
  runCommand(app, Command::pauseRawLog);
  world.receive("$GPGSA,C\r\n");
  EXPECT_EQ(lastRow(), "noise\r\n");
  EXPECT_EQ(app.rawLog.newer(), 1U);
  runCommand(app, Command::pauseRawLog);
  EXPECT_EQ(lastRow(), "$GPGSA,C");
  EXPECT_TRUE(onRawLogKey(app, 0x26));  // Up
  world.receive("$GPGSA,D\r\n");
  EXPECT_EQ(lastRow(), "noise\r\n");
  EXPECT_TRUE(onRawLogKey(app, 0x23));  // End
  EXPECT_EQ(lastRow(), "$GPGSA,D");
  for (const char c : std::string_view("GsA,b")) onRawLogTyped(app, static_cast<char32_t>(c));
  EXPECT_EQ(lastRow(), "$GPGSA,B");
  runCommand(app, Command::copyRawLog);
  EXPECT_EQ(world.window.copied, "12:00:00.040  $GPGSA,B\r\n");
  EXPECT_FALSE(onRawLogTyped(app, U' ')) << "steps the simulation";
  EXPECT_TRUE(onRawLogTyped(app, 27));
  EXPECT_EQ(app.rawLog.matching(), 4U);
  for (size_t i = 0; i < RawLog::kRows + 10; ++i) world.receive("$GPGSA,E\r\n");
  EXPECT_EQ(app.rawLog.size(), RawLog::kRows);
  EXPECT_EQ(app.rawLog.matching(), RawLog::kRows);
  app.rawLog.setRoom(20);
  EXPECT_TRUE(onRawLogKey(app, 0x24));  // Home
  EXPECT_EQ(app.rawLog.newer(), RawLog::kRows - 20) << "a whole page is in view";
  EXPECT_TRUE(onRawLogKey(app, 0x22));  // Page Down
  EXPECT_EQ(app.rawLog.newer(), RawLog::kRows - 39);
  runCommand(app, Command::clearRawLog);
  EXPECT_TRUE(app.rawLog.empty());
}

}  // namespace
}  // namespace vgps
