#pragma once

#include <windows.h>

#include <memory>
#include <vector>

#include "app/desktop/dialogs.h"

namespace vgps {

// Runs the port search of a dialog on a separate thread, so that the dialog stays usable.
class DialogSearch {
 public:
  // Messages to the dialog; the first parameter of kTesting is the port number.
  static constexpr UINT kTesting = WM_APP + 1;
  static constexpr UINT kEnded = WM_APP + 2;

  DialogSearch() = default;
  DialogSearch(const DialogSearch&) = delete;
  DialogSearch& operator=(const DialogSearch&) = delete;
  ~DialogSearch() { end(); }

  // `search` may continue after this object is destroyed.
  void start(HWND dialog, PortSearch search);
  bool isRunning() const { return run_ != nullptr; }
  // Stops the search, or collects its result after kEnded, and returns the ports that answered. A
  // port being listened to is released first. One that the system is still opening is left to the
  // thread, which closes it and ends by itself.
  std::vector<uint32_t> end();

 private:
  struct Run;

  std::shared_ptr<Run> run_;  // shared with its thread
};

}  // namespace vgps
