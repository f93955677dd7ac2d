#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/ui_thread.h"

namespace vgps {

// The door to the user-interface thread where there is no window: a slot for one sent message,
// whose sender waits until it is handled, and a queue for posted ones. The thread that calls `wait`
// is the user-interface thread.
class UiMailbox : public UiThread {
 public:
  using Handler = std::function<void(const UiMessage&)>;

  enum class WaitResult { handled, nothing, closed };

  // Sending out of a handler calls the handler at once, as sending to one's own window does.
  bool send(const UiMessage& message) override;
  void post(const UiMessage& message) override;

  // Waits up to `timeoutMs` (-1: for ever) for messages and handles those that are there.
  WaitResult wait(int timeoutMs, const Handler& handler);

  // From any thread: every waiting and later `send` returns false and `wait` returns at once. The
  // message being handled is finished first, and its sender told so.
  void close();

 private:
  enum class Slot { free, sent, inHand, done };

  bool somethingToDo() const { return closed_ || slot_ == Slot::sent || !posted_.empty(); }
  void handleSent(std::unique_lock<std::mutex>& lock, const Handler& handler);
  void handlePosted(std::unique_lock<std::mutex>& lock, const Handler& handler);

  std::mutex mutex_;
  std::condition_variable arrived_;  // for the user-interface thread
  std::condition_variable changed_;  // for senders: the slot is free, or done
  Slot slot_ = Slot::free;
  const UiMessage* message_ = nullptr;  // of the waiting sender
  std::vector<UiMessage> posted_;
  std::vector<UiMessage> takenPosts_;  // of the user-interface thread
  const Handler* running_ = nullptr;
  std::thread::id runner_;
  bool closed_ = false;
};

}  // namespace vgps
