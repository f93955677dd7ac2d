#include "app/win32/main_menu.h"

#include <vector>

#include "app/desktop/menus.h"
#include "base/texts.h"
#include "platform/win32/wide.h"

namespace vgps {
namespace {

void append(HMENU menu, UINT kind, UINT_PTR item, std::string_view text) {
  AppendMenuW(menu, kind, item, wideFromUtf8(text).c_str());
}

constexpr UINT hotKeyModifiers(const KeyRow& row) {
  return (row.control ? MOD_CONTROL : 0U) | (row.shift ? MOD_SHIFT : 0U) |
         (row.alt ? MOD_ALT : 0U) | MOD_NOREPEAT;
}

}  // namespace

HMENU createMainMenu() {
  std::vector<HMENU> open = {CreateMenu()};
  if (open.back() == nullptr) return nullptr;
  for (const MenuRow& row : offeredMenuRows()) {
    switch (row.kind) {
      case MenuRow::popup: {
        const HMENU popup = CreatePopupMenu();
        append(open.back(), MF_POPUP, reinterpret_cast<UINT_PTR>(popup), textOf(row.text));
        open.push_back(popup);
        break;
      }
      case MenuRow::item:
        append(open.back(), MF_STRING, static_cast<UINT_PTR>(row.command),
               menuItemText(row.command));
        break;
      case MenuRow::separator: append(open.back(), MF_SEPARATOR, 0, {}); break;
      case MenuRow::end: open.pop_back(); break;
    }
  }
  return open.front();
}

void updateMenu(HMENU menu, const AppState& app) {
  const int count = GetMenuItemCount(menu);
  for (int i = 0; i < count; ++i) {
    const UINT id = GetMenuItemID(menu, i);
    if (id == 0 || id == static_cast<UINT>(-1)) continue;  // a separator or a popup
    const auto command = static_cast<Command>(id);
    const auto position = static_cast<UINT>(i);
    CheckMenuItem(menu, position,
                  MF_BYPOSITION | (menuItemChecked(app, command) ? MF_CHECKED : MF_UNCHECKED));
    EnableMenuItem(menu, position,
                   MF_BYPOSITION | (menuItemEnabled(app, command) ? MF_ENABLED : MF_GRAYED));
  }
}

HACCEL createAccelerators() {
  std::vector<ACCEL> keys;
  for (const KeyRow& row : acceleratorRows()) {
    const int modifiers =
        (row.control ? FCONTROL : 0) | (row.shift ? FSHIFT : 0) | (row.alt ? FALT : 0) | FVIRTKEY;
    keys.push_back({static_cast<BYTE>(modifiers), row.key, static_cast<WORD>(row.command)});
  }
  return CreateAcceleratorTableW(keys.data(), static_cast<int>(keys.size()));
}

void registerHotKeys(HWND window) {
  for (const KeyRow& row : hotKeyRows()) {
    RegisterHotKey(window, static_cast<int>(row.command), hotKeyModifiers(row), row.key);
  }
}

void unregisterHotKeys(HWND window) {
  for (const KeyRow& row : hotKeyRows()) UnregisterHotKey(window, static_cast<int>(row.command));
}

}  // namespace vgps
