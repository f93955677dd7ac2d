#pragma once

#include <windows.h>

#include <shellapi.h>

namespace vgps {

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
