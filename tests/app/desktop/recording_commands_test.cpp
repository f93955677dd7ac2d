#include <gtest/gtest.h>

#include "app/desktop/commands.h"
#include "app/desktop/dialog_context.h"
#include "app/desktop/save_messages.h"
#include "app/desktop/scene_of.h"
#include "app/session/timers.h"
#include "library/discarded_recordings.h"
#include "res/dialog_ids.h"
#include "tests/fakes/fake_dialog_view.h"
#include "tests/fakes/program_world.h"
#include "track/track_file.h"

// Recording as a person does it: commands, the journal behind them, what happens to the track.
namespace vgps {
namespace {

constexpr Command kStart = Command::startRecording;
constexpr Command kPause = Command::pauseOrResume;
constexpr Command kEnd = Command::endRecording;
constexpr Command kMark = Command::markPoint;

class RecordingCommands : public testing::Test {
 protected:
  RecordingCommands() { world.load("drp=\"1\""); }
  void run(Command command) { EXPECT_TRUE(runCommand(app, command)); }
  std::string_view notice() const { return currentNotice(app); }
  bool hasJournal() const { return world.folder.has("vgpstrack.journal"); }

  ProgramWorld world;
  Desktop& app = world.app;
};

TEST_F(RecordingCommands, ATripFromStartToEnd) {
  run(kStart);
  EXPECT_EQ(app.recorder.track.state, kRecording);
  EXPECT_EQ(world.window.timers[kTurnTimer], 7000U);
  EXPECT_TRUE(hasJournal());
  world.receiveFix();
  world.receiveFix();
  EXPECT_EQ(app.recorder.track.points.size(), 1U) << "the course has not changed";
  run(kMark);
  EXPECT_EQ(notice(), "Mark 1 will be added to the next point.");
  world.receiveFix();
  EXPECT_EQ(app.recorder.track.points.size(), 2U);
  EXPECT_EQ(app.recorder.track.points.back().m, 1U);
  EXPECT_EQ(app.recorder.drawnPath.size(), 2U);
  const Scene scene = makeScene(app);
  EXPECT_EQ(scene.trackState, kRecording);
  EXPECT_EQ(scene.trackPoints, 2U);
  EXPECT_EQ(scene.trackLength, "3.71 Km");

  run(kPause);
  EXPECT_EQ(app.recorder.track.state, kPaused);
  world.receiveFix();
  EXPECT_EQ(app.recorder.track.points.size(), 2U);
  run(kPause);
  EXPECT_EQ(app.recorder.track.state, kRecording);
  EXPECT_EQ(world.sounds.played, (std::vector<std::string>{"SPD", "TURN"}));

  world.window.answer = true;
  run(kEnd);
  EXPECT_EQ(world.window.questions, std::vector<std::string>{"Save the track?"});
  EXPECT_EQ(world.savedPoints(), std::vector<uint64_t>{2});
  EXPECT_EQ(app.recorder.track.state, kIdle);
  EXPECT_TRUE(app.recorder.track.points.empty());
  EXPECT_FALSE(world.window.timers.contains(kTurnTimer));
  EXPECT_FALSE(hasJournal()) << "the points are safe";
}

// Only once, and the defaults of the settings stay what they are.
TEST_F(RecordingCommands, TheFirstOneEverAsksWhatIsRecorded) {
  world.load("");
  bool confirms = false;
  world.window.onDialog = [&](Command) {
    EXPECT_TRUE(app.settings.recordTime && app.settings.recordSpeed) << "ticked";
    if (!confirms) return;
    DialogContext context = dialogContextOf(app);
    FakeDialogView view;
    const Dialog& dialog = *findDialog(Command::firstRecording);
    fillDialog(dialog, view, context);
    pressControl(dialog, view, CONTROL_PRESET_WALKING);
    confirmDialog(dialog, view, context);
  };
  run(kStart);
  EXPECT_EQ(app.recorder.track.state, kIdle) << "given up";
  EXPECT_FALSE(app.settings.recordTime);
  confirms = true;
  run(kStart);
  EXPECT_EQ(app.recorder.track.state, kRecording);
  EXPECT_TRUE(app.recorder.options.recordTime && app.recorder.options.recordSpeed);
  EXPECT_EQ(app.recorder.options.speed, kRecordingPresets[0].speed);
  run(kEnd);
  startSettings(app);
  run(kStart);
  EXPECT_EQ(app.recorder.track.state, kRecording);
  EXPECT_EQ(world.window.dialogs.size(), 2U) << "not asked again";
}

TEST_F(RecordingCommands, NoDiscardsTheTrack) {
  run(kStart);
  world.receiveFix();
  run(kEnd);
  EXPECT_FALSE(world.folder.has("tracks.xml"));
  EXPECT_TRUE(app.recorder.track.points.empty());
  EXPECT_FALSE(hasJournal());
}

TEST_F(RecordingCommands, WhatTheDiskDoesNotTakeStays) {
  world.window.answer = true;
  run(kStart);
  world.receiveFix();
  world.diskWorks = false;
  run(kEnd);
  EXPECT_EQ(app.recorder.track.state, kIdle);
  EXPECT_EQ(app.recorder.track.points.size(), 1U);
  EXPECT_EQ(world.window.errors.size(), 1U);
  EXPECT_TRUE(hasJournal()) << "a crash now must not take it";
  world.diskWorks = true;
  run(Command::saveTrack);  // save
  EXPECT_EQ(world.savedPoints(), std::vector<uint64_t>{1});
  EXPECT_FALSE(hasJournal());
}

// The journal's own thread notices; the person is told by the next five-second timer.
TEST_F(RecordingCommands, AJournalThatTheDiskRefusesIsToldAndKeepsTrying) {
  run(kStart);
  app.recorderHooks.journalFailed();
  onTimer(app, kStatisticsTimer);
  EXPECT_NE(notice().find("Cannot write recorded points to disk"), std::string_view::npos);
  world.clock.now += 20000;
  onTimer(app, kStatisticsTimer);
  EXPECT_EQ(notice(), "") << "once";
}

struct Recovery {
  const char* choice;
  bool yes;  // to the question that deleting asks
  std::vector<std::string> questions;
  std::vector<uint64_t> saved;
  bool recording, journal;
};

constexpr const char* kOffer = "An unfinished recording was found. Points: 2.";
constexpr const char* kDelete =
    "Delete this 2-point recording? If you choose No, you will be asked again at the next start.";

void leaveRecording(const AppPaths& paths) {
  ProgramWorld before;
  before.app.paths = paths;
  runCommand(before.app, kStart);
  before.receiveFix();
  runCommand(before.app, kMark);
  before.receiveFix();
}

TEST_F(RecordingCommands, ALeftRecordingIsAskedAbout) {
  const Recovery rows[] = {
      {"&Continue", false, {kOffer}, {}, true, true},
      {"&Save", false, {kOffer}, {2}, false, false},
      {"&Delete...", true, {kOffer, kDelete}, {}, false, false},
      {"&Delete...", false, {kOffer, kDelete}, {}, false, true},
      {"&Later", true, {kOffer}, {}, false, true},
      {"closed", true, {kOffer}, {}, false, true},
  };
  for (const Recovery& row : rows) {
    ProgramWorld later;
    later.load("");
    leaveRecording(later.app.paths);
    later.window.wanted = row.choice;
    later.window.answer = row.yes;
    offerRecovery(later.app);
    EXPECT_EQ(later.window.questions, row.questions) << row.choice;
    EXPECT_EQ(later.savedPoints(), row.saved) << row.choice;
    EXPECT_EQ(later.app.recorder.track.state == kRecording, row.recording) << row.choice;
    EXPECT_EQ(later.folder.has("vgpstrack.journal"), row.journal) << row.choice;
    if (!row.recording) continue;
    EXPECT_NEAR(later.app.recorder.recording().distance(), 1.853, 0.001) << "a minute of latitude";
    later.app.recorder.options.angle = 1;
    runCommand(later.app, kMark);
    later.receiveFix();
    EXPECT_EQ(later.app.recorder.track.points.size(), 3U);
    EXPECT_TRUE(later.app.recorder.closeJournal());
    Journal journal;
    RecoveredTrack left;
    EXPECT_EQ(journal.recover(later.app.paths.journal, left), JournalResult::open);
    EXPECT_EQ(left.points.size(), 3U) << "in the same journal";
  }
}

TEST_F(RecordingCommands, OneRecordingAtATimeIsGoneOnWith) {
  run(kStart);
  const std::vector<std::string> others = {"&Save", "&Delete...", "&Later"};
  offerRecovery(app);
  EXPECT_TRUE(world.window.questions.empty()) << "the running one is not left";
  AppPaths beside = app.paths;
  beside.journal = world.folder / "vgpstrack-2.journal";
  leaveRecording(beside);
  offerRecovery(app);
  EXPECT_EQ(world.window.offered, others);
}

TEST_F(RecordingCommands, TheLibraryTakesNoPlaceOfAnother) {
  for (const char* place : {"vgps.xml", "vgpstrack.journal", "vgpstrack-9.journal", "./vgps.xml"}) {
    app.settings.trackStorePath = place;
    world.window.errors.clear();
    EXPECT_FALSE(reportLibrary(app, app.recorder.openLibrary())) << place;
    ASSERT_EQ(world.window.errors.size(), 1U) << place;
    EXPECT_NE(world.window.errors[0].find("Choose another location"), std::string::npos) << place;
  }
  app.settings.trackStorePath = "vgpstrack-10.journal";
  EXPECT_TRUE(reportLibrary(app, app.recorder.openLibrary())) << "no recording lies there";
}

TEST_F(RecordingCommands, TheJournalSurvivesAnEndWithoutAnAnswer) {
  run(kStart);
  world.receiveFix();
  run(kPause);
  EXPECT_TRUE(closeRequested(app)) << "a paused recording is not asked about";
  EXPECT_TRUE(endProgram(app));
  Journal journal;
  RecoveredTrack left;
  EXPECT_EQ(journal.recover(app.paths.journal, left), JournalResult::open);
  EXPECT_EQ(left.points.size(), 1U);
}

TEST_F(RecordingCommands, EndingAPauseThatIsNoneRecordsToo) {
  run(kPause);
  EXPECT_EQ(app.recorder.track.state, kRecording);
  EXPECT_FALSE(hasJournal());
  world.receiveFix();
  EXPECT_EQ(app.recorder.track.points.size(), 1U);
  EXPECT_TRUE(hasJournal());
  run(kPause);  // flushes
  app.recorder.closeJournal();
  Journal journal;
  RecoveredTrack left;
  EXPECT_EQ(journal.recover(app.paths.journal, left), JournalResult::open);
  EXPECT_EQ(left.points.size(), 1U);
}

TEST_F(RecordingCommands, AJournalThatCannotBeMadeIsToldOnce) {
  app.paths.journal = world.folder / "no/such/folder/vgpstrack.journal";
  run(kStart);
  EXPECT_NE(notice().find("memory only"), std::string_view::npos);
  world.clock.now += 20000;
  app.recorder.options.everyNth = 0;
  world.receiveFix();
  EXPECT_EQ(notice(), "");
  EXPECT_EQ(app.recorder.track.points.size(), 1U);
}

TEST_F(RecordingCommands, WhatCannotBeDoneWhileRecordingIsSaid) {
  run(kStart);
  for (const Command command : {Command::thinTrack, Command::reverseTrack, Command::joinTrack,
                                Command::saveTrack, Command::openTrack, Command::discardTrack}) {
    run(command);
    EXPECT_EQ(notice(), "End recording or playback first.") << int(command);
  }
  run(kStart);
  EXPECT_EQ(notice(), "A track is already being recorded or played.");
}

TEST_F(RecordingCommands, PresetsAreSavedAndHoldFromTheNextStart) {
  run(Command::presetWalking);
  EXPECT_EQ(notice(), "Recording thresholds set for walking");
  run(kStart);
  EXPECT_EQ(app.recorder.track.speedThreshold, 1);
  EXPECT_EQ(app.recorder.track.angleThreshold, 20);
  run(Command::presetFlying);
  EXPECT_EQ(app.recorder.track.speedThreshold, 1) << "a running recording keeps its own";
  run(kEnd);
  run(kStart);
  EXPECT_EQ(app.recorder.track.speedThreshold, 1) << "and a track that was not left keeps them";
  EXPECT_NE(world.folder.read("vgps.xml").find("speed=\"50\""), std::string::npos);
}

TEST_F(RecordingCommands, OperationsOnAFinishedTrack) {
  for (int i = 0; i < 4; ++i) {
    TrackPoint point;
    point.longitude = 11;
    point.latitude = 48 + i;
    app.recorder.track.points.push_back(point);
  }
  run(Command::reverseTrack);
  EXPECT_EQ(app.recorder.track.points.front().latitude, 51);
  run(Command::thinTrack);
  EXPECT_EQ(app.recorder.track.points.size(), 2U) << "a straight line";
  EXPECT_EQ(notice(), "Points in the track: 2");
  world.folder.write("other.xml", "<t><p x=\"1\" y=\"2\" z=\"3\"/></t>");
  world.window.chosenFile = world.folder / "other.xml";
  run(Command::joinTrack);
  EXPECT_EQ(app.recorder.track.points.size(), 3U);
  run(Command::openTrack);
  EXPECT_EQ(world.window.questions.size(), 1U);
  EXPECT_EQ(app.recorder.track.points.size(), 3U) << "No was the answer";
  world.window.answer = true;
  run(Command::openTrack);
  EXPECT_EQ(app.recorder.track.points.size(), 1U);
  run(Command::discardTrack);
  EXPECT_TRUE(app.recorder.track.points.empty());
  world.folder.write("bad.xml", "nothing");
  world.window.chosenFile = world.folder / "bad.xml";
  run(Command::openTrack);
  EXPECT_EQ(world.window.errors.size(), 1U);
}

TEST_F(RecordingCommands, WhatNoDiscardedComesBack) {
  run(kStart);
  world.receiveFix();
  std::string standing;
  world.window.onAsk = [&] {
    standing = currentNotice(app);
    return false;
  };
  run(kEnd);
  EXPECT_EQ(standing, "Not saved yet: 1 point, 0.00 Km");
  EXPECT_EQ(notice(), "Not saved. To get it back, choose Track, Recently discarded.");
  EXPECT_FALSE(hasJournal());
  EXPECT_TRUE(app.recorder.track.points.empty());
  run(Command::restoreDiscarded);
  ASSERT_EQ(world.window.offeredRows.size(), 1U);
  EXPECT_TRUE(world.savedPoints().empty()) << "nothing was chosen";
  world.window.chosenRow = 0;
  run(Command::restoreDiscarded);
  EXPECT_EQ(world.savedPoints(), std::vector<uint64_t>{1});
  EXPECT_TRUE(discardedRecordings(world.folder.path()).empty());
}

TEST_F(RecordingCommands, DiscardedOnesStayForAWhile) {
  const auto write = [&](int day, int count) {
    char name[80];
    for (int i = 0; i < count; ++i) {
      std::snprintf(name, sizeof name, "discarded-201007%02d-0900%02d.journal", day, i);
      world.folder.write(name, "x");
    }
  };
  const auto left = [&](uint16_t month, uint16_t day) {
    pruneDiscarded(world.folder.path(), {.year = 2010, .month = month, .day = day});
    return discardedRecordings(world.folder.path()).size();
  };
  write(1, 12);
  write(20, 13);
  EXPECT_EQ(left(7, 21), 20U);
  EXPECT_EQ(left(8, 2), 13U) << "those of the 1st are too old";
  EXPECT_EQ(left(12, 1), 1U) << "the newest one stays";
}

TEST_F(RecordingCommands, ASavedTrackIsNotContinuedUnasked) {
  for (const bool adds : {false, true}) {
    run(kStart);
    world.receiveFix();
    run(kEnd);
    app.recorder.track.points.resize(3);  // as one that was opened
    app.recorder.track.name = "Opened";
    world.window.wanted = adds ? "&Add to this one" : "";
    run(kStart);
    EXPECT_EQ(world.window.offered, (std::vector<std::string>{"&Add to this one", "&New track"}));
    EXPECT_EQ(app.recorder.track.points.size(), adds ? 3U : 0U);
    EXPECT_EQ(app.recorder.track.name, adds ? "Opened" : "");
    EXPECT_EQ(app.recorder.track.state, kRecording);
    app.recorder.stop(false);
    app.recorder.track = Track();
  }
}

TEST_F(RecordingCommands, ThisPositionIsRecordedAtOnce) {
  run(kStart);
  run(Command::recordPointNow);
  EXPECT_EQ(notice(), "No valid fix. Wait for a fix, then try again.");
  world.receiveFix();
  world.receiveFix();
  EXPECT_EQ(app.recorder.track.points.size(), 1U) << "straight on";
  run(Command::recordPointNow);
  EXPECT_EQ(app.recorder.track.points.size(), 2U);
  for (int i = 0; i < 11; ++i) world.receiveFix(1);
  EXPECT_EQ(makeScene(app).trackWaiting, "waiting: slower than 5 km/h");
  world.receiveFix();
  EXPECT_EQ(makeScene(app).trackWaiting, "waiting: same course and altitude");
  app.recorder.options.everySeconds = 5;
  world.receiveFix();
  EXPECT_EQ(app.recorder.track.points.size(), 3U);
  EXPECT_EQ(makeScene(app).trackWaiting, "");
  for (int i = 0; i < 4; ++i) world.receiveFix();
  EXPECT_EQ(app.recorder.track.points.size(), 3U);
  app.recorder.options.everyMeters = 1000;  // a minute of latitude is more
  world.receiveFix();
  EXPECT_EQ(app.recorder.track.points.size(), 4U);
}

TEST_F(RecordingCommands, WhatWasSavedIsRenamedAndOpened) {
  world.window.answer = true;
  for (int i = 0; i < 2; ++i) {
    run(kStart);
    world.receiveFix();
    run(kEnd);
  }
  EXPECT_EQ(notice(), "Saved as Track 2. To rename it, choose Track, Rename last saved.");
  world.window.typed = "Home";
  run(Command::renameTrack);
  EXPECT_EQ(notice(), "The track is called Home now.");
  world.window.chosenFile = world.folder / "tracks.xml";
  world.window.chosenRow = 1;
  run(Command::openTrack);
  EXPECT_EQ(world.window.choices.back().folder, world.folder.path());
  ASSERT_EQ(world.window.offeredRows.size(), 2U);
  EXPECT_EQ(world.window.offeredRows[1], "Home, 2094-03-23 12:35 UTC, 1 point, 0.00 Km");
  EXPECT_EQ(app.recorder.track.name, "Home");
  EXPECT_EQ(app.recorder.track.points.size(), 1U);
}

}  // namespace
}  // namespace vgps
