#pragma once

#include <windows.h>

#include <shellapi.h>

#include <cstdint>
#include <span>
#include <string>

namespace vgps {

// A row of the icon's menu; number 0 is a separator.
struct TrayMenuRow {
  uint32_t number;
  std::wstring text;
  bool enabled = true;
};

// The program's icon in the notification area. Clicks are sent to the window as kTrayMessage, with
// the mouse message as second parameter. On a system without a notification area nothing is shown;
// that is not an error.
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
  // Call this when the notification area was recreated because its program was restarted.
  void restore();
  // Shows a menu at the mouse pointer and waits. Returns the number of the chosen row, 0 for none.
  // The first row is the default action of the icon.
  static uint32_t choose(HWND window, std::span<const TrayMenuRow> rows);
  bool isShown() const { return shown_; }

  // The number of the message for that event.
  static UINT areaCreatedMessage();

 private:
  bool notify(DWORD what);

  NOTIFYICONDATAW data_{};
  bool wanted_ = false;
  bool shown_ = false;
};

}  // namespace vgps
