#include "app/desktop/startup.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "app/desktop/commands.h"
#include "app/desktop/scene_of.h"
#include "app/session/connection.h"
#include "base/texts.h"
#include "display/readout.h"
#include "tests/fakes/program_world.h"
#include "tests/fakes/recording_canvas.h"

namespace vgps {
namespace {

TEST(Startup, OnlyTheLowerHalfOfTheAnswerCounts) {
  EXPECT_TRUE(isOwnAnswer(0xFEFEFEFE));
  EXPECT_TRUE(isOwnAnswer(0xFFFFFFFFFEFEFEFE)) << "sign extended on its way";
  EXPECT_FALSE(isOwnAnswer(0));
  EXPECT_FALSE(isOwnAnswer(1));
  EXPECT_FALSE(isOwnAnswer(0xFEFEFEFE00000000));
}

TEST(Startup, TheColorsAndTheUtcOffsetFollowTheLocalHour) {
  const std::pair<uint16_t, ColorScheme> rows[] = {
      {0, ColorScheme::night}, {5, ColorScheme::night}, {6, ColorScheme::day},
      {12, ColorScheme::day},  {19, ColorScheme::day},  {20, ColorScheme::night},
      {23, ColorScheme::night}};
  for (const auto& [hour, scheme] : rows) {
    AppWorld world;
    world.clock.localNow.hour = hour;
    world.clock.localNow.minute = 59;
    world.clock.utcNow.hour = 2;
    startClocks(world.app);
    EXPECT_EQ(world.app.scheme, scheme) << hour;
    EXPECT_EQ(world.app.gps.options.utcOffsetMinutes, (2 - hour) * 60);
  }
}

TEST(Startup, SettingsReachEveryPart) {
  ProgramWorld world;
  world.folder.write(
      "vgps.xml",
      "<root><cfg><gps tlk=\"2\" bsm=\"3\" sapiid=\"{1}\"/>"
      "<vgps smv=\"1\" dmvl=\"2\" gfs=\"4\" lgn=\"1\" afg=\"1\" ntm=\"25\" rci=\"0\" rsc=\"1\" "
      "rtc=\"1\" rbc=\"1\" res=\"6\" bes=\"7\" mnr=\"1\" drp=\"0\"/>"
      "<track speed=\"8\" angle=\"9\" alt=\"10\"/></cfg></root>");
  startSettings(world.app);
  const AppState& app = world.app;
  EXPECT_EQ(app.gps.options.talkers, 2);
  EXPECT_EQ(app.gps.options.epochSentenceSetting, 3);
  EXPECT_EQ(app.gps.options.speedUnit, 1);
  EXPECT_TRUE(app.gps.options.logNmea);
  EXPECT_TRUE(app.gps.options.altitudeFromGeoidField);
  EXPECT_EQ(app.gps.sensorIdentifier, "{1}");
  EXPECT_EQ(app.frameSkip, 4);
  const RecordingOptions& recording = app.recorder.options;
  EXPECT_EQ(recording.speed, 8);
  EXPECT_EQ(recording.angle, 9);
  EXPECT_EQ(recording.altitude, 10);
  EXPECT_EQ(recording.normalizeMeters, 25);
  EXPECT_EQ(recording.everyNth, 6);
  EXPECT_EQ(recording.bes, 7);
  EXPECT_EQ(recording.speedUnit, 1);
  EXPECT_EQ(recording.distanceUnit, 2);
  EXPECT_TRUE(recording.recordSpeed && recording.recordTime && recording.recordCourse);
  EXPECT_TRUE(recording.manual);
  EXPECT_FALSE(recording.recordCell || recording.drawPath);
}

// Colors are stored with blue in front: success is blue, failure red, and the camera's 255 is red.
TEST(Startup, TheThirdSchemeIsDrawnInTheChosenColors) {
  EXPECT_EQ(rgb(0, 0, 255), 0xFF0000U);
  EXPECT_EQ(Settings().cameraColor, rgb(255, 0, 0));
  ProgramWorld world;
  world.folder.write("vgps.xml", "<root><cfg><cc c2=\"1122867\" c5=\"4660\"/></cfg></root>");
  startSettings(world.app);
  runCommand(world.app, Command::customColors);
  world.app.fix.running = true;
  world.receive("$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A\r\n");
  const auto drawn = [&] {
    RecordingCanvas canvas(800, 480);
    drawReadout(canvas, makeScene(world.app));
    return canvas;
  };
  const auto filled = [&](const RecordingCanvas& canvas, Color color) {
    return std::any_of(canvas.fills.begin(), canvas.fills.end(),
                       [&](const auto& fill) { return fill.color == color; });
  };
  EXPECT_TRUE(filled(drawn(), rgb(0, 0, 255)));
  EXPECT_TRUE(filled(drawn(), 1122867));
  world.clock.now += 6000;
  EXPECT_TRUE(filled(drawn(), rgb(255, 0, 0))) << "no data";
  EXPECT_EQ(drawn().find("Y: 48 7' 2.280''N")->color, 4660U) << "an old value is gray";
  world.app.fix.running = false;
}

TEST(Startup, ADamagedDocumentIsToldAndTheDefaultsHold) {
  ProgramWorld world;
  world.folder.write("vgps.xml", "\x01\x02 no document at all");
  startSettings(world.app);
  EXPECT_EQ(world.window.errors,
            std::vector<std::string>{"VGPS.XML is corrupted and can't be loaded!"});
  EXPECT_EQ(world.app.settings.baudRate, 9600);
  EXPECT_TRUE(world.app.settings.reconnect);
  remindOfUpdates(world.app);
  EXPECT_EQ(world.window.questions.size(), 1U) << "the default count";
  EXPECT_TRUE(endProgram(world.app));
  EXPECT_EQ(world.folder.read("vgps.xml"), "\x01\x02 no document at all") << "it may be mended";
}

// Of the next tries to read vgps.xml so many fail, as while a virus scanner holds the file.
int triesThatFail;
XmlFiles heldFiles() {
  XmlFiles files = systemFiles();
  files.open = [](const std::string& file, XmlFiles::Access access) -> void* {
    return triesThatFail > 0 && triesThatFail-- > 0 ? nullptr : systemFiles().open(file, access);
  };
  return files;
}

TEST(Startup, SettingsThatAnotherProgramHoldsAreWaitedFor) {
  const std::string document = "<root><cfg><gps speed=\"4800\"/></cfg></root>";
  const XmlFiles files = heldFiles();
  for (const int tries : {3, 1000}) {
    ProgramWorld world;
    world.app.config = ConfigStore({.files = &files});
    world.folder.write("vgps.xml", document);
    triesThatFail = tries;
    startSettings(world.app, std::chrono::milliseconds(tries == 3 ? 1000 : 0));
    EXPECT_EQ(world.app.settings.baudRate, tries == 3 ? 4800 : 9600);
    EXPECT_EQ(world.window.errors.size(), tries == 3 ? 0U : 1U);
    if (tries == 3) continue;
    EXPECT_EQ(world.window.errors[0].find("corrupted"), std::string::npos) << "nobody knows";
    remindOfUpdates(world.app);
    EXPECT_TRUE(world.window.questions.empty());
    EXPECT_TRUE(endProgram(world.app));
    triesThatFail = 0;
    EXPECT_EQ(world.folder.read("vgps.xml"), document);
  }
}

// A disk without room, or a file that nobody may write.
TEST(Startup, SettingsThatCannotBeWrittenAreToldOnce) {
  XmlFiles files = systemFiles();
  files.roomOnDisk = [](const std::string&) { return uint64_t{0}; };
  ProgramWorld world;
  world.app.config = ConfigStore({.files = &files});
  world.load("upd=\"7\"");
  const std::string before = world.folder.read("vgps.xml");
  const std::string message = "Cannot write the settings: " + world.folder / "vgps.xml";
  remindOfUpdates(world.app);
  EXPECT_EQ(currentNotice(world.app), message);
  EXPECT_FALSE(endProgram(world.app));
  EXPECT_TRUE(world.window.errors.empty()) << "only the start was to be counted";
  world.app.config.set(*findSetting("cfg\\vgps", "lgn"), 1.0);
  EXPECT_FALSE(endProgram(world.app));
  EXPECT_EQ(world.window.errors, std::vector<std::string>{message})
      << "a notice of the start may have passed unseen";
  world.window.errors.clear();
  startSettings(world.app);
  remindOfUpdates(world.app);
  runCommand(world.app, Command::presetWalking);
  EXPECT_EQ(currentNotice(world.app).find("Recording"), std::string::npos);
  runCommand(world.app, Command::presetDriving);
  EXPECT_EQ(currentNotice(world.app), "Recording thresholds set for driving")
      << "they hold in this run";
  EXPECT_FALSE(endProgram(world.app));
  EXPECT_TRUE(world.window.errors.empty());
  EXPECT_EQ(world.folder.read("vgps.xml"), before);
}

TEST(Startup, UpdatesAreRemindedOfEveryTwentyStarts) {
  ProgramWorld world;
  world.load("");
  std::vector<int> asked;
  for (int start = 1; start <= 43; ++start) {
    world.window.questions.clear();
    startSettings(world.app);  // as the file was left
    remindOfUpdates(world.app);
    if (!world.window.questions.empty()) asked.push_back(start);
  }
  EXPECT_EQ(asked, (std::vector<int>{1, 22, 43})) << "the very first one asks";
  EXPECT_EQ(world.app.settings.updateCountdown, 20);
  EXPECT_EQ(world.window.questions, std::vector<std::string>{"Check for VGPS updates now?"});
  EXPECT_TRUE(world.window.told.empty()) << "No was the answer";
  world.window.answer = true;
  for (const char* const source : {"no source is set", "https://updates.example/gps"}) {
    world.app.settings.updateCountdown = 0;
    remindOfUpdates(world.app);
    ASSERT_FALSE(world.window.told.empty()) << "command 197";
    EXPECT_NE(world.window.told.back().find(source), std::string::npos);
    world.app.settings.updateSource = "https://updates.example/gps";
  }
}

TEST(Startup, ConnectsByItselfWhenTheSettingIsOn) {
  for (const bool on : {false, true}) {
    ProgramWorld world;
    world.app.gps.simulation.paceMs = 600000;
    world.load(on ? "agc=\"1\"" : "", "simu=\"1\"");
    autoConnect(world.app);
    EXPECT_EQ(world.app.fix.running, on);
  }
}

TEST(Startup, OptionsOfTheCommandLine) {
  struct {
    std::vector<std::string> arguments;
    bool log, running;
    SimMode mode;
    std::string asked;  // for simulation data
    std::vector<std::string> installed;
  } const rows[] = {
      {{}, false, false, SimMode::point, "-", {}},
      {{"-log"}, true, false, SimMode::point, "-", {}},
      {{"-as1"}, false, false, SimMode::point, "-", {"VGPS-AS-WM2003.INI"}},
      {{"-as2"}, false, false, SimMode::point, "-", {"VGPS-AS-WM5.INI"}},
      {{"-simtrack", "a b.xml"}, false, false, SimMode::point, "a b.xml", {}},
      {{"-simtrack", "-log"}, true, false, SimMode::point, "", {}},
      {{"-simruntrack", "t.gpx"}, false, true, SimMode::timer, "t.gpx", {}},
      {{"-simruntrack"}, false, true, SimMode::timer, "", {}},
  };
  for (const auto& row : rows) {
    ProgramWorld world;
    world.load("");
    world.app.gps.simulation.setMode(SimMode::point);
    world.app.gps.simulation.paceMs = 600000;
    std::string asked = "-";
    world.app.extensions.simulationFrom = [&](const std::string& path,
                                              std::vector<std::string>& lines) {
      asked = path;
      lines = {"$GPRMC"};
      return true;
    };
    const std::string what = row.arguments.empty() ? "" : row.arguments[0];
    applyStartOptions(world.app, parseStartOptions(row.arguments));
    EXPECT_EQ(world.app.gps.options.logNmea, row.log) << what;
    EXPECT_FALSE(world.app.settings.logStream) << what << ": for this run only";
    EXPECT_EQ(world.app.fix.running, row.running) << what;
    EXPECT_EQ(world.app.gps.simulation.mode(), row.mode) << what;
    EXPECT_EQ(asked, row.asked) << what;
    EXPECT_EQ(currentNotice(world.app), "") << what;
    ASSERT_EQ(world.installed.size(), row.installed.size()) << what;
    if (row.installed.empty()) continue;
    EXPECT_EQ(world.installed[0], '"' + world.folder / row.installed[0] + '"');
    EXPECT_FALSE(world.app.settings.simulate) << "not saved";
  }
}

// What is done by then is seen at the question; connecting comes behind it.
TEST(Startup, TheWorkOfTheStartHasAnOrder) {
  for (const bool stays : {true, false}) {
    ProgramWorld world;
    Desktop& app = world.app;
    app.gps.simulation.paceMs = 600000;
    world.load("agc=\"1\" its=\"9\" ips=\"8\" sts=\"0\"", "simu=\"1\"");
    std::string before;
    world.window.onAsk = [&] {
      before = std::to_string(world.window.timers.size()) + " timers";
      if (!world.installed.empty()) before += ", installer";
      if (app.gps.options.logNmea) before += ", log";
      if (world.folder.read("vgps.xml").find("upd=\"20\"") != std::string::npos)
        before += ", count";
      if (app.fix.running) before += ", connected";
      return false;
    };
    const auto options = parseStartOptions(std::vector<std::string>{"-as1", "-log"});
    const bool works = startWork(app, options, [&] { return stays || before.empty(); });
    EXPECT_EQ(works, stays);
    EXPECT_EQ(before, "4 timers, installer, log, count");
    EXPECT_EQ(app.fix.running, stays) << "closed at the question";
  }
}

TEST(Startup, SimulationDataThatAreMissingAreNamed) {
  const std::pair<std::vector<std::string>, std::string> rows[] = {
      {{"-simtrack"}, "my tracks.xml"},
      {{"-simruntrack"}, "my tracks.xml"},
      {{"-simtrack", "/no/such/ride.xml"}, ""},
  };
  for (const auto& [arguments, library] : rows) {
    ProgramWorld world;
    world.app.settings.trackStorePath = "my tracks.xml";
    applyStartOptions(world.app, parseStartOptions(arguments));
    const std::string path = library.empty() ? arguments[1] : world.folder / library;
    EXPECT_EQ(currentNotice(world.app), "No simulation data found in " + path);
  }
}

TEST(Startup, WhatCannotBeDoneIsSaid) {
  for (const char* option : {"-as1", "-simtrack", "--nonsense"}) {
    ProgramWorld world;
    world.installerExists = false;
    applyStartOptions(world.app, parseStartOptions(std::vector<std::string>{option}));
    EXPECT_NE(currentNotice(world.app), "") << option;
    EXPECT_FALSE(world.app.fix.running) << option;
  }
}

TEST(WindowPlaces, AreMovedToAScreenThatIsThere) {
  constexpr WindowPlace kScreens[] = {{0, 0, 1920, 1040}, {-1280, 0, 1280, 1024}};
  const struct {
    const char* what;
    WindowPlace stored, found;
  } cases[] = {
      {"on the first", {100, 50, 800, 520}, {100, 50, 800, 520}},
      {"on the second", {-1200, 50, 800, 520}, {-1200, 50, 800, 520}},
      {"half outside is the user's affair", {1700, 50, 800, 520}, {1700, 50, 800, 520}},
      {"on one that is gone", {2500, 50, 800, 520}, {560, 260, 800, 520}},
      {"caption above the screen", {100, -300, 800, 520}, {560, 260, 800, 520}},
      {"larger than the screen", {0, 0, 3840, 2000}, {0, 0, 1920, 1040}},
      {"maximized", {2500, 0, 800, 520, true}, {560, 260, 800, 520, true}},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(reachablePlace(row.stored, kScreens), row.found) << row.what;
  }
  EXPECT_EQ(reachablePlace(cases[3].stored, {}), cases[3].stored) << "no screen is known";
}

TEST(WindowPlaces, ScreenAndColorsComeBackAtTheNextStart) {
  const auto startAt = [](ProgramWorld& world, uint16_t hour) {
    world.clock.localNow.hour = hour;
    startClocks(world.app);
    startSettings(world.app);
    restoreView(world.app);
  };
  const struct {
    const char* what;
    uint16_t first;  // hour of the start at which night colors are chosen, or the day's left
    bool chooseNight;
    uint16_t next;
    ColorScheme found;
  } cases[] = {
      {"chosen by day", 12, true, 12, ColorScheme::night},
      {"brought by the hour alone", 22, false, 12, ColorScheme::day},
      {"night hours are dark whatever was chosen", 12, false, 22, ColorScheme::night},
  };
  for (const auto& row : cases) {
    ProgramWorld world;
    startAt(world, row.first);
    world.window.placeNow = {10, 20, 700, 400};
    if (row.chooseNight) world.app.scheme = ColorScheme::night;
    world.app.currentScreen = Screen::statistics;
    rememberView(world.app);
    EXPECT_TRUE(endProgram(world.app));
    ProgramWorld after;
    after.app.paths = world.app.paths;
    startAt(after, row.next);
    EXPECT_EQ(after.app.scheme, row.found) << row.what;
    EXPECT_EQ(after.app.currentScreen, Screen::statistics);
    EXPECT_EQ(storedPlace(after.app), (WindowPlace{10, 20, 700, 400}));
  }
}

}  // namespace
}  // namespace vgps
