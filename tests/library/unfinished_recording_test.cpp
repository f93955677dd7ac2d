#include "library/unfinished_recording.h"

#include <gtest/gtest.h>

#include "library/journal_format.h"
#include "tests/library/library_world.h"

namespace vgps {
namespace {

class Unfinished : public testing::Test {
 protected:
  void leave(uint32_t points) {
    Journal journal;
    ASSERT_EQ(journal.create(path_), JournalResult::open);
    for (const TrackPoint& point : walkingTrack("", points).points) journal.append(point);
    ASSERT_TRUE(journal.close());
  }

  TestFolder folder_;
  const std::string path_ = folder_ / kJournalName;
  const std::string libraryPath_ = folder_ / "tracks.xml";
  UnfinishedRecording unfinished_;
};

TEST_F(Unfinished, LaterLeavesItAsItWas) {
  leave(3);
  const std::string before = fileBytes(path_);
  ASSERT_EQ(unfinished_.open(path_), JournalResult::open);
  EXPECT_EQ(unfinished_.question(), "An unfinished recording was found. Points: 3.");
  UnfinishedRecording second;
  EXPECT_EQ(second.open(path_), JournalResult::inUse);
  EXPECT_NE(journalMessage(JournalResult::inUse, path_).find("in use by another program"),
            std::string::npos);
  unfinished_.keepForLater();
  EXPECT_EQ(second.open(path_), JournalResult::open);
  second.keepForLater();
  EXPECT_EQ(fileBytes(path_), before);
}

TEST_F(Unfinished, WithoutAPointThereIsNothingToAsk) {
  putFile(path_, "");
  EXPECT_EQ(unfinished_.open(path_), JournalResult::missing);
  EXPECT_FALSE(fileExists(path_));
  EXPECT_EQ(unfinished_.open(path_), JournalResult::missing);
}

TEST_F(Unfinished, WhatIsDamagedIsNeverDeleted) {
  leave(1);
  std::string bytes = fileBytes(path_);
  bytes[kJournalHeader + 60] ^= 1;
  putFile(path_, bytes);
  EXPECT_EQ(unfinished_.open(path_), JournalResult::notAJournal);
  const std::string bad = folder_ / "vgpstrack.bad";
  EXPECT_EQ(fileBytes(bad), bytes);
  EXPECT_EQ(unfinished_.message(JournalResult::notAJournal),
            "Nothing in " + path_ + " could be read. It was saved as " + bad + ".");
}

// Where there is no copy, what was saved keeps the file itself.
TEST_F(Unfinished, SavedWithoutACopyTheJournalBecomesIt) {
  leave(3);
  std::string bytes = fileBytes(path_);
  bytes[kJournalHeader + kJournalPoint + 60] ^= 1;
  putFile(path_, bytes);
  JournalSettings withoutRoom;
  withoutRoom.open = [](const std::string& path, OpenMode mode, FileOpening& opening) {
    opening = FileOpening::refused;
    return mode == OpenMode::createNew ? nullptr : openExclusive(path, mode, opening);
  };
  UnfinishedRecording unfinished(withoutRoom);
  ASSERT_EQ(unfinished.open(path_), JournalResult::open);
  ASSERT_EQ(unfinished.backupPath(), "");
  TrackLibrary library;
  library.open(libraryPath_);
  ASSERT_EQ(unfinished.save(library, {}, kAddedAt), LibraryResult::done);
  EXPECT_FALSE(fileExists(path_));
  EXPECT_EQ(fileBytes(unfinished.backupPath()), bytes);
}

TEST_F(Unfinished, ContinuesIntoTheSameJournal) {
  leave(3);
  ASSERT_EQ(unfinished_.open(path_), JournalResult::open);
  Track current;
  current.attachments = {{0, "old"}};
  const std::unique_ptr<Journal> journal = unfinished_.continueInto(current);
  ASSERT_EQ(current.points.size(), 3U);
  EXPECT_TRUE(current.attachments.empty());
  TrackPoint more = current.points.back();
  more.m = 4;
  journal->append(more);
  ASSERT_TRUE(journal->close());
  ASSERT_EQ(unfinished_.open(path_), JournalResult::open);
  ASSERT_EQ(unfinished_.points(), 4U);
  EXPECT_EQ(unfinished_.track().points[3].m, 4U);
}

TEST_F(Unfinished, TheJournalGoesOnlyWhenTheTrackIsSaved) {
  leave(3);
  int saved = 0;
  for (int steps = 0; saved == 0 && steps < 30; ++steps) {
    SCOPED_TRACE(steps);
    const DyingDisk dying(steps);
    TrackLibrary library(dying.disk());
    library.open(libraryPath_);
    ASSERT_EQ(unfinished_.open(path_), JournalResult::open);
    ASSERT_EQ(unfinished_.points(), 3U);
    const LibraryResult result = unfinished_.save(library, {}, kAddedAt);
    if (result == LibraryResult::done) {
      ++saved;
      continue;
    }
    EXPECT_TRUE(fileExists(path_));
    EXPECT_FALSE(fileExists(libraryPath_));
    unfinished_.keepForLater();
  }
  EXPECT_EQ(saved, 1);
  EXPECT_FALSE(fileExists(path_));
  EXPECT_EQ(contentsAt(libraryPath_), "Track 1 1,2,3");
}

TEST_F(Unfinished, DamageIsSaid) {
  leave(4);
  std::string bytes = fileBytes(path_);
  bytes[kJournalHeader + kJournalPoint + 60] ^= 1;
  putFile(path_, bytes);
  ASSERT_EQ(unfinished_.open(path_), JournalResult::open);
  EXPECT_EQ(unfinished_.points(), 3U);
  EXPECT_EQ(unfinished_.question(), "An unfinished recording was found. Points: 3. Part of " +
                                        path_ + " is damaged. A copy was saved as " +
                                        folder_ / "vgpstrack.bad" + ".");
}

}  // namespace
}  // namespace vgps
