#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace vgps {

struct AppState;

// Does what the command of that number says. On the user-interface thread.
using CommandHandler = void (*)(AppState& app, uint32_t number);
using CommandPredicate = bool (*)(const AppState& app, uint32_t number);

// What a menu item, a key, a hot key or another part of the program can ask for.
struct CommandRow {
  uint32_t number;
  uint32_t last;  // above `number` only where the number itself is the argument
  CommandHandler handler;
  const char* what;                    // for whom reads the table
  CommandPredicate checked = nullptr;  // a mark stands before the menu item
  CommandPredicate enabled = nullptr;  // greyed when false; null: always
};

// Ascending by number, no two with the same.
std::span<const CommandRow> commandRows();

// Null when there is no such command.
const CommandRow* findCommand(uint32_t number);

// False when there is no such command.
bool runCommand(AppState& app, uint32_t number);

// A command that came from a hot key: its result is shown at once, whatever was drawn just now.
bool runHotKey(AppState& app, uint32_t number);

// The handler of what does not exist yet: says so in the status line. Rows that point here are
// what is missing.
void notBuilt(AppState& app, uint32_t number);

// The number of the text of a command's menu item in res/texts.def.
constexpr uint32_t menuTextNumber(uint32_t command) { return 10000 + command; }

}  // namespace vgps
