#include "app/desktop/dialogs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "app/desktop/dialog_hidden_option.h"
#include "res/dialog_ids.h"
#include "tests/fakes/fake_dialog_view.h"
#include "tests/fakes/test_folder.h"
#include "xml/profile.h"

// Settings dialogs with a view that is no window.
namespace vgps {
namespace {

constexpr Command kMap = Command::mapOptions, kSpeed = Command::speedOptions,
                  kDisplay = Command::settings, kRecord = Command::recordingOptions,
                  kDistance = Command::distanceViews, kTracking = Command::liveTracking,
                  kPlay = Command::playbackOptions, kColors = Command::colors,
                  kCamera = Command::cameraBox, kSounds = Command::sounds,
                  kMap3d = Command::map3dOptions;

class DialogRows : public testing::Test {
 protected:
  DialogRows() { holds(""); }

  std::string path() const { return folder_ / "vgps.xml"; }
  std::string file() const { return folder_.read("vgps.xml"); }

  // A document with these elements below "cfg"; ' stands for ".
  void holds(std::string elements) {
    std::replace(elements.begin(), elements.end(), '\'', '"');
    folder_.write("vgps.xml", "<root><cfg>" + elements + "</cfg></root>");
    store_.open(path());
    settings_ = loadSettings(store_);
    view_ = {};
  }
  void open(Command command) {
    dialog_ = findDialog(command);
    ASSERT_NE(dialog_, nullptr) << int(command);
    fillDialog(*dialog_, view_, context_);
  }
  void openWith(Command command, const std::string& elements) {
    holds(elements);
    open(command);
  }
  FakeDialogView::Control& at(uint16_t control) { return view_.controls[control]; }
  void type(uint16_t control, std::string text) { at(control).text = std::move(text); }
  void set(uint16_t control, bool checked) {
    at(control).checked = checked;
    press(control);
  }
  bool press(uint16_t control) { return pressControl(*dialog_, view_, control); }
  void ok() { confirmDialog(*dialog_, view_, context_); }
  // As the next start finds it.
  std::string stored(const char* element, const char* key) {
    return XmlGetString(element, key, "(none)", path().c_str());
  }

  TestFolder folder_;
  ConfigStore store_;
  Settings settings_;
  int saved_ = 0;
  DialogContext context_{
      .store = store_, .settings = settings_, .saved = [this](const Dialog&) { ++saved_; }};
  FakeDialogView view_;
  const Dialog* dialog_ = nullptr;
};

TEST_F(DialogRows, EachSettingIsInOneDialogThatSavesItsGroup) {
  std::set<std::string> edited;
  for (const Dialog& dialog : dialogs()) {
    if (dialog.command == Command::firstRecording) continue;  // some of the recording options
    for (const DialogField& field : dialog.fields) {
      const SettingRow& row = *field.setting;
      EXPECT_TRUE(edited.insert(std::string(row.path) + "/" + row.key).second) << row.key;
      EXPECT_NE(std::find(dialog.groups.begin(), dialog.groups.end(), row.group),
                dialog.groups.end())
          << dialog.layout << " does not save " << row.key;
    }
  }
}

// Opened and confirmed at once, a dialog leaves a document in good order as it is.
TEST_F(DialogRows, ConfirmingUntouchedKeepsEveryValue) {
  for (const Dialog& dialog : dialogs()) {
    holds("");
    for (const DialogField& field : dialog.fields) {
      const SettingRow& row = *field.setting;
      if (row.type == SettingType::string) {
        store_.set(row, std::string("of ") + row.key);
      } else {
        store_.set(row, row.type == SettingType::color ? 0x123456 : 1);
      }
    }
    settings_ = loadSettings(store_);
    const Settings before = settings_;
    open(dialog.command);
    ok();
    const Settings after = loadSettings(store_);
    for (const SettingRow& row : settingRows()) {
      EXPECT_EQ(numberOf(after, row), numberOf(before, row)) << dialog.layout << " " << row.key;
      EXPECT_EQ(textOf(after, row), textOf(before, row)) << dialog.layout << " " << row.key;
      EXPECT_EQ(numberOf(settings_, row), numberOf(before, row)) << dialog.layout << row.key;
    }
  }
}

TEST_F(DialogRows, SettingsThatNothingReadsCannotBeChanged) {
  open(kDisplay);
  EXPECT_FALSE(at(CONTROL_SOLID_COMPASS).enabled);
  EXPECT_TRUE(at(CONTROL_AUTO_CONNECT).enabled);
  EXPECT_FALSE(view_.note.empty());
  set(CONTROL_AUTO_CONNECT, true);
  EXPECT_FALSE(at(CONTROL_SOLID_COMPASS).enabled) << "whatever else is pressed";
  view_ = {};
  open(kMap);
  EXPECT_FALSE(at(CONTROL_CHOOSE_MAPS_FOLDER).enabled) << "the button of a box goes with it";
  view_ = {};
  open(kDistance);
  EXPECT_EQ(view_.note, "") << "all of them are in use";
}

struct Typed {
  Command command;
  uint16_t control;
  const char* typed;
  const char* element;
  const char* key;
  const char* stored;
};

TEST_F(DialogRows, NumbersAreCorrectedWhenConfirmed) {
  const Typed cases[] = {
      // A zero or empty value is replaced by the default.
      {kRecord, CONTROL_RECORD_SPEED_STEP, "0", "cfg\\track", "speed", "5"},
      {kRecord, CONTROL_RECORD_ANGLE_STEP, "", "cfg\\track", "angle", "10"},
      {kRecord, CONTROL_RECORD_ALTITUDE_STEP, "x", "cfg\\track", "alt", "30"},
      {kRecord, CONTROL_NORMALIZE_METRES, "0", "cfg\\vgps", "ntm", "15"},
      {kRecord, CONTROL_NORMALIZE_METRES, "1", "cfg\\vgps", "ntm", "1"},
      {kRecord, CONTROL_BACKUP_MINUTES, "0", "cfg\\vgps", "bki", "0"},
      {kRecord, CONTROL_EVERY, "0", "cfg\\vgps", "res", "0"},
      {kPlay, CONTROL_RECALCULATE, "30", "cfg\\vgps", "rws", "30"},
      {kPlay, CONTROL_RECALCULATE, "31", "cfg\\vgps", "rws", "5"},
      {kPlay, CONTROL_RECALCULATE, "0", "cfg\\vgps", "rws", "0"},
      {kPlay, CONTROL_REACH_METRES, "0", "cfg\\vgps", "wrm", "15"},
      {kPlay, CONTROL_REACH_METRES, "1", "cfg\\vgps", "wrm", "1"},
      {kPlay, CONTROL_REACH_SECONDS, "", "cfg\\vgps", "wrs", "10"},
      {kPlay, CONTROL_PATH_LINE, "31", "cfg\\vgps", "pls", "5"},
      {kPlay, CONTROL_MAP_LINE, "31", "cfg\\vgps", "mls", "2"},
      {kPlay, CONTROL_MAP_LINE, "30", "cfg\\vgps", "mls", "30"},
      {kPlay, CONTROL_MAP_LINE, "99999999999", "cfg\\vgps", "mls", "2"},
      {kPlay, CONTROL_WARN_ANGLE, "-3", "cfg\\vgps", "swa", "-3"},
      // As the loader corrects them.
      {kMap, CONTROL_MAP_MARGIN, "50", "cfg\\vgps", "margin", "50"},
      {kMap, CONTROL_MAP_MARGIN, "51", "cfg\\vgps", "margin", "20"},
      {kDisplay, CONTROL_FRAME_SKIP, "11", "cfg\\vgps", "gfs", "0"},
      {kDisplay, CONTROL_FONT_FACTOR, "5.01", "cfg\\vgps", "fsf", "1.00"},
      {kDisplay, CONTROL_FONT_FACTOR, "1,25", "cfg\\vgps", "fsf", "1.25"},
      {kMap3d, CONTROL_Z_SCALE, "-0.5", "cfg\\vgps", "mzs", "-0.50"},
      {kMap3d, CONTROL_Z_SCALE, "", "cfg\\vgps", "mzs", "0.01"},
      {Command::gpsSetup, CONTROL_BAUD_RATE, "115200", "cfg\\gps", "speed", "115200"},
      {Command::gpsSetup, CONTROL_BAUD_RATE, "", "cfg\\gps", "speed", "9600"},
      {kTracking, CONTROL_SMS_SECONDS, "-1", "cfg\\vgps", "sts", "0"},
  };
  for (const Typed& row : cases) {
    openWith(row.command, "");
    type(row.control, row.typed);
    ok();
    EXPECT_EQ(stored(row.element, row.key), row.stored) << row.key << " typed: " << row.typed;
  }
}

TEST_F(DialogRows, TextsAreCutToWhatIsReadBack) {
  openWith(Command::gpsSetup, "");
  EXPECT_EQ(at(CONTROL_PORT).limit, 10u);
  type(CONTROL_PORT, "COM123456789");
  ok();
  EXPECT_EQ(stored("cfg\\gps", "port"), "COM1234567");

  openWith(kSounds, "");
  const std::string clef = "\xF0\x9D\x84\x9E";  // two UTF-16 units that stay together
  type(CONTROL_SOUND_OK, std::string(299, 'a') + clef);
  ok();
  EXPECT_EQ(stored("cfg\\vgps", "sound_ok"), std::string(299, 'a'));
}

TEST_F(DialogRows, NegatedWhileItsBoxIsOff) {
  openWith(kRecord, "<vgps res='-3' bes='4'/>");
  EXPECT_EQ(at(CONTROL_EVERY).text, "3");
  EXPECT_FALSE(at(CONTROL_EVERY_ON).checked);
  EXPECT_FALSE(at(CONTROL_EVERY).enabled);
  EXPECT_EQ(at(CONTROL_BES).text, "4");
  EXPECT_TRUE(at(CONTROL_BES_ON).checked);
  set(CONTROL_EVERY_ON, true);
  EXPECT_TRUE(at(CONTROL_EVERY).enabled);
  set(CONTROL_BES_ON, false);
  ok();
  EXPECT_EQ(stored("cfg\\vgps", "res"), "3");
  EXPECT_EQ(stored("cfg\\vgps", "bes"), "-4");
}

TEST_F(DialogRows, PresetsFillTheThreeThresholds) {
  const struct {
    uint16_t button;
    const char *speed, *angle, *altitude;
  } presets[] = {{CONTROL_PRESET_WALKING, "1", "20", "10"},
                 {CONTROL_PRESET_DRIVING, "5", "10", "30"},
                 {CONTROL_PRESET_FLYING, "50", "5", "100"}};
  for (const auto& preset : presets) {
    openWith(kRecord, "");
    press(preset.button);
    ok();
    EXPECT_EQ(stored("cfg\\track", "speed"), preset.speed);
    EXPECT_EQ(stored("cfg\\track", "angle"), preset.angle);
    EXPECT_EQ(stored("cfg\\track", "alt"), preset.altitude);
  }
}

TEST_F(DialogRows, ASourceWithoutAPortDisablesTheRest) {
  const uint16_t boxes[] = {CONTROL_SIMULATE, CONTROL_GPS_API, CONTROL_SENSOR_API};
  const char* const keys[] = {"simu", "gapi", "sapi"};
  for (size_t i = 0; i < std::size(boxes); ++i) {
    openWith(Command::gpsSetup, std::string("<gps ") + keys[i] + "='1'/>");
    for (const bool checked : {true, false, true}) {
      set(boxes[i], checked);
      EXPECT_EQ(at(CONTROL_PORT).enabled, !checked) << keys[i];
      EXPECT_EQ(at(CONTROL_BAUD_RATE).enabled, !checked) << keys[i];
      for (const uint16_t box : boxes) {
        EXPECT_EQ(at(box).enabled, box == boxes[i] || !checked) << keys[i] << " " << box;
      }
    }
    ok();
    for (size_t k = 0; k < std::size(keys); ++k) {
      EXPECT_EQ(stored("cfg\\gps", keys[k]), k == i ? "1" : "0");
    }
  }
  // Two at once, which other editors can write, must not lock the person out.
  openWith(Command::gpsSetup, "<gps simu='1' sapi='1'/>");
  EXPECT_TRUE(at(CONTROL_SIMULATE).enabled);
  EXPECT_TRUE(at(CONTROL_SENSOR_API).enabled);
  EXPECT_FALSE(at(CONTROL_GPS_API).enabled);
}

TEST_F(DialogRows, EpochButtonsStandForTheirNumbers) {
  const struct {
    uint16_t button;
    const char* value;
  } cases[] = {{CONTROL_EPOCH_RMC, "1"},
               {CONTROL_EPOCH_GGA, "2"},
               {CONTROL_EPOCH_AUTOMATIC, "0"},
               {CONTROL_EPOCH_BOTH, "3"}};
  for (const auto& wanted : cases) {
    openWith(Command::gpsSetup, std::string("<gps bsm='") + wanted.value + "'/>");
    for (const auto& other : cases) {
      EXPECT_EQ(at(other.button).checked, other.button == wanted.button) << wanted.value;
    }
    openWith(Command::gpsSetup, "<gps bsm='7'/>");
    at(wanted.button).checked = true;
    ok();
    EXPECT_EQ(stored("cfg\\gps", "bsm"), wanted.value);
  }
  openWith(Command::gpsSetup, "<gps bsm='7'/>");
  ok();
  EXPECT_EQ(stored("cfg\\gps", "bsm"), "7") << "nothing was chosen";
}

TEST_F(DialogRows, PortsThatAreThereAreOfferedByName) {
  context_.ports = {{"COM3", "Prolific USB-to-Serial"}, {"COM12", ""}, {"COM27", ""}};
  openWith(Command::gpsSetup, "<gps port='COM12' speed='4800'/>");
  EXPECT_EQ(at(CONTROL_PORT).items.size(), 22u);
  EXPECT_EQ(at(CONTROL_PORT).text, "COM12");
  type(CONTROL_PORT, at(CONTROL_PORT).items.front());
  ok();
  EXPECT_EQ(stored("cfg\\gps", "port"), "COM3");
  EXPECT_EQ(settings_.port, "COM3");
}

TEST_F(DialogRows, PortSearchTellsWhoAnswered) {
  openWith(Command::gpsSetup, "");
  EXPECT_TRUE(press(CONTROL_SEARCH_PORTS));
  type(CONTROL_BAUD_RATE, "");
  EXPECT_EQ(searchSpeed(view_), 0u);
  type(CONTROL_BAUD_RATE, "38400");
  EXPECT_EQ(searchSpeed(view_), 38400u);
  tellSearchResult(view_, {});
  EXPECT_EQ(view_.told, std::vector<std::string>{"All port tests failed."});
  EXPECT_EQ(at(CONTROL_PORT).text, "");
  view_.told.clear();
  const uint32_t answered[] = {3, 17};
  tellSearchResult(view_, answered);
  EXPECT_EQ(view_.told, (std::vector<std::string>{"COM3 GPS Found!", "COM17 GPS Found!"}));
  EXPECT_EQ(at(CONTROL_PORT).text, "COM3");
  const uint32_t another[] = {5};
  tellSearchResult(view_, another);
  EXPECT_EQ(at(CONTROL_PORT).text, "COM3") << "a port that was chosen stays";
}

TEST_F(DialogRows, ListsShowTheStoredUnit) {
  openWith(kDistance, "<vgps dmvl='2' dmvs='9'/>");
  EXPECT_EQ(at(CONTROL_LONG_UNIT).selected, 2);
  EXPECT_EQ(at(CONTROL_SHORT_UNIT).selected, -1);
  at(CONTROL_LONG_UNIT).selected = 1;
  ok();
  EXPECT_EQ(stored("cfg\\vgps", "dmvl"), "1");
  EXPECT_EQ(stored("cfg\\vgps", "dmvs"), "9") << "nothing was chosen";
}

// 0x00BBGGRR in decimal.
TEST_F(DialogRows, ColorsAreChosenAndStored) {
  openWith(kColors, "<cc c4='255'/>");
  EXPECT_EQ(at(CONTROL_COLOUR_SUCCESS).color, 0xFF0000u);
  press(CONTROL_COLOUR_FAILURE);  // given up
  view_.chosenColor = 0x00FF8040;
  press(CONTROL_COLOUR_ZONE);
  EXPECT_EQ(view_.asked, (std::vector<std::string>{"color|255", "color|16711935"}));
  ok();
  EXPECT_EQ(stored("cfg\\cc", "c4"), "255");
  EXPECT_EQ(stored("cfg\\cc", "c7"), "16744512");
  EXPECT_EQ(settings_.colorZone, 0xFF8040u);
}

TEST_F(DialogRows, FilesAreChosenAndSoundsHeard) {
  openWith(kSounds, "<vgps sound_ok='C:\\old.wav'/>");
  press(CONTROL_PLAY_SOUND_OK);
  press(CONTROL_PLAY_SOUND_ERROR);
  EXPECT_EQ(view_.played, (std::vector<std::string>{"C:\\old.wav", "ERR2"}));
  press(CONTROL_CHOOSE_SOUND_OK);  // given up
  EXPECT_EQ(at(CONTROL_SOUND_OK).text, "C:\\old.wav");
  view_.path = "D:\\gr\xC3\xBC\xC3\x9F.wav";
  press(CONTROL_CHOOSE_SOUND_OK);
  EXPECT_EQ(view_.asked.back(), "Sound files|*.wav|C:\\old.wav");
  ok();
  EXPECT_EQ(stored("cfg\\vgps", "sound_ok"), "D:\\gr\xC3\xBC\xC3\x9F.wav");
}

TEST_F(DialogRows, SavesItsOwnGroupOnly) {
  openWith(kCamera, "");
  settings_.speedLimit = 77;  // not confirmed by anybody
  type(CONTROL_CAMERA_LEFT, "10");
  ok();
  EXPECT_EQ(stored("cfg\\camera", "left"), "10");
  EXPECT_EQ(stored("cfg\\camera", "bottom"), "20");
  EXPECT_EQ(stored("cfg\\vgps", "sxv"), "(none)");
}

TEST_F(DialogRows, TheLedFontIsOnUntilTheEndOnly) {
  openWith(kDisplay, "<vgps ulf='1'/>");
  EXPECT_FALSE(at(CONTROL_LED_FONT).checked) << "off at every start";
  set(CONTROL_LED_FONT, true);
  ok();
  EXPECT_TRUE(settings_.useLedFont);
  EXPECT_EQ(stored("cfg\\vgps", "ulf"), "1");
  view_ = {};
  open(kDisplay);
  EXPECT_TRUE(at(CONTROL_LED_FONT).checked);
  EXPECT_FALSE(loadSettings(store_).useLedFont);
}

// A language library's layout may lack a control: its setting stays.
TEST_F(DialogRows, AControlThatIsNotThereChangesNothing) {
  holds("<vgps slw='1' sxv='90'/>");
  view_.missing = {CONTROL_SPEED_WARNING, CONTROL_SPEED_LIMIT};
  open(kSpeed);
  at(CONTROL_SPEED_WARNING) = {};
  at(CONTROL_SPEED_LIMIT) = {};
  ok();
  EXPECT_EQ(stored("cfg\\vgps", "slw"), "1");
  EXPECT_EQ(stored("cfg\\vgps", "sxv"), "90");
}

TEST_F(DialogRows, AnUnwritableDocumentIsTold) {
  ConfigStore nowhere;
  nowhere.open(folder_ / "missing/vgps.xml");
  DialogContext context{.store = nowhere, .settings = settings_};
  const Dialog& dialog = *findDialog(kPlay);  // saves two groups, tells once
  fillDialog(dialog, view_, context);
  type(CONTROL_REACH_METRES, "22");
  confirmDialog(dialog, view_, context);
  ASSERT_EQ(view_.told.size(), 1u);
  EXPECT_NE(view_.told[0].find(nowhere.path()), std::string::npos);
  EXPECT_EQ(settings_.reachMeters, 22) << "it holds until the end";
  EXPECT_TRUE(nowhere.changed()) << "and is tried again";
}

TEST_F(DialogRows, HiddenOptionsAreEditedByName) {
  holds("");
  store_.setOther("Cfg\\Other", "zoom", "3");
  std::vector<std::string> asked, told;
  std::vector<std::optional<std::string>> answers;
  const auto edit = [&](std::vector<std::optional<std::string>> typed) {
    asked.clear();
    answers = std::move(typed);
    return editHiddenOption(
        store_,
        [&](std::string_view caption, std::string_view prompt, const std::string& text) {
          asked.push_back(std::string(caption) + "|" + std::string(prompt) + "|" + text);
          return answers.at(asked.size() - 1);
        },
        [&](std::string_view text) { told.emplace_back(text); });
  };
  EXPECT_TRUE(edit({"zoom", "4 <&>"}));
  EXPECT_EQ(asked, (std::vector<std::string>{"Option|Option title:|", "Option|Option value:|3"}));
  EXPECT_EQ(stored("Cfg\\Other", "zoom"), "4 <&>");
  EXPECT_EQ(stored("cfg\\other", "zoom"), "(none)") << "another element by its case";
  EXPECT_FALSE(edit({std::nullopt}));
  EXPECT_FALSE(edit({"zoom", std::nullopt}));
  EXPECT_TRUE(told.empty());
  const std::string before = file();
  for (const char* title : {"", "1a", "a b", "a='1' b", "\xC3\xBC"}) EXPECT_FALSE(edit({title}));
  EXPECT_EQ(told.size(), 5u);
  EXPECT_EQ(file(), before);
}

}  // namespace
}  // namespace vgps
