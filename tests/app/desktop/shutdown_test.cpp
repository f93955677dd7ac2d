#include <gtest/gtest.h>

#include <functional>

#include "app/desktop/commands.h"
#include "app/desktop/startup.h"
#include "app/session/connection.h"
#include "library/journal_format.h"
#include "tests/fakes/program_world.h"
#include "tests/library/memory_file.h"
#include "track/track_file.h"

namespace vgps {
namespace {

TEST(Close, AsksWhileRecordingOrPlayingOnly) {
  struct {
    int32_t state;
    bool answer;
    size_t questions;
    bool closes;
    int32_t stateAfter;
  } const rows[] = {
      {kIdle, false, 0, true, kIdle},        {kRecording, false, 1, false, kRecording},
      {kRecording, true, 1, true, kIdle},    {kPaused, false, 0, true, kPaused},
      {kPlaying, false, 1, false, kPlaying}, {kPlaying, true, 1, true, kIdle},
  };
  for (const auto& row : rows) {
    ProgramWorld world;
    world.app.recorder.track.state = row.state;
    world.window.answer = row.answer;
    EXPECT_EQ(closeRequested(world.app), row.closes) << row.state;
    EXPECT_EQ(world.window.questions.size(), row.questions) << row.state;
    for (const std::string& question : world.window.questions) {
      EXPECT_EQ(question, "Stop Recording/Playback?");
    }
    EXPECT_EQ(world.app.recorder.track.state, row.stateAfter) << row.state;
    EXPECT_EQ(world.app.gps.readers.readerStop, row.closes) << row.state;
    EXPECT_EQ(world.window.done.size(), row.closes ? 1U : 0U) << row.state;
  }
}

TEST(Close, YesEndsTheRecordingAndSavesTheTrack) {
  ProgramWorld world;
  world.load("");
  runCommand(world.app, Command::startRecording);
  world.receiveFix();
  world.window.answer = true;  // to stopping and to saving
  EXPECT_TRUE(closeRequested(world.app));
  EXPECT_EQ(world.window.questions,
            (std::vector<std::string>{"Stop Recording/Playback?", "Save the track?"}));
  EXPECT_EQ(world.savedPoints(), std::vector<uint64_t>{1});
  EXPECT_TRUE(world.app.recorder.track.points.empty());
  EXPECT_FALSE(world.folder.has("vgpstrack.journal"));
}

constexpr const char* kLoseOnePoint =
    "The disk is full. Points that could not be saved: 1. Close anyway?";

// A folder that takes neither the track nor a journal, as that of a program without its rights.
struct RefusingFolder : ProgramWorld {
  RefusingFolder() {
    load("");
    app.paths.journal = folder / "missing/vgpstrack.journal";
    app.settings.trackStorePath = folder / "missing/tracks.xml";
    runCommand(app, Command::startRecording);
    receiveFix();
  }
  // What a close asks when everything is answered so.
  std::vector<std::string> questionsOfClosing(bool yes, bool closes) {
    window.questions.clear();
    window.answer = yes;
    EXPECT_EQ(closeRequested(app), closes);
    EXPECT_EQ(app.gps.readers.readerStop, closes);
    return window.questions;
  }
};

TEST(Close, StaysOpenWithATrackThatLiesNowhere) {
  RefusingFolder world;
  EXPECT_EQ(world.questionsOfClosing(true, false),
            (std::vector<std::string>{"Stop Recording/Playback?", "Save the track?"}));
  EXPECT_EQ(world.app.recorder.track.points.size(), 1U);
  EXPECT_TRUE(world.window.done.empty());
  EXPECT_EQ(world.questionsOfClosing(false, false), std::vector<std::string>{kLoseOnePoint});
  EXPECT_EQ(world.app.recorder.track.points.size(), 1U);
  EXPECT_EQ(world.questionsOfClosing(true, true), std::vector<std::string>{kLoseOnePoint});
}

TEST(Close, ATrackInMemoryIsAskedForUntilItIsSettled) {
  struct {
    const char* what;
    std::function<void(RefusingFolder&)> act;
    bool asks;
  } const rows[] = {
      {"paused", [](auto& w) { runCommand(w.app, Command::pauseOrResume); }, true},
      {"saved",
       [](auto& w) {
         runCommand(w.app, Command::endRecording);
         w.app.settings.trackStorePath.clear();
         runCommand(w.app, Command::saveTrack);
       },
       false},
      {"discarded",
       [](auto& w) {
         runCommand(w.app, Command::endRecording), runCommand(w.app, Command::discardTrack);
       },
       false},
      {"another one opened",
       [](auto& w) {
         runCommand(w.app, Command::endRecording);
         Track other;
         TrackPoint point;
         point.longitude = 9;
         other.points.push_back(point);
         EXPECT_TRUE(writeTrackFile(other, w.folder / "other.xml", w.app.recorder.options));
         w.window.chosenFile = w.folder / "other.xml";
         runCommand(w.app, Command::openTrack);
         EXPECT_EQ(w.app.recorder.track.points.front().longitude, 9);
       },
       false},
      {"recording again, into a journal",
       [](auto& w) {
         runCommand(w.app, Command::endRecording);
         w.app.paths.journal = w.folder / "vgpstrack.journal";
         w.window.wanted = "&New track";
         runCommand(w.app, Command::startRecording), runCommand(w.app, Command::pauseOrResume);
       },
       false},
  };
  for (const auto& row : rows) {
    RefusingFolder world;
    world.window.answer = true;
    row.act(world);
    const auto expected =
        row.asks ? std::vector<std::string>{kLoseOnePoint} : std::vector<std::string>{};
    EXPECT_EQ(world.questionsOfClosing(false, !row.asks), expected) << row.what;
  }
}

// The journal is open, and the disk has no room for what comes.
struct FullDisk {
  FullDisk() {
    world.load("drp=\"1\"");
    world.app.platform.disk.open = disk.opener();
    world.app.settings.trackStorePath = world.folder / "missing/tracks.xml";
    runCommand(world.app, Command::startRecording);
    world.receiveFix();
    disk.setRoom(1);
    world.window.answer = true;
  }
  ~FullDisk() { world.app.recorder.closeJournal(); }
  size_t pointsOnDisk() {
    const std::lock_guard lock(disk.mutex);
    return readJournal(disk.files.begin()->second->bytes).points.size();
  }
  MemoryDisk disk;
  ProgramWorld world;
};

TEST(Close, StaysOpenWhenTheJournalLacksPoints) {
  FullDisk full;
  ProgramWorld& world = full.world;
  EXPECT_FALSE(closeRequested(world.app));
  EXPECT_TRUE(world.window.done.empty());
  EXPECT_EQ(world.app.recorder.track.points.size(), 1U);
  full.disk.setRoom(SIZE_MAX);
  world.window.wanted = "&Add to this one";
  runCommand(world.app, Command::startRecording);  // goes on in the same journal
  runCommand(world.app, Command::markPoint);
  world.receiveFix();
  EXPECT_TRUE(closeRequested(world.app)) << "the library refuses still";
  EXPECT_EQ(full.pointsOnDisk(), 2U);
  EXPECT_EQ(full.disk.files.size(), 1U);
}

TEST(Close, AJournalThatLacksPointsIsSavedFromMemory) {
  FullDisk full;
  EXPECT_FALSE(closeRequested(full.world.app));
  full.world.app.settings.trackStorePath.clear();
  runCommand(full.world.app, Command::saveTrack);
  EXPECT_EQ(full.world.savedPoints(), std::vector<uint64_t>{1});
  EXPECT_TRUE(full.disk.files.empty()) << "the journal is not needed any more";
  EXPECT_TRUE(closeRequested(full.world.app));
}

TEST(Close, APausedRecordingIsLostOnlyKnowingly) {
  for (const bool yes : {false, true}) {
    FullDisk full;
    ProgramWorld& world = full.world;
    runCommand(world.app, Command::pauseOrResume);
    world.window.answer = yes;
    EXPECT_EQ(closeRequested(world.app), yes);
    EXPECT_EQ(world.window.questions, std::vector<std::string>{kLoseOnePoint});
    EXPECT_TRUE(endProgram(world.app));
    EXPECT_EQ(world.window.errors.empty(), yes) << "what was known is not told again";
  }
}

// As on a stick that was pulled out.
TEST(Close, AJournalThatHasGoneIsAskedForEachTime) {
  FullDisk full;
  ProgramWorld& world = full.world;
  runCommand(world.app, Command::pauseOrResume);
  full.disk.files.clear();
  for (const bool yes : {false, false, true}) {
    world.window.questions.clear();
    world.window.answer = yes;
    EXPECT_EQ(closeRequested(world.app), yes);
    EXPECT_EQ(world.window.questions, std::vector<std::string>{kLoseOnePoint});
  }
}

TEST(Close, AWaitingSimulationEnds) {
  ProgramWorld world;
  world.app.gps.simulation.setMode(SimMode::tapping);
  connectReceiver(world.app, {.simulate = true});
  EXPECT_TRUE(closeRequested(world.app));
  EXPECT_TRUE(stopReceiver(world.app));
}

TEST(Close, SettingsThatWereChangedAreWritten) {
  ProgramWorld world;
  world.load("");
  world.app.config.set(*findSetting("cfg\\gps", "port"), "COM5");
  EXPECT_TRUE(endProgram(world.app));
  EXPECT_NE(world.folder.read("vgps.xml").find("COM5"), std::string::npos);
}

}  // namespace
}  // namespace vgps
