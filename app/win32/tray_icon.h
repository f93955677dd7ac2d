#pragma once

#include <windows.h>

#include <shellapi.h>

#include <cstdint>
#include <span>
#include <string>

namespace vgps {

// One line of the icon's menu; number 0 is a line between others.
struct TrayMenuRow {
  uint32_t number;
  std::wstring text;
  bool enabled = true;
};

// The program's icon in the notification area. Presses on it come to the window as kTrayMessage,
// the second parameter the mouse message. Without such an area nothing is shown, which is no error.
class TrayIcon {
 public:
  static constexpr UINT kTrayMessage = 0x465;

  TrayIcon() = default;
  TrayIcon(const TrayIcon&) = delete;
  TrayIcon& operator=(const TrayIcon&) = delete;
  ~TrayIcon() { remove(); }

  void add(HWND window, HICON icon, const wchar_t* tip);
  void setIcon(HICON icon);
  void remove();
  // The notification area is a new one: its program was started again.
  void restore();
  // Shows a menu where the pointer is and waits; the number that was chosen, 0 for none. The first
  // row is what a press of the icon does without the menu.
  static uint32_t choose(HWND window, std::span<const TrayMenuRow> rows);
  bool isShown() const { return shown_; }

  // The number of the message that says so.
  static UINT areaCreatedMessage();

 private:
  bool notify(DWORD what);

  NOTIFYICONDATAW data_{};
  bool wanted_ = false;
  bool shown_ = false;
};

}  // namespace vgps
