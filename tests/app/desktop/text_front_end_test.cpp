#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "app/desktop/commands.h"
#include "app/desktop/dialogs.h"
#include "app/desktop/menus.h"
#include "tests/fakes/fake_dialog_view.h"
#include "tests/fakes/program_world.h"
#include "tests/places.h"

// A front end without windows and layouts: every menu and dialog as lines of text, out of the same
// rows. What it shows is compared with tests/answers/front_end.txt, which tools/renew_answers.sh
// writes anew.
namespace vgps {
namespace {

std::string itemLine(const AppState& app, Command command) {
  std::string line = (menuItemChecked(app, command) ? "* " : "  ") + menuItemText(command);
  if (!menuItemEnabled(app, command)) line += " (gray)";
  return line;
}

std::string menus(const AppState& app) {
  std::string text;
  size_t depth = 0;
  const auto put = [&](const std::string& line) {
    text += std::string(2 * depth, ' ') + line + '\n';
  };
  for (const MenuRow& row : offeredMenuRows()) {
    switch (row.kind) {
      case MenuRow::popup:
        put("  " + std::string(textOf(row.text)) + ':');
        ++depth;
        break;
      case MenuRow::item: put(itemLine(app, row.command)); break;
      case MenuRow::separator: put("  --"); break;
      case MenuRow::end: --depth; break;
    }
  }
  EXPECT_EQ(depth, 0U) << "a menu is not closed";
  return text;
}

// The items whose mark or color is another one than before.
std::string changedItems(const AppState& before, const AppState& after) {
  std::string text;
  for (const MenuRow& row : offeredMenuRows()) {
    if (row.kind != MenuRow::item) continue;
    const std::string line = itemLine(after, row.command);
    if (line != itemLine(before, row.command)) text += line + '\n';
  }
  return text;
}

std::string hotKeys() {
  std::string text;
  for (const KeyRow& row : hotKeyRows()) {
    text += "  " + keyText(row) + ": " + std::string(textOf(itemText(row.command))) + '\n';
  }
  return text;
}

std::string colorText(Color color) {
  char text[16];
  std::snprintf(text, sizeof text, "#%02X%02X%02X", color & 0xFF, color >> 8 & 0xFF,
                color >> 16 & 0xFF);
  return text;
}

// What can be typed, how long, and what is suggested.
std::string boxText(const FakeDialogView::Control& control) {
  std::string text = "<" + control.text + ">";
  if (control.limit > 0) text += " of " + std::to_string(control.limit);
  for (const std::string& item : control.items) text += ", " + item;
  return text;
}

std::string listText(const FakeDialogView::Control& control) {
  std::string text;
  for (size_t i = 0; i < control.items.size(); ++i) {
    text += static_cast<int>(i) == control.selected ? " *" : " ";
    text += control.items[i];
  }
  return text;
}

std::string checkText(const FakeDialogView::Control& control) {
  return control.checked ? "[x] " : "[ ] ";
}

std::string fieldLine(const DialogField& field, FakeDialogView& view) {
  const FakeDialogView::Control& control = view.controls[field.control];
  std::string line(textOf(field.label));
  switch (field.kind) {
    case FieldKind::check: line = checkText(control) + line; break;
    case FieldKind::switched:
      line = checkText(view.controls[field.switchControl]) + line + ' ' + boxText(control);
      break;
    case FieldKind::list: line += listText(control); break;
    case FieldKind::color: line += ' ' + colorText(control.color); break;
    case FieldKind::radio:
      for (const DialogChoice& choice : field.choices) {
        line += view.controls[choice.control].checked ? " (*) " : " ( ) ";
        line += textOf(choice.text);
      }
      break;
    case FieldKind::number:
    case FieldKind::decimal:
    case FieldKind::text:
    case FieldKind::box: line += ' ' + boxText(control); break;
  }
  if (!control.enabled) line += " (gray)";
  return line;
}

std::string actionLine(const Dialog& dialog, const DialogAction& action) {
  std::string line = "<" + std::string(textOf(action.label)) + ">";
  for (const DialogField& field : dialog.fields) {
    if (field.control == action.target) line += " for " + std::string(textOf(field.label));
  }
  if (action.sound != nullptr) line += " or " + std::string(action.sound);
  if (action.files.text != Text{}) line += " from " + std::string(textOf(action.files.text));
  return line;
}

std::string dialogsOf(const DialogContext& context) {
  std::string text;
  for (const Dialog& dialog : dialogs()) {
    FakeDialogView view;
    fillDialog(dialog, view, context);
    text += "\n" + std::string(textOf(dialog.texts)) + ", by " +
            std::string(textOf(itemText(dialog.command))) + '\n';
    for (const DialogField& field : dialog.fields) text += "  " + fieldLine(field, view) + '\n';
    for (const DialogAction& row : dialog.actions) text += "  " + actionLine(dialog, row) + '\n';
  }
  return text;
}

// What each command that works does in a program just started: marks and grays that change, what is
// said, asked and opened.
std::string commands(const AppState& before) {
  std::string text;
  for (const CommandRow& row : commandRows()) {
    if (row.handler == notImplemented) continue;
    for (const Command command : std::set<Command>{row.command, row.last}) {
      ProgramWorld world;
      world.load("");
      runCommand(world.app, command);
      const FakeWindow& window = world.window;
      text += std::to_string(static_cast<uint32_t>(command)) + ' ' +
              std::string(textOf(itemText(command))) + '\n' + changedItems(before, world.app);
      const auto tell = [&](const char* what, std::string_view said) {
        if (!said.empty()) text += std::string("  ") + what + ": " + std::string(said) + '\n';
      };
      tell("notice", currentNotice(world.app));
      for (const Command opened : window.dialogs) tell("dialog", textOf(itemText(opened)));
      for (const FileChoice& choice : window.choices) tell("file", choice.title);
      for (const auto& said : {window.questions, window.errors, window.told, window.done}) {
        for (const std::string& words : said) tell("window", words);
      }
      if (window.size.first != 0) {
        tell("size", std::to_string(window.size.first) + 'x' + std::to_string(window.size.second));
      }
    }
  }
  return text;
}

std::string frontEnd() {
  ProgramWorld world;
  world.load("");
  std::string text = "At the start\n" + menus(world.app);
  ProgramWorld recording;
  recording.load("", "simu=\"1\"");
  for (const Command command :
       {Command::simulateTapping, Command::connect, Command::viewRawLog, Command::startRecording}) {
    runCommand(recording.app, command);
  }
  text += "\nA simulation is being recorded\n" + changedItems(world.app, recording.app);
  runCommand(recording.app, Command::pauseOrResume);
  text += "\nThe recording is paused\n" + changedItems(world.app, recording.app);
  text += "\nKeys while other programs are in front\n" + hotKeys();
  text += "\nWhat each command does at the start\n" + commands(world.app);
  return text + dialogsOf({.store = world.app.config,
                           .settings = world.app.settings,
                           .ports = {{"COM3", "Prolific USB-to-Serial"}, {"COM27", ""}}});
}

TEST(TextFrontEnd, ShowsEveryMenuAndDialog) {
  const auto path = std::filesystem::path(sourceFolder()) / "tests/answers/front_end.txt";
  const std::string shown = frontEnd();
  if (std::getenv("VEXA_RENEW_ANSWERS") != nullptr) {
    ASSERT_TRUE(std::ofstream(path, std::ios::binary) << shown);
  }
  std::ifstream file(path, std::ios::binary);
  if (!file) GTEST_SKIP() << path << " is not here";
  EXPECT_EQ(shown, std::string(std::istreambuf_iterator<char>(file), {}));
}

}  // namespace
}  // namespace vgps
