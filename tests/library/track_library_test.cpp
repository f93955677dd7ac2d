#include "library/track_library.h"

#include <gtest/gtest.h>

#include <functional>

#include "tests/library/library_world.h"

namespace vgps {
namespace {

// Both kinds of library: one document, or a folder of files.
class EitherLibrary : public testing::TestWithParam<bool> {
 protected:
  EitherLibrary() : path_(GetParam() ? folder_.path() : folder_ / "t.xml") { library_.open(path_); }
  // In a folder tracks stand by name.
  void addThree() {
    ASSERT_EQ(addWalk(library_, "A", 3), LibraryResult::done);
    ASSERT_EQ(addWalk(library_, "B", 4, 11), LibraryResult::done);
    ASSERT_EQ(addWalk(library_, "C", 2, 21), LibraryResult::done);
  }

  TestFolder folder_;
  const std::string path_;
  TrackLibrary library_;
};

INSTANTIATE_TEST_SUITE_P(Library, EitherLibrary, testing::Bool(),
                         [](const auto& kind) { return kind.param ? "Folder" : "Document"; });

const char* const kThree = "A 1,2,3 | B 11,12,13,14 | C 21,22";

// A program that was killed behind saving saves its recording again.
TEST_P(EitherLibrary, ARecordingIsOneTrackHoweverOftenItIsSaved) {
  addThree();
  Track first = walkingTrack("D", 2, 31);
  first.recording = 0xABCD;
  Track longer = walkingTrack("", 4, 31);
  longer.recording = first.recording;
  for (Track* const track : {&first, &first, &longer, &first}) {
    ASSERT_EQ(library_.add(*track, {}, kAddedAt), LibraryResult::done);
    EXPECT_EQ(library_.addedName(), "D");
  }
  EXPECT_EQ(contentsAt(path_), std::string(kThree) + " | D 31,32,33,34");
  ASSERT_EQ(library_.reverse(3, {}), LibraryResult::done);
  Track still = walkingTrack("E", 5, 31);
  still.recording = first.recording;
  ASSERT_EQ(library_.add(still, {}, kAddedAt), LibraryResult::done);
  EXPECT_EQ(contentsAt(path_), std::string(kThree) + " | D 34,33,32,31 | E 31,32,33,34,35")
      << "what was edited is another track";
}

struct Change {
  const char* what;
  std::function<LibraryResult(TrackLibrary&)> change;
  const char* after;
};

TEST_P(EitherLibrary, ChangesAndTheirUndo) {
  const RecordingOptions options;
  const Change changes[] = {
      {"rename", [](auto& l) { return l.rename(1, " Better "); },
       "A 1,2,3 | Better 11,12,13,14 | C 21,22"},
      {"remove", [](auto& l) { return l.remove(1); }, "A 1,2,3 | C 21,22"},
      {"remove the first", [](auto& l) { return l.remove(0); }, "B 11,12,13,14 | C 21,22"},
      {"remove the last", [](auto& l) { return l.remove(2); }, "A 1,2,3 | B 11,12,13,14"},
      {"join", [&](auto& l) { return l.join(0, 2, options); }, "A 1,2,3,21,22 | B 11,12,13,14"},
      {"join backwards", [&](auto& l) { return l.join(2, 0, options); },
       "B 11,12,13,14 | C 21,22,1,2,3"},
      {"split", [&](auto& l) { return l.split(2, 1, options); },
       "A 1,2,3 | B 11,12,13,14 | C 21 | Split 1 22"},
      {"reverse", [&](auto& l) { return l.reverse(1, options); },
       "A 1,2,3 | B 14,13,12,11 | C 21,22"},
      {"add", [](auto& l) { return addWalk(l, "D", 1, 31); },
       "A 1,2,3 | B 11,12,13,14 | C 21,22 | D 31"},
  };
  addThree();
  for (const Change& row : changes) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(row.change(library_), LibraryResult::done);
    EXPECT_EQ(contentsOf(library_), row.after);
    EXPECT_EQ(contentsAt(path_), row.after);
    EXPECT_TRUE(library_.canUndo());
    EXPECT_EQ(library_.undo(), LibraryResult::done);
    EXPECT_EQ(contentsOf(library_), kThree);
    EXPECT_EQ(contentsAt(path_), kThree);
    EXPECT_FALSE(library_.canUndo());
    EXPECT_EQ(library_.undo(), LibraryResult::notFound);
  }
}

TEST_P(EitherLibrary, WhatCannotBeDoneChangesNothing) {
  addThree();
  const RecordingOptions options;
  Track track;
  EXPECT_EQ(library_.rename(3, "x"), LibraryResult::notFound);
  EXPECT_EQ(library_.rename(0, " \t"), LibraryResult::noName);
  EXPECT_EQ(library_.remove(3), LibraryResult::notFound);
  EXPECT_EQ(library_.load(3, 0, track), LibraryResult::notFound);
  EXPECT_EQ(library_.join(1, 1, options), LibraryResult::notFound);
  EXPECT_EQ(library_.join(1, 3, options), LibraryResult::notFound);
  EXPECT_EQ(library_.split(1, 0, options), LibraryResult::notFound);
  EXPECT_EQ(library_.split(1, 4, options), LibraryResult::notFound);
  EXPECT_EQ(library_.reverse(3, options), LibraryResult::notFound);
  EXPECT_EQ(contentsAt(path_), kThree);
}

TEST_P(EitherLibrary, TheListSaysWhatATrackIs) {
  ASSERT_EQ(addWalk(library_, "Ride", 7), LibraryResult::done);
  for (const bool fromIndex : {false, true}) {
    TrackLibrary other;
    EXPECT_EQ(other.open(path_), LibraryState::whole);
    ASSERT_EQ(other.tracks().size(), 1U) << fromIndex;
    const TrackSummary& summary = other.tracks()[0];
    EXPECT_EQ(summary.name, "Ride");
    EXPECT_EQ(summary.points, 7U);
    EXPECT_NEAR(summary.kilometers, 6 * 0.0742, 0.001);  // at 48 degrees north
    EXPECT_EQ(summary.seconds, 60);
    EXPECT_EQ(summary.date.day, 5);
    EXPECT_EQ(summary.date.hour, 9);
    EXPECT_DOUBLE_EQ(summary.bounds.west, 11);
    EXPECT_DOUBLE_EQ(summary.bounds.east, 11.006);
    EXPECT_DOUBLE_EQ(summary.bounds.south, 48.1);
    EXPECT_DOUBLE_EQ(summary.bounds.north, 48.1);
    EXPECT_FALSE(summary.damaged);
  }
}

TEST_P(EitherLibrary, EditingKeepsWhatTheOptionsWouldNotWrite) {
  addThree();
  RecordingOptions bare;  // neither speed nor time nor course
  bare.speedUnit = kMph;  // in which the speeds below are read and written again
  ASSERT_EQ(library_.reverse(0, bare), LibraryResult::done);
  ASSERT_EQ(library_.join(0, 1, bare), LibraryResult::done);
  ASSERT_EQ(library_.thin(0, bare), LibraryResult::done);
  Track track;
  ASSERT_EQ(library_.load(0, 0, track), LibraryResult::done);
  ASSERT_EQ(track.points.size(), 7U);  // all are marked
  for (const TrackPoint& point : track.points) {
    EXPECT_NEAR(point.speedKmh, 36, 0.01);
    EXPECT_EQ(point.course, 90);
    EXPECT_EQ(point.localTime.year, 2010);
  }
}

TEST_P(EitherLibrary, ThinningTakesPointsOut) {
  Track track = walkingTrack("Straight", 9);
  for (TrackPoint& point : track.points) point.m = 0;
  ASSERT_EQ(library_.add(track, {}, kAddedAt), LibraryResult::done);
  ASSERT_EQ(library_.thin(0, {}), LibraryResult::done);
  EXPECT_EQ(library_.tracks()[0].points, 2U);
  ASSERT_EQ(library_.undo(), LibraryResult::done);
  EXPECT_EQ(library_.tracks()[0].points, 9U);
}

TEST_P(EitherLibrary, ReplacingTakesTheNewPoints) {
  addThree();
  Track other = walkingTrack("", 1, 99);
  ASSERT_EQ(library_.replace(1, other, {}), LibraryResult::done);
  EXPECT_EQ(contentsOf(library_), "A 1,2,3 | B 99 | C 21,22");
  Track track;
  library_.load(1, 0, track);
  EXPECT_EQ(track.points[0].localTime.year, 2010);
}

TEST_P(EitherLibrary, NamesWithOddCharacters) {
  const char* names[] = {"a \"b\" <c> & 'd'",
                         "M\xC3\xBCllers T\xC3\xA4ler \xE2\x80\x93 n\xC2\xB0 5",
                         "100% %s %u",
                         ".hidden",
                         "c\\d/e",
                         "line\nbreak",
                         "]]>",
                         "&amp;"};
  for (const char* name : names) {
    SCOPED_TRACE(name);
    ASSERT_EQ(addWalk(library_, "x", 2), LibraryResult::done);
    ASSERT_EQ(library_.rename(0, name), LibraryResult::done);
    const std::string shown = library_.tracks()[0].name;
    if (!GetParam() && std::string(name) != "line\nbreak") {
      EXPECT_EQ(shown, name);
    }
    TrackLibrary other;
    EXPECT_EQ(other.open(path_), LibraryState::whole);
    EXPECT_EQ(contentsOf(other), shown + " 1,2");
    ASSERT_EQ(library_.remove(0), LibraryResult::done);
  }
}

TEST_P(EitherLibrary, AnotherProgramsChangeIsSeenAndNotWrittenOver) {
  addThree();
  TrackLibrary other;
  other.open(path_);
  ASSERT_EQ(other.remove(0), LibraryResult::done);
  // The first has the old numbers in mind.
  EXPECT_EQ(library_.remove(1), LibraryResult::changed);
  EXPECT_EQ(contentsOf(library_), "B 11,12,13,14 | C 21,22");
  EXPECT_FALSE(library_.canUndo());
  EXPECT_EQ(addWalk(other, "D", 1, 31), LibraryResult::done);
  EXPECT_EQ(addWalk(library_, "E", 1, 41), LibraryResult::done);  // needs no number
  other.refresh();
  EXPECT_EQ(contentsOf(other), "B 11,12,13,14 | C 21,22 | D 31 | E 41");
  EXPECT_FALSE(other.canUndo());
}

TEST_P(EitherLibrary, WhoeverHoldsTheLockIsWaitedFor) {
  const std::string lock = folder_ / (GetParam() ? "tracks.lock" : "t.xml.lock");
  putFile(lock, "notes that have this name");
  addThree();
  EXPECT_EQ(fileBytes(lock), "notes that have this name");
  FileOpening opening{};
  const auto held = openExclusive(lock, OpenMode::existing, opening);
  TrackLibrary hurried({.waitForOthersMs = 30});
  hurried.open(path_);
  EXPECT_EQ(hurried.remove(0), LibraryResult::inUse);
  EXPECT_EQ(contentsAt(path_), kThree);
}

// Whichever step of a change is the last that happens, there are the old tracks or the new ones.
TEST_P(EitherLibrary, NoStepOfAChangeLosesTracks) {
  const RecordingOptions options;
  const Change changes[] = {
      {"add", [](auto& l) { return addWalk(l, "D", 3, 31); }, nullptr},
      {"rename", [](auto& l) { return l.rename(1, "Z"); }, nullptr},
      {"remove", [](auto& l) { return l.remove(0); }, nullptr},
      {"join", [&](auto& l) { return l.join(0, 1, options); }, nullptr},
      {"split", [&](auto& l) { return l.split(1, 2, options); }, nullptr},
  };
  for (const Change& row : changes) {
    bool finished = false;
    for (int steps = 0; !finished && steps < 60; ++steps) {
      SCOPED_TRACE(std::string(row.what) + " dies after " + std::to_string(steps));
      for (const std::string& name : folder_.names()) removeFile(folder_ / name);
      TrackLibrary fresh;
      fresh.open(path_);
      addWalk(fresh, "A", 3), addWalk(fresh, "B", 4, 11), addWalk(fresh, "C", 2, 21);

      const DyingDisk dying(steps);
      TrackLibrary library(dying.disk());
      library.open(path_);
      const LibraryResult result = row.change(library);
      finished = !dying.isDead();
      TrackLibrary after;
      EXPECT_EQ(after.open(path_), LibraryState::whole);
      uint64_t points = 0;
      for (const TrackSummary& track : after.tracks()) points += track.points;
      if (result == LibraryResult::done) {
        EXPECT_EQ(contentsOf(after), contentsOf(library));
        continue;
      }
      EXPECT_GE(points, 9U);  // in a folder a track may be there twice
      if (!GetParam()) {
        EXPECT_EQ(contentsOf(after), kThree);
        EXPECT_EQ(contentsOf(library), kThree);
      }
      // What failed can be done again, with a disk that works.
      after.open(path_);
      EXPECT_EQ(addWalk(after, "Later", 1, 77), LibraryResult::done);
    }
    EXPECT_TRUE(finished) << row.what;
  }
}

TEST_P(EitherLibrary, ImportedElements) {
  XmlDocument document;
  const auto element = [&](const char* text) { return document.createElement(text); };
  document.Load("<t n=\"From &amp; to\"><p x=\"1.5\" y=\"2\" z=\"3\" n=\"Gate\" hr=\"130\"/></t>",
                XmlLoadMode::text);
  ASSERT_EQ(library_.import(document.GetRootElement()), LibraryResult::done);
  ASSERT_EQ(library_.import(element("<t />")), LibraryResult::done);
  Track track;
  ASSERT_EQ(library_.load(0, 0, track), LibraryResult::done);
  EXPECT_EQ(track.name, GetParam() ? "From & to-1" : "From & to");
  ASSERT_EQ(track.points.size(), 1U);
  EXPECT_EQ(pointName(track, track.points[0]), "Gate");
  EXPECT_EQ(library_.tracks()[1].name, GetParam() ? "Import-1" : "Track 2");
  const std::string file = folder_ / folder_.names()[0];
  EXPECT_NE(fileBytes(file).find("hr=\"130\""), std::string::npos) << file;
  EXPECT_FALSE(library_.tracks()[0].damaged);
  ASSERT_EQ(library_.undo(), LibraryResult::done);
  EXPECT_EQ(library_.tracks().size(), 1U);
  ASSERT_EQ(library_.rename(0, "Here"), LibraryResult::done);
  EXPECT_NE(fileBytes(folder_ / folder_.names()[0]).find("<t n=\"Here\">"), std::string::npos);
}

TEST_P(EitherLibrary, AttachmentsAreInTheLibraryThen) {
  Track track = walkingTrack("Photos", 3);
  track.attachments = {{1, "a.jpg"}};
  ASSERT_EQ(library_.add(track, {}, kAddedAt), LibraryResult::done);
  EXPECT_TRUE(track.attachments.empty());
  ASSERT_EQ(library_.reverse(0, {}), LibraryResult::done);
  Track back;
  library_.load(0, 0, back);
  ASSERT_EQ(back.attachments.size(), 1U);
  EXPECT_EQ(back.attachments[0].point, 1U);
}

TEST(TrackLibrary, WhereItLies) {
  const std::string beside = pathIn("home", "tracks.xml");
  EXPECT_EQ(trackLibraryPath("", "home"), beside);
  EXPECT_EQ(trackLibraryPath("mine.xml", "home"), pathIn("home", "mine.xml"));
  EXPECT_EQ(trackLibraryPath("kept/mine.xml", "home"), pathIn("home", "kept/mine.xml"));
  EXPECT_EQ(trackLibraryPath(".\\kept", "home"), pathIn("home", ".\\kept"));
  EXPECT_EQ(trackLibraryPath("/d/mine.xml", "home"), "/d/mine.xml");
  EXPECT_EQ(trackLibraryPath("C:\\d", "home"), "C:\\d");
}

TEST(TrackLibrary, FilesOfAFolderAreNamedLikeThoseOfARecording) {
  const TestFolder folder;
  TrackLibrary library;
  library.open(folder.path());
  for (int i = 0; i < 2; ++i) {
    Track unnamed = walkingTrack("", 1);
    ASSERT_EQ(library.add(unnamed, {}, kAddedAt), LibraryResult::done);
  }
  putFile(folder / "other.xml", "<gpx/>");
  putFile(folder / "notes.txt", "<t/>");
  library.refresh();
  ASSERT_EQ(library.tracks().size(), 2U);
  EXPECT_EQ(library.tracks()[0].name, "Track05_07_2010_09_03 - 1");
  EXPECT_EQ(library.tracks()[1].name, "Track05_07_2010_09_03");
  EXPECT_TRUE(fileBytes(folder / "Track05_07_2010_09_03.XML")
                  .starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\" ?>\r\n"
                               "<t>\r\n\t<p x="));
}

}  // namespace
}  // namespace vgps
