#pragma once

#include <windows.h>

#include "platform/win32/handle.h"

namespace vgps {

// Allows only one running copy of the program: a second one queries the window of the first.
//
// The number of the query message, which is the same in every copy. 0 if the system has none left.
UINT instanceQueryMessage();

// Activates the running copy's window. Returns false if no window of that class replies as ours.
bool activateRunningCopy();

// Held from the search for another copy until this copy's window can be found, so that two copies
// that start at the same moment do not miss each other.
class StartupLock {
 public:
  // Waits a limited time for another copy that is starting.
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
