#include "app/commands.h"

#include <gtest/gtest.h>

#include "app/command_handlers.h"
#include "app/connection.h"
#include "base/texts.h"
#include "tests/fakes/program_world.h"

namespace vgps {
namespace {

constexpr std::string_view kNotAvailable = "This is not available yet.";

// All numbers that a menu, a dialog or another program may send.
TEST(Commands, EveryNumberOfTheFamiliesHasARow) {
  const std::pair<uint32_t, uint32_t> families[] = {
      {101, 104},   {195, 199},   {201, 232},   {299, 299},   {321, 323},   {331, 361},
      {371, 372},   {378, 389},   {399, 399},   {401, 429},   {501, 507},   {801, 806},
      {998, 999},   {1101, 1106}, {1202, 1224}, {1230, 1286}, {1301, 1333}, {1351, 1363},
      {1399, 1400}, {1501, 1523}, {1891, 1891}, {1901, 1999}, {4991, 4999}, {11001, 11016}};
  for (const auto& [first, last] : families) {
    for (uint32_t number = first; number <= last; ++number) {
      const CommandRow* const row = findCommand(number);
      ASSERT_NE(row, nullptr) << number;
      EXPECT_TRUE(row->number <= number && number <= row->last) << number;
    }
  }
  for (const uint32_t number : {0U, 100U, 200U, 233U, 320U, 373U, 390U, 1201U, 1225U, 1287U, 2000U,
                                5000U, 11000U, 11017U, 4294967295U}) {
    EXPECT_EQ(findCommand(number), nullptr) << number;
  }
}

// Where two families claim a number.
TEST(Commands, TheMoreSpecificFamilyWins) {
  const std::pair<uint32_t, CommandHandler> rows[] = {
      {221, notBuilt},   {222, notBuilt},      {223, notBuilt},         {220, ignoreView},
      {224, ignoreView}, {350, show3dMap},     {341, chooseProjection}, {360, chooseProjection},
      {1205, notBuilt},  {1204, endRecording}, {1285, wanderAround},    {1286, trackChanged}};
  for (const auto& [number, handler] : rows) {
    EXPECT_EQ(findCommand(number)->handler, handler) << number;
  }
  for (const auto& [first, last, what] :
       {std::tuple{1240U, 1244U, "waypoint|category"}, {1246U, 1249U, "waypoints"}}) {
    for (uint32_t number = first; number <= last; ++number) {
      const std::string_view said = findCommand(number)->what;
      EXPECT_TRUE(said.find("waypoint") != said.npos || said.find("category") != said.npos)
          << number << what;
    }
  }
  for (const uint32_t number : {1245U, 1250U, 1261U, 1277U}) {
    EXPECT_STREQ(findCommand(number)->what, "go to, route planning") << number;
  }
  for (const uint32_t number : {1230U, 1239U, 1251U, 1260U, 1278U, 1284U}) {
    EXPECT_STREQ(findCommand(number)->what, "track and zone views") << number;
  }
}

// With nothing connected, recorded or chosen no command may do more than say so.
TEST(Commands, EveryOneAnswers) {
  for (const CommandRow& row : commandRows()) {
    for (const uint32_t number : {row.number, row.last}) {
      ProgramWorld world;
      EXPECT_TRUE(runCommand(world.app, number)) << number;
      if (row.checked != nullptr) row.checked(world.app, number);
      if (row.enabled != nullptr) row.enabled(world.app, number);
      if (row.handler == notBuilt) {
        EXPECT_EQ(currentNotice(world.app), kNotAvailable) << number;
        EXPECT_GE(world.window.repaints, 1) << number;
      }
    }
  }
  AppWorld world;
  EXPECT_FALSE(runCommand(world.app, 100));
}

TEST(Commands, ViewsSetTheScreen) {
  const std::pair<uint32_t, int32_t> rows[] = {
      {201, 1},   {204, 4},   {205, 5},   {206, 6},   {207, 7},   {209, 9},   {210, 10},
      {211, 11},  {212, 12},  {213, 13},  {214, 14},  {215, 15},  {216, 16},  {217, 17},
      {218, 18},  {219, 19},  {229, 29},  {231, 31},  {232, 32},  {299, 99},  {350, 150},
      {221, 150}, {222, 150}, {223, 150},  // calculators
      {202, 150}, {203, 150}, {208, 150}, {220, 150}, {224, 150}, {228, 150}, {230, 150}};
  AppWorld world;
  for (const auto& [number, screen] : rows) {
    runCommand(world.app, number);
    EXPECT_EQ(world.app.currentScreen, screen) << number;
  }
  EXPECT_EQ(world.app.projection, Projection::cartesian3d);
  runCommand(world.app, 201);
  EXPECT_EQ(world.app.projection, Projection::cartesian3d) << "the map keeps it";
  runCommand(world.app, 342);
  EXPECT_EQ(world.app.projection, Projection::polar2d);
  EXPECT_EQ(world.app.currentScreen, 1);
  runCommand(world.app, 299);
  runCommand(world.app, 999);
  EXPECT_EQ(world.app.currentScreen, 1) << "back";
}

TEST(Commands, ColoursSizesDialogs) {
  AppWorld world;
  const std::pair<uint32_t, ColourScheme> schemes[] = {
      {321, ColourScheme::day}, {322, ColourScheme::night}, {323, ColourScheme::custom}};
  for (const auto& [number, scheme] : schemes) {
    runCommand(world.app, number);
    EXPECT_EQ(world.app.scheme, scheme) << number;
  }
  const std::pair<int32_t, int32_t> sizes[] = {{240, 320}, {320, 240}, {240, 240},
                                               {320, 320}, {640, 480}, {320, 480}};
  for (uint32_t i = 0; i < 6; ++i) {
    runCommand(world.app, 801 + i);
    EXPECT_EQ(world.window.size, sizes[i]) << i;
  }
  for (const uint32_t number : {101U, 1901U, 1916U, 1998U}) {
    runCommand(world.app, number);
    EXPECT_EQ(world.window.dialogs.back(), number);
    EXPECT_EQ(currentNotice(world.app), "");
  }
  world.window.dialogsExist = false;
  runCommand(world.app, 1901);
  EXPECT_EQ(currentNotice(world.app), kNotAvailable);
  runCommand(world.app, 199);
  EXPECT_EQ(world.window.done, std::vector<std::string>{"close"});
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
  EXPECT_TRUE(runHotKey(world.app, 322));
  EXPECT_GE(world.window.repaints, 1);
  EXPECT_TRUE(flag);
  EXPECT_FALSE(world.app.commandFromHotKey);
}

TEST(Commands, ConnectReadsTheSettingsAtThatMoment) {
  ProgramWorld world;
  world.load("", "port=\"COM7\" speed=\"4800\"");
  FakeLine& line = world.ports.add(devicePath("COM7"));
  runCommand(world.app, 102);
  EXPECT_TRUE(world.app.fix.running);
  EXPECT_EQ(line.baudRate, 4800U);
  EXPECT_EQ(world.app.sourceName, "COM7, 4800 baud");
  EXPECT_FALSE(isDisconnected(world.app, 102));
  runCommand(world.app, 103);
  EXPECT_FALSE(world.app.fix.running);
  // A dialog has written another one since the start.
  world.app.config.set(*findSetting("cfg\\gps", "port"), "COM9");
  runCommand(world.app, 102);
  EXPECT_EQ(world.window.errors, std::vector<std::string>{"GPS Opening failed"});
}

TEST(Commands, TheLogIsSwitchedAndRemembered) {
  ProgramWorld world;
  world.load("");
  for (const uint32_t number : {371U, 372U}) {
    runCommand(world.app, number);
    EXPECT_EQ(world.app.gps.options.logNmea, number == 371) << number;
    EXPECT_EQ(world.app.config.number(*findSetting("cfg\\vgps", "lgn")), number == 371 ? 1 : 0);
    EXPECT_TRUE(isLogState(world.app, number));
  }
}

TEST(Commands, SimulationModes) {
  AppWorld world;
  const std::pair<uint32_t, SimMode> rows[] = {
      {378, SimMode::tapping}, {379, SimMode::timer}, {380, SimMode::point}};
  for (const auto& [number, mode] : rows) {
    runCommand(world.app, number);
    EXPECT_EQ(world.app.gps.simulation.mode(), mode) << number;
  }
}

TEST(Commands, SimulationDataComeFromAFile) {
  AppWorld world;
  world.window.chosenFile = "trip.gpx";
  runCommand(world.app, 382);
  EXPECT_EQ(currentNotice(world.app), kNotAvailable);
  std::string asked;
  world.app.extensions.simulationFrom = [&](const std::string& path,
                                            std::vector<std::string>& lines) {
    asked = path;
    lines = {"$GPRMC,1"};
    return true;
  };
  runCommand(world.app, 382);
  EXPECT_EQ(asked, "trip.gpx");
  EXPECT_EQ(currentNotice(world.app), "The simulation plays trip.gpx");
}

// The year and the milliseconds stay the computer's.
TEST(Commands, GpsTimeToSystem) {
  ProgramWorld world;
  world.load("", "port=\"COM3\"");
  world.ports.add(devicePath("COM3"));
  runCommand(world.app, 102);
  world.clock.utcNow = {.year = 2026,
                        .month = 11,
                        .dayOfWeek = 6,
                        .day = 21,
                        .hour = 13,
                        .minute = 1,
                        .second = 2,
                        .millisecond = 345};
  runCommand(world.app, 104);
  EXPECT_TRUE(world.systemTimes.empty()) << "without a fix";
  world.receive("$GPRMC,093015.5,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A\r\n");
  runCommand(world.app, 104);
  ASSERT_EQ(world.systemTimes.size(), 1U);
  const DateTime& set = world.systemTimes[0];
  EXPECT_EQ(set.year, 2026);
  EXPECT_EQ(set.month, 3);
  EXPECT_EQ(set.day, 23);
  EXPECT_EQ(set.hour, 9);
  EXPECT_EQ(set.minute, 30);
  EXPECT_EQ(set.second, 15);
  EXPECT_EQ(set.millisecond, 345);
  EXPECT_EQ(currentNotice(world.app), "The computer's clock was set from the receiver.");
  world.clockCanBeSet = false;
  runCommand(world.app, 104);
  EXPECT_NE(currentNotice(world.app).find("administrator"), std::string_view::npos);
}

TEST(Commands, TheRawLogKeepsItsNewestRowsAndCanBeCleared) {
  AppWorld world;
  world.receive("$GPGSA,A\r\n");
  EXPECT_TRUE(world.app.rawLog.empty()) << "another screen shows";
  runCommand(world.app, 299);
  world.receive("$GPGSA,B\r\n");
  world.receive("noise\r\n");
  EXPECT_EQ(world.app.rawLog, (std::vector<std::string>{"$GPGSA,B", "noise\r\n"}));
  for (int i = 0; i < 1000; ++i) world.receive("$GPGSA,C\r\n");
  EXPECT_LE(world.app.rawLog.size(), 500U);
  runCommand(world.app, 399);
  EXPECT_TRUE(world.app.rawLog.empty());
}

}  // namespace
}  // namespace vgps
