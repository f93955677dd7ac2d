#pragma once

#include <windows.h>

#include <atomic>

#include "platform/ui_thread.h"

namespace vgps {

struct GpsFix;

// The door as window messages, numbered as the events are. In a message for a line the first
// parameter is the line as wide text, or the message record of a binary protocol, and the second
// the address of the fix. Texts of other events travel the same way.
class WindowUiThread : public UiThread {
 public:
  // What the window procedure answers to a message that it has handled.
  static constexpr LRESULT kHandled = 1;

  // Before the first message.
  void open(HWND window, const GpsFix& fix);

  bool send(const UiMessage& message) override;
  void post(const UiMessage& message) override;

  // On the user-interface thread: nothing passes from now on, and who waits in `send` is let go.
  // Gives up after `timeoutMs`.
  void close(int timeoutMs);

 private:
  HWND window_ = nullptr;
  const GpsFix* fix_ = nullptr;
  std::atomic<bool> closed_{true};
  std::atomic<int> underWay_{0};
};

// The event that a window message stands for. False for other messages, and for those that do not
// come through the door of this `fix`: another program may send anything, and only behind a message
// of the door does a reader wait. `text` holds what `message` looks at.
bool readUiMessage(UINT number, WPARAM first, LPARAM second, const GpsFix& fix, std::string& text,
                   UiMessage& message);

}  // namespace vgps
