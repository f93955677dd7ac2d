#pragma once

#include <windows.h>

#include <atomic>

#include "platform/ui_thread.h"

namespace vgps {

struct GpsFix;

// Sends messages to the user-interface thread as window messages with the same numbers as the
// events. For a line, the first parameter is the line as UTF-16 text, or the message record of a
// binary protocol, and the second is the address of the fix. Texts of other events are passed the
// same way.
class WindowUiThread : public UiThread {
 public:
  // The window procedure returns this for a message that it has handled.
  static constexpr LRESULT kHandled = 1;

  // Call this before the first message.
  void open(HWND window, const GpsFix& fix);

  bool send(const UiMessage& message) override;
  void post(const UiMessage& message) override;

  // Call this on the user-interface thread: no message passes from now on, and senders waiting in
  // `send` are released. Gives up after `timeoutMs`.
  void close(int timeoutMs);

 private:
  HWND window_ = nullptr;
  const GpsFix* fix_ = nullptr;
  std::atomic<bool> closed_{true};
  std::atomic<int> underWay_{0};
};

// Converts a window message to an event. Returns false for other messages, and for those that do
// not come from the reader of this `fix`: another program may send anything, and only the reader's
// messages have a waiting sender. `text` stores what `message` refers to.
bool readUiMessage(UINT number, WPARAM first, LPARAM second, const GpsFix& fix, std::string& text,
                   UiMessage& message);

}  // namespace vgps
