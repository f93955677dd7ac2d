#include "app/win32/single_instance.h"

#include "app/desktop/startup.h"
#include "app/win32/main_window.h"
#include "platform/win32/wide.h"

namespace vgps {
namespace {

constexpr DWORD kTurnMs = 5000;

// Local to the user's session, so that each user may run a copy.
constexpr const wchar_t* kStartupLockName = L"Local\\VGPS START";

bool answersAsOurs(HWND window) {
  DWORD_PTR answer = 0;
  return SendMessageTimeoutW(window, instanceQueryMessage(), 0, 0, SMTO_ABORTIFHUNG,
                             kInstanceQueryMs, &answer) != 0 &&
         isOwnAnswer(answer);
}

// If a question is shown, activate that: the window behind it accepts no input.
void bringToFront(HWND window) {
  ShowWindow(window, IsIconic(window) ? SW_RESTORE : SW_SHOW);
  SetForegroundWindow(GetLastActivePopup(window));
}

}  // namespace

UINT instanceQueryMessage() {
  static const UINT message = RegisterWindowMessageW(wideFromUtf8(kInstanceQueryName).c_str());
  return message;
}

bool activateRunningCopy() {
  if (instanceQueryMessage() == 0) return false;
  HWND window = nullptr;
  while ((window = FindWindowExW(nullptr, window, kMainWindowClass, nullptr)) != nullptr) {
    if (!answersAsOurs(window)) continue;
    bringToFront(window);
    return true;
  }
  return false;
}

// If the other copy ended while holding the mutex, it is abandoned, which counts as free.
StartupLock::StartupLock() : mutex_(CreateMutexW(nullptr, FALSE, kStartupLockName)) {
  if (!mutex_.isValid()) return;
  const DWORD result = WaitForSingleObject(mutex_.get(), kTurnMs);
  held_ = result == WAIT_OBJECT_0 || result == WAIT_ABANDONED;
}

void StartupLock::end() {
  if (held_) ReleaseMutex(mutex_.get());
  held_ = false;
}

}  // namespace vgps
