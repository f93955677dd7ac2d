#include "app/session/timers.h"

#include <gtest/gtest.h>

#include "app/desktop/commands.h"
#include "app/desktop/dialog_context.h"
#include "app/session/connection.h"
#include "tests/fakes/program_world.h"

namespace vgps {
namespace {

TEST(Timers, AreArmedAtTheStartInTheirOrder) {
  struct {
    const char* settings;
    std::vector<uint32_t> armed;
    std::map<uint32_t, uint32_t> periods;
  } const rows[] = {
      {"", {1, 2}, {{1, 60000}, {2, 5000}}},
      {"its=\"30\" sts=\"2\" ips=\"7\"",
       {1, 2, 3, 6, 5},
       {{1, 60000}, {2, 5000}, {3, 30000}, {6, 2000}, {5, 7000}}},
      {"ips=\"1\" its=\"0\"", {1, 2, 5}, {{1, 60000}, {2, 5000}, {5, 1000}}},
      {"its=\"-4\"", {1, 2}, {{1, 60000}, {2, 5000}}},
  };
  for (const auto& row : rows) {
    ProgramWorld world;
    world.load(row.settings);
    armStartTimers(world.app);
    EXPECT_EQ(world.window.armed, row.armed) << row.settings;
    EXPECT_EQ(world.window.timers, row.periods) << row.settings;
    // An interval that changes later needs a new start.
    world.app.settings.trackingSeconds = 9;
    dialogContextOf(world.app).saved(*findDialog(Command::liveTracking));
    onTimer(world.app, kReportTimer);
    EXPECT_EQ(world.window.timers, row.periods) << row.settings;
  }
}

TEST(Timers, TheBackupIsWrittenWhenItsCountdownEnds) {
  struct {
    int32_t interval, state, minutes, backups;
  } const rows[] =
      {
          {0, kRecording, 10, 0},  // never
          {3, kIdle, 10, 0},      {3, kPlaying, 10, 0},
          {3, kRecording, 1, 1},  // a countdown of 0 fires at once
          {3, kRecording, 3, 1},  {3, kRecording, 4, 2},
          {3, kPaused, 7, 3},     {1, kRecording, 5, 5},
      };
  for (const auto& row : rows) {
    ProgramWorld world;
    world.app.settings.backupMinutes = row.interval;
    world.app.recorder.track.state = row.state;
    world.app.recorder.track.name = "Trip";
    int32_t written = 0;
    for (int32_t i = 0; i < row.minutes; ++i) {
      world.folder.write("vgpsbackup.gpx", "old");
      onTimer(world.app, kBackupTimer);
      const std::string backup = world.folder.read("vgpsbackup.gpx");
      if (backup == "old") continue;
      ++written;
      EXPECT_NE(backup.find("<trk"), backup.npos) << backup;
      EXPECT_NE(backup.find("Trip"), backup.npos) << backup;
    }
    EXPECT_EQ(written, row.backups) << row.interval << row.state;
  }
}

TEST(Timers, TheOldBackupStaysWhenThereIsNoNewOne) {
  ProgramWorld world;
  world.app.settings.backupMinutes = 1;
  world.app.recorder.track.state = kRecording;
  world.folder.write("vgpsbackup.gpx", "old");
  world.diskWorks = false;
  onTimer(world.app, kBackupTimer);
  EXPECT_EQ(world.folder.read("vgpsbackup.gpx"), "old");
  world.app.recorder.track.state = kIdle;
  EXPECT_NE(currentNotice(world.app).find("Cannot write the backup"), std::string_view::npos);
}

TEST(Timers, StatisticsCount) {
  struct {
    bool fine, connected;
    int32_t trackState;
    double kmh;
    uint64_t total, connectedSeconds, recording;
    float moving, stopped, stat;
  } const rows[] = {
      {false, false, kIdle, 50, 50, 0, 0, 0, 0, 0},
      {false, true, kRecording, 50, 50, 50, 50, 0, 0, 0},
      {false, true, kPaused, 50, 50, 50, 50, 0, 0, 0},
      {false, false, kPlaying, 50, 50, 0, 50, 0, 0, 0},  // playing counts as recording
      {true, true, kIdle, 3.1, 10, 10, 0, 10, 0, 10},
      {true, true, kIdle, 3.0, 10, 10, 0, 0, 10, 10},  // not above the threshold
  };
  for (const auto& row : rows) {
    AppWorld world;
    AppState& app = world.app;
    app.statistics.fine = row.fine;
    app.statistics.movingThreshold = 3;
    app.fix.running = row.connected;
    app.recorder.track.state = row.trackState;
    app.shown.fix.speedKmh = row.kmh;
    app.shown.fix.fixStatus = 1;
    app.shown.fixSeen = true;
    app.shown.lastFixTick = world.clock.tick();
    for (int i = 0; i < 10; ++i) onTimer(app, kStatisticsTimer);
    app.fix.running = false;
    const Statistics& now = app.statistics;
    EXPECT_EQ(now.totalSeconds, row.total);
    EXPECT_EQ(now.connectedSeconds, row.connectedSeconds) << row.trackState;
    EXPECT_EQ(now.recordingSeconds, row.recording) << row.trackState;
    EXPECT_EQ(now.movingSeconds, row.moving) << row.kmh;
    EXPECT_EQ(now.stoppedSeconds, row.stopped) << row.kmh;
    EXPECT_EQ(now.statSeconds, row.stat) << row.kmh;
    // On every screen, if there is a speed.
    EXPECT_EQ(now.tripMovingSeconds, row.kmh > 3 ? row.connectedSeconds : 0) << row.kmh;
    EXPECT_EQ(now.tripMovingSeconds + now.tripStoppedSeconds, row.connectedSeconds);
    EXPECT_EQ(app.shown.fix.ticksWithoutData, 10U);
  }
}

TEST(Timers, TheStatisticsScreenCountsEachSecondAndIsRefreshed) {
  AppWorld world;
  armStartTimers(world.app);
  runCommand(world.app, Command::viewStatistics);
  EXPECT_EQ(world.window.timers[kStatisticsTimer], 1000U);
  world.clock.now += 1000;
  world.window.repaints = 0;
  onTimer(world.app, kStatisticsTimer);
  EXPECT_EQ(world.window.repaints, 1);
  runCommand(world.app, Command::viewGps);
  EXPECT_EQ(world.window.timers[kStatisticsTimer], 5000U);
  world.clock.now += 5000;
  world.window.repaints = 0;
  onTimer(world.app, kStatisticsTimer);
  EXPECT_EQ(world.window.repaints, 0);
}

TEST(Timers, AForbiddenZoneIsHeard) {
  AppWorld world;
  onTimer(world.app, kStatisticsTimer);
  EXPECT_TRUE(world.sounds.played.empty());
  world.app.insideForbiddenZone = true;
  onTimer(world.app, kStatisticsTimer);
  EXPECT_EQ(world.sounds.played, std::vector<std::string>{"FORBIDDEN"});
}

TEST(Timers, ReportsAndPursueWantTheirSwitch) {
  AppWorld world;
  int reports = 0;
  int pursues = 0;
  world.app.extensions.reportPosition = [&] { ++reports; };
  world.app.extensions.updatePursue = [&] { ++pursues; };
  for (const uint32_t timer : {kReportTimer, kPursueTimer, kSmsTimer}) onTimer(world.app, timer);
  EXPECT_EQ(reports + pursues, 0);
  world.app.settings.trackingOn = world.app.settings.pursueOn = world.app.settings.smsTrackingOn =
      true;
  for (const uint32_t timer : {kReportTimer, kPursueTimer, kSmsTimer}) onTimer(world.app, timer);
  EXPECT_EQ(reports, 1);
  EXPECT_EQ(pursues, 1);
}

class TurnWarnings : public testing::Test {
 protected:
  TurnWarnings() {
    world.app.recorder.track.state = kPlaying;
    world.app.shown.fix.fixStatus = 1;
    world.app.shown.fix.speedKmh = 30;
    world.app.turnWarning.raised = true;
  }
  AppWorld world;
};

TEST_F(TurnWarnings, StopAfterTheThird) {
  for (int i = 0; i < 6; ++i) onTimer(world.app, kTurnTimer);
  EXPECT_EQ(world.sounds.played, (std::vector<std::string>{"TURN", "TURN", "TURN"}));
  EXPECT_TRUE(world.app.turnWarning.done);
  EXPECT_EQ(world.app.turnWarning.repeatCount, 0);
}

TEST_F(TurnWarnings, EveryOtherSituationBeginsAnew) {
  AppState& app = world.app;
  const std::function<void()> changes[] = {
      [&] { app.settings.warnTurns = false; },        [&] { app.shown.fix.speedKmh = 0; },
      [&] { app.shown.fix.fixStatus = 0; },           [&] { app.shown.fix.fixStatus = 2; },
      [&] { app.recorder.track.state = kRecording; }, [&] { app.turnWarning.raised = false; }};
  for (size_t i = 0; i < std::size(changes); ++i) {
    app.settings.warnTurns = true;
    app.shown.fix.speedKmh = 30;
    app.shown.fix.fixStatus = 1;
    app.recorder.track.state = kPlaying;
    app.turnWarning = {.raised = true};
    onTimer(app, kTurnTimer);
    onTimer(app, kTurnTimer);
    EXPECT_EQ(app.turnWarning.repeatCount, 2) << i;
    world.sounds.played.clear();
    changes[i]();
    onTimer(app, kTurnTimer);
    EXPECT_EQ(app.turnWarning.repeatCount, 0) << i;
    EXPECT_TRUE(world.sounds.played.empty()) << i;
  }
}

}  // namespace
}  // namespace vgps
