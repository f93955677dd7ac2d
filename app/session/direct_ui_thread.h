#pragma once

#include <functional>
#include <utility>

#include "platform/ui_thread.h"

namespace vgps {

// The door where the reader's steps and the user interface's run on one thread, as in a replay:
// a message is handled by a direct call.
class DirectUiThread : public UiThread {
 public:
  using Handler = std::function<void(const UiMessage&)>;

  explicit DirectUiThread(Handler handler = {}) : handler_(std::move(handler)) {}

  // To be called before the first message.
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
