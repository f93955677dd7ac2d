#include "app/desktop/menus.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "app/desktop/commands.h"
#include "base/texts.h"
#include "tests/fakes/program_world.h"

namespace vgps {
namespace {

char mnemonicOf(std::string_view text) {
  const size_t mark = text.find('&');
  return mark == text.npos || mark + 1 == text.size()
             ? '\0'
             : static_cast<char>(std::tolower(static_cast<unsigned char>(text[mark + 1])));
}

TEST(Menus, EveryRowHasItsTextItsCommandAndALetterOfItsOwn) {
  std::vector<std::map<char, std::string>> open(1);
  std::set<Command> items;
  for (const MenuRow& row : menuRows()) {
    if (row.kind == MenuRow::separator) continue;
    if (row.kind == MenuRow::end) {
      ASSERT_GT(open.size(), 1U);
      open.pop_back();
      continue;
    }
    const bool isItem = row.kind == MenuRow::item;
    const std::string text(textOf(isItem ? itemText(row.command) : row.text));
    ASSERT_FALSE(text.empty()) << int(row.command);
    const char letter = mnemonicOf(text);
    ASSERT_NE(letter, '\0') << text;
    const auto& [other, isNew] = *open.back().emplace(letter, text).first;
    EXPECT_EQ(isNew, text) << "share the letter " << other;
    if (isItem) {
      EXPECT_NE(findCommand(row.command), nullptr) << text;
      EXPECT_TRUE(items.insert(row.command).second) << text << " stands twice";
    } else {
      open.emplace_back();
    }
  }
  EXPECT_EQ(open.size(), 1U) << "a menu is not closed";
  EXPECT_EQ(open[0].size(), 12U);
}

TEST(Menus, OfferWhatWorksAndNothingElse) {
  const auto answersNotAvailable = [](Command command) {
    ProgramWorld world;
    runCommand(world.app, command);
    return currentNotice(world.app) == "Not available yet.";
  };
  std::set<Command> offered;
  MenuRow::Kind before = MenuRow::popup;
  for (const MenuRow& row : offeredMenuRows()) {
    if (row.kind == MenuRow::item) offered.insert(row.command);
    const bool closes = row.kind == MenuRow::end || row.kind == MenuRow::separator;
    EXPECT_FALSE(closes && (before == MenuRow::popup || before == MenuRow::separator));
    before = row.kind;
  }
  AppWorld idle;
  for (const MenuRow& row : menuRows()) {
    if (row.kind != MenuRow::item) continue;
    const auto number = static_cast<uint32_t>(row.command);
    if (offered.contains(row.command)) {
      EXPECT_FALSE(menuItemEnabled(idle.app, row.command) && answersNotAvailable(row.command))
          << number;
    } else {
      EXPECT_FALSE(isAvailable(row.command)) << number;
    }
  }
  EXPECT_GT(offered.size(), 40U);
  for (const Command command :
       {Command::viewMap, Command::cartesian2d, Command::mapOptions, Command::playbackOptions}) {
    EXPECT_FALSE(offered.contains(command)) << static_cast<uint32_t>(command);
  }
  for (const Command command : {Command::markPoint, Command::recordPointNow, Command::clearRawLog,
                                Command::disconnect, Command::saveTrack, Command::stepSimulation}) {
    EXPECT_FALSE(menuItemEnabled(idle.app, command)) << static_cast<uint32_t>(command);
  }
}

TEST(Menus, KeysAreNotGivenTwiceAndStandBehindTheirItems) {
  std::set<std::tuple<uint16_t, bool, bool, bool>> taken;
  for (const auto rows : {acceleratorRows(), hotKeyRows()}) {
    for (const KeyRow& row : rows) {
      EXPECT_TRUE(taken.insert({row.key, row.control, row.shift, row.alt}).second)
          << int(row.command);
      EXPECT_NE(findCommand(row.command), nullptr) << int(row.command);
    }
  }
  for (const KeyRow& row : acceleratorRows()) {
    EXPECT_TRUE(menuItemText(row.command).ends_with('\t' + keyText(row))) << int(row.command);
  }
  EXPECT_EQ(keyText({'R', true, true, true, Command::startRecording}), "Ctrl+Alt+Shift+R");
  EXPECT_EQ(keyText({0x7A, false, true, false, Command::pauseOrResume}), "Shift+F11");
}

TEST(Texts, ALanguageLibraryReplacesEveryOne) {
  EXPECT_GT(allTexts().size(), 200U);
  setTextSource([](uint32_t number) { return "<" + std::to_string(number) + ">"; });
  for (const Text text : allTexts()) {
    EXPECT_EQ(textOf(text), "<" + std::to_string(static_cast<uint32_t>(text)) + ">");
  }
  EXPECT_EQ(menuItemText(Command::connect), "<10102>\tF5");
  // A library that knows one text only.
  setTextSource([](uint32_t number) { return number == 601 ? "kein GPS" : std::string(); });
  EXPECT_EQ(textOf(Text::openingFailed), "kein GPS");
  EXPECT_EQ(textOf(Text::noPortAnswered), "All port tests failed.");
  setTextSource({});
  EXPECT_EQ(textOf(Text::openingFailed), "GPS Opening failed");
  EXPECT_EQ(textOf(Text{99999}), "");
}

TEST(Texts, ValuesAreFilledIn) {
  EXPECT_EQ(textWith(Text::portFound, "3"), "COM3 GPS Found!");
  EXPECT_EQ(textWith(Text::serialSource, "COM%s", "9600"), "COM%s, 9600 baud")
      << "values are not searched";
  EXPECT_EQ(textWith(Text::noPortAnswered, "x"), "All port tests failed.");
}

}  // namespace
}  // namespace vgps
