#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "app/desktop/command.h"
#include "base/texts.h"

namespace vgps {

struct AppState;

// A row of the menu bar, in display order; popups can be nested.
struct MenuRow {
  enum Kind : uint8_t { popup, item, separator, end };
  Kind kind;
  Text text{};        // for a popup
  Command command{};  // for an item
};
std::span<const MenuRow> menuRows();
// Omits the commands that are not available, and popups and separators that this leaves empty.
std::span<const MenuRow> offeredMenuRows();

// Keys use the numbers of Windows virtual key codes on every system: letters and digits are ASCII
// (upper case), F1 is 0x70.
struct KeyRow {
  uint16_t key;
  bool control, shift, alt;
  Command command;
};

// Keys that work while the program's window is active.
std::span<const KeyRow> acceleratorRows();
// Keys that work while any program is active.
std::span<const KeyRow> hotKeyRows();

// "Connect\tF5": the text with its mnemonic ("&") and, if it has one, its key after a tab.
std::string menuItemText(Command command);
// "Ctrl+Shift+R"
std::string keyText(const KeyRow& row);

bool menuItemChecked(const AppState& app, Command command);
bool menuItemEnabled(const AppState& app, Command command);

}  // namespace vgps
