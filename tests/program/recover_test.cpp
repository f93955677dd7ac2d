#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>

#include <filesystem>

#include "library/journal.h"
#include "library/journal_format.h"
#include "tests/library/library_world.h"
#include "tests/program/program.h"

// `vgps recover` on what a killed program left behind.
namespace vgps {
namespace {

class Recover : public testing::Test {
 protected:
  Finished run(const std::vector<std::string>& words) {
    std::vector<std::string> arguments = {"recover", "--file", folder_ / "vgps.xml"};
    arguments.insert(arguments.end(), words.begin(), words.end());
    return runProgram(arguments);
  }
  void leave(uint32_t points, const char* name = kJournalName) {
    Journal journal;
    ASSERT_EQ(journal.create(folder_ / name), JournalResult::open);
    for (const TrackPoint& point : walkingTrack("", points).points) journal.append(point);
    ASSERT_TRUE(journal.close());
  }

  TestFolder folder_;
  const std::string journal_ = folder_ / kJournalName;
  const std::string library_ = folder_ / "tracks.xml";
};

TEST_F(Recover, TellsAndDiscards) {
  leave(12);
  leave(3, "vgpstrack-2.journal");
  const std::string before = fileBytes(journal_);
  const Finished done = run({});
  EXPECT_EQ(done.status, 0);
  EXPECT_TRUE(says(done.output, "An unfinished recording was found. Points: 12.")) << done.output;
  EXPECT_TRUE(says(done.output, "An unfinished recording was found. Points: 3.")) << done.output;
  EXPECT_EQ(fileBytes(journal_), before);
  EXPECT_TRUE(says(run({"--discard"}).output, "Discarded 12 points"));
  EXPECT_FALSE(fileExists(journal_));
  EXPECT_FALSE(fileExists(folder_ / "vgpstrack-2.journal"));
  EXPECT_FALSE(fileExists(library_));
}

TEST_F(Recover, SavesIntoTheLibrary) {
  leave(12);
  leave(3, "vgpstrack-2.journal");
  const Finished done = run({"--save"});
  EXPECT_EQ(done.status, 0) << done.errors;
  EXPECT_TRUE(says(done.output, "Saved 12 points in " + library_)) << done.output;
  EXPECT_EQ(contentsAt(library_), "Track 1 1,2,3,4,5,6,7,8,9,10,11,12 | Track 2 1,2,3");
  EXPECT_EQ(existingJournals(journal_), std::vector<std::string>());
}

// Reading them would wait, and removing them is not for this program to do.
TEST_F(Recover, OnlyFilesAreTakenForFiles) {
  const std::function<void(const std::string&)> makes[] = {
      [](const std::string& path) { ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0); },
      [](const std::string& path) { std::filesystem::create_symlink("/dev/zero", path); },
      [](const std::string& path) { std::filesystem::create_directory(path); },
  };
  for (const auto& make : makes) {
    for (const char* const word : {"--save", "--discard"}) {
      make(journal_);
      const Finished done = run({word});
      EXPECT_EQ(done.status, 1);
      EXPECT_EQ(done.errors, "vgps: " + journal_ + " is not a regular file.\n");
      EXPECT_TRUE(fileExists(journal_));
      std::filesystem::remove(journal_);
    }
    make(library_);
    if (isFolder(library_)) continue;  // a library of files
    leave(3);
    const Finished done = run({"--save"});
    EXPECT_EQ(done.status, 1);
    EXPECT_TRUE(says(done.errors, library_ + " is not a regular file.")) << done.errors;
    EXPECT_TRUE(fileExists(library_));
    std::filesystem::remove(library_);
    std::filesystem::remove(journal_);
  }
}

TEST_F(Recover, SavesWhereTheSettingsSay) {
  std::filesystem::create_directories(folder_ / "kept");
  putFile(folder_ / "vgps.xml",
          "<root><cfg><vgps tlp=\"" + folder_ / "kept" + "\" rtc=\"1\"/></cfg></root>");
  leave(2);
  EXPECT_EQ(run({"--save"}).status, 0);
  EXPECT_EQ(filesIn(folder_ / "kept").size(), 2U);  // and the index
  TrackLibrary library;
  library.open(folder_ / "kept");
  ASSERT_EQ(library.tracks().size(), 1U);
  EXPECT_EQ(library.tracks()[0].date.year, 2010);
}

TEST_F(Recover, WhatCannotBeSavedStays) {
  putFile(library_, "<gpx/>");
  leave(5);
  const Finished done = run({"--save"});
  EXPECT_EQ(done.status, 1);
  EXPECT_TRUE(says(done.errors, library_ + " is not a library file")) << done.errors;
  EXPECT_TRUE(says(done.errors, "still in " + journal_)) << done.errors;
  EXPECT_EQ(fileBytes(library_), "<gpx/>");
  EXPECT_TRUE(says(run({}).output, "Points: 5."));
}

TEST_F(Recover, ARunningProgramKeepsItsRecording) {
  leave(5);
  Journal held;
  RecoveredTrack found;
  ASSERT_EQ(held.recover(journal_, found), JournalResult::open);
  for (const char* action : {"--save", "--discard"}) {
    const Finished done = run({action});
    EXPECT_EQ(done.status, 2);
    EXPECT_TRUE(says(done.errors, journal_ + " is in use by another program")) << done.errors;
  }
  EXPECT_TRUE(fileExists(journal_));
}

TEST_F(Recover, WordsThatDoNotGoTogether) {
  leave(1);
  EXPECT_EQ(run({"--save", "--discard"}).status, 1);
  EXPECT_EQ(run({"--continue"}).status, 1);
  EXPECT_EQ(run({"--save", "--simulate"}).status, 1);
  EXPECT_TRUE(fileExists(journal_));
}

TEST_F(Recover, AJournalThatIsGoneInTheEndCostsNoPoint) {
  leave(5);
  Program program({"recover", "--file", folder_ / "vgps.xml", "--continue", "--simulate=trip"});
  ASSERT_TRUE(program.readUntil([&] { return says(program.errors, "reading the simulation"); }));
  std::filesystem::remove(journal_);
  program.signal(SIGINT);
  EXPECT_EQ(program.finish(), 0);
  EXPECT_TRUE(says(program.errors, journal_ + " no longer exists")) << program.errors;
  EXPECT_TRUE(contentsAt(library_).starts_with("Track 1 1,2,3,4,5")) << program.errors;
}

TEST_F(Recover, AFullDiskIsTriedAgainUntilThePersonGivesUp) {
  ::signal(SIGXFSZ, SIG_IGN);
  for (const bool roomAgain : {true, false}) {
    std::filesystem::remove(library_);
    leave(5);
    const std::string before = fileBytes(journal_);
    Program program({"recover", "--file", folder_ / "vgps.xml", "--continue", "--simulate=trip"});
    program.limitFiles(100);
    const auto told = [&](const char* part) {
      return program.readUntil([&] { return says(program.errors, part); });
    };
    ASSERT_TRUE(told("recording continues in memory"));
    program.signal(SIGINT);
    ASSERT_TRUE(told("retrying")) << program.errors;
    EXPECT_FALSE(says(program.errors, "No data was lost")) << program.errors;
    if (roomAgain) {
      program.limitFiles(RLIM_INFINITY);
    } else {
      program.signal(SIGINT);
    }
    EXPECT_EQ(program.finish(), roomAgain ? 0 : 1) << program.errors;
    EXPECT_EQ(says(program.errors, "lost"), !roomAgain) << program.errors;
    EXPECT_EQ(fileExists(journal_), !roomAgain);
    TrackLibrary library;
    library.open(library_);
    EXPECT_EQ(library.tracks().size(), roomAgain ? 1U : 0U);
    if (roomAgain) {
      EXPECT_GT(library.tracks()[0].points, 5U);
    } else {
      EXPECT_EQ(fileBytes(journal_), before);
    }
  }
  ::signal(SIGXFSZ, SIG_DFL);
}

TEST_F(Recover, PlacesAreNamedClearly) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::create_directories(folder_ / "in");
  std::filesystem::current_path(folder_ / "in");
  const auto runAt = [](const char* file, const char* action) {
    return runProgram({"recover", "--file", file, action}).output;
  };
  EXPECT_EQ(runAt("vgps.xml", "--save"),
            "No unfinished recording was found in the current folder.\n");
  EXPECT_EQ(runAt(".", "--save"), "No unfinished recording was found in the current folder.\n");
  EXPECT_EQ(runAt("..", "--save"), "No unfinished recording was found in \"..\".\n");
  leave(1);
  EXPECT_EQ(runAt("..", "--save"), "Saved 1 point in ../tracks.xml.\n");
  putFile(folder_ / "vgps.xml", "<root><cfg><vgps tlp=\".\"/></cfg></root>");
  leave(1);
  std::filesystem::current_path(folder_ / "");
  EXPECT_EQ(runAt("vgps.xml", "--save"), "Saved 1 point in the current folder.\n");
  std::filesystem::current_path(before);
}

// The first fix is always recorded, and is on the disk soon: a kill loses only what came after it.
TEST_F(Recover, AKilledContinuationCanBeRecoveredAgain) {
  leave(5);
  {
    Program program({"recover", "--file", folder_ / "vgps.xml", "--continue", "--simulate=trip"});
    EXPECT_TRUE(
        program.readUntil([&] { return says(program.output, "Continuing after 5 points"); }));
    EXPECT_EQ(run({"--save"}).status, 2);
    const auto enough = [&] {
      return std::filesystem::file_size(journal_) > kJournalStart + 5 * kJournalPoint;
    };
    EXPECT_TRUE(program.readUntil(enough));
  }  // killed
  EXPECT_EQ(run({"--save"}).status, 0);
  EXPECT_TRUE(contentsAt(library_).starts_with("Track 1 1,2,3,4,5,")) << contentsAt(library_);
}

}  // namespace
}  // namespace vgps
