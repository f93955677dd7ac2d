#include "app/win32/tray_icon.h"

namespace vgps {

UINT TrayIcon::areaCreatedMessage() {
  static const UINT message = RegisterWindowMessageW(L"TaskbarCreated");
  return message;
}

void TrayIcon::add(HWND window, HICON icon, const wchar_t* tip) {
  remove();
  data_ = {};
  data_.cbSize = sizeof data_;
  data_.hWnd = window;
  data_.uID = 1;
  data_.uFlags = NIF_ICON | NIF_MESSAGE | NIF_TIP;
  data_.uCallbackMessage = kTrayMessage;
  data_.hIcon = icon;
  lstrcpynW(data_.szTip, tip, static_cast<int>(sizeof data_.szTip / sizeof *data_.szTip));
  wanted_ = true;
  shown_ = notify(NIM_ADD);
}

void TrayIcon::setIcon(HICON icon) {
  data_.hIcon = icon;
  if (shown_) notify(NIM_MODIFY);
}

void TrayIcon::restore() {
  if (wanted_) shown_ = notify(NIM_ADD);
}

void TrayIcon::remove() {
  if (shown_) notify(NIM_DELETE);
  wanted_ = shown_ = false;
}

// The window must be active, or the menu would stay open when the user clicks elsewhere. The
// message posted afterward makes the system notice that the menu was closed.
uint32_t TrayIcon::choose(HWND window, std::span<const TrayMenuRow> rows) {
  const HMENU menu = CreatePopupMenu();
  if (menu == nullptr) return 0;
  for (const TrayMenuRow& row : rows) {
    const UINT kind = row.number == 0 ? MF_SEPARATOR : row.enabled ? MF_STRING : MF_GRAYED;
    AppendMenuW(menu, kind, row.number, row.text.c_str());
  }
  if (!rows.empty()) SetMenuDefaultItem(menu, rows[0].number, FALSE);
  POINT pointer{};
  GetCursorPos(&pointer);
  SetForegroundWindow(window);
  const BOOL chosen = TrackPopupMenu(menu, TPM_RETURNCMD | TPM_NONOTIFY | TPM_RIGHTBUTTON,
                                     pointer.x, pointer.y, 0, window, nullptr);
  PostMessageW(window, WM_NULL, 0, 0);
  DestroyMenu(menu);
  return static_cast<uint32_t>(chosen);
}

bool TrayIcon::notify(DWORD what) { return Shell_NotifyIconW(what, &data_) != FALSE; }

}  // namespace vgps
