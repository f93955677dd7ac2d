#include "app/win32/dialog_opening.h"

#include <algorithm>
#include <string>

#include "app/desktop/dialogs.h"
#include "platform/win32/wide.h"

namespace vgps {
namespace {

void translate(HWND window, Text texts) {
  const int length = GetWindowTextLengthW(window);
  if (length <= 0) return;
  std::wstring word(static_cast<size_t>(length) + 1, L'\0');
  word.resize(static_cast<size_t>(GetWindowTextW(window, word.data(), length + 1)));
  const std::string_view text = dialogText(utf8FromWide(word), texts);
  if (!text.empty()) SetWindowTextW(window, wideFromUtf8(text).c_str());
}

}  // namespace

void translateDialog(HWND dialog, Text texts) {
  translate(dialog, texts);
  for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr;
       child = GetWindow(child, GW_HWNDNEXT)) {
    translate(child, texts);
  }
}

void centerOverOwner(HWND dialog) {
  const HWND owner = GetWindow(dialog, GW_OWNER);
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoW(MonitorFromWindow(owner != nullptr ? owner : dialog, MONITOR_DEFAULTTONEAREST),
                  &monitor);
  const RECT& screen = monitor.rcWork;
  RECT around = screen;
  if (owner != nullptr && IsIconic(owner) == FALSE) GetWindowRect(owner, &around);
  RECT own{};
  GetWindowRect(dialog, &own);
  const LONG width = own.right - own.left;
  const LONG height = own.bottom - own.top;
  const LONG left = (around.left + around.right - width) / 2;
  const LONG top = (around.top + around.bottom - height) / 2;
  SetWindowPos(dialog, nullptr, std::max(screen.left, std::min(left, screen.right - width)),
               std::max(screen.top, std::min(top, screen.bottom - height)), 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace vgps
