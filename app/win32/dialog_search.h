#pragma once

#include <windows.h>

#include <memory>
#include <vector>

#include "app/desktop/dialogs.h"

namespace vgps {

// The search for ports that answer, on a thread of its own while the dialog stays usable.
class DialogSearch {
 public:
  // The dialog is told by these: `first` of kTesting is the number of the port.
  static constexpr UINT kTesting = WM_APP + 1;
  static constexpr UINT kEnded = WM_APP + 2;

  DialogSearch() = default;
  DialogSearch(const DialogSearch&) = delete;
  DialogSearch& operator=(const DialogSearch&) = delete;
  ~DialogSearch() { end(); }

  // `search` may go on after this is gone.
  void start(HWND dialog, PortSearch search);
  bool isRunning() const { return run_ != nullptr; }
  // What answered, at kEnded or before. A port that is listened to is given free first; one that
  // the system is still opening is left to the thread, which closes it and ends by itself.
  std::vector<uint32_t> end();

 private:
  struct Run;

  std::shared_ptr<Run> run_;  // with its thread
};

}  // namespace vgps
