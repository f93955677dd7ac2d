#include "library/journal.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <thread>

#include "files/input_file.h"
#include "library/journal_format.h"
#include "platform/files.h"
#include "tests/fakes/test_folder.h"
#include "tests/library/memory_file.h"
#include "tests/track/recording_world.h"

namespace vgps {
namespace {

using Milliseconds = std::chrono::milliseconds;

TrackPoint point(uint32_t number) {
  TrackPoint made = pointAt(11, 48);
  made.s = number;
  return made;
}

class JournalOnDisk : public testing::Test {
 protected:
  void spoil(std::streamoff at) {
    std::fstream file(path_, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(at).put('\x55');
  }
  void leave(uint32_t points) {
    Journal journal;
    ASSERT_EQ(journal.create(path_), JournalResult::open);
    for (uint32_t i = 0; i < points; ++i) journal.append(point(i));
    ASSERT_TRUE(journal.close());
  }

  const TestFolder testFolder_;
  const std::string folder_ = testFolder_.path();
  const std::string path_ = pathIn(folder_, kJournalName);
};

TEST_F(JournalOnDisk, WhatIsLeftComesBackAndGoesOn) {
  leave(300);
  Journal journal;
  RecoveredTrack found;
  for (uint32_t round = 0; round < 3; ++round) {
    ASSERT_EQ(journal.recover(path_, found), JournalResult::open);
    ASSERT_EQ(found.points.size(), 300U + round);
    for (uint32_t i = 0; i < found.points.size(); ++i) EXPECT_EQ(found.points[i].s, i);
    EXPECT_FALSE(found.damaged);
    journal.append(point(300 + round));
    EXPECT_TRUE(journal.close());
  }
  ASSERT_EQ(journal.recover(path_, found), JournalResult::open);
  EXPECT_TRUE(journal.discard());
  EXPECT_FALSE(fileExists(path_));
  EXPECT_EQ(journal.recover(path_, found), JournalResult::missing);
}

TEST_F(JournalOnDisk, HeldByOneProgramOnly) {
  Journal first;
  ASSERT_EQ(first.create(path_), JournalResult::open);
  Journal second;
  RecoveredTrack found;
  EXPECT_EQ(second.create(path_), JournalResult::inUse);
  EXPECT_EQ(createFreeJournal(second, path_), JournalResult::inUse);
  EXPECT_EQ(second.recover(path_, found), JournalResult::inUse);
  EXPECT_EQ(existingJournals(path_), std::vector<std::string>{path_});
  first.close();
  EXPECT_EQ(second.create(path_), JournalResult::open);  // without a point nothing was left
}

TEST_F(JournalOnDisk, WhatNobodyAnsweredForIsNotOverwritten) {
  leave(2);
  Journal journal;
  EXPECT_EQ(journal.create(path_), JournalResult::left);
  EXPECT_EQ(createFreeJournal(journal, path_), JournalResult::open);
  journal.append(point(7));
  journal.close();
  const std::string second = pathIn(folder_, "vgpstrack-2.journal");
  EXPECT_EQ(existingJournals(path_), (std::vector<std::string>{path_, second}));
  RecoveredTrack found;
  ASSERT_EQ(journal.recover(second, found), JournalResult::open);
  EXPECT_EQ(found.points.size(), 1U);
}

TEST_F(JournalOnDisk, ADamagedEndIsCutAndKeptBeside) {
  leave(4);
  spoil(kJournalHeader + 3 * kJournalPoint + 50);  // in the last point
  const std::string bad = pathIn(folder_, "vgpstrack.bad");
  Journal journal;
  RecoveredTrack found;
  ASSERT_EQ(journal.recover(path_, found), JournalResult::open);
  EXPECT_EQ(found.points.size(), 3U);
  EXPECT_TRUE(found.damaged);
  EXPECT_EQ(found.backupPath, bad);
  EXPECT_EQ(std::filesystem::file_size(bad), kJournalStart + 4 * kJournalPoint);
  journal.close();  // Later: nothing has changed
  EXPECT_EQ(std::filesystem::file_size(path_), kJournalStart + 4 * kJournalPoint);
  ASSERT_EQ(journal.recover(path_, found), JournalResult::open);
  journal.append(point(3));
  EXPECT_TRUE(journal.close());
  ASSERT_EQ(journal.recover(path_, found), JournalResult::open);
  EXPECT_EQ(found.points.size(), 4U);
  EXPECT_FALSE(found.damaged);
}

// Without a readable point the file is out of the way of the next recording, and never lost.
TEST_F(JournalOnDisk, WithoutAReadablePointItIsNamedBad) {
  std::vector<uint8_t> header;
  writeJournalHeader(header);
  const std::string good(header.begin(), header.end());
  const std::string rows[] = {
      "something else altogether",
      good + std::string(kJournalPoint, '\0'),  // blocks that the disk never filled
      good + std::string(3 * kJournalPoint, 'x'),
      std::string(5000, '\0'),
  };
  std::vector<std::string> kept;
  for (const std::string& bytes : rows) {
    std::ofstream(path_, std::ios::binary) << bytes;
    Journal journal;
    RecoveredTrack found;
    EXPECT_EQ(journal.recover(path_, found), JournalResult::notAJournal);
    EXPECT_FALSE(fileExists(path_));
    kept.push_back(found.backupPath);
  }
  EXPECT_EQ(kept.front(), pathIn(folder_, "vgpstrack.bad"));
  EXPECT_EQ(kept.back(), pathIn(folder_, "vgpstrack-4.bad"));
  for (size_t i = 0; i < std::size(rows); ++i) {
    std::string bytes;
    EXPECT_TRUE(readWholeFile(kept[i], bytes));
    EXPECT_EQ(bytes, rows[i]);
  }
}

// Asking at every start does not fill the disk with copies; another damage gets its own.
TEST_F(JournalOnDisk, ACopyIsMadeOnceForEachDamage) {
  leave(4);
  const size_t places[] = {kJournalHeader + 3 * kJournalPoint + 50, kJournalHeader + 50};
  std::vector<std::string> kept;
  for (const size_t place : places) {
    spoil(static_cast<std::streamoff>(place));
    for (int start = 0; start < 3; ++start) {
      Journal journal;
      RecoveredTrack found;
      ASSERT_EQ(journal.recover(path_, found), JournalResult::open);
      kept.push_back(found.backupPath);
    }
  }
  const std::string first = pathIn(folder_, "vgpstrack.bad");
  const std::string second = pathIn(folder_, "vgpstrack-2.bad");
  EXPECT_EQ(kept, (std::vector<std::string>{first, first, first, second, second, second}));
}

TEST_F(JournalOnDisk, FoldersThatAreNotThere) {
  Journal journal;
  EXPECT_NE(journal.create(pathIn(pathIn(folder_, "none"), kJournalName)), JournalResult::open);
  EXPECT_EQ(journal.create(folder_), JournalResult::notAFile);
  EXPECT_FALSE(journal.isOpen());
  journal.append(point(0));  // recording goes on without one
}

// Waits as long as a busy machine needs.
bool comesTrue(const std::function<bool()>& condition) {
  for (int i = 0; i < 2000; ++i) {
    if (condition()) return true;
    std::this_thread::sleep_for(Milliseconds(5));
  }
  return false;
}

struct JournalWorld {
  explicit JournalWorld(Milliseconds flushAfter)
      : journal({.flushAfter = flushAfter,
                 .retryAfter = Milliseconds(5),
                 .open = disk.opener(),
                 .failed = [this] { ++failures; },
                 .works = [this] { ++recoveries; }}) {}
  size_t pointsOnDisk() { return readJournal(disk.flushed()).points.size(); }

  MemoryDisk disk;
  std::atomic<int> failures{0};
  std::atomic<int> recoveries{0};
  Journal journal;
};

TEST(Journal, PointsReachTheDiskByThemselves) {
  JournalWorld world(Milliseconds(1));
  ASSERT_EQ(world.journal.create("j"), JournalResult::open);
  for (uint32_t i = 0; i < 3; ++i) {
    world.journal.append(point(i));
    EXPECT_TRUE(comesTrue([&] { return world.pointsOnDisk() == i + 1; }));
  }
}

TEST(Journal, AStreamOfPointsDoesNotPutTheDiskOff) {
  EXPECT_LE(JournalSettings().flushAfter, Milliseconds(5000)) << "so much is lost by a crash";
  JournalWorld world(Milliseconds(50));
  ASSERT_EQ(world.journal.create("j"), JournalResult::open);
  uint32_t number = 0;
  EXPECT_TRUE(comesTrue([&] {
    world.journal.append(point(number++));
    return world.pointsOnDisk() > 0;
  }));
}

TEST(Journal, FlushDoesNotWaitForItsTime) {
  JournalWorld world(Milliseconds(3600000));
  ASSERT_EQ(world.journal.create("j"), JournalResult::open);
  world.journal.append(point(0));
  world.journal.flush();
  EXPECT_TRUE(comesTrue([&] { return world.pointsOnDisk() == 1; }));
  world.journal.append(point(1));
  EXPECT_TRUE(world.journal.close());
  EXPECT_EQ(world.pointsOnDisk(), 2U);
}

TEST(Journal, AFullDiskIsToldOnceAndCaughtUpWith) {
  JournalWorld world(Milliseconds(1));
  world.disk.setRoom(kJournalHeader + kJournalPoint + 40);
  ASSERT_EQ(world.journal.create("j"), JournalResult::open);
  for (uint32_t i = 0; i < 50; ++i) world.journal.append(point(i));
  EXPECT_TRUE(comesTrue([&] { return world.failures > 0; }));
  std::this_thread::sleep_for(Milliseconds(30));
  EXPECT_EQ(world.failures, 1);
  world.disk.setRoom(SIZE_MAX);
  EXPECT_TRUE(comesTrue([&] { return world.pointsOnDisk() == 50; }));
  EXPECT_TRUE(comesTrue([&] { return world.recoveries == 1; }));
  EXPECT_FALSE(readJournal(world.disk.flushed()).damaged);
  world.disk.setRoom(0);
  world.journal.append(point(50));
  EXPECT_TRUE(comesTrue([&] { return world.failures == 2; }));
  EXPECT_FALSE(world.journal.close());
}

TEST(Journal, WhatTheDiskDoesNotGiveIsNotTheEnd) {
  JournalWorld world(Milliseconds(1));
  ASSERT_EQ(world.journal.create("j"), JournalResult::open);
  for (uint32_t i = 0; i < 5; ++i) world.journal.append(point(i));
  ASSERT_TRUE(world.journal.close());
  RecoveredTrack found;
  for (const size_t readable : {size_t{0}, kJournalHeader, kJournalHeader + 2 * kJournalPoint}) {
    world.disk.readable = readable;
    EXPECT_EQ(world.journal.recover("j", found), JournalResult::refused) << readable;
    EXPECT_FALSE(world.journal.isOpen());
  }
  world.disk.readable = SIZE_MAX;
  ASSERT_EQ(world.journal.recover("j", found), JournalResult::open);
  EXPECT_EQ(found.points.size(), 5U);
}

TEST(Journal, AFailedFlushIsWrittenAgain) {
  JournalWorld world(Milliseconds(1));
  {
    const std::lock_guard lock(world.disk.mutex);
    world.disk.flushWorks = false;
  }
  ASSERT_EQ(world.journal.create("j"), JournalResult::open);
  world.journal.append(point(0));
  EXPECT_TRUE(comesTrue([&] { return world.failures == 1; }));
  world.journal.append(point(1));
  {
    const std::lock_guard lock(world.disk.mutex);
    world.disk.flushWorks = true;
  }
  EXPECT_TRUE(comesTrue([&] { return world.pointsOnDisk() == 2; }));
}

}  // namespace
}  // namespace vgps
