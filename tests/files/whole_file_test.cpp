#include "files/whole_file.h"

#include <gtest/gtest.h>

#include <fstream>

#include "files/bad_copies.h"
#include "tests/library/library_world.h"

namespace vgps {
namespace {

class WholeFiles : public testing::Test {
 protected:
  const TestFolder folder_;
  const std::string path_ = folder_ / "Ride.XML";
};

TEST_F(WholeFiles, WholeFilesAndBadOnes) {
  EXPECT_TRUE(writeWholeFile(path_, "one"));
  EXPECT_TRUE(writeWholeFile(path_, "two, longer"));
  EXPECT_EQ(fileBytes(path_), "two, longer");
  EXPECT_EQ(saveBadCopy(path_, "damaged"), folder_ / "Ride.bad");
  EXPECT_EQ(folder_.names(), (std::vector<std::string>{"Ride.XML", "Ride.bad"}));
  EXPECT_FALSE(writeWholeFile(folder_.path(), "a folder has that name"));
}

TEST_F(WholeFiles, NothingButTheNamedFileIsReplaced) {
  // What lies around, also of a killed program, and what other writers have begun.
  const std::string neighbour = path_ + ".new";
  std::ofstream(neighbour) << "another file of the person's";
  OutputFile slow(path_);
  EXPECT_TRUE(slow.write("slow"));
  EXPECT_TRUE(writeWholeFile(path_, "quick"));
  EXPECT_EQ(fileBytes(path_), "quick");
  EXPECT_TRUE(slow.finish());
  EXPECT_EQ(fileBytes(path_), "slow");
  EXPECT_EQ(fileBytes(neighbour), "another file of the person's");
  EXPECT_EQ(folder_.names(), (std::vector<std::string>{"Ride.XML", "Ride.XML.new"}));
  { const OutputFile given(path_); }
  EXPECT_EQ(folder_.names().size(), 2U) << "what was not finished leaves nothing";
}

TEST_F(WholeFiles, WhatAKilledProgramLeftGoesAfterADay) {
  const struct {
    const char* name;
    int hours;
    bool stays;
  } rows[] = {{"vgps-0123456789abcdef.new", 25, false},
              {"vgps-1123456789abcdef.new", 23, true},
              {"vgps-2123456789abcdef.new", 99, true},
              {"vgps-mine.new", 99, true},
              {"vgps-0123456789abcdef.newer", 99, true}};
  for (const auto& row : rows) {
    folder_.write(row.name, "points");
    std::filesystem::last_write_time(
        folder_ / row.name,
        std::filesystem::file_time_type::clock::now() - std::chrono::hours(row.hours));
  }
  FileOpening opening = FileOpening::refused;
  const auto locked = openExclusive(folder_ / rows[2].name, OpenMode::existing, opening);
  ASSERT_TRUE(writeWholeFile(path_, "x"));
  for (const auto& row : rows) EXPECT_EQ(folder_.has(row.name), row.stays) << row.name;
}

TEST_F(WholeFiles, AFreeNameIsNeverTakenFromAnother) {
  std::ofstream(path_) << "there";
  EXPECT_EQ(writeFreeFile(path_, "new"), RenameResult::taken);
  OutputFile file(path_ + "2");
  EXPECT_TRUE(file.write("new"));
  EXPECT_EQ(file.finishAs(path_), RenameResult::taken) << "somebody was quicker";
  EXPECT_EQ(fileBytes(path_), "there");
  EXPECT_EQ(file.finishAs(path_ + "2"), RenameResult::renamed);
  EXPECT_EQ(fileBytes(path_ + "2"), "new");
  EXPECT_EQ(folder_.names(), (std::vector<std::string>{"Ride.XML", "Ride.XML2"}));
}

TEST_F(WholeFiles, BadCopiesNeverReplaceOneAnother) {
  const std::string bad = folder_ / "Ride.bad";
  const std::string second = folder_ / "Ride-2.bad";
  const std::string third = folder_ / "Ride-3.bad";
  EXPECT_EQ(saveBadCopy(path_, "one"), bad);
  EXPECT_EQ(saveBadCopy(path_, "one"), bad) << "it is kept already";
  EXPECT_EQ(saveBadCopy(path_, "onetwo"), second);
  std::ofstream(path_) << "one";
  EXPECT_EQ(copyToBad(path_), bad);
  std::ofstream(path_) << "on";
  EXPECT_EQ(copyToBad(path_), third);
  EXPECT_EQ(renameToBad(path_), folder_ / "Ride-4.bad");
  EXPECT_FALSE(fileExists(path_));
  EXPECT_EQ(fileBytes(bad) + "|" + fileBytes(second) + "|" + fileBytes(third), "one|onetwo|on");
  // A damaged file that has such a name itself is not its own copy.
  EXPECT_EQ(copyToBad(second), folder_ / "Ride-2-2.bad");
  EXPECT_EQ(saveBadCopy(bad, "one"), folder_ / "Ride-5.bad");
  EXPECT_EQ(copyToBad(folder_ / "none"), "");
}

}  // namespace
}  // namespace vgps
