#pragma once

#include <windows.h>

#include <atomic>
#include <thread>
#include <vector>

#include "app/dialogs.h"

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
  ~DialogSearch();

  void start(HWND dialog, PortSearch search);
  // The search ends with the port that it tests now.
  void cancel() { cancelled_ = true; }
  bool isCancelled() const { return cancelled_; }
  // Until `take` was called after kEnded.
  bool isRunning() const { return thread_.joinable(); }
  std::vector<uint32_t> take();

 private:
  std::thread thread_;
  std::atomic<bool> cancelled_{false};
  std::vector<uint32_t> answered_;
};

}  // namespace vgps
