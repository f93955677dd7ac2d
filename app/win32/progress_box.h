#pragma once

#include <windows.h>

#include <shlobj.h>

#include <cstdint>

#include "platform/win32/com.h"

namespace vgps {

// The system's window for long work, with Cancel. It appears after a second.
class ProgressBox {
 public:
  // Lets `owner` work, but disables it. False when the user gave up.
  bool show(HWND owner, uint64_t done, uint64_t total);
  void end(HWND owner);

 private:
  ComPtr<IProgressDialog> box_;
  ULONGLONG begin_ = 0;  // ticks; 0: no work is going on
  ULONGLONG last_ = 0;
};

}  // namespace vgps
