#include "app/menus.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "app/commands.h"
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
  std::set<uint32_t> items;
  for (const MenuRow& row : menuRows()) {
    if (row.kind == MenuRow::separator) continue;
    if (row.kind == MenuRow::end) {
      ASSERT_GT(open.size(), 1U);
      open.pop_back();
      continue;
    }
    const bool isItem = row.kind == MenuRow::item;
    const std::string text(textOf(isItem ? menuTextNumber(row.number) : row.number));
    ASSERT_FALSE(text.empty()) << row.number;
    const char letter = mnemonicOf(text);
    ASSERT_NE(letter, '\0') << text;
    const auto& [other, isNew] = *open.back().emplace(letter, text).first;
    EXPECT_EQ(isNew, text) << "share the letter " << other;
    if (isItem) {
      EXPECT_NE(findCommand(row.number), nullptr) << text;
      EXPECT_TRUE(items.insert(row.number).second) << text << " stands twice";
    } else {
      open.emplace_back();
    }
  }
  EXPECT_EQ(open.size(), 1U) << "a menu is not closed";
  EXPECT_EQ(open[0].size(), 12U);
}

TEST(Menus, KeysAreNotGivenTwiceAndStandBehindTheirItems) {
  std::set<std::tuple<uint16_t, bool, bool, bool>> taken;
  for (const auto rows : {acceleratorRows(), hotKeyRows()}) {
    for (const KeyRow& row : rows) {
      EXPECT_TRUE(taken.insert({row.key, row.control, row.shift, row.alt}).second) << row.command;
      EXPECT_NE(findCommand(row.command), nullptr) << row.command;
    }
  }
  for (const KeyRow& row : acceleratorRows()) {
    EXPECT_TRUE(menuItemText(row.command).ends_with('\t' + keyText(row))) << row.command;
  }
  EXPECT_EQ(keyText({'R', true, true, true, 1202}), "Ctrl+Alt+Shift+R");
  EXPECT_EQ(keyText({0x7A, false, true, false, 1203}), "Shift+F11");
}

TEST(Menus, MarksAndGreyItemsFollowTheState) {
  ProgramWorld world;
  world.load("", "simu=\"1\"");
  world.app.gps.simulation.paceMs = 600000;
  const auto state = [&](uint32_t command) {
    return std::string(menuItemEnabled(world.app, command) ? "enabled" : "grey") +
           (menuItemChecked(world.app, command) ? " checked" : "");
  };
  EXPECT_EQ(state(102), "enabled");
  EXPECT_EQ(state(103), "grey");
  EXPECT_EQ(state(1202), "enabled");
  EXPECT_EQ(state(1204), "grey");
  EXPECT_EQ(state(1215), "grey");
  EXPECT_EQ(state(201), "enabled checked");
  EXPECT_EQ(state(299), "enabled");
  EXPECT_EQ(state(379), "enabled checked");
  EXPECT_EQ(state(1222), "enabled checked") << "the usual thresholds are those of driving";
  runCommand(world.app, 102);
  runCommand(world.app, 1202);
  runCommand(world.app, 299);
  EXPECT_EQ(state(102), "grey");
  EXPECT_EQ(state(103), "enabled");
  EXPECT_EQ(state(1202), "grey");
  EXPECT_EQ(state(1204), "enabled");
  EXPECT_EQ(state(1203), "enabled");
  EXPECT_EQ(state(201), "enabled");
  EXPECT_EQ(state(299), "enabled checked");
  runCommand(world.app, 1203);
  EXPECT_EQ(state(1203), "enabled checked");
  EXPECT_EQ(state(55555), "grey") << "no such command";
}

TEST(Texts, ALanguageLibraryReplacesEveryOne) {
  EXPECT_GT(textNumbers().size(), 200U);
  setTextSource([](uint32_t number) { return "<" + std::to_string(number) + ">"; });
  for (const uint32_t number : textNumbers()) {
    EXPECT_EQ(textOf(number), "<" + std::to_string(number) + ">");
  }
  EXPECT_EQ(menuItemText(102), "<10102>\tF5");
  // A library that knows one text only.
  setTextSource([](uint32_t number) { return number == 601 ? "kein GPS" : std::string(); });
  EXPECT_EQ(textOf(601), "kein GPS");
  EXPECT_EQ(textOf(608), "All port tests failed.");
  setTextSource({});
  EXPECT_EQ(textOf(601), "GPS Opening failed");
  EXPECT_EQ(textOf(99999), "");
}

TEST(Texts, ValuesAreFilledIn) {
  EXPECT_EQ(textWith(505, "3"), "COM3 GPS Found!");
  EXPECT_EQ(textWith(801, "COM%s", "9600"), "COM%s, 9600 baud") << "values are not searched";
  EXPECT_EQ(textWith(608, "x"), "All port tests failed.");
}

}  // namespace
}  // namespace vgps
