#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "app/desktop/command.h"
#include "base/texts.h"

namespace vgps {

struct AppState;
struct Desktop;

// Does what the command says. On the user-interface thread.
using CommandHandler = void (*)(Desktop& app, Command command);
using CommandPredicate = bool (*)(const AppState& app, Command command);

// What a menu item, a key, a hot key or another part of the program can ask for.
struct CommandRow {
  Command command;
  Command last;  // behind `command` only for a range
  CommandHandler handler;
  CommandPredicate checked = nullptr;  // a mark stands before the menu item
  CommandPredicate enabled = nullptr;  // greyed when false; null: always
};

// Ascending by number, no two with the same.
std::span<const CommandRow> commandRows();

// Null when there is no such command.
const CommandRow* findCommand(Command command);

// False when there is no such command.
bool runCommand(Desktop& app, Command command);

// Whether there is something behind the command that works: not so if its screen, its dialog or the
// whole feature is missing. Menus leave such commands out; keys and other programs still get an
// answer.
bool isAvailable(Command command);

// A command that came from a hot key: its result is shown at once, whatever was drawn just now.
bool runHotKey(Desktop& app, Command command);

// Handler for commands that are not implemented yet; shows a notice in the status line. Rows that
// use it list the missing features.
void notImplemented(Desktop& app, Command command);

// The text of a command's menu item: its number is 10000 and the command's.
constexpr Text itemText(Command command) {
  return static_cast<Text>(10000 + static_cast<uint32_t>(command));
}

}  // namespace vgps
