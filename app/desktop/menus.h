#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "app/desktop/command.h"
#include "base/texts.h"

namespace vgps {

struct AppState;

// The menu bar, in the order of its items; popups nest.
struct MenuRow {
  enum Kind : uint8_t { popup, item, separator, end };
  Kind kind;
  Text text{};        // of a popup
  Command command{};  // of an item
};
std::span<const MenuRow> menuRows();
// Without the commands that are not available, and without the popups and lines that lose their
// sense by that.
std::span<const MenuRow> offeredMenuRows();

// Keys are the system-independent numbers that Windows calls virtual key codes: letters and digits
// as their ASCII capitals, F1 is 0x70.
struct KeyRow {
  uint16_t key;
  bool control, shift, alt;
  Command command;
};

// While the program's window is in front.
std::span<const KeyRow> acceleratorRows();
// Whatever program is in front.
std::span<const KeyRow> hotKeyRows();

// "Connect\tF5": the text with its mnemonic ("&") and, where there is one, the key behind a tab.
std::string menuItemText(Command command);
// "Ctrl+Shift+R"
std::string keyText(const KeyRow& row);

bool menuItemChecked(const AppState& app, Command command);
bool menuItemEnabled(const AppState& app, Command command);

}  // namespace vgps
