#include "app/settings/config_store.h"

#include <gtest/gtest.h>

#include <utility>

#include "app/settings/settings_table.h"
#include "display/palette.h"
#include "files/file_lock.h"
#include "files/redo_journal.h"
#include "tests/fakes/test_folder.h"

namespace vgps {
namespace {

const SettingRow& kPort = *Setting(&Settings::port);
const SettingRow& kSpeed = *Setting(&Settings::baudRate);

class ConfigFile : public testing::Test {
 protected:
  std::string path() const { return folder_ / "vgps.xml"; }
  void write(const std::string& text) const { folder_.write("vgps.xml", text); }
  std::string read() const { return folder_.read("vgps.xml"); }
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
  // Another program's change.
  void changeOutside(const SettingRow& row, std::string_view value) const {
    ConfigStore other;
    EXPECT_TRUE(other.open(path()));
    other.set(row, value);
    EXPECT_TRUE(other.save());
  }

  TestFolder folder_;
  ConfigStore store_;
};

TEST_F(ConfigFile, MissingAndEmptyFilesGiveTheDefaults) {
  for (const bool there : {false, true}) {
    if (there) write("");
    EXPECT_EQ(store_.open(path()), !there) << "an empty one was something once";
    const Settings settings = loadSettings(store_);
    EXPECT_EQ(settings.baudRate, 9600);
    EXPECT_EQ(settings.speedLimit, 200);
    EXPECT_EQ(settings.fontFactor, 1.0F);
    EXPECT_EQ(settings.zScale, 0.01F);
    EXPECT_EQ(settings.mapsFolder, ".\\maps");
    EXPECT_EQ(settings.colorSuccess, rgb(0, 0, 255)) << "blue";
    EXPECT_TRUE(settings.tripDataSpeed);
  }
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
  EXPECT_EQ(store_.number(*Setting(&Settings::speedUnit)), 9);
  EXPECT_TRUE(loaded("mfp=\"7\"").mapFollowsPosition);
}

TEST_F(ConfigFile, TheLedFontIsOffAtEveryStartAndTheDocumentUntouched) {
  EXPECT_FALSE(loaded("ulf=\"1\"").useLedFont);
  EXPECT_EQ(store_.number(*Setting(&Settings::useLedFont)), 1);
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
  settings.cameraColor = 0x00FF00;
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
  ASSERT_TRUE(saveSettings(store_, settings, SettingGroup::display));
  EXPECT_NE(read().find("fsf=\"1.00\""), std::string::npos) << read();
}

TEST_F(ConfigFile, ValuesAreWrittenAsTheirTypeSays) {
  ASSERT_TRUE(store_.open(path()));
  const SettingRow& real = *Setting(&Settings::zScale);
  for (const auto& [value, text] :
       {std::pair{0.01, "0.01"}, {-0.5, "-0.50"}, {0.004, "0.00"}, {1.0, "1.00"}}) {
    store_.set(real, value);
    EXPECT_EQ(store_.other(real.path, real.key), text);
  }
  const SettingRow& maps = *Setting(&Settings::mapsFolder);
  store_.set(maps, "");
  EXPECT_EQ(store_.string(maps), ".\\maps") << "a cleared text reads as the default";
}

TEST_F(ConfigFile, ADamagedFileIsKeptBesideBeforeItIsOverwritten) {
  const std::string damaged = "no element \xFF in here\n";
  for (const bool keeps : {true, false}) {
    write(damaged);
    EXPECT_FALSE(store_.open(path()));
    EXPECT_EQ(loadSettings(store_).baudRate, 9600);
    EXPECT_TRUE(store_.save());  // unchanged: nothing is written
    EXPECT_EQ(read(), damaged);
    store_.set(kSpeed, 4800);
    if (!keeps) {  // every name that a copy may have is taken
      removeFile(folder_ / "vgps.bad");
      for (int i = 1; i <= 99; ++i) {
        const std::string name = i == 1 ? "vgps.bad" : "vgps-" + std::to_string(i) + ".bad";
        std::filesystem::create_directory(folder_ / name);
      }
    }
    EXPECT_EQ(store_.save(), keeps);
    EXPECT_EQ(read().find("speed=\"4800\"") != std::string::npos, keeps);
    if (!keeps) {
      EXPECT_EQ(read(), damaged);
      continue;
    }
    EXPECT_EQ(folder_.read("vgps.bad"), damaged);
    store_.set(kSpeed, 1200);
    EXPECT_TRUE(store_.save());
    EXPECT_FALSE(folder_.has("vgps-2.bad")) << "what can be read is not copied";
  }
}

TEST_F(ConfigFile, WhatIsNoDocumentOfSettingsIsKept) {
  using std::string_literals::operator""s;
  const struct {
    const char* name;
    std::string bytes;
    const char* copy;  // empty: these are settings
  } rows[] = {
      {"program.xml",
       "\x7F"
       "ELF\0\0<root a=\"1\"/>\0"s,
       "program.bad"},
      {"other.xml", "<config a=\"1\"/>", "other.bad"},
      {"damaged.bad", "no element", "damaged-2.bad"},
      {"mine.xml", "<root a=\"1\"/>", ""},
      {"wide.xml", "\xFF\xFE<\0r\0o\0o\0t\0/\0>\0"s, ""},
      {"empty.xml", "", "empty.bad"},
      {"torn.xml", "<root><cfg><gps port=\"COM7\"/></cfg>", "torn.bad"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    folder_.write(row.name, row.bytes);
    store_.open(folder_ / row.name);
    store_.set(kSpeed, 4800);
    EXPECT_TRUE(store_.save());
    EXPECT_TRUE(store_.open(folder_ / row.name));
    EXPECT_EQ(store_.number(kSpeed), 4800);
    if (row.copy[0] != 0) {
      EXPECT_EQ(folder_.read(row.copy), row.bytes);
    }
  }
  EXPECT_EQ(folder_.names().size(), 12U);
}

// What was changed meanwhile goes into what the file turns out to hold.
TEST_F(ConfigFile, AFileThatIsLetGoOfLaterKeepsItsSettings) {
  static int triesThatFail;
  triesThatFail = 1000;
  const std::string held = "<root><cfg><gps port=\"COM7\" speed=\"4800\"/></cfg></root>";
  write(held);
  XmlFiles files = systemFiles();
  files.open = [](const std::string& file, XmlFiles::Access access) -> void* {
    const bool fails = access == XmlFiles::Access::read && triesThatFail-- > 0;
    return fails ? nullptr : systemFiles().open(file, access);
  };
  ConfigStore store({.files = &files});
  EXPECT_FALSE(store.open(path()));
  EXPECT_FALSE(store.readable());
  Settings settings = loadSettings(store);
  settings.simulate = true;
  EXPECT_FALSE(saveSettings(store, settings, SettingGroup::gps));
  EXPECT_EQ(read(), held) << "writing would have worked";
  triesThatFail = 0;
  EXPECT_TRUE(store.save());
  EXPECT_EQ(findings(), "COM7 4800 1");
  triesThatFail = 2;
  EXPECT_TRUE(refreshSettings(store, settings));
  settings.baudRate = 38400;
  EXPECT_TRUE(saveSettings(store, settings, SettingGroup::gps)) << "held for a moment";
  EXPECT_EQ(findings(), "COM7 38400 1");
  EXPECT_FALSE(folder_.has("vgps.bad"));
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
    removeFile(path());
    if (!before.empty()) write(before);
    ConfigStore store({.files = &failing});
    EXPECT_TRUE(store.open(path()));
    std::vector<std::string> told;
    const auto tell = [&](std::string_view text) { told.emplace_back(text); };
    EXPECT_FALSE(store.reportSaveFailureOnce(tell));
    store.set(kPort, "COM3");
    EXPECT_FALSE(store.save());
    EXPECT_EQ(read(), before);
    EXPECT_EQ(folder_.has("vgps.xml"), !before.empty()) << "half a file would be a damaged one";
    EXPECT_TRUE(store.reportSaveFailureOnce(tell));
    EXPECT_FALSE(store.reportSaveFailureOnce(tell)) << "once";
    EXPECT_EQ(told, std::vector<std::string>{"Cannot write the settings: " + path()});
    EXPECT_TRUE(store.save()) << "the next time";
    EXPECT_NE(read().find("COM3"), std::string::npos);
  }
}

// A document of settings that is cut off anywhere is damaged, also one of a single element.
TEST_F(ConfigFile, ACutDocumentIsToldAndKept) {
  for (const std::string whole :
       {"<root>\r\n\t<cfg>\r\n\t\t<gps port=\"COM7\"/>\r\n\t</cfg>\r\n</root>", "<root a=\"1\"/>",
        "<!-- mine --><root></root>"}) {
    for (size_t size = 0; size <= whole.size(); ++size) {
      write(whole.substr(0, size));
      EXPECT_EQ(store_.open(path()), size == whole.size()) << read();
      EXPECT_EQ(store_.isFullyLoaded(), size == whole.size());
    }
  }
}

// A disk that stops for good after so many bytes and calls, as when the power fails or the program
// is killed: everything after that has no effect.
struct StoppingDisk {
  static inline size_t left;  // bytes; a call that changes names or sizes counts as one
  static size_t take(size_t wanted) {
    const size_t taken = std::min(wanted, left);
    left -= taken;
    return taken;
  }
  struct File : ExclusiveFile {
    explicit File(std::unique_ptr<ExclusiveFile> real) : file(std::move(real)) {}
    uint64_t size() override { return file->size(); }
    size_t readAt(uint64_t at, std::span<uint8_t> into) override { return file->readAt(at, into); }
    bool writeAt(uint64_t at, std::span<const uint8_t> bytes) override {
      const size_t taken = take(bytes.size());
      return file->writeAt(at, bytes.first(taken)) && taken == bytes.size();
    }
    bool cutAt(uint64_t size) override { return take(1) == 1 && file->cutAt(size); }
    bool flush() override { return left > 0; }
    bool remove() override { return take(1) == 1 && file->remove(); }
    std::unique_ptr<ExclusiveFile> file;
  };
  static XmlFiles files() {
    XmlFiles files = systemFiles();
    files.open = [](const std::string& path, XmlFiles::Access access) -> void* {
      const bool allowed = access == XmlFiles::Access::read || take(1) == 1;
      return allowed ? systemFiles().open(path, access) : nullptr;
    };
    files.write = [](void* file, const char* from, size_t size) {
      const size_t taken = take(size);
      return systemFiles().write(file, from, taken);
    };
    return files;
  }
  static std::unique_ptr<ExclusiveFile> open(const std::string& path, OpenMode mode,
                                             FileOpening& opening) {
    auto file = openExclusive(path, mode, opening);
    return file == nullptr ? nullptr : std::make_unique<File>(std::move(file));
  }
};

TEST_F(ConfigFile, ASaveThatIsStoppedAtAnyByteLeavesTheOldSettingsOrTheNew) {
  const std::string old = "<root><cfg><gps port=\"COM7\" speed=\"4800\"/></cfg></root>";
  const XmlFiles files = StoppingDisk::files();
  for (const std::string& port : {std::string("COM22"), std::string("C")}) {
    bool done = false;
    bool wasOld = false;
    for (size_t bytes = 0; !done; ++bytes) {
      ASSERT_LT(bytes, 2000U);
      SCOPED_TRACE(bytes);
      std::filesystem::remove_all(path() + ".redo");
      write(old + (port.size() == 1 ? std::string(400, '\n') : ""));  // a shorter one needs a cut
      ConfigStore store({.files = &files, .open = StoppingDisk::open});
      StoppingDisk::left = SIZE_MAX;
      ASSERT_TRUE(store.open(path()));
      store.set(kPort, port);
      StoppingDisk::left = bytes;
      done = store.save();
      const std::string found = findings();
      wasOld |= found == "COM7 4800 0";
      EXPECT_EQ(found, (done || found != "COM7 4800 0" ? port : "COM7") + " 4800 0");
      EXPECT_FALSE(folder_.has("vgps.xml.redo"));
      EXPECT_FALSE(folder_.has("vgps.bad"));
    }
    EXPECT_TRUE(wasOld);
  }
}

// A journal of which the disk has only a part, or bytes that were never written.
TEST_F(ConfigFile, AJournalThatIsNotWholeChangesNothing) {
  RedoJournal journal(path());
  ASSERT_EQ(journal.keep("<root><cfg><gps port=\"COM3\"/></cfg></root>"),
            RedoJournal::SaveResult::kept);
  const std::string kept = folder_.read("vgps.xml.redo");
  for (size_t at = 0; at <= kept.size(); ++at) {
    for (const bool cut : {true, false}) {
      write("<root><cfg><gps port=\"COM7\" speed=\"4800\"/></cfg></root>");
      std::string part = kept.substr(0, at);
      if (!cut) part.resize(kept.size());
      folder_.write("vgps.xml.redo", part);
      EXPECT_EQ(findings(), at == kept.size() ? "COM3 9600 0" : "COM7 4800 0") << at;
      EXPECT_FALSE(folder_.has("vgps.xml.redo"));
    }
  }
}

TEST_F(ConfigFile, WhoWaitsInVainForAnotherProgramSaysSo) {
  ConfigStore store({.waitForOthersMs = 50});
  ASSERT_TRUE(store.open(path()));
  store.set(kPort, "COM3");
  {
    const FileLock other(lockPathOf(path()), openExclusive, 0);
    EXPECT_FALSE(store.save());
    EXPECT_TRUE(store.heldByAnother());
    EXPECT_FALSE(folder_.has("vgps.xml"));
    ConfigStore late({.waitForOthersMs = 0});
    EXPECT_FALSE(late.open(path()));
    EXPECT_FALSE(late.readable());
  }
  EXPECT_TRUE(store.save());
  EXPECT_EQ(findings(), "COM3 9600 0");
}

// Two programs have the file open; each keeps what the other changed, also when a whole group is
// written more than once.
TEST_F(ConfigFile, WhatAnotherProgramChangedStays) {
  write("<root><cfg><gps port=\"COM1\" speed=\"4800\"/></cfg><mine a=\"1\"/></root>");
  ASSERT_TRUE(store_.open(path()));
  Settings settings = loadSettings(store_);
  changeOutside(kPort, "COM22");
  for (const int speed : {9600, 19200, 38400}) {
    settings.baudRate = speed;
    ASSERT_TRUE(saveSettings(store_, settings, SettingGroup::gps));
    EXPECT_EQ(findings(), "COM22 " + std::to_string(speed) + " 0");
    EXPECT_NE(read().find("<mine a=\"1\"/>"), std::string::npos);
  }
  settings.port = "COM4";  // what is changed here wins
  ASSERT_TRUE(saveSettings(store_, settings, SettingGroup::gps));
  EXPECT_EQ(findings(), "COM4 38400 0");
}

TEST_F(ConfigFile, SettingsFollowWhatCameIntoTheDocumentAnotherWay) {
  Settings settings = loaded("sxv=\"90\" ulf=\"1\"");
  EXPECT_FALSE(refreshSettings(store_, settings));
  settings.speedLimit = 70;
  settings.useLedFont = true;
  ASSERT_TRUE(saveSettings(store_, settings, SettingGroup::speed));
  EXPECT_FALSE(refreshSettings(store_, settings)) << "these are the settings";

  store_.setOther("cfg\\vgps", "fsf", "9");
  settings.fontFactor = 2;
  EXPECT_TRUE(refreshSettings(store_, settings));
  EXPECT_EQ(settings.fontFactor, 1) << "corrected";
  EXPECT_TRUE(settings.useLedFont) << "off at a start only";
  EXPECT_FALSE(refreshSettings(store_, settings));
  ASSERT_TRUE(saveSettings(store_, settings, SettingGroup::display));
  EXPECT_EQ(store_.other("cfg\\vgps", "fsf"), "1.00");

  settings.baudRate = 4800;
  store_.put(kSpeed, settings);  // not saved yet
  changeOutside(kPort, "COM9");
  EXPECT_TRUE(refreshSettings(store_, settings));
  EXPECT_EQ(settings.port, "COM9");
  EXPECT_EQ(settings.baudRate, 4800) << "still to be saved";
  EXPECT_FALSE(refreshSettings(store_, settings));
  ASSERT_TRUE(store_.save());
  EXPECT_EQ(findings(), "COM9 4800 0");

  changeOutside(kPort, "COM22");
  ASSERT_TRUE(saveSettings(store_, settings, SettingGroup::map));
  EXPECT_TRUE(refreshSettings(store_, settings)) << "what the save found in the file";
  EXPECT_EQ(settings.port, "COM22");

  write("no document");
  EXPECT_FALSE(refreshSettings(store_, settings));
  EXPECT_EQ(settings.port, "COM22");
}

}  // namespace
}  // namespace vgps
