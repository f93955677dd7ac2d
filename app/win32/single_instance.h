#pragma once

#include <windows.h>

#include "platform/win32/handle.h"

namespace vgps {

// One copy of the program at a time: a second one asks the window of the first.
//
// The number of the query, the same in every copy. 0 when the system has none left.
UINT instanceQueryMessage();

// Shows the running copy's window in front. False when no window of the class answers as ours.
bool activateRunningCopy();

// Held from the look for another copy until the own window can be found, so that two copies that
// start at the same moment do not miss each other.
class StartupLock {
 public:
  // Waits for a copy that is starting, but not for ever.
  StartupLock();
  StartupLock(const StartupLock&) = delete;
  StartupLock& operator=(const StartupLock&) = delete;
  ~StartupLock() { end(); }
  void end();

 private:
  Handle mutex_;
  bool held_ = false;
};

}  // namespace vgps
