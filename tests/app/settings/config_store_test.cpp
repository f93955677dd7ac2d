#include "app/settings/config_store.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <utility>

#include "display/palette.h"
#include "xml/profile.h"

namespace vgps {
namespace {

namespace fs = std::filesystem;

class ConfigFile : public testing::Test {
 protected:
  ConfigFile() {
    const auto* const info = testing::UnitTest::GetInstance()->current_test_info();
    folder_ = fs::temp_directory_path() / (std::string("vgps_config_") + info->name());
    fs::remove_all(folder_);
    fs::create_directories(folder_);
  }
  ~ConfigFile() override { fs::remove_all(folder_); }

  std::string path(const char* name = "vgps.xml") const { return (folder_ / name).string(); }
  void write(const std::string& text) const { std::ofstream(path(), std::ios::binary) << text; }
  std::string read(const char* name = "vgps.xml") const {
    std::ifstream file(path(name), std::ios::binary);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
  }
  // What a program reads that starts now: port, speed, simulation.
  std::string findings() const {
    ConfigStore other;
    EXPECT_TRUE(other.open(path()));
    const Settings settings = loadSettings(other);
    return settings.port + " " + std::to_string(settings.baudRate) + " " +
           std::to_string(settings.simulate);
  }
  // A document with one attribute of "cfg\vgps".
  Settings loaded(const std::string& attribute) {
    write("<root><cfg><vgps " + attribute + "/></cfg></root>");
    EXPECT_TRUE(store_.open(path()));
    return loadSettings(store_);
  }

  fs::path folder_;
  ConfigStore store_;
};

TEST(Settings, DefaultsOfTheTable) {
  const Settings settings;
  EXPECT_EQ(settings.baudRate, 9600);
  EXPECT_EQ(settings.speedLimit, 200);
  EXPECT_EQ(settings.warnAngle, 45);
  EXPECT_EQ(settings.warnMetres, 300);
  EXPECT_EQ(settings.warnSeconds, 10);
  EXPECT_EQ(settings.mapMargin, 20);
  EXPECT_EQ(settings.fontFactor, 1.0F);
  EXPECT_EQ(settings.zScale, 0.01F);
  EXPECT_EQ(settings.mapsFolder, ".\\maps");
  EXPECT_EQ(settings.cameraLeft, 2);
  EXPECT_EQ(settings.cameraTop, 2);
  EXPECT_EQ(settings.cameraRight, 98);
  EXPECT_EQ(settings.cameraBottom, 20);
  EXPECT_EQ(settings.colourSuccess, rgb(0, 0, 255)) << "blue";
  EXPECT_EQ(settings.colourFailure, rgb(255, 0, 0)) << "red";
  EXPECT_EQ(settings.cameraColour, rgb(255, 0, 0)) << "red";
  EXPECT_TRUE(settings.useLedFont);  // the loader switches it off
  EXPECT_TRUE(settings.tripDataSpeed);
  EXPECT_FALSE(settings.tripDataOn);
  EXPECT_EQ(settings.talkers, 0);
}

TEST(Settings, EveryRowHasAMemberOfItsOwn) {
  // Each row's value, set to something of its own, must come back and disturb no other.
  Settings settings;
  double next = 2;
  for (const SettingRow& row : settingRows()) {
    if (row.type == SettingType::string) {
      setText(settings, row, std::string(row.path) + row.key);
    } else if (row.type != SettingType::flag) {
      setNumber(settings, row, next++);
    }
  }
  next = 2;
  for (const SettingRow& row : settingRows()) {
    if (row.type == SettingType::string) {
      EXPECT_EQ(textOf(settings, row), std::string(row.path) + row.key);
    } else if (row.type != SettingType::flag) {
      EXPECT_EQ(numberOf(settings, row), next++) << row.path << " " << row.key;
    }
  }
  for (const SettingRow& flag : settingRows()) {
    if (flag.type != SettingType::flag) continue;
    for (const SettingRow& other : settingRows()) {
      if (other.type == SettingType::flag) setNumber(settings, other, 0);
    }
    setNumber(settings, flag, 1);
    double sum = 0;
    for (const SettingRow& other : settingRows()) {
      if (other.type == SettingType::flag) sum += numberOf(settings, other);
    }
    EXPECT_EQ(sum, 1) << flag.key;
  }
  EXPECT_EQ(findSetting("Cfg\\Other", "fzsl"), nullptr);
  EXPECT_NE(findSetting("cfg\\other", "fzsl"), nullptr);
}

// What a dialog saves, by the keys it shows.
TEST(Settings, KeysOfTheGroups) {
  const std::pair<SettingGroup, const char*> groups[] = {
      {SettingGroup::gps, "port speed simu gapi sapi sapiid bsm lgn afg tlk rcn "},
      {SettingGroup::background, "bgimaged bgimagen bgimagec "},
      {SettingGroup::sound, "sound_speed sound_ok sound_error sound_turn sound_zone "},
      {SettingGroup::distance, "dmvl dmvs "},
      {SettingGroup::camera, "left right top bottom color align "},
      {SettingGroup::colour, "c1 c2 c3 c4 c5 c6 c7 "},
      {SettingGroup::tripData, "tde c1 c2 c3 c4 c5 c6 "},
  };
  for (const auto& [group, keys] : groups) {
    std::string found;
    for (const SettingRow& row : settingRows()) {
      if (row.group == group) found += std::string(row.key) + " ";
    }
    EXPECT_EQ(found, keys);
  }
  EXPECT_EQ(findSetting("cfg\\vgps", "offlinemaps")->group, SettingGroup::map);
  EXPECT_EQ(findSetting("cfg\\vgps", "margin")->group, SettingGroup::map);
  for (const char* key : {"angle", "speed", "alt"}) {
    EXPECT_EQ(findSetting("cfg\\track", key)->group, SettingGroup::recording);
  }
}

TEST_F(ConfigFile, MissingAndEmptyFilesGiveTheDefaultsSilently) {
  EXPECT_TRUE(store_.open(path("none.xml")));
  const Settings settings = loadSettings(store_);
  for (const SettingRow& row : settingRows()) {
    if (row.type == SettingType::string) {
      EXPECT_EQ(textOf(settings, row), row.text) << row.key;
    } else if (row.rule == RangeRule::forcedOff) {
      EXPECT_EQ(numberOf(settings, row), 0);
    } else {
      EXPECT_EQ(numberOf(settings, row),
                row.type == SettingType::real ? static_cast<float>(row.number) : row.number)
          << row.key;
    }
  }
  write("");
  EXPECT_TRUE(store_.open(path()));
  EXPECT_EQ(loadSettings(store_).baudRate, 9600);
}

TEST_F(ConfigFile, CorrectionsOfTheLoader) {
  const std::pair<const char*, float> factors[] = {{"5", 5},         {"5.01", 1},  {"0", 1},
                                                   {"-1", 1},        {"0.5", 0.5}, {"5.0000001", 5},
                                                   {"5.0000005", 1}, {"", 1}};
  for (const auto& [text, value] : factors) {
    EXPECT_EQ(loaded(std::string("fsf=\"") + text + "\"").fontFactor, value) << text;
  }
  for (const auto& [text, value] : {std::pair{"10", 10}, {"11", 0}, {"-3", -3}}) {
    EXPECT_EQ(loaded(std::string("gfs=\"") + text + "\"").frameSkip, value) << text;
  }
  for (const auto& [text, value] : {std::pair{"50", 50}, {"51", 20}, {"-1", -1}, {"0", 0}}) {
    EXPECT_EQ(loaded(std::string("margin=\"") + text + "\"").mapMargin, value) << text;
  }
  for (const auto& [text, value] :
       {std::pair{"0", 0.01F}, {"0.00", 0.01F}, {"-0.5", -0.5F}, {"2", 2.0F}}) {
    EXPECT_EQ(loaded(std::string("mzs=\"") + text + "\"").zScale, value) << text;
  }
  EXPECT_EQ(loaded("speed=\"1\" sxv=\"-7\" smv=\"9\"").speedLimit, -7);  // nothing else is
  EXPECT_EQ(store_.number(*findSetting("cfg\\vgps", "smv")), 9);
  EXPECT_TRUE(loaded("mfp=\"7\"").mapFollowsPosition);
}

TEST_F(ConfigFile, TheLedFontIsOffAtEveryStartAndTheDocumentUntouched) {
  EXPECT_FALSE(loaded("ulf=\"1\"").useLedFont);
  EXPECT_EQ(store_.number(*findSetting("cfg\\vgps", "ulf")), 1);
  EXPECT_FALSE(store_.changed());
}

TEST_F(ConfigFile, LongStringsAreCutBetweenCharacters) {
  write("<root><cfg><gps port=\"COM34567890\"/><vgps stn=\"" + std::string(199, 'x') +
        "\xF0\x9F\x9B\xB0\"/></cfg></root>");
  ASSERT_TRUE(store_.open(path()));
  const Settings settings = loadSettings(store_);
  EXPECT_EQ(settings.port, "COM3456789");
  EXPECT_EQ(settings.smsNumber, std::string(199, 'x'));
}

TEST_F(ConfigFile, AGroupIsSavedAtOnceAndNothingElse) {
  ASSERT_TRUE(store_.open(path()));
  Settings settings;
  settings.cameraColour = 0x00FF00;
  settings.fontFactor = 2.5F;  // of another group
  EXPECT_TRUE(saveSettings(store_, settings, SettingGroup::camera));
  EXPECT_EQ(
      read(),
      "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\" ?>\r\n<root>\r\n\t<cfg>\r\n"
      "\t\t<camera left=\"2\" right=\"98\" top=\"2\" bottom=\"20\" color=\"65280\" "
      "align=\"0\"/>\r\n\t</cfg>\r\n</root>\r\n");
  EXPECT_FALSE(store_.changed());
}

TEST_F(ConfigFile, WhatWasCorrectedIsWrittenWithItsGroup) {
  const Settings settings = loaded("fsf=\"9.00\" mzs=\"0.50\"");
  ASSERT_TRUE(saveSettings(store_, settings, findSetting("cfg\\vgps", "fsf")->group));
  EXPECT_NE(read().find("fsf=\"1.00\""), std::string::npos) << read();
}

TEST_F(ConfigFile, NumbersAreWrittenAsTheirTypeSays) {
  ASSERT_TRUE(store_.open(path()));
  const SettingRow& real = *findSetting("cfg\\vgps", "mzs");
  for (const auto& [value, text] :
       {std::pair{0.01, "0.01"}, {-0.5, "-0.50"}, {0.004, "0.00"}, {1.0, "1.00"}}) {
    store_.set(real, value);
    EXPECT_EQ(XmlGetString("cfg\\vgps", "mzs", "", nullptr, &store_.document()), text);
  }
  store_.set(*findSetting("cfg\\vgps", "sxv"), -7);
  EXPECT_EQ(store_.number(*findSetting("cfg\\vgps", "sxv")), -7);
  EXPECT_TRUE(store_.save());
  ConfigStore again;
  ASSERT_TRUE(again.open(path()));
  EXPECT_EQ(loadSettings(again).speedLimit, -7);
}

TEST_F(ConfigFile, AClearedStringReadsAsItsDefault) {
  ASSERT_TRUE(store_.open(path()));
  const SettingRow& maps = *findSetting("cfg\\vgps", "offlinemaps");
  store_.set(maps, std::string_view(""));
  EXPECT_EQ(store_.string(maps), ".\\maps");
}

TEST_F(ConfigFile, ADamagedFileIsKeptBesideBeforeItIsOverwritten) {
  write("no element in here");
  EXPECT_FALSE(store_.open(path()));
  EXPECT_EQ(loadSettings(store_).baudRate, 9600);
  EXPECT_TRUE(store_.save());  // unchanged: nothing is written
  EXPECT_EQ(read(), "no element in here");
  store_.set(*findSetting("cfg\\gps", "speed"), 4800);
  EXPECT_TRUE(store_.save());
  EXPECT_EQ(read("vgps.bad"), "no element in here");
  EXPECT_NE(read().find("speed=\"4800\""), std::string::npos);
  write("");
  fs::remove(path("vgps.bad"));
  ASSERT_TRUE(store_.open(path()));
  store_.set(*findSetting("cfg\\gps", "speed"), 4800);
  EXPECT_TRUE(store_.save());
  EXPECT_FALSE(fs::exists(path("vgps.bad")));
}

TEST_F(ConfigFile, AFileThatAnotherProgramHoldsIsNoMissingFile) {
  const std::string text = "<root><cfg><gps port=\"COM7\"/></cfg></root>";
  write(text);
  XmlFiles held = systemFiles();
  held.open = [](const std::string& file, XmlFiles::Access access) -> void* {
    return access == XmlFiles::Access::read ? nullptr : systemFiles().open(file, access);
  };
  ConfigStore store(held);
  EXPECT_FALSE(store.open(path()));
  store.set(*findSetting("cfg\\gps", "port"), "COM3");
  EXPECT_FALSE(store.save());
  EXPECT_EQ(read(), text);
}

// What was changed meanwhile goes into what the file turns out to hold.
TEST_F(ConfigFile, AFileThatIsLetGoOfLaterKeepsItsSettings) {
  static int triesThatFail;
  triesThatFail = 1000;
  write("<root><cfg><gps port=\"COM7\" speed=\"4800\"/></cfg></root>");
  XmlFiles files = systemFiles();
  files.open = [](const std::string& file, XmlFiles::Access access) -> void* {
    return triesThatFail-- > 0 ? nullptr : systemFiles().open(file, access);
  };
  ConfigStore store(files);
  EXPECT_FALSE(store.open(path()));
  EXPECT_FALSE(store.readable());
  Settings settings = loadSettings(store);
  settings.simulate = true;
  EXPECT_FALSE(saveSettings(store, settings, SettingGroup::gps));
  triesThatFail = 0;
  EXPECT_TRUE(store.save());
  EXPECT_EQ(findings(), "COM7 4800 1");
  triesThatFail = 2;
  settings = loadSettings(store);
  settings.baudRate = 38400;
  EXPECT_TRUE(saveSettings(store, settings, SettingGroup::gps)) << "held for a moment";
  EXPECT_EQ(findings(), "COM7 38400 1");
  EXPECT_FALSE(fs::exists(path("vgps.bad")));
}

TEST_F(ConfigFile, AWriteThatComesUpShortLeavesTheOldText) {
  XmlFiles failing = systemFiles();
  failing.roomOnDisk = [](const std::string&) { return UINT64_MAX; };
  static bool isFailing;
  failing.write = [](void* file, const char* from, size_t size) {
    return systemFiles().write(file, from, std::exchange(isFailing, false) ? size / 2 : size);
  };
  const std::string old =
      "<root><cfg><gps port=\"COM7\" speed=\"4800\"/></cfg></root>" + std::string(5000, ' ');
  for (const std::string& before : {old, std::string()}) {
    isFailing = true;
    fs::remove(path());
    if (!before.empty()) write(before);
    ConfigStore store(failing);
    EXPECT_TRUE(store.open(path()));
    EXPECT_FALSE(store.tellRefusal());
    store.set(*findSetting("cfg\\gps", "port"), "COM3");
    EXPECT_FALSE(store.save());
    EXPECT_EQ(read(), before);
    EXPECT_EQ(fs::exists(path()), !before.empty()) << "half a file would be a damaged one";
    EXPECT_TRUE(store.tellRefusal());
    EXPECT_FALSE(store.tellRefusal()) << "once";
    EXPECT_TRUE(store.save()) << "the next time";
    EXPECT_NE(read().find("COM3"), std::string::npos);
  }
}

// Two programs have the file open; each keeps what the other changed, also when a whole group is
// written more than once.
TEST_F(ConfigFile, WhatAnotherProgramChangedStays) {
  write("<root><cfg><gps port=\"COM1\" speed=\"4800\"/></cfg><mine a=\"1\"/></root>");
  ASSERT_TRUE(store_.open(path()));
  Settings settings = loadSettings(store_);
  {
    ConfigStore other;
    ASSERT_TRUE(other.open(path()));
    other.set(*findSetting("cfg\\gps", "port"), std::string_view("COM22"));
    other.set(*findSetting("cfg\\vgps", "sxv"), 90);
    other.setOther("Cfg\\Other", "zoom", "3");
    ASSERT_TRUE(other.save());
  }
  for (const int speed : {9600, 19200, 38400}) {
    settings.baudRate = speed;
    ASSERT_TRUE(saveSettings(store_, settings, SettingGroup::gps));
    ConfigStore again;
    ASSERT_TRUE(again.open(path()));
    const Settings now = loadSettings(again);
    EXPECT_EQ(now.port, "COM22");
    EXPECT_EQ(now.speedLimit, 90);
    EXPECT_EQ(now.baudRate, speed);
    EXPECT_EQ(XmlGetString("Cfg\\Other", "zoom", "", nullptr, &again.document()), "3");
    EXPECT_EQ(XmlGetString("mine", "a", "", nullptr, &again.document()), "1");
  }
  settings.port = "COM4";  // what is changed here wins
  ASSERT_TRUE(saveSettings(store_, settings, SettingGroup::gps));
  ConfigStore last;
  ASSERT_TRUE(last.open(path()));
  EXPECT_EQ(loadSettings(last).port, "COM4");
}

TEST_F(ConfigFile, AFailedSaveStaysChangedAndLosesNothing) {
  fs::create_directories(folder_ / "folder.xml");
  store_.open(path("folder.xml"));  // there and unreadable, or not there: as the system sees it
  store_.set(*findSetting("cfg\\gps", "speed"), 4800);
  EXPECT_FALSE(store_.save());
  EXPECT_TRUE(store_.changed());
  EXPECT_EQ(store_.number(*findSetting("cfg\\gps", "speed")), 4800);
}

}  // namespace
}  // namespace vgps
