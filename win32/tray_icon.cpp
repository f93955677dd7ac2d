#include "win32/tray_icon.h"

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

bool TrayIcon::notify(DWORD what) { return Shell_NotifyIconW(what, &data_) != FALSE; }

}  // namespace vgps
