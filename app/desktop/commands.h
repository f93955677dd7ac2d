#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "app/desktop/command.h"
#include "base/texts.h"

namespace vgps {

struct AppState;
struct Desktop;

// Carries out the command, on the user-interface thread.
using CommandHandler = void (*)(Desktop& app, Command command);
using CommandPredicate = bool (*)(const AppState& app, Command command);

// A command that can come from a menu item, a key, a hot key, or another part of the program.
struct CommandRow {
  Command command;
  Command last;  // differs from `command` only for a range
  CommandHandler handler;
  CommandPredicate checked = nullptr;  // the menu item has a check mark
  CommandPredicate enabled = nullptr;  // grayed if this returns false; null: always enabled
};

// In ascending order of number, without duplicates.
std::span<const CommandRow> commandRows();

// Returns null if there is no such command.
const CommandRow* findCommand(Command command);

// Returns false if there is no such command.
bool runCommand(Desktop& app, Command command);

// Returns false if the command has no function yet because its screen, dialog, or feature is
// missing. Menus omit such commands; keys and other programs still get an answer.
bool isAvailable(Command command);

// Runs a command from a hot key: its result is shown immediately, even right after a repaint.
bool runHotKey(Desktop& app, Command command);

// Handler for commands that are not implemented yet; shows a notice in the status line. Rows that
// use it list the missing features.
void notImplemented(Desktop& app, Command command);

// The text of a command's menu item: its number is 10000 plus the command's.
constexpr Text itemText(Command command) {
  return static_cast<Text>(10000 + static_cast<uint32_t>(command));
}

}  // namespace vgps
