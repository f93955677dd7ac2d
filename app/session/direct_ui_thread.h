#pragma once

#include <functional>
#include <utility>

#include "platform/ui_thread.h"

namespace vgps {

// The channel to the user interface when it shares one thread with the reader, as in a replay: each
// message is handled by a direct call.
class DirectUiThread : public UiThread {
 public:
  using Handler = std::function<void(const UiMessage&)>;

  explicit DirectUiThread(Handler handler = {}) : handler_(std::move(handler)) {}

  // Call it before the first message.
  void setHandler(Handler handler) { handler_ = std::move(handler); }

  bool send(const UiMessage& message) override {
    if (!handler_) return false;
    handler_(message);
    return true;
  }
  void post(const UiMessage& message) override { send(message); }

 private:
  Handler handler_;
};

}  // namespace vgps
