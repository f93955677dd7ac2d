#include "track/file_names.h"

#include <gtest/gtest.h>

#include "platform/files.h"
#include "tests/fakes/test_folder.h"

namespace vgps {
namespace {

class FileNames : public testing::Test {
 protected:
  void take(const std::string& name) const { testFolder_.write(name, "x"); }

  const TestFolder testFolder_;
  const std::string folder_ = testFolder_.path();
};

TEST_F(FileNames, TracksCountFromTheSecond) {
  const auto next = [&] { return freeTrackPath(folder_, "X"); };
  EXPECT_EQ(next(), pathIn(folder_, "X.XML"));
  take("X.XML");
  for (int number = 1; number <= 9; ++number) {
    const std::string name = "X - " + std::to_string(number) + ".XML";
    EXPECT_EQ(next(), pathIn(folder_, name));
    take(name);
  }
  EXPECT_EQ(next(), "");
}

TEST_F(FileNames, ImportsAlwaysHaveANumber) {
  for (int number = 1; number <= 99; ++number) {
    const std::string name = "X-" + std::to_string(number) + ".XML";
    EXPECT_EQ(freeImportPath(folder_, "X"), pathIn(folder_, name));
    take(name);
  }
  EXPECT_EQ(freeImportPath(folder_, "X"), "");
}

TEST_F(FileNames, NamesOfPeople) {
  EXPECT_EQ(trackNameFromTime({2010, 7, 1, 5, 9, 3, 59, 999}), "Track05_07_2010_09_03");
  EXPECT_EQ(trackNameFromTime({10, 12, 1, 25, 19, 30, 0, 0}), "Track25_12_10_19_30");
  EXPECT_EQ(fileNameFrom("a/b\\c:\"d\"\n<*?>|"), "a_b_c__d_______");
  for (const char* device :
       {"CON", "nul", "Aux.a", "com1", "LPT9 .x", "COM\u00B9", "lpt\u00B3.x"}) {
    EXPECT_EQ(fileNameFrom(device), std::string("_") + device);
  }
  for (const char* name : {"CONE", "COM", "COM12", "a.CON", ""})
    EXPECT_EQ(fileNameFrom(name), name);
  std::string mountains;
  for (int i = 0; i < 100; ++i) mountains += "山";
  EXPECT_EQ(fileNameFrom(mountains), mountains.substr(0, 198)) << "never half a character";
  EXPECT_EQ(freeTrackPath(folder_, "Höhe – 山"), pathIn(folder_, "Höhe – 山.XML"));
}

}  // namespace
}  // namespace vgps
